// Compares what the pages of a repository state with what a compiler knows:
// node compare.mjs WIKI_SCOPE FOLDER NAME
//
// The folder holds NAME.scip, its index NAME.db, the checkout NAME, what the compiler knows as NAME.json, and
// node_modules. Prints a table, and writes a line for each case that it counts to NAME.cases.txt. Exits with 1 when a goal
// is missed.
import { execFileSync } from "node:child_process";
import { readFileSync, writeFileSync } from "node:fs";
import { resolve } from "node:path";

const [wikiScope, folder, name] = process.argv.slice(2);
const [index, checkout, refereePath, casesPath] =
  [".db", "", ".json", ".cases.txt"].map((end) => resolve(folder, name + end));
const known = JSON.parse(readFileSync(new URL("known.json", import.meta.url)));
const referee = JSON.parse(readFileSync(refereePath));

function page(path) {
  const args = ["page", path, "--index", index, "--checkout", checkout, "--format", "json"];
  return JSON.parse(execFileSync(wikiScope, args, { maxBuffer: 2 ** 30, stdio: ["ignore", "pipe", "ignore"] }));
}

// As README.md says.
const isTest = (path) => path.split("/").slice(0, -1).some((folder) => /^(test|tests|__tests__|spec|specs)$/.test(folder)) ||
  /(^|\/)(conftest\.py|test_[^/]*|[^/]*_test\.[^/]*|[^/]*\.(test|spec)\.[^/]*)$/.test(path);

const { facts } = page(".");
const paths = Object.keys(referee).filter((path) => facts.files.some((file) => file.path === path));
// The name of a declaration of the index as the compilers have it: without that of its module.
const moduleOf = (path) => (/\.pyi?$/.test(path) ? path.replace(/(\/__init__)?\.pyi?$/, "") : path).replaceAll("/", ".");
const nameOf = (symbol) => symbol.fqn.slice(moduleOf(symbol.path).length + 1);
const symbols = new Map(facts.files.map(({ path }) => [path, new Map()])); // path -> name -> declarations
for (const symbol of facts.symbols.filter(({ kind }) => kind !== "module")) {
  const named = symbols.get(symbol.path);
  named.set(nameOf(symbol), [...(named.get(nameOf(symbol)) ?? []), symbol]);
}
const indexed = (path, wanted) => symbols.get(path)?.get(wanted) ?? [];

const rows = [];
const cases = [];
function row(title, goal, checked, found) {
  rows.push({ title, goal, checked, count: found.reduce((sum, { weight = 1 }) => sum + weight, 0) });
  for (const { file, what, detail = "" } of found) cases.push([title, file, what, detail].join("\t"));
}

