// What the pages of an index state.
import { execFileSync } from "node:child_process";
import { resolve } from "node:path";

const TYPES = new Set(["class", "struct", "interface", "type", "enum"]);
const CALLABLES = new Set(["function", "method", "constructor"]);

// A declaration by the name that the compilers have: with those of its types and namespaces, without its module's.
const moduleOf = (path) => path.replace(/(\/__init__)?\.pyi?$/, "").replaceAll("/", ".");
const named = (symbol) => ({ ...symbol, name: symbol.fqn.slice(moduleOf(symbol.path).length + 1) });

const lies = (inner, outer) =>
  inner !== outer && outer.start_line <= inner.start_line && inner.end_line <= outer.end_line;

export function openPages(wikiScope, folder, name) {
  const index = resolve(folder, `${name}.db`);
  const run = (...args) => JSON.parse(execFileSync(wikiScope, [...args, "--index", index, "--format", "json"],
    { maxBuffer: 2 ** 30, stdio: ["ignore", "pipe", "ignore"] }));
  const page = (path, only) => run("page", path, "--checkout", resolve(folder, name), "--only", only);

  const tests = new Set(run("files").files.filter((file) => file.is_test).map((file) => file.path));
  const { facts, signatures, documentation } = page(".", "declarations");
  const byName = new Map(facts.files.map(({ path }) => [path, new Map()])); // path -> name -> declarations
  for (const symbol of facts.symbols.filter(({ kind }) => kind !== "module").map(named)) {
    const [signature, doc] = [signatures, documentation].map((texts) => texts[symbol.id] ?? "");
    const ofFile = byName.get(symbol.path);
    ofFile.set(symbol.name, [...(ofFile.get(symbol.name) ?? []), { ...symbol, signature, documentation: doc }]);
  }

  return {
    inbound: facts.inbound,
    holds: (path) => byName.has(path),
    isTest: (path) => tests.has(path),
    declaredIn: (path) => [...byName.get(path).values()].flat(),
    named: (path, name) => byName.get(path)?.get(name) ?? [],

    // What the page of a file alone lists as used by no production file outside. The page names only the first of them:
    // all are found by its rule, and must be as many as it says.
    unusedOn(path) {
      const { facts: { symbols, inbound }, consumers } = page(path, "declarations,consumers");
      const isUse = ({ source_path, resolution }) =>
        source_path !== path && !tests.has(source_path) && /^(local|import)$/.test(resolution);
      const used = new Set(inbound.filter(isUse).map((edge) => edge.target_id));
      const types = symbols.filter(({ kind }) => TYPES.has(kind));
      const isListed = ({ kind, name, is_export: isExported }) =>
        (TYPES.has(kind) || CALLABLES.has(kind)) && isExported && !name.startsWith("_");
      const unused = symbols.filter((symbol) =>
        isListed(symbol) && !used.has(symbol.id) && !types.some((type) => lies(symbol, type)));
      const said = consumers.unused.total;
      if (said !== unused.length) throw new Error(`${path}: lists ${said} as unused, by its rule ${unused.length}`);
      return unused.map(named);
    },
  };
}
