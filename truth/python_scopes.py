"""What the names in a file of Python mean where they stand, as far as imports go."""
import ast

FUNCTIONS = (ast.FunctionDef, ast.AsyncFunctionDef, ast.Lambda)
COMPREHENSIONS = (ast.ListComp, ast.SetComp, ast.DictComp, ast.GeneratorExp)
SCOPES = (*FUNCTIONS, *COMPREHENSIONS, ast.ClassDef)

OTHER = "something else than an import"


def parts_of(scope):
    """The nodes that make up a scope: those evaluated outside of it, and those inside."""
    if isinstance(scope, COMPREHENSIONS):
        first = scope.generators[0].iter
        inside = [child for child in ast.iter_child_nodes(scope) if child is not scope.generators[0]]
        return [first], [*inside, scope.generators[0].target, *scope.generators[0].ifs]
    body = [scope.body] if isinstance(scope, ast.Lambda) else scope.body
    return [child for child in ast.iter_child_nodes(scope) if child not in body], body


def within(nodes):
    """All nodes of one scope."""
    for node in nodes:
        yield node
        yield from within(parts_of(node)[0] if isinstance(node, SCOPES) else ast.iter_child_nodes(node))


class Bindings:
    """What the names that one scope binds mean: name -> origins."""

    def __init__(self, nodes, origins_of, arguments=(), is_class=False):
        self.names = {}
        self.lines = {}  # where each is bound first
        self.stars = []
        self.is_class = is_class
        for name in arguments:
            self.add(name, OTHER, 0)
        outer = set()
        for node in within(nodes):
            if isinstance(node, (ast.Import, ast.ImportFrom)):
                for name, origin in origins_of(node):
                    if name == "*":
                        self.stars.append(origin)
                    else:
                        self.add(name, origin or OTHER, node.lineno)
            elif isinstance(node, ast.Name) and not isinstance(node.ctx, ast.Load):
                self.add(node.id, OTHER, node.lineno)
            elif isinstance(node, (ast.FunctionDef, ast.AsyncFunctionDef, ast.ClassDef)):
                self.add(node.name, OTHER, node.lineno)
            elif isinstance(node, ast.ExceptHandler) and node.name:
                self.add(node.name, OTHER, node.lineno)
            elif isinstance(node, (ast.Global, ast.Nonlocal)):
                outer.update(node.names)
        for name in outer:
            self.names.pop(name, None)

    def add(self, name, origin, line):
        self.names.setdefault(name, set()).add(origin)
        self.lines[name] = min(line, self.lines.get(name, line))

    def binds(self, name, line):
        """Whether a name on a line is one of these: in a class, those around it hold until it binds them itself."""
        return name in self.names and not (self.is_class and line <= self.lines[name])


def arguments_of(scope):
    nodes = ast.walk(scope.args) if isinstance(scope, FUNCTIONS) else []
    return [node.arg for node in nodes if isinstance(node, ast.arg)]


def with_scopes(tree, origins_of):
    """All nodes, each with the bindings of the scopes around it, the innermost first. A function in a class does not
    see those of the class. `origins_of` tells what an import binds: (name, what it means, or None if that is unknown).
    """
    def visit(node, here, below):
        yield node, here
        if not isinstance(node, SCOPES):
            for child in ast.iter_child_nodes(node):
                yield from visit(child, here, below)
            return
        outside, inside = parts_of(node)
        for child in outside:
            yield from visit(child, here, below)
        is_class = isinstance(node, ast.ClassDef)
        around = here if is_class or isinstance(node, COMPREHENSIONS) else below
        scopes = [Bindings(inside, origins_of, arguments_of(node), is_class), *around]
        for child in inside:
            yield from visit(child, scopes, below if is_class else scopes)

    module = [Bindings(tree.body, origins_of)]
    for node in tree.body:
        yield from visit(node, module, module)