// What the page of a file alone lists as used by no production file outside. The page names only the first of them: all
// are found by its rule, and must be as many as it says.
const TYPES = new Set(["class", "struct", "interface", "type", "enum"]);
const CALLABLES = new Set(["function", "method", "constructor"]);
const UNUSED = /^Used by no production file outside this page: (.*?)(?: and (\d+) more)? \(code used/m;
const lies = (inner, outer) => inner !== outer && outer.start_line <= inner.start_line && inner.end_line <= outer.end_line;
function unusedOn(path) {
  const { facts: { symbols, inbound }, consumers } = page(path);
  const used = new Set(inbound
    .filter((edge) => edge.source_path !== path && !isTest(edge.source_path) && /^(local|import)$/.test(edge.resolution))
    .map((edge) => edge.target_id));
  const types = symbols.filter((symbol) => TYPES.has(symbol.kind));
  const unused = symbols.filter((symbol) => (TYPES.has(symbol.kind) || CALLABLES.has(symbol.kind)) && symbol.is_export &&
    !symbol.name.startsWith("_") && !used.has(symbol.id) && !types.some((type) => lies(symbol, type)));
  const [, names = "", more = 0] = consumers.match(UNUSED) ?? [];
  const said = (names.match(/:L\d+`\)/g) ?? []).length + Number(more);
  if (said !== unused.length) throw new Error(`${path}: the page lists ${said} as unused, its rule ${unused.length}`);
  return unused;
}
const unused = paths.filter((path) => !isTest(path)).flatMap(unusedOn);
const declared = (symbol) => referee[symbol.path].declarations.find((each) => each.name === nameOf(symbol));
row("listed as unused, not exported", 0, unused.length,
  unused.filter((symbol) => !declared(symbol)?.exported)
    .map((symbol) => ({ file: symbol.path, what: symbol.name, detail: `L${symbol.start_line}` })));
row("listed as unused, used outside", 0, unused.length, unused.flatMap((symbol) => {
  const { uses = {}, shorthand = {} } = declared(symbol) ?? {};
  const users = Object.keys({ ...uses, ...shorthand }).filter((path) => !isTest(path));
  return users.length ? [{ file: symbol.path, what: symbol.name, detail: users.join(" ") }] : [];
}));

const edges = new Set(facts.inbound.map((edge) => `${edge.source_path}\t${edge.target_path}`));
const pairs = paths.flatMap((from) => referee[from].imports.filter((to) => symbols.has(to)).map((to) => [from, to]));
row("imports without an edge", 0.01, pairs.length, pairs.filter(([from, to]) => !edges.has(`${from}\t${to}`))
  .map(([from, to]) => ({ file: from, what: to })));

const all = paths.flatMap((path) => referee[path].declarations.map((each) => ({ path, ...each })));
const exported = all.filter((each) => each.exported);
row("exported declarations missing", 0.01, exported.length,
  exported.filter((each) => indexed(each.path, each.name).length === 0)
    .map((each) => ({ file: each.path, what: each.name, detail: each.kinds.join(" ") })));
const both = all.filter((each) => indexed(each.path, each.name).length > 0);
row("exported here and not there", 0.01, both.length,
  both.filter((each) => indexed(each.path, each.name).some((symbol) => symbol.is_export) !== each.exported)
    .map((each) => ({ file: each.path, what: each.name, detail: `is ${each.exported ? "" : "not "}exported` })));

const kindOf = (symbol) => ({ constant: "value", variable: "value", struct: "class" })[symbol.kind] ?? symbol.kind;
row("kinds that differ", 0.01, both.length,
  both.filter((each) => !indexed(each.path, each.name).some((symbol) => each.kinds.includes(kindOf(symbol))))
    .map((each) => ({ file: each.path, what: each.name,
      detail: `${indexed(each.path, each.name).map(kindOf)} is ${each.kinds}` })));
const isSame = (symbol, [first, last]) => symbol.start_line === first && symbol.end_line === last;
row("line ranges that differ", 0.01, both.length, both.filter((each) =>
  !indexed(each.path, each.name).some((symbol) => each.lines.some((lines) => isSame(symbol, lines))))
  .map((each) => ({ file: each.path, what: each.name,
    detail: `${indexed(each.path, each.name).map((symbol) => [symbol.start_line, symbol.end_line])} is ${each.lines.join(" or ")}` })));

// References from other files that count as uses, by the pair of declaration and source.
const counted = new Map();
for (const edge of facts.inbound.filter((edge) => edge.source_path !== edge.target_path && edge.resolution === "import")) {
  counted.set(`${edge.target_id}\t${edge.source_path}`, edge.refs);
}
let tokens = 0;
const differences = both.filter((each) => each.exported).flatMap((each) => {
  // Where a module of Python has a stub, an indexer takes the one or the other for the declaration.
  const own = [...indexed(each.path, each.name), ...indexed(`${each.path}i`, each.name)];
  const sources = paths.filter((from) => from !== each.path && !referee[from].unclear.includes(each.path));
  return sources.flatMap((from) => {
    const uses = each.uses[from] ?? [];
    const shorthand = (each.shorthand[from] ?? []).length;
    const count = own.reduce((sum, symbol) => sum + (counted.get(`${symbol.id}\t${from}`) ?? 0), 0);
    tokens += uses.length;
    // A token in `{ name }` names a property as well, and may be counted or not.
    const weight = Math.max(0, count - uses.length - shorthand, uses.length - count);
    return weight ? [{ file: each.path, what: each.name, weight,
      detail: `from ${from}: ${count} references, but ${uses.length} tokens` }] : [];
  });
});
row("references against tokens", 0.01, tokens, differences);

console.log(`\n| ${name} | cases | of | | goal | why the cases |\n|---|---|---|---|---|---|`);
let isMissed = false;
for (const { title, goal, checked, count } of rows) {
  const share = checked ? count / checked : 0;
  isMissed ||= goal !== undefined && share > goal;
  const why = count ? known[name]?.[title] ?? "not known" : "";
  console.log(`| ${title} | ${count} | ${checked} | ${(100 * share).toFixed(2)} % | ${goal === undefined ? "" : `${100 * goal} %`} | ${why} |`);
}
writeFileSync(casesPath, cases.map((line) => line + "\n").join(""));
process.exitCode = isMissed ? 1 : 0;
