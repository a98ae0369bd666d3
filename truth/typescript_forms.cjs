// What one declaration of TypeScript says: where it stands, up to its body, and in its doc comment.
module.exports = (ts) => {
  const isAround = (node) =>
    ts.isParenthesizedExpression(node) || ts.isAsExpression(node) || ts.isSatisfiesExpression(node);

  // A function that a value is, with no more than parentheses and a type around it.
  function functionIn(value) {
    while (value && isAround(value)) value = value.expression;
    return value && (ts.isArrowFunction(value) || ts.isFunctionExpression(value)) ? value : undefined;
  }

  // The statement that declares one variable and no other, else the declaration alone.
  function wholeOf(node) {
    while (ts.isBindingElement(node)) node = node.parent.parent;
    const list = node.parent;
    return ts.isVariableDeclaration(node) && list.declarations.length === 1 ? list.parent : node;
  }

  // Where what a declaration says ends and its body begins: braces, the body of a function, a value of several lines.
  function endOfHead(node) {
    const file = node.getSourceFile();
    while (ts.isBindingElement(node)) node = node.parent.parent;
    if (ts.isClassDeclaration(node) || ts.isInterfaceDeclaration(node) || ts.isEnumDeclaration(node)) {
      return node.members.pos - 1;
    }
    const type = ts.isTypeAliasDeclaration(node) ? node.type : undefined;
    const braces = type && (ts.isTypeLiteralNode(type) || ts.isMappedTypeNode(type)) ? type : undefined;
    const body = node.body ?? functionIn(node.initializer)?.body ?? braces;
    if (body) return body.getStart(file);
    const value = node.initializer?.getText(file) ?? "";
    const isLong = value.includes("\n") || Buffer.byteLength(value) > 160;
    return isLong ? node.initializer.getStart(file) : wholeOf(node).getEnd();
  }

  const tokensOf = (node, file) => (node.getChildCount(file)
    ? node.getChildren(file).filter((child) => !ts.isJSDoc(child)).flatMap((child) => tokensOf(child, file))
    : [node]);

  // What a declaration says up to its body: its tokens, with a blank where something stands between them.
  function headOf(node) {
    const file = node.getSourceFile();
    const end = endOfHead(node);
    const texts = tokensOf(wholeOf(node), file).filter((token) => token.getEnd() <= end).map((token) =>
      (token.getStart(file) > token.getFullStart() ? " " : "") + token.getText(file));
    return texts.join("").replace(/(=>|[=:{;,])$/, "").trim();
  }

  const DESCRIBING = /^(brief|details|desc|description|overview|remarks|summary)$/i;

  function ownDocOf(node) {
    const comment = ts.getJSDocCommentsAndTags(node).filter(ts.isJSDoc).at(-1);
    const parts = [comment, ...(comment?.tags ?? []).filter((tag) => DESCRIBING.test(tag.tagName.text))];
    return parts.map((part) => ts.getTextOfJSDocComment(part?.comment) ?? "").join("\n").trim();
  }

  // A static member and one of instances that bear the same name, which some tell apart and others do not.
  const namesakesOf = (node) => (ts.isClassElement(node)
    ? node.parent.members.filter((each) => each.name && each.name.getText() === node.name?.getText())
    : []);

  // The doc comment of the declaration; if it has none, those of others of its symbol, such as other overloads.
  function docsOf(node) {
    const own = ownDocOf(node);
    const others = (node.symbol?.declarations ?? []).map(ownDocOf).filter((doc) => doc);
    const namesakes = namesakesOf(node).map(ownDocOf);
    return own ? [own] : others.length ? others : ["", ...namesakes];
  }

  function linesOf(node) {
    const file = node.getSourceFile();
    const line = (position) => file.getLineAndCharacterOfPosition(position).line + 1;
    return [line(node.getStart(file)), line(node.getEnd())];
  }

  return { docsOf, headOf, linesOf };
};
