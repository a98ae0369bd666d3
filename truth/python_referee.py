"""What Python's own parser knows of a package, as JSON: python3 python_referee.py CHECKOUT

The same shape as typescript_referee.cjs writes, and of each declaration `inherited`, whether its class may have it
from another, and a `note`. Uses are found where a name can mean one thing only: what a file imports, also by "*", and
the attributes of modules, through all modules that pass them on. A name that one scope binds in several ways can mean
any of them: of the files that declare these, `unclear` tells.
"""
import ast
import builtins
import functools
import json
import pathlib
import sys

from python_declarations import declarations_of, top_level
from python_scopes import OTHER, Bindings, with_scopes

ROOT = pathlib.Path(sys.argv[1])
SOURCES = {str(path.relative_to(ROOT)): path.read_bytes() for path in sorted(ROOT.rglob("*.py"))}
TREES = {path: ast.parse(source) for path, source in SOURCES.items()}


def name_of(node):
    """The last of the names in an expression such as `a` or `b.a`."""
    return getattr(node, "id", getattr(node, "attr", ""))


def parts_of_module(path):
    """The file a/b.py is the module a.b, a/__init__.py the module a."""
    return path.removesuffix(".py").removesuffix("/__init__").split("/")


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


def origins_in(path):
    """Tells what an import of the file binds: (name, (file, name in it or None for the file itself) or None)."""
    def origins_of(node):
        if isinstance(node, ast.ImportFrom):
            base = base_of(path, node)
            for alias in node.names:
                module = module_file(base) or module_file([*base, alias.name])
                origin = module and (module, alias.name if module_file(base) else None)
                yield alias.asname or alias.name, origin
        else:
            for alias in node.names:
                parts = alias.name.split(".")
                module = module_file(parts if alias.asname else parts[:1])
                yield alias.asname or parts[0], module and (module, None)
    return origins_of


DECLARATIONS = {path: declarations_of(TREES[path], SOURCES[path]) for path in TREES}
MODULES = {path: Bindings(TREES[path].body, origins_in(path)) for path in TREES}
FILES = {id(declaration): path for path in TREES for declaration in DECLARATIONS[path].values()}
CLASSES = {node: declaration for path in TREES for declaration in DECLARATIONS[path].values()
           for node in declaration["nodes"] if isinstance(node, ast.ClassDef)}


def lists_of(path):
    """What the statements at the top of a file put into `__all__`."""
    for statement in top_level(TREES[path].body):
        targets = getattr(statement, "targets", [getattr(statement, "target", None)])
        if isinstance(statement, (ast.Assign, ast.AugAssign)) and "__all__" in map(name_of, targets):
            yield statement.value
        elif isinstance(statement, ast.Expr) and isinstance(statement.value, ast.Call) and \
                name_of(getattr(statement.value.func, "value", None)) == "__all__":
            yield from statement.value.args


@functools.cache
def listed_in(path):
    """The names in `__all__` of a file, and in those of others that it takes in; None if it has none."""
    lists = list(lists_of(path))
    names = set()
    for node in (node for each in lists for node in ast.walk(each)):
        if isinstance(node, ast.Constant):
            names.add(node.value)
        for file, original in MODULES[path].names.get(name_of(node), set()) - {OTHER}:
            names |= (listed_in(file) or set()) if original == "__all__" else set()
    return names if lists else None


def is_passed_by_star(file, name):
    listed = listed_in(file)
    return name in listed if listed is not None else not name.startswith("_")


def meaning(file, name, seen=frozenset()):
    """What a name of a module means: a declaration, the path of a module, or None."""
    if (file, name) in seen:
        return None
    seen |= {(file, name)}
    if name in DECLARATIONS[file]:
        return DECLARATIONS[file][name]
    bound = MODULES[file]
    found = meaning_of_all(bound.names.get(name, {OTHER}), seen)
    if found:
        return found
    for star, _ in reversed([origin for origin in bound.stars if origin]):
        found = meaning(star, name, seen) if is_passed_by_star(star, name) else None
        if found:
            return found
    return module_file([*parts_of_module(file), name])


def meaning_of_all(origins, seen=frozenset()):
    """What names of several origins mean, if it is one thing."""
    if OTHER in origins:
        return None
    found = [file if name is None else meaning(file, name, seen) for file, name in origins]
    return found[0] if all(each is found[0] or each == found[0] for each in found) else None


def imports_of(path):
    """The files that a file imports."""
    files = set()
    for node in ast.walk(TREES[path]):
        if isinstance(node, ast.ImportFrom):
            base = module_file(base_of(path, node))
            for alias in node.names:
                found = meaning(base, alias.name) if base else None
                files.add(found if isinstance(found, str) else base or module_file([*base_of(path, node), alias.name]))
        elif isinstance(node, ast.Import):
            files.update(module_file(alias.name.split(".")) for alias in node.names)
    return sorted(files - {path, None})


SEEN_STRINGS = set()


def with_forward_names(path):
    """All nodes with the scopes around them, and those of the names in strings where a type is expected."""
    for node, scopes in with_scopes(TREES[path], origins_in(path)):
        yield node, scopes
        types = [getattr(node, "annotation", None), getattr(node, "returns", None)]
        if isinstance(node, ast.Subscript) and name_of(node.value)[:1].isupper():  # Optional["A"], not texts["a"]
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
                    yield part, scopes


