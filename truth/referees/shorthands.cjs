// shorthands.cjs MODULES CHECKOUT DIR: adds to DIR/files.jsonl, as "unjudged", the tokens of which an index made from
// SCIP does not tell all that they name: `a` in `const { a } = b` declares a local and names a member of b.
const fs = require("fs");
const path = require("path");

const [modules, checkout, folder] = process.argv.slice(2);
const ts = require(path.resolve(modules, "typescript"));

function shorthandsIn(file) {
  const names = {};
  const visit = (node) => {
    const isPattern = ts.isBindingElement(node) && ts.isObjectBindingPattern(node.parent) && !node.propertyName;
    if ((isPattern && ts.isIdentifier(node.name) && !node.dotDotDotToken) || ts.isShorthandPropertyAssignment(node)) {
      names[node.name.text] = (names[node.name.text] ?? 0) + 1;
    }
    ts.forEachChild(node, visit);
  };
  visit(ts.createSourceFile(file, fs.readFileSync(file, "utf8"), ts.ScriptTarget.Latest, true));
  return names;
}

const list = path.join(folder, "files.jsonl");
const lines = fs.readFileSync(list, "utf8").trim().split("\n").map((line) => {
  const { path: file } = JSON.parse(line);
  return JSON.stringify({ path: file, unjudged: shorthandsIn(path.join(checkout, file)) });
});
fs.writeFileSync(list, lines.join("\n") + "\n");
