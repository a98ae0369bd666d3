#!/usr/bin/env python3
"""Judges what `wiki-scope diff` says by what a compiler says of both states:
judge_changes.py CHANGES.json OLD_CHECKOUT OLD_REFEREE NEW_CHECKOUT NEW_REFEREE NAME

The referees' folders hold defs.jsonl, edges.jsonl and files.jsonl (referees/FORMAT.md). Prints a row of a table, and
writes a line for each false statement to NEW_REFEREE/changes.txt. Exits with 1 when there is one.
"""
import collections
import json
import os
import sys


def read(folder, name):
    with open(os.path.join(folder, name), encoding="utf-8") as file:
        return [json.loads(line) for line in file]


class State:
    """What the compiler knows of one state."""

    def __init__(self, checkout, referee):
        self.checkout = checkout
        self.unjudged = {file["path"]: file.get("unjudged", {}) for file in read(referee, "files.jsonl")}
        self.definitions = collections.defaultdict(list)  # by path and name
        for each in read(referee, "defs.jsonl"):
            self.definitions[each["path"], each["name"]].append(each)
        self.sources = collections.defaultdict(set)  # of the references to a definition, by its path, line and name
        for edge in read(referee, "edges.jsonl"):
            self.sources[edge["target"], edge["line"], edge["name"]].add(edge["source"])
        self.types = collections.defaultdict(list)  # of a file: their extents
        for (path, _), several in self.definitions.items():
            self.types[path] += [(each["first"], each["last"]) for each in several
                                 if each["kind"] in ("class", "interface", "enum", "type")]
        self.users = collections.defaultdict(set)  # of a file, and of what it declares at its top level
        self.top_users = collections.defaultdict(set)
        for (path, line, _), sources in self.sources.items():
            self.users[path] |= sources - {path}
            if not any(first < line <= last for first, last in self.types[path]):
                self.top_users[path] |= sources - {path}

    def declared(self, declaration):
        """The definitions of a declaration's name in its file, within the types that it stands in."""
        *types, name = declaration["name"].split(".")
        found = self.definitions.get((declaration["path"], name), [])
        for around in types:
            extents = [(each["first"], each["last"]) for each in self.definitions.get((declaration["path"], around), [])]
            found = [each for each in found
                     if any(first <= each["line"] <= last for first, last in extents)]
        if types:
            return found
        return [each for each in found
                if not any(first < each["line"] <= last for first, last in self.types[declaration["path"]])]

    def within(self, declaration):
        """The definitions whose names stand in the lines of a declaration."""
        return [each for (path, _), several in self.definitions.items() if path == declaration["path"]
                for each in several if declaration["start_line"] <= each["line"] <= declaration["end_line"]]

    def users_of(self, definitions):
        return set().union(*(self.sources[each["path"], each["line"], each["name"]] for each in definitions))

    def is_unjudged(self, source, name):
        """Whether tokens of this name are in a file that may mean several declarations."""
        return name.split(".")[-1] in self.unjudged.get(source, {})

    def text(self, definition):
        with open(os.path.join(self.checkout, definition["path"]), encoding="utf-8") as file:
            return "".join("".join(file.readlines()[definition["first"] - 1:definition["last"]]).split())

    def bytes_of(self, path):
        try:
            with open(os.path.join(self.checkout, path), "rb") as file:
                return file.read()
        except FileNotFoundError:
            return None


def is_unlisted(declaration):
    """Whether the referee does not list what it is."""
    return declaration["kind"] == "constructor"


def is_test(path):
    return ".spec." in path or ".test." in path


