"""What one file of Python declares: at its top, and in its classes."""
import ast
import io
import tokenize

DEFINITIONS = (ast.FunctionDef, ast.AsyncFunctionDef, ast.ClassDef)
LONGEST_VALUE = 160  # bytes: a longer value, or one of several lines, does not belong to what a name says


def top_level(statements):
    """The statements at the top of a file or a class, also those under conditions."""
    for statement in statements:
        yield statement
        if isinstance(statement, (ast.If, ast.Try, ast.With, ast.For, ast.While)):
            for body in ("body", "orelse", "finalbody"):
                yield from top_level(getattr(statement, body, []))
            for handler in getattr(statement, "handlers", []):
                yield from top_level(handler.body)


class Text:
    """The text of a file, without its comments, by the places that nodes have: lines from 1, columns in bytes."""

    def __init__(self, source):
        self.lines = source.splitlines(keepends=True)
        self.colons = []  # those outside of brackets: (line, column)
        depth = 0
        for token in tokenize.tokenize(io.BytesIO(source).readline):
            line, column = token.start
            place = line, len(token.line[:column].encode())
            if token.type == tokenize.COMMENT:
                self.lines[line - 1] = self.lines[line - 1][:place[1]] + b"\n"
            elif token.type == tokenize.OP:
                depth += (token.string in "([{") - (token.string in ")]}")
                if token.string == ":" and depth == 0:
                    self.colons.append(place)

    def between(self, begin, end):
        (first, column), (last, end_column) = begin, end
        lines = self.lines[first - 1:last]
        lines[-1] = lines[-1][:end_column]
        lines[0] = lines[0][column:]
        return b"".join(lines).decode()


def begin_of(node):
    return node.lineno, node.col_offset


def end_of(node):
    return node.end_lineno, node.end_col_offset


def first_line(node):
    return min([node.lineno, *(decorator.lineno for decorator in node.decorator_list)])


def head_of_definition(node, text):
    """A function or a class with its decorators, up to the colon."""
    colon = next(place for place in text.colons if place > begin_of(node))
    return text.between((first_line(node), node.col_offset), colon)


def heads_of_assignment(node, text):
    """(target, head) for each name of an assignment, and for each attribute that it gives to something."""
    targets = node.targets if isinstance(node, ast.Assign) else [node.target]
    for target, value in zip(targets, [*targets[1:], node.value]):
        head = text.between(begin_of(target), end_of(node))
        if value is not None:
            said = text.between(begin_of(value), end_of(node))
            if "\n" in said or len(said.encode()) > LONGEST_VALUE:
                head = text.between(begin_of(target), begin_of(value)).rstrip(" \\\n(").removesuffix("=")
        yield target, head


def bound_in(target):
    return [node for node in ast.walk(target)
            if isinstance(node, (ast.Name, ast.Attribute)) and isinstance(node.ctx, ast.Store)]


def declarations_of(tree, source):
    """name -> what is declared under it; the name of a class precedes those of its members. It comes with the nodes
    that declare it; `is_set_only` tells of an attribute that methods alone set, maybe one that its class inherits.
    """
    text = Text(source)
    found = {}

    def add(name, kind, node, head, first=None):
        known = found.setdefault(name, {"name": name, "forms": [], "nodes": [], "uses": {}, "is_set_only": True})
        doc = ast.get_docstring(node) if isinstance(node, DEFINITIONS) else None
        known["forms"].append({"kinds": [kind], "lines": [[first or node.lineno, node.end_lineno]], "head": head,
                               "docs": [doc or ""]})
        known["nodes"].append(node)
        return known

    def add_definition(node, name, kind):
        add(name, kind, node, head_of_definition(node, text), first_line(node))["is_set_only"] = False

    def add_assignment(node, kind, scope, owner=None):
        """The names that a statement binds, or the attributes that it gives to `owner`."""
        for target, head in heads_of_assignment(node, text):
            for bound in bound_in(target):
                if owner is None and isinstance(bound, ast.Name):
                    add(scope + bound.id, kind, node, head)["is_set_only"] = False
                elif owner is not None and isinstance(bound, ast.Attribute) and \
                        isinstance(bound.value, ast.Name) and bound.value.id == owner:
                    add(scope + bound.attr, kind, node, head)

    def add_body(statements, scope=""):
        for statement in top_level(statements):
            if isinstance(statement, (ast.FunctionDef, ast.AsyncFunctionDef)):
                kind = "function" if not scope else "constructor" if statement.name == "__init__" else "method"
                add_definition(statement, scope + statement.name, kind)
                if scope and statement.args.args:
                    add_attributes(statement, scope)
            elif isinstance(statement, ast.ClassDef):
                add_definition(statement, scope + statement.name, "class")
                add_body(statement.body, f"{scope}{statement.name}.")
            elif isinstance(statement, (ast.Assign, ast.AnnAssign)):
                is_function = not scope and isinstance(statement.value, ast.Lambda)
                add_assignment(statement, "attribute" if scope else "function" if is_function else "value", scope)

    def add_attributes(method, scope):
        for node in ast.walk(method):
            if isinstance(node, (ast.Assign, ast.AnnAssign)):
                add_assignment(node, "attribute", scope, owner=method.args.args[0].arg)

    add_body(tree.body)
    return found
