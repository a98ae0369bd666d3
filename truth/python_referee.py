"""What Python's own parser knows of a package, as JSON: python3 python_referee.py CHECKOUT

The same shape as typescript_referee.cjs writes. Uses are found where a name can mean one thing only: names that a file
imports with "from" and attributes of modules that it imports, unless the top of the file binds the name again; where a
scope around the use binds it, it means something else. Of the files that names bound again lead to, `unclear` tells.
"""
import ast
import json
import pathlib
import sys

ROOT = pathlib.Path(sys.argv[1])
TREES = {str(path.relative_to(ROOT)): ast.parse(path.read_bytes()) for path in sorted(ROOT.rglob("*.py"))}


def module_file(parts):
    """The path of the module a.b, if it is one of the package."""
    for path in ("/".join(parts) + ".py", "/".join([*parts, "__init__.py"])):
        if path in TREES:
            return path
    return None


def base_of(path, node):
    """The parts of the module that `from X import` names in the file."""
    parts = path.removesuffix(".py").split("/")  # "a/__init__" is the module a, "a/b" the module a.b: both in a
    base = parts[: len(parts) - node.level] if node.level else []
    return base + (node.module.split(".") if node.module else [])


def top_level(statements):
    """The statements at the top of a file, also those under conditions."""
    for statement in statements:
        yield statement
        if isinstance(statement, (ast.If, ast.Try, ast.With, ast.For, ast.While)):
            for body in ("body", "orelse", "finalbody"):
                yield from top_level(getattr(statement, body, []))
            for handler in getattr(statement, "handlers", []):
                yield from top_level(handler.body)


def targets_of(statement):
    """The names that an assignment binds."""
    targets = statement.targets if isinstance(statement, ast.Assign) else [statement.target]
    return [node for target in targets for node in ast.walk(target)
            if isinstance(node, ast.Name) and isinstance(node.ctx, ast.Store)]


def first_line(node):
    return min([node.lineno, *(decorator.lineno for decorator in node.decorator_list)])


def declarations_of(path):
    """name -> what is declared under it at the top of the file."""
    found = {}

    def add(name, kind, lines):
        known = found.setdefault(name, {"name": name, "file": path, "kinds": [], "lines": [], "exported": True,
                                        "uses": {}, "shorthand": {}})
        known["kinds"].append(kind)
        known["lines"].append(lines)

    for statement in top_level(TREES[path].body):
        if isinstance(statement, (ast.FunctionDef, ast.AsyncFunctionDef)):
            add(statement.name, "function", [first_line(statement), statement.end_lineno])
        elif isinstance(statement, ast.ClassDef):
            add(statement.name, "class", [first_line(statement), statement.end_lineno])
        elif isinstance(statement, (ast.Assign, ast.AnnAssign)):
            is_function = isinstance(statement.value, ast.Lambda)
            for target in targets_of(statement):
                add(target.id, "function" if is_function else "value", [statement.lineno, statement.end_lineno])
    listed = names_in_all(path)
    for name, declaration in found.items():
        declaration["exported"] = listed is None or name in listed
    return found


def names_in_all(path):
    """What `__all__` lists, if the file has one that is a plain list."""
    for statement in top_level(TREES[path].body):
        if isinstance(statement, ast.Assign) and any(target.id == "__all__" for target in targets_of(statement)):
            return {node.value for node in ast.walk(statement.value) if isinstance(node, ast.Constant)}
    return None


def imports_of(path):
    """What the file imports: (node, names it binds -> (file, name or None for the module itself)), files."""
    bound = {}
    files = set()
    for node in ast.walk(TREES[path]):
        if isinstance(node, ast.ImportFrom):
            base = base_of(path, node)
            for alias in node.names:
                submodule = module_file([*base, alias.name])
                module = module_file(base)
                if submodule and not (module and alias.name in DECLARATIONS[module]):
                    files.add(submodule)
                    bound.setdefault(alias.asname or alias.name, []).append((submodule, None))
                elif module:
                    files.add(module)
                    bound.setdefault(alias.asname or alias.name, []).append((module, alias.name))
        elif isinstance(node, ast.Import):
            for alias in node.names:
                module = module_file(alias.name.split("."))
                if module:
                    files.add(module)
                    if alias.asname or "." not in alias.name:
                        bound.setdefault(alias.asname or alias.name, []).append((module, None))
    return bound, sorted(files - {path})


FUNCTIONS = (ast.FunctionDef, ast.AsyncFunctionDef, ast.Lambda)
COMPREHENSIONS = (ast.ListComp, ast.SetComp, ast.DictComp, ast.GeneratorExp)
SCOPES = (*FUNCTIONS, *COMPREHENSIONS, ast.ClassDef)


def parts_of(scope):
    """The nodes that make up a scope: those evaluated outside of it, and those inside."""
    if isinstance(scope, COMPREHENSIONS):
        first = scope.generators[0].iter
        inside = [child for child in ast.iter_child_nodes(scope) if child is not scope.generators[0]]
        return [first], [*inside, scope.generators[0].target, *scope.generators[0].ifs]
    body = [scope.body] if isinstance(scope, ast.Lambda) else scope.body
    return [child for child in ast.iter_child_nodes(scope) if child not in body], body