class Judgement:
    def __init__(self, old, new):
        self.old, self.new = old, new
        self.statements = 0
        self.false = []

    def judge(self, is_true, *statement):
        self.statements += 1
        if not is_true:
            self.false.append(" ".join(map(str, statement)))

    def judge_users(self, change, definitions, now):
        name = change["before"]["name"]
        before = self.old.users_of(definitions)
        after = self.new.users_of(now)
        for user in change["users"]:
            path = user["path"]
            if not self.old.is_unjudged(path, name):
                self.judge(path in before, name, "was not used by", path)
            contents = self.old.bytes_of(path), self.new.bytes_of(path)
            if user["now"] == "uses":
                if not self.new.is_unjudged(path, name):
                    self.judge(path in after, name, "is not used by", path)
            elif user["now"] == "gone":
                self.judge(contents[1] is None, path, "is not gone")
            else:
                self.judge((contents[0] == contents[1]) == (user["now"] == "unchanged"), path, "is not", user["now"])

    def judge_removed(self, change):
        if is_unlisted(change["before"]):
            return
        before = change["before"]
        definitions = self.old.declared(before)
        self.judge(definitions, before["path"], before["name"], "was never there")
        self.judge(not self.new.declared(before), before["path"], before["name"], "is still there")
        self.judge_users(change, self.old.within(before), [])

    def judge_added(self, change):
        if is_unlisted(change["after"]):
            return
        after = change["after"]
        self.judge(self.new.declared(after), after["path"], after["name"], "is not there")
        self.judge(not self.old.declared(after), after["path"], after["name"], "was there before")

    def judge_changed(self, change):
        if is_unlisted(change["after"]):
            return
        before, after = self.old.declared(change["before"]), self.new.declared(change["after"])
        place = change["after"]["path"], change["after"]["name"]
        self.judge(before and after, *place, "is not in both states")
        if change["is_renamed"] or change["is_moved"]:
            self.judge(not self.new.declared(change["before"]), *place, "is there under its old name")
        if change["has_other_signature"] and before and after:
            self.judge({self.old.text(each) for each in before} != {self.new.text(each) for each in after},
                       *place, "has the same text")
        if change["has_other_visibility"] and before and after and "." not in change["after"]["name"]:
            self.judge(any(each["exported"] for each in before) != any(each["exported"] for each in after),
                       *place, "is as visible as before")
        self.judge_users(change, before, after)

    def judge_use(self, declaration, is_used):
        names = [self.old.declared(declaration), self.new.declared(declaration)]
        users = [{path for path in state.users_of(found) if path != declaration["path"] and not is_test(path)}
                 for state, found in zip((self.old, self.new), names)]
        for number, expected in enumerate((not is_used, is_used)):
            self.judge(bool(users[number]) == expected, declaration["path"], declaration["name"], "has",
                       len(users[number]), "users", ("before", "now")[number])

    def judge_file(self, change):
        """Members of objects whose types no source names may be used in both states, without proof in one."""
        path = change["path"]
        for key, state, other in (("gained", self.new, self.old), ("lost", self.old, self.new)):
            for user in change[key]:
                self.judge(user in state.users[path], user, "uses nothing of", path, key)
                self.judge(user not in other.top_users[path], user, "uses it in both", path, key)


def exported(state):
    """The names of exported declarations outside of tests, by their files."""
    return {key for key, several in state.definitions.items()
            if not is_test(key[0]) and any(each["exported"] for each in several)}


def main():
    changes_path, old_checkout, old_referee, new_checkout, new_referee, name = sys.argv[1:]
    with open(changes_path, encoding="utf-8") as file:
        changes = json.load(file)
    old, new = State(old_checkout, old_referee), State(new_checkout, new_referee)
    judgement = Judgement(old, new)
    for key in ("removed", "added", "changed"):
        for change in changes[key]:
            getattr(judgement, "judge_" + key)(change)
    for declaration in changes["unused"]:
        judgement.judge_use(declaration, False)
    for declaration in changes["used_again"]:
        judgement.judge_use(declaration, True)
    for change in changes["users"]:
        judgement.judge_file(change)

    told = {(each["before"]["path"], each["before"]["name"]) for key in ("removed", "changed") for each in changes[key]}
    gone = {key for key in exported(old) - set(new.definitions) if key[0] in new.unjudged or key[0] in old.unjudged}
    found = len(gone & told)
    with open(os.path.join(new_referee, "changes.txt"), "w", encoding="utf-8") as file:
        file.writelines(line + "\n" for line in judgement.false)
        file.writelines(f"not told {path} {each}\n" for path, each in sorted(gone - told))
    print(f"| {name} | {len(judgement.false)} of {judgement.statements} | {found} of {len(gone)} |")
    return 1 if judgement.false else 0


sys.exit(main())
