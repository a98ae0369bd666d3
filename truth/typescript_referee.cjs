// What the TypeScript compiler knows of a project, as JSON: node typescript_referee.cjs MODULES CHECKOUT TSCONFIG
//
// {path: {imports: [path], unclear: [path], declarations: [{name, kinds, lines: [[first, last]], exported,
// uses: {path: tokens}, shorthand: {path: tokens}}]}} for every source file. Declarations are those at the top of the
// file and of its namespaces. Several kinds and lines belong to one that is declared several times; each is right. A
// token is [line, column], both from 0. `shorthand` has those in `{ name }`, where one also defines a property. `unclear`
// names the files of which not every use can be told.
const path = require("path");

const [modules, checkout, config] = process.argv.slice(2);
const ts = require(path.resolve(modules, "typescript"));

function programOf(configPath) {
  const { config: raw } = ts.readConfigFile(configPath, ts.sys.readFile);
  const { fileNames, options } = ts.parseJsonConfigFileContent(raw, ts.sys, path.dirname(configPath));
  return ts.createProgram(fileNames, options);
}

const root = path.resolve(checkout);
const program = programOf(path.resolve(checkout, config));
const checker = program.getTypeChecker();
const sources = program.getSourceFiles().filter((file) => file.fileName.startsWith(root + "/"));
const pathOf = (file) => path.relative(root, file.fileName);

function linesOf(node) {
  const file = node.getSourceFile();
  const line = (position) => file.getLineAndCharacterOfPosition(position).line + 1;
  return [line(node.getStart(file)), line(node.getEnd())];
}

// A value without the parentheses and types around it.
function bare(expression) {
  while (expression && (ts.isParenthesizedExpression(expression) || ts.isAsExpression(expression) ||
         ts.isSatisfiesExpression(expression) || ts.isNonNullExpression(expression))) {
    expression = expression.expression;
  }
  return expression;
}

// A variable that holds a function is one; one that can be called may be either.
function kindsOfVariable(node) {
  const value = bare(node.initializer);
  if (value && (ts.isArrowFunction(value) || ts.isFunctionExpression(value))) return ["function"];
  const type = checker.getTypeAtLocation(node.name);
  const canBeCalled = type.getCallSignatures().length + type.getConstructSignatures().length > 0;
  return canBeCalled || type.flags & ts.TypeFlags.Any ? ["value", "function"] : ["value"];
}

const KINDS = new Map([
  [ts.SyntaxKind.FunctionDeclaration, "function"],
  [ts.SyntaxKind.ClassDeclaration, "class"],
  [ts.SyntaxKind.InterfaceDeclaration, "interface"],
  [ts.SyntaxKind.TypeAliasDeclaration, "type"],
  [ts.SyntaxKind.EnumDeclaration, "enum"],
]);

// Calls `visit(name, kinds, lines, node)` for what a statement at the top of a file, or of a namespace there, declares.
// The name of a namespace stands before those in it: "util.flatten".
function eachDeclared(statement, visit, scope = "") {
  if (ts.isModuleDeclaration(statement) && statement.body && ts.isModuleBlock(statement.body)) {
    const inside = `${scope}${statement.name.text}.`;
    for (const inner of statement.body.statements) eachDeclared(inner, visit, inside);
  } else if (KINDS.has(statement.kind) && statement.name) {
    visit(scope + statement.name.text, [KINDS.get(statement.kind)], [linesOf(statement)], statement);
  } else if (ts.isVariableStatement(statement)) {
    const names = (declaration) => (ts.isIdentifier(declaration.name)
      ? [declaration]
      : declaration.name.elements.filter((element) => !ts.isOmittedExpression(element)).flatMap(names));
    for (const declaration of statement.declarationList.declarations) {
      for (const named of names(declaration)) {
        visit(scope + named.name.text, kindsOfVariable(named), [linesOf(declaration), linesOf(statement)], named);
      }
    }
  }
}

// A public node, and what a public namespace makes public in turn.
function addPublic(node, nodes) {
  nodes.add(node);
  const members = ts.isModuleDeclaration(node) && node.symbol ? checker.getExportsOfModule(node.symbol) : [];
  for (const member of members) for (const inner of member.declarations ?? []) addPublic(inner, nodes);
}

// The nodes of a file that the file itself makes public; all when it is a script.
function exportedNodes(file) {
  const module = checker.getSymbolAtLocation(file);
  if (!module) return null;
  const nodes = new Set();
  for (const exported of checker.getExportsOfModule(module)) {
    const symbol = exported.flags & ts.SymbolFlags.Alias ? checker.getAliasedSymbol(exported) : exported;
    const isOwn = (exported.declarations ?? []).some((node) => node.getSourceFile() === file);
    for (const node of isOwn ? symbol.declarations ?? [] : []) addPublic(node, nodes);
  }
  return nodes;
}

const byNode = new Map(); // of the compiler -> our declaration

function declarationsOf(file) {
  const exported = exportedNodes(file);
  const byName = new Map();
  for (const statement of file.statements) {
    eachDeclared(statement, (name, kinds, lines, node) => {
      const known = byName.get(name) ??
        { name, kinds: [], lines: [], exported: false, uses: {}, shorthand: {}, file };
      known.kinds.push(...kinds);
      known.lines.push(...lines);
      known.exported ||= exported === null || exported.has(node);
      byName.set(name, known);
      byNode.set(node, known);
    });
  }
  return [...byName.values()];
}

function importsOf(file) {
  const found = new Set();
  for (const literal of file.imports ?? []) {
    const resolved = ts.resolveModuleName(literal.text, file.fileName, program.getCompilerOptions(), ts.sys);
    const target = resolved.resolvedModule && program.getSourceFile(resolved.resolvedModule.resolvedFileName);
    if (target && target !== file && sources.includes(target)) found.add(pathOf(target));
  }
  return [...found].sort();
}

// The symbol that an identifier names, through all aliases; none for one that declares something.
function symbolNamed(identifier) {
  const parent = identifier.parent;
  if (ts.isShorthandPropertyAssignment(parent)) return checker.getShorthandAssignmentValueSymbol(parent);
  const names = ts.isImportSpecifier(parent) || ts.isExportSpecifier(parent) || ts.isImportClause(parent);
  if (parent.name === identifier && !names && !ts.isPropertyAccessExpression(parent)) return undefined;
  return ts.isExportSpecifier(parent) && !parent.parent.parent.moduleSpecifier
    ? checker.getExportSpecifierLocalTargetSymbol(parent)
    : checker.getSymbolAtLocation(identifier);
}

function countUses(file) {
  const visit = (node) => {
    if (ts.isIdentifier(node)) {
      let symbol = symbolNamed(node);
      if (symbol && symbol.flags & ts.SymbolFlags.Alias) symbol = checker.getAliasedSymbol(symbol);
      const used = (symbol?.declarations ?? []).map((each) => byNode.get(each)).find((each) => each);
      if (used && used.file !== file) {
        const uses = ts.isShorthandPropertyAssignment(node.parent) ? used.shorthand : used.uses;
        const { line, character } = file.getLineAndCharacterOfPosition(node.getStart(file));
        (uses[pathOf(file)] ??= []).push([line, character]);
      }
    }
    ts.forEachChild(node, visit);
  };
  visit(file);
}

const files = {};
for (const file of sources) {
  files[pathOf(file)] = { imports: importsOf(file), unclear: [], declarations: declarationsOf(file) };
}
sources.forEach(countUses);
process.stdout.write(JSON.stringify(files, (key, value) => (key === "file" ? undefined : value)));
