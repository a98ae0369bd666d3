// What the TypeScript compiler knows of a project, as JSON: node typescript_referee.cjs MODULES CHECKOUT TSCONFIG
//
// {path: {imports: [path], unclear: [path], declarations: [{name, exported, forms, uses: {path: tokens}, doubtful:
// {path: tokens}}]}} for every source file. Declarations are those at the top of the file and of its namespaces, and
// the members of its classes, interfaces and enums, whose names the name of their type precedes. `forms` has an element
// for each place that declares the name: {kinds, lines: [[first, last]], head, docs}; any of the kinds, lines and docs
// is right. A token is [line, column], both from 0. `doubtful` has those that may be taken for a use or not: in
// `{ name }` one also defines a property, and `default` is no name. `unclear` names the files of which some uses cannot
// be told.
const path = require("path");

const [modules, checkout, config] = process.argv.slice(2);
const ts = require(path.resolve(modules, "typescript"));
const { docsOf, headOf, linesOf } = require("./typescript_forms.cjs")(ts);

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
  [ts.SyntaxKind.Constructor, "constructor"],
  [ts.SyntaxKind.MethodDeclaration, "method"],
  [ts.SyntaxKind.MethodSignature, "method"],
  [ts.SyntaxKind.GetAccessor, "method"],
  [ts.SyntaxKind.SetAccessor, "method"],
  [ts.SyntaxKind.PropertyDeclaration, "attribute"],
  [ts.SyntaxKind.PropertySignature, "attribute"],
  [ts.SyntaxKind.Parameter, "attribute"],
  [ts.SyntaxKind.EnumMember, "value"],
]);

const isMember = (node) =>
  ts.isClassElement(node) || ts.isTypeElement(node) || ts.isEnumMember(node) || ts.isParameter(node);

// What a class, an interface or an enum declares in it; a parameter that is marked so is a member of its class.
const membersOf = (node) => (node.members ?? []).flatMap((member) => ts.isConstructorDeclaration(member)
  ? [member, ...member.parameters.filter((parameter) => ts.isParameterPropertyDeclaration(parameter, member))]
  : [member]);

function nameOfMember(member) {
  if (ts.isConstructorDeclaration(member)) return "constructor";
  return member.name && ts.isStringLiteral(member.name) ? JSON.stringify(member.name.text) : member.name?.text;
}

// The variables that a pattern or a plain name declares.
const variablesOf = (declaration) => (ts.isIdentifier(declaration.name)
  ? [declaration]
  : declaration.name.elements.filter((element) => !ts.isOmittedExpression(element)).flatMap(variablesOf));

// Calls `visit(name, form, node)` for what a statement at the top of a file, or of a namespace there, declares. The
// name of a namespace or type stands before those in it: "util.flatten".
function eachDeclared(statement, visit, scope = "") {
  const declare = (name, kinds, node, lines = [linesOf(node)]) =>
    visit(scope + name, { kinds, lines, head: headOf(node), docs: docsOf(node) }, node);
  if (ts.isModuleDeclaration(statement) && statement.body && ts.isModuleBlock(statement.body)) {
    const inside = `${scope}${statement.name.text}.`;
    for (const inner of statement.body.statements) eachDeclared(inner, visit, inside);
  } else if (ts.isVariableStatement(statement)) {
    for (const declaration of statement.declarationList.declarations) {
      for (const named of variablesOf(declaration)) {
        declare(named.name.text, kindsOfVariable(named), named, [linesOf(declaration), linesOf(statement)]);
      }
    }
  } else if (KINDS.has(statement.kind) && statement.name) {
    declare(statement.name.text, [KINDS.get(statement.kind)], statement);
    for (const member of membersOf(statement)) {
      const name = nameOfMember(member);
      if (KINDS.has(member.kind) && name !== undefined) {
        declare(`${statement.name.text}.${name}`, [KINDS.get(member.kind)], member);
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
    eachDeclared(statement, (name, form, node) => {
      const known = byName.get(name) ?? { name, exported: false, forms: [], uses: {}, doubtful: {}, file };
      known.forms.push(form);
      known.exported ||= !isMember(node) && (exported === null || exported.has(node));
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

// The declaration of ours that a symbol stands for. One that shares its name with a `@typedef` is still that which the
// file exports.
function declaredBy(symbol) {
  const declarations = (symbol?.declarations ?? []).flatMap((node) => (ts.isExportSpecifier(node)
    ? checker.getExportSpecifierLocalTargetSymbol(node)?.declarations ?? []
    : [node]));
  return declarations.map((node) => byNode.get(node)).find((each) => each);
}

function countUses(file) {
  const visit = (node) => {
    if (ts.isIdentifier(node)) {
      let symbol = symbolNamed(node);
      if (symbol && symbol.flags & ts.SymbolFlags.Alias) symbol = checker.getAliasedSymbol(symbol);
      const used = declaredBy(symbol);
      if (used && used.file !== file) {
        const isDoubtful = ts.isShorthandPropertyAssignment(node.parent) || node.text === "default";
        const uses = isDoubtful ? used.doubtful : used.uses;
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
