// typescript.cjs MODULES CHECKOUT DIR: says what refers to what in a checkout, by the compiler of TypeScript. Writes
// defs.jsonl, edges.jsonl and files.jsonl (FORMAT.md) to DIR; MODULES is the folder of the compiler's package.
//
// A key of a literal, an attribute of an element and `a` in `const { a } = b` refer to the member of the type that the
// compiler expects there. A name that several declarations make up together refers to each of them. A token that may
// mean members of different types, as of a union, is not judged: it has no declaration that is right.
const fs = require("fs");
const path = require("path");

const [modules, checkout, folder] = process.argv.slice(2);
const ts = require(path.resolve(modules, "typescript"));

const root = path.resolve(checkout) + "/";
const { config } = ts.readConfigFile(root + "tsconfig.json", ts.sys.readFile);
const { fileNames, options } = ts.parseJsonConfigFileContent(config, ts.sys, root);
const program = ts.createProgram(fileNames, options);
const checker = program.getTypeChecker();

const isHere = (source) => source.fileName.startsWith(root) && !source.fileName.includes("/node_modules/");
const lineOf = (source, position) => source.getLineAndCharacterOfPosition(position).line + 1;
const nameOf = (declaration) => isAssigned(declaration) ? declaration.name : ts.getNameOfDeclaration(declaration);

// In JavaScript assignments declare: `exports.a = 1`, `A.prototype.b = function () {}`.
const isAssigned = (declaration) => ts.isPropertyAccessExpression(declaration) && Boolean(declaration.symbol);
const isFunction = (node) => Boolean(node) && (ts.isFunctionExpression(node) || ts.isArrowFunction(node));
const valueOf = ({ parent }) => (ts.isBinaryExpression(parent) ? parent.right : undefined);

// `const { a } = require("m")`, `const a = require("m").a`: imports, which the compiler takes for such.
function isRequired(declaration) {
  const variable = ts.findAncestor(declaration, (node) => !ts.isBindingElement(node) && !ts.isObjectBindingPattern(node));
  return ts.isVariableDeclaration(variable) && ts.isVariableDeclarationInitializedToBareOrAccessedRequire(variable);
}

const KINDS = new Map([
  [ts.SyntaxKind.FunctionDeclaration, "function"],
  [ts.SyntaxKind.MethodDeclaration, "method"],
  [ts.SyntaxKind.MethodSignature, "method"],
  [ts.SyntaxKind.ClassDeclaration, "class"],
  [ts.SyntaxKind.InterfaceDeclaration, "interface"],
  [ts.SyntaxKind.TypeAliasDeclaration, "type"],
  [ts.SyntaxKind.EnumDeclaration, "enum"],
  [ts.SyntaxKind.EnumMember, "constant"],
  [ts.SyntaxKind.VariableDeclaration, "variable"],
  [ts.SyntaxKind.BindingElement, "variable"],
  [ts.SyntaxKind.ModuleDeclaration, "namespace"],
  [ts.SyntaxKind.PropertyDeclaration, "attribute"],
  [ts.SyntaxKind.PropertySignature, "attribute"],
  [ts.SyntaxKind.PropertyAssignment, "attribute"],
  [ts.SyntaxKind.ShorthandPropertyAssignment, "attribute"],
  [ts.SyntaxKind.GetAccessor, "attribute"],
  [ts.SyntaxKind.SetAccessor, "attribute"],
  [ts.SyntaxKind.Parameter, "attribute"], // of a constructor that makes it a property
]);

// A function or class that has a name and is all that a module exports: `module.exports = function a() {}`.
const isWhole = ({ parent }) => parent && ts.isBinaryExpression(parent) && /^(module\.)?exports$/.test(parent.left.getText());
const WHOLE = new Map([[ts.SyntaxKind.FunctionExpression, "function"], [ts.SyntaxKind.ClassExpression, "class"]]);

function kindOf(declaration) {
  if (WHOLE.has(declaration.kind)) return isWhole(declaration) ? WHOLE.get(declaration.kind) : undefined;
  if (isAssigned(declaration)) return isFunction(valueOf(declaration)) ? "function" : "variable";
  return KINDS.get(declaration.kind);
}