def meaning_of(node, scopes):
    """What an expression means, as `meaning` has it."""
    if isinstance(node, ast.Attribute):
        value = meaning_of(node.value, scopes)
        if isinstance(value, str):
            return meaning(value, node.attr)
        return constructed(ancestors(value)) if node.attr == "__init__" and value else None
    if not isinstance(node, ast.Name):
        return None
    for scope in scopes:
        if scope.binds(node.id, node.lineno):
            return meaning_of_all(scope.names[node.id])
        for star, _ in reversed([origin for origin in scope.stars if origin]):
            found = meaning(star, node.id) if is_passed_by_star(star, node.id) else None
            if found:
                return found
    return None


def member(declaration, name):
    return DECLARATIONS[FILES[id(declaration)]].get(f"{declaration['name']}.{name}")


def ancestors(declaration):
    """A class and those that it inherits from, in the order in which they are asked; None for one that is not known."""
    yield declaration
    for base in BASES.get(id(declaration), []):
        if base is None:
            yield None
        else:
            yield from ancestors(base)


def constructed(classes):
    """The first class that says how it is constructed: a constructor stands for its class."""
    for each in classes:
        if each is None or member(each, "__init__"):
            return each
    return None


def is_class(meant):
    return isinstance(meant, dict) and isinstance(meant["nodes"][-1], ast.ClassDef)


def bases_in(path):
    """(id of a class, what it inherits from directly) for each class of a file."""
    for node, scopes in with_scopes(TREES[path], origins_in(path)):
        if node in CLASSES:
            own = CLASSES[node]
            bases = [meaning_of(base, scopes) or DECLARATIONS[path].get(getattr(base, "id", "")) for base in node.bases]
            yield id(own), [each if is_class(each) and each is not own else None for each in bases]


BASES = {key: bases for path in TREES for key, bases in bases_in(path)}


def inherited_by(declaration):
    return list(ancestors(declaration))[1:]


def is_inherited(path, declaration):
    """Whether a class may have an attribute from one that it inherits from."""
    scope, _, name = declaration["name"].rpartition(".")
    return declaration["is_set_only"] and (hasattr(object, name) or any(
        each is None or member(each, name) for each in inherited_by(DECLARATIONS[path][scope])))


def super_classes(tree):
    """The expressions `super()` in a file -> the class that they stand in."""
    return {call: CLASSES[node] for node in ast.walk(tree) if node in CLASSES for call in ast.walk(node)
            if isinstance(call, ast.Call) and isinstance(call.func, ast.Name) and call.func.id == "super"}


def unclear_of(node, scopes):
    """The files that declare what a name of several origins may mean."""
    scope = next((scope for scope in scopes if scope.binds(node.id, node.lineno)), None)
    origins = scope.names[node.id] if scope else set()
    found = [meaning(file, name) if name else file for file, name in origins - {OTHER}] if len(origins) > 1 else []
    return {FILES.get(id(each), each) for each in found if each}


def count_uses(path):
    """Adds the uses in a file to the declarations of others; returns the files of which some cannot be told."""
    supers = super_classes(TREES[path])
    unclear = set()

    def count(found, line, column):
        if isinstance(found, dict) and FILES[id(found)] != path:
            found["uses"].setdefault(path, []).append([line - 1, column])

    for node, scopes in with_forward_names(path):
        if isinstance(node, ast.Name) and isinstance(node.ctx, ast.Load):
            found = meaning_of(node, scopes)
            count(found, node.lineno, node.col_offset)
            unclear |= unclear_of(node, scopes) if found is None else set()
        elif isinstance(node, ast.Attribute):
            is_super = node.attr == "__init__" and node.value in supers
            found = constructed(inherited_by(supers[node.value])) if is_super else meaning_of(node, scopes)
            count(found, node.end_lineno, node.end_col_offset - len(node.attr))
        elif isinstance(node, ast.ImportFrom):
            module = module_file(base_of(path, node))
            for alias in node.names:
                if module and module != path and alias.name != "*":
                    count(meaning(module, alias.name), alias.lineno, alias.col_offset)
    return sorted(unclear)


IN_THE_LANGUAGE = {*dir(builtins), "Literal", "function"}  # as its stubs declare it


def note_on(path, declaration):
    """What an indexer may make of a name, apart from what it declares."""
    scope, _, name = declaration["name"].rpartition(".")
    slots = DECLARATIONS[path].get(f"{scope}.__slots__")
    if slots and name in {getattr(part, "value", None) for node in slots["nodes"] for part in ast.walk(node)}:
        return "in __slots__"
    return "in the language" if name in IN_THE_LANGUAGE else ""


def told(path, declaration):
    """A declaration as JSON has it."""
    listed = listed_in(path)
    is_exported = "." not in declaration["name"] and (listed is None or declaration["name"] in listed)
    return {**{key: declaration[key] for key in ("name", "forms", "uses")}, "doubtful": {}, "exported": is_exported,
            "inherited": is_inherited(path, declaration), "note": note_on(path, declaration)}


IMPORTS = {path: imports_of(path) for path in TREES}
UNCLEAR = {path: count_uses(path) for path in TREES}
FACTS = {path: {"imports": IMPORTS[path], "unclear": UNCLEAR[path],
                "declarations": [told(path, each) for each in DECLARATIONS[path].values()]} for path in TREES}
json.dump(FACTS, sys.stdout)
