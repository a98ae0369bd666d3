#!/usr/bin/env python3
"""python_unjudged.py INDEX.scip CHECKOUT DIR: of which names scip-python says nothing right, for files.jsonl in DIR.

scip-python loses names that its own symbols have no room for: attributes that `__slots__` lists (it gives the class),
attributes with the name of a builtin (it gives that), what stands in strings of type aliases, members of what it takes
for unknown. A token without an occurrence, or with one of a symbol that bears another name or is that builtin, neither
confirms nor refutes. A constructor that is called by its name counts as its class in an index.
"""
import collections
import io
import json
import os
import sys
import tokenize


def number(data, at):
    value = shift = 0
    while True:
        byte = data[at]
        at += 1
        value |= (byte & 127) << shift
        shift += 7
        if byte < 128:
            return value, at


def fields(data):
    """The fields of a protobuf message: number, and value."""
    at = 0
    while at < len(data):
        key, at = number(data, at)
        if key & 7 == 0:
            value, at = number(data, at)
        else:
            size, at = number(data, at)
            value = data[at:at + size]
            at += size
        yield key >> 3, value


def occurrences(document):
    """The symbols of a document by line and column, both from 0."""
    found = {}
    for key, value in document:
        if key == 2:
            occurrence = dict(fields(value))
            line, at = number(occurrence[1], 0)
            column, at = number(occurrence[1], at)
            found[line, column] = occurrence.get(2, b"").decode()
    return found


def is_judged(name, symbol, follows_a_dot):
    is_builtin = "builtins/" in symbol
    bears_the_name = symbol.startswith("local ") or name in symbol.rsplit("/", 1)[-1]
    return name != "__init__" and bears_the_name and not (follows_a_dot and is_builtin)


def unjudged(text, symbols):
    names = collections.Counter()
    before = ""
    for token in tokenize.generate_tokens(io.StringIO(text).readline):
        if token.type == tokenize.NAME:
            symbol = symbols.get((token.start[0] - 1, token.start[1]), "")
            if not is_judged(token.string, symbol, before == "."):
                names[token.string] += 1
        before = token.string
    return names


def main():
    scip, checkout, folder = sys.argv[1:]
    counts = {}
    with open(scip, "rb") as file:
        for key, value in fields(file.read()):
            if key == 2:
                document = list(fields(value))
                path = next(part for at, part in document if at == 1).decode()
                with open(os.path.join(checkout, path), encoding="utf-8") as source:
                    counts[path] = unjudged(source.read(), occurrences(document))
    with open(os.path.join(folder, "files.jsonl"), "w", encoding="utf-8") as file:
        for path, names in sorted(counts.items()):
            file.write(json.dumps({"path": path, "unjudged": names}) + "\n")


main()
