// Compares what the pages of a repository state with what a compiler knows:
// node compare.mjs WIKI_SCOPE FOLDER NAME
//
// The folder holds NAME.scip, its index NAME.db, the checkout NAME and what the compiler knows as NAME.json. Prints a
// table, and writes a line for each case that it counts to NAME.cases.txt. Exits with 1 when a goal is missed.
import { readFileSync, writeFileSync } from "node:fs";
import { resolve } from "node:path";
import { openPages } from "./pages.mjs";
import { Table } from "./table.mjs";

const [wikiScope, folder, repository] = process.argv.slice(2);
const referee = JSON.parse(readFileSync(resolve(folder, `${repository}.json`)));
const pages = openPages(wikiScope, folder, repository);
const table = new Table(repository);

const paths = Object.keys(referee).filter(pages.holds);
const declarations = paths.flatMap((path) => referee[path].declarations.map((each) => ({ path, ...each })));
const key = ({ path, name }) => `${path}\t${name}`;
const declared = new Map(declarations.map((each) => [key(each), each]));
const symbolsOf = ({ path, name }) => pages.named(path, name);
const found = declarations.filter((each) => symbolsOf(each).length > 0);

const plain = (text) => text.replace(/\s+/g, " ").trim();

const unused = paths.filter((path) => !pages.isTest(path)).flatMap(pages.unusedOn);
table.row("listed as unused, not exported", {
  goal: 0,
  checked: unused,
  fault: (symbol) => (declared.get(key(symbol))?.exported ? undefined : `L${symbol.start_line}`),
});
table.row("listed as unused, used outside", {
  goal: 0,
  checked: unused,
  fault(symbol) {
    const { uses = {}, doubtful = {} } = declared.get(key(symbol)) ?? {};
    const users = Object.keys({ ...uses, ...doubtful }).filter((path) => !pages.isTest(path));
    return users.length ? users.join(" ") : undefined;
  },
});

const edges = new Set(pages.inbound.map((edge) => `${edge.source_path}\t${edge.target_path}`));
table.row("imports without an edge", {
  checked: paths.flatMap((path) => referee[path].imports.filter(pages.holds).map((name) => ({ path, name }))),
  fault: (imported) => (edges.has(key(imported)) ? undefined : ""),
});

table.row("declarations missing", {
  checked: declarations.filter((each) => !each.inherited),
  fault({ path, name, note = "", forms: [{ kinds, head }] }) {
    return pages.named(path, name).length ? undefined : `${kinds} (${note}): ${plain(head)}`;
  },
});
// What pages declare at the top of a file, or in a type that the compiler knows, too.
const isType = (declaration) => declaration?.forms.some(({ kinds }) => /class|interface|enum/.test(kinds));
const isOpen = ({ path, name }) =>
  !name.includes(".") || isType(declared.get(key({ path, name: name.slice(0, name.lastIndexOf(".")) })));
table.row("declarations that are none", {
  checked: paths.flatMap(pages.declaredIn).filter(isOpen),
  fault: (symbol) => (declared.has(key(symbol)) ? undefined : `${symbol.kind} L${symbol.start_line}`),
});
table.row("exported here and not there", {
  checked: found,
  fault(each) {
    const isExported = symbolsOf(each).some((symbol) => symbol.is_export);
    return isExported === each.exported ? undefined : `is ${each.exported ? "" : "not "}exported`;
  },
});

// What is stated of a declaration, with what the compiler knows of it: the form that stands where it does, or else all.
const stated = found.flatMap((declaration) => symbolsOf(declaration).map((symbol) => {
  const isHere = ([first, last]) => symbol.start_line === first && symbol.end_line === last;
  const own = declaration.forms.filter(({ lines }) => lines.some(isHere));
  return { ...symbol, isHere: own.length > 0, own: own.length ? own : declaration.forms, forms: declaration.forms };
}));
const OTHER_KINDS = new Map([["constant", "value"], ["variable", "value"], ["struct", "class"]]);
table.row("kinds that differ", {
  checked: stated,
  fault({ kind, own }) {
    const kinds = own.flatMap((form) => form.kinds);
    return kinds.includes(OTHER_KINDS.get(kind) ?? kind) ? undefined : `${kind} is ${kinds}`;
  },
});
table.row("line ranges that differ", {
  checked: stated,
  fault({ start_line, end_line, isHere, own }) {
    const ranges = own.flatMap(({ lines }) => lines.map((range) => range.join("-")));
    return isHere ? undefined : `${start_line}-${end_line} is ${ranges.join(" or ")}`;
  },
});

// A signature is the head of a declaration; one that stands for several of a name has the heads of these in a row.
function withoutHeads(signature, heads) {
  const first = heads.find((head) => signature.startsWith(head));
  return first ? withoutHeads(signature.slice(first.length).trim(), heads) : signature;
}
table.row("signatures that differ", {
  checked: stated,
  fault({ signature, own, forms }) {
    const said = plain(signature);
    const [right, all] = [own, forms].map((each) => each.map((form) => plain(form.head)));
    const longestFirst = all.sort((a, b) => b.length - a.length);
    const isRight = right.some((head) => said.includes(head)) && withoutHeads(said, longestFirst) === "";
    return isRight ? undefined : `${said} is ${right.join(" or ")}`;
  },
});

const opening = (text) => (text.match(/[\p{L}\p{N}]+/gu) ?? []).slice(0, 8).join(" ");
table.row("doc comments that differ", {
  checked: stated,
  fault({ documentation, own }) {
    const said = opening(documentation);
    const right = [...new Set(own.flatMap((form) => form.docs).map(opening))];
    return right.includes(said) ? undefined : `"${said}" is "${right.join('" or "')}"`;
  },
});

// References from other files that count as uses: declaration -> file -> how many.
const counted = new Map();
for (const { target_id, target_path, source_path, resolution, refs } of pages.inbound) {
  if (source_path !== target_path && resolution === "import") {
    counted.set(target_id, (counted.get(target_id) ?? new Map()).set(source_path, refs));
  }
}
// Where a module of Python has a stub, an indexer takes the one or the other for the declaration.
const countsOf = ({ path, name }) =>
  [...pages.named(path, name), ...pages.named(`${path}i`, name)].map(({ id }) => counted.get(id) ?? new Map());
const isClear = (from, path) => from !== path && referee[from] && !referee[from].unclear.includes(path);
table.row("references against tokens", {
  checked: found.filter((each) => each.exported).flatMap(({ path, name, uses, doubtful }) => {
    const counts = countsOf({ path, name });
    const sources = new Set([...Object.keys(uses), ...counts.flatMap((sources) => [...sources.keys()])]);
    return [...sources].filter((from) => isClear(from, path)).map((from) => {
      const count = counts.reduce((sum, sources) => sum + (sources.get(from) ?? 0), 0);
      const [sure, maybe] = [uses, doubtful].map((tokens) => (tokens[from] ?? []).length);
      return { path, name, from, count, of: sure, weight: Math.max(0, count - sure - maybe, sure - count) };
    });
  }),
  fault: ({ from, count, of, weight }) => (weight ? `from ${from}: ${count} references, but ${of} tokens` : undefined),
});

console.log(`\n${table}`);
writeFileSync(resolve(folder, `${repository}.cases.txt`), table.cases);
process.exitCode = table.isReached ? 0 : 1;