// Whether code elsewhere may name a declaration: it stands in no function, and is no addition to another module.
function isShared(declaration) {
  if (ts.isModuleDeclaration(declaration) && ts.isStringLiteral(declaration.name)) return false;
  const isProperty = !ts.isParameter(declaration) || ts.isParameterPropertyDeclaration(declaration, declaration.parent);
  let around = ts.isParameter(declaration) ? declaration.parent.parent : declaration.parent;
  while (around && !ts.isFunctionLike(around)) around = around.parent;
  const isLocal = around && around.body;
  const isPattern = ts.isBindingElement(declaration) && !ts.isIdentifier(declaration.name);
  return isProperty && !isLocal && !isPattern && kindOf(declaration) && !isRequired(declaration) && nameOf(declaration) &&
    isHere(declaration.getSourceFile());
}

// Of the overloads of a function the one with a body, else the first: they are one declaration.
function implementationOf(declaration) {
  if (isAssigned(declaration)) return declaration.symbol.declarations.find(isShared);
  if (!ts.isFunctionLike(declaration) || ts.isAccessor(declaration)) return declaration;
  const overloads = declaration.symbol.declarations.filter((each) => each.kind === declaration.kind &&
    each.parent === declaration.parent);
  return overloads.find((each) => each.body) ?? overloads[0];
}

const definitions = new Map(); // by declaration
function definitionOf(overload) {
  const declaration = implementationOf(overload);
  if (!definitions.has(declaration)) {
    const source = declaration.getSourceFile();
    const name = nameOf(declaration);
    definitions.set(declaration, {
      path: source.fileName.slice(root.length),
      line: lineOf(source, name.getStart()),
      name: name.text ?? name.getText(),
      kind: kindOf(declaration),
      first: lineOf(source, declaration.getStart()),
      last: lineOf(source, declaration.getEnd()),
      exported: Boolean(ts.getCombinedModifierFlags(declaration) & ts.ModifierFlags.Export),
    });
  }
  return definitions.get(declaration);
}

const propertyOf = (type, name) => {
  const parts = type ? (type.isUnion() ? type.types : [type]) : [];
  return parts.map((part) => checker.getPropertyOfType(checker.getNonNullableType(part), name)).filter(Boolean);
};

// What a token refers to, where it is no name that is declared there: lists of symbols, of each of which one is meant.
function referredTo(token) {
  const { parent } = token;
  if (ts.isBindingElement(parent) && ts.isObjectBindingPattern(parent.parent) && parent.initializer !== token) {
    const isKey = parent.propertyName === token || (!parent.propertyName && parent.name === token);
    return isKey ? [propertyOf(checker.getTypeAtLocation(parent.parent), token.text)] : [];
  }
  if (ts.isPropertyAssignment(parent) && parent.name === token) {
    return [propertyOf(checker.getContextualType(parent.parent), token.text)];
  }
  if (ts.isShorthandPropertyAssignment(parent)) {
    const value = checker.getShorthandAssignmentValueSymbol(parent);
    return [value ? [value] : [], propertyOf(checker.getContextualType(parent.parent), token.text)];
  }
  if (ts.isJsxAttribute(parent) && parent.name === token) {
    return [propertyOf(checker.getContextualType(parent.parent), token.text)];
  }
  const isNewName = (ts.isImportSpecifier(parent) || ts.isExportSpecifier(parent)) && parent.propertyName && parent.name === token;
  const isImport = ts.isImportSpecifier(parent) || ts.isImportClause(parent) || ts.isExportSpecifier(parent);
  const isDeclared = parent.name === token && !isImport && !ts.isPropertyAccessExpression(parent);
  if (isNewName || isDeclared) return [];
  const symbol = checker.getSymbolAtLocation(token);
  if (isAssigned(parent) && parent.name === token && symbol?.declarations?.includes(parent)) return [];
  return symbol ? [[symbol]] : [];
}

// Follows aliases; in JavaScript also the keys of an object that a module exports, which are other names of what they hold.
function resolved(symbol, depth = 0) {
  const target = symbol.flags & ts.SymbolFlags.Alias ? checker.getAliasedSymbol(symbol) : symbol;
  const [key] = target.declarations ?? [];
  if (!key || depth > 8) return target;
  const variable = variableAround(key);
  if (variable) return checker.getSymbolAtLocation(variable.name);
  if (ts.isSourceFile(key)) return wholeVariable(key) ?? target;
  if (ts.isBinaryExpression(key)) return wholeOf(key, depth) ?? target;
  if (!isExportedKey(key)) return target;
  const value = ts.isShorthandPropertyAssignment(key)
    ? checker.getShorthandAssignmentValueSymbol(key)
    : ts.isIdentifier(key.initializer) || ts.isPropertyAccessExpression(key.initializer)
      ? checker.getSymbolAtLocation(key.initializer)
      : undefined;
  return value ? resolved(value, depth + 1) : target;
}

