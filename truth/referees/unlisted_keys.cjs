// unlisted_keys.cjs MODULES CHECKOUT DIR: adds to DIR/files.jsonl, as "unjudged", the tokens that name a member of a
// type of the checkout, by the compiler, but that an index made by scip-typescript may lack: keys of literals,
// attributes of elements, and `a` in `const { a } = b`.
const fs = require("fs");
const path = require("path");

const [modules, checkout, folder] = process.argv.slice(2);
const ts = require(path.resolve(modules, "typescript"));

const root = path.resolve(checkout);
const { config } = ts.readConfigFile(path.join(root, "tsconfig.json"), ts.sys.readFile);
const { fileNames, options } = ts.parseJsonConfigFileContent(config, ts.sys, root);
const program = ts.createProgram(fileNames, options);
const checker = program.getTypeChecker();

function isDeclaredHere(type, name) {
  const property = type && checker.getPropertyOfType(checker.getNonNullableType(type), name);
  const isHere = (type) => {
    const declarations = checker.getPropertyOfType(type, name)?.declarations ?? [];
    return declarations.some((each) => each.getSourceFile().fileName.startsWith(root + "/"));
  };
  return property ? isHere(checker.getNonNullableType(type)) : Boolean(type?.isUnion() && type.types.some(isHere));
}

// The name that a token is, where it names a member of a type that is not written there.
function keyOf(node) {
  if (ts.isBindingElement(node) && ts.isObjectBindingPattern(node.parent) && !node.propertyName) {
    return ts.isIdentifier(node.name) && { name: node.name.text, type: checker.getTypeAtLocation(node.parent) };
  }
  const isProperty = ts.isPropertyAssignment(node) || ts.isShorthandPropertyAssignment(node);
  if (isProperty && (ts.isIdentifier(node.name) || ts.isStringLiteral(node.name))) {
    return { name: node.name.text, type: checker.getContextualType(node.parent) };
  }
  if (ts.isJsxAttribute(node) && ts.isIdentifier(node.name)) {
    return { name: node.name.text, type: checker.getContextualType(node.parent) };
  }
  return undefined;
}

function keysIn(file) {
  const names = {};
  const visit = (node) => {
    const key = keyOf(node);
    if (key && isDeclaredHere(key.type, key.name)) names[key.name] = (names[key.name] ?? 0) + 1;
    ts.forEachChild(node, visit);
  };
  const source = program.getSourceFile(path.join(root, file));
  if (source) visit(source);
  return names;
}

const list = path.join(folder, "files.jsonl");
const lines = fs.readFileSync(list, "utf8").trim().split("\n").map((line) => {
  const { path: file } = JSON.parse(line);
  return JSON.stringify({ path: file, unjudged: keysIn(file) });
});
fs.writeFileSync(list, lines.join("\n") + "\n");