def bindings(nodes):
    """The names that nodes of one scope bind, but not by an import: assignments, definitions, handlers."""
    names = set()
    for node in nodes:
        if isinstance(node, ast.Name) and not isinstance(node.ctx, ast.Load):
            names.add(node.id)
        elif isinstance(node, (ast.FunctionDef, ast.AsyncFunctionDef, ast.ClassDef)):
            names.add(node.name)
        elif isinstance(node, ast.ExceptHandler) and node.name:
            names.add(node.name)
        names |= bindings(parts_of(node)[0] if isinstance(node, SCOPES) else ast.iter_child_nodes(node))
    return names


def names_of(scope):
    """The names that mean something else inside a scope than around it."""
    names = bindings(parts_of(scope)[1])
    if isinstance(scope, FUNCTIONS):
        names |= {node.arg for node in ast.iter_child_nodes(scope.args) if isinstance(node, ast.arg)}
    return names - names_declared_global(scope)


def names_declared_global(tree):
    return {name for node in ast.walk(tree) if isinstance(node, ast.Global) for name in node.names}


def with_hidden_names(node, here=frozenset(), below=frozenset()):
    """All nodes, each with the names that scopes around it bind; functions in a class do not see those of the class."""
    yield node, here
    if not isinstance(node, SCOPES):
        for child in ast.iter_child_nodes(node):
            yield from with_hidden_names(child, here, below)
        return
    outside, inside = parts_of(node)
    for child in outside:
        yield from with_hidden_names(child, here, below)
    is_class = isinstance(node, ast.ClassDef)
    around = here if is_class or isinstance(node, COMPREHENSIONS) else below
    hidden = around | names_of(node)
    for child in inside:
        yield from with_hidden_names(child, hidden, below if is_class else hidden)


def resolved(file, name):
    """Where a name of a module is declared: there, or where that module imports it from."""
    seen = set()
    while file and name not in DECLARATIONS[file] and file not in seen:
        seen.add(file)
        origins = set(BOUND[file].get(name, []))
        if len(origins) != 1:
            return None
        file, name = origins.pop()
        if name is None:
            return None
    return DECLARATIONS[file].get(name) if file else None


def with_forward_names(tree):
    """All nodes with the names hidden there, and those of the names in strings where a type is expected."""
    for node, hidden in with_hidden_names(tree):
        yield node, hidden
        types = [getattr(node, "annotation", None), getattr(node, "returns", None)]
        if isinstance(node, ast.Subscript):
            types.append(node.slice)
        if isinstance(node, ast.Call) and getattr(node.func, "attr", None) == "cast":
            types.append(node.args[0])
        for text in {part for kind in types if kind for part in ast.walk(kind) if isinstance(part, ast.Constant)}:
            if isinstance(text.value, str) and text not in SEEN_STRINGS:
                SEEN_STRINGS.add(text)
                try:
                    inner = ast.parse(text.value, mode="eval")
                except SyntaxError:
                    continue
                for part in ast.walk(inner):
                    if hasattr(part, "lineno"):
                        part.lineno = part.end_lineno = text.lineno
                        part.col_offset += text.col_offset + 1
                        part.end_col_offset += text.col_offset + 1
                    yield part, hidden


def count_uses(path):
    """Adds the uses in a file to the declarations of others; returns the files of which some cannot be told."""
    tree = TREES[path]
    rebound = bindings(tree.body) | names_declared_global(tree)
    plain = {name: origins[0] for name, origins in BOUND[path].items()
             if len(set(origins)) == 1 and name not in rebound}

    def count(file, name, line, column):
        declaration = resolved(file, name)
        if declaration is not None and declaration["file"] != path:
            declaration["uses"].setdefault(path, []).append([line - 1, column])

    for node, hidden in with_forward_names(tree):
        seen = plain.keys() - hidden
        if isinstance(node, ast.Name) and isinstance(node.ctx, ast.Load) and node.id in seen:
            file, name = plain[node.id]
            if name is not None:
                count(file, name, node.lineno, node.col_offset)
        elif isinstance(node, ast.Attribute) and isinstance(node.value, ast.Name) and node.value.id in seen:
            file, name = plain[node.value.id]
            if name is None:
                count(file, node.attr, node.end_lineno, node.end_col_offset - len(node.attr))
        elif isinstance(node, ast.ImportFrom):
            module = module_file(base_of(path, node))
            for alias in node.names:
                if module and module != path:
                    count(module, alias.name, alias.lineno, alias.col_offset)

    unclear = set()
    for name, origins in BOUND[path].items():
        for file, original in origins if name not in plain else []:
            declaration = resolved(file, original) if original else None
            unclear.add(declaration["file"] if declaration else file)
    return sorted(unclear)


SEEN_STRINGS = set()
DECLARATIONS = {path: declarations_of(path) for path in TREES}
IMPORTS = {path: imports_of(path) for path in TREES}
BOUND = {path: bound for path, (bound, _) in IMPORTS.items()}
UNCLEAR = {path: count_uses(path) for path in TREES}
json.dump({path: {"imports": IMPORTS[path][1], "unclear": UNCLEAR[path],
                  "declarations": list(DECLARATIONS[path].values())} for path in TREES}, sys.stdout)