// `const a = module.exports = {}`, which the compiler takes for nothing.
function wholeVariable(file) {
  const variables = file.statements.filter(ts.isVariableStatement).flatMap((each) => each.declarationList.declarations);
  const found = variables.find(({ initializer }) => initializer && /^(exports = )?module\.exports = \{\}$/.test(initializer.getText()));
  return found && checker.getSymbolAtLocation(found.name);
}

// What `module.exports = exports = value` exports, if that has a name.
function wholeOf(assignment, depth) {
  let value = assignment.right;
  while (ts.isBinaryExpression(value)) value = value.right;
  return ts.isIdentifier(value) ? resolved(checker.getSymbolAtLocation(value), depth + 1) : value.name && value.symbol;
}

// The variable that `const a = exports.b = module.exports = value` exports under other names.
function variableAround(node) {
  if (!node.parent) return undefined;
  let value = ts.isPropertyAccessExpression(node) && ts.isBinaryExpression(node.parent) ? node.parent : node;
  let isExported = value !== node || (ts.isBinaryExpression(node) && /^module\.exports$/.test(node.left.getText()));
  while (ts.isBinaryExpression(value.parent) && value.parent.right === value) {
    value = value.parent;
    isExported ||= /^(module\.)?exports\b/.test(value.left.getText());
  }
  return isExported && ts.isVariableDeclaration(value.parent) ? value.parent : undefined;
}

function isExportedKey(key) {
  const assignment = key.parent?.parent;
  return (ts.isShorthandPropertyAssignment(key) || ts.isPropertyAssignment(key)) && assignment &&
    ts.isBinaryExpression(assignment) && assignment.left.getText() === "module.exports";
}

const isMember = ({ parent }) =>
  ts.isClassLike(parent) || ts.isInterfaceDeclaration(parent) || ts.isTypeLiteralNode(parent) || ts.isObjectLiteralExpression(parent);

const edges = new Map();
// A member of something of which the compiler of JavaScript knows nothing.
function isUnknown(token) {
  const isMember = ts.isPropertyAccessExpression(token.parent) && token.parent.name === token;
  if (!isMember || !ts.isInJSFile(token)) return false;
  const of = token.parent.expression;
  const isLost = of.kind === ts.SyntaxKind.ThisKeyword && !checker.getSymbolAtLocation(token);
  return isLost || Boolean(checker.getTypeAtLocation(of).flags & ts.TypeFlags.Any);
}

function addEdges(source, token, unjudged) {
  if (isUnknown(token)) unjudged[token.text] = (unjudged[token.text] ?? 0) + 1;
  for (const symbols of referredTo(token)) {
    const declarations = symbols.flatMap((symbol) => resolved(symbol).declarations ?? []).filter(isShared);
    if (new Set(declarations.filter(isMember).map((each) => each.parent)).size > 1) {
      unjudged[token.text] = (unjudged[token.text] ?? 0) + 1;
    } else {
      addEdgesTo(source, new Set(declarations.map(definitionOf)));
    }
  }
}

function addEdgesTo(source, targets) {
  for (const { path: target, line, name } of targets) {
    const key = JSON.stringify([source, target, line, name]);
    edges.set(key, (edges.get(key) ?? 0) + 1);
  }
}

const files = program.getSourceFiles().filter(isHere).map((file) => {
  const source = file.fileName.slice(root.length);
  const unjudged = Object.create(null); // in which no name is inherited
  const visit = (node) => {
    if (isShared(node)) definitionOf(node);
    if (ts.isIdentifier(node) || ts.isPrivateIdentifier(node)) addEdges(source, node, unjudged);
    ts.forEachChild(node, visit);
  };
  visit(file);
  return { path: source, unjudged };
});

const write = (name, rows) =>
  fs.writeFileSync(path.join(folder, name), rows.map((row) => JSON.stringify(row) + "\n").join(""));
fs.mkdirSync(folder, { recursive: true });
write("files.jsonl", files);
write("defs.jsonl", [...definitions.values()]);
write("edges.jsonl", [...edges].map(([key, refs]) => {
  const [source, target, line, name] = JSON.parse(key);
  return { source, target, line, name, refs };
}));
