#!/usr/bin/env python3
"""Judges an index by what a compiler says: judge.py INDEX.db REFEREE_DIR NAME [--goal KEY=PERCENT]... [--known]

REFEREE_DIR holds defs.jsonl, edges.jsonl and files.jsonl (referees/FORMAT.md). Prints a row of a table, and writes a line
for each case to REFEREE_DIR/cases.txt. Exits with 1 when a goal is missed. The keys of goals:

    evidence   of the references by `local` and `import`, those that the compiler confirms
    unique     the same of those by `unique`
    across     of the compiler's references between files, those that the index has as evidence
    unused     of exported declarations that no file but their own uses by evidence, those that none does use

--known leaves out edges to declarations that the referee does not list, for one that does not list them all.
"""
import argparse
import collections
import json
import os
import sqlite3
import sys

EVIDENCE = ("local", "import", "unique")
NEAR = 3  # lines by which a declaration of the index may miss the compiler's


def read(folder, name):
    with open(os.path.join(folder, name), encoding="utf-8") as file:
        return [json.loads(line) for line in file]


class Index:
    """The declarations of an index, and its references by source file, declaration and resolution."""

    def __init__(self, path):
        db = sqlite3.connect(f"file:{os.path.abspath(path)}?mode=ro", uri=True)
        self.paths = dict(db.execute("SELECT id, path FROM files"))
        self.symbols = {
            row[0]: dict(path=self.paths[row[1]], name=row[2], kind=row[3], exported=row[4], first=row[5] or 0,
                         last=row[6] or row[5] or 0)
            for row in db.execute("SELECT id, file_id, name, kind, is_export, start_line, end_line FROM symbols")
        }
        self.by_name = collections.defaultdict(list)
        for number, symbol in self.symbols.items():
            if symbol["kind"] != "module":
                self.by_name[symbol["path"], symbol["name"]].append(number)
        names = dict(db.execute("SELECT id, name FROM resolutions"))
        self.references = collections.defaultdict(collections.Counter)
        for source, target, resolution, count in db.execute(
                "SELECT source_file_id, target_id, resolution_id, refs FROM edges"):
            if self.symbols[target]["kind"] != "module":
                self.references[names[resolution]][self.paths[source], target] += count

    def find(self, definition, taken):
        """The declaration that a definition of the compiler is: one around its line, else the nearest."""
        candidates = [(self.symbols[number], number) for number in self.by_name[definition["path"], definition["name"]]]
        around = [(each["last"] - each["first"], abs(each["first"] - definition["line"]), number)
                  for each, number in candidates if each["first"] <= definition["line"] <= each["last"]]
        near = [(abs(each["first"] - definition["line"]), 0, number) for each, number in candidates
                if number not in taken and abs(each["first"] - definition["line"]) <= NEAR]
        return min(around or near, default=(0, 0, None))[2]


class Judgement:
    """What of an index the compiler confirms, and what of the compiler's references the index has."""

    def __init__(self, index, folder, is_known_alone):
        self.index = index
        self.files = {file["path"]: collections.Counter(file.get("unjudged", {})) for file in read(folder, "files.jsonl")}
        self.cases = []
        self.numbers = {}  # of the index, by path, line and name of the compiler's definition
        taken = set()
        definitions = [each for each in read(folder, "defs.jsonl") if not each.get("guard") and not each.get("pasted")]
        for definition in definitions:
            number = index.find(definition, taken)
            if number is None:
                self.case("declaration missing", definition["path"], definition)
            else:
                taken.add(number)
                self.numbers[definition["path"], definition["line"], definition["name"]] = number
        self.declared = (len(self.numbers), len(definitions))
        self.owned = taken if is_known_alone else None
        self.truth = collections.Counter()
        self.unindexed = []
        for edge in read(folder, "edges.jsonl"):
            number = self.numbers.get((edge["target"], edge["line"], edge["name"]))
            if number is None:
                self.unindexed.append(edge)
            else:
                self.truth[edge["source"], number] += edge["refs"]
        self.confirmed = {}
        self.judge()

    def case(self, what, source, symbol, detail=""):
        place = f'{symbol["path"]}:{symbol.get("line", symbol.get("first"))}'
        self.cases.append(f'{what}\t{source}\t{place}\t{symbol["name"]}\t{symbol["kind"]}\t{detail}')

    def judge(self):
        """What a resolution of higher rank has confirmed is not confirmed again."""
        left = collections.Counter(self.truth)
        unjudged = {path: collections.Counter(names) for path, names in self.files.items()}
        for resolution in EVIDENCE:
            right = wrong = 0
            for (path, number), count in sorted(self.index.references[resolution].items()):
                if path not in self.files or (self.owned is not None and number not in self.owned):
                    continue
                symbol = self.index.symbols[number]
                known = min(count, left[path, number])
                left[path, number] -= known
                unknown = min(count - known, unjudged[path][symbol["name"]])
                unjudged[path][symbol["name"]] -= unknown
                right += known
                wrong += count - known - unknown
                if count > known + unknown:
                    self.case(f"{resolution} wrong", path, symbol, f"{count}, the compiler says {known}")
            self.confirmed[resolution] = (right, right + wrong)

    def evidence(self):
        """Confirmed references by `local` and `import`, of all."""
        return tuple(sum(self.confirmed[each][at] for each in ("local", "import")) for at in (0, 1))

    def across(self):
        """References of the compiler between files that the index has as evidence, of all."""
        has = of = 0
        for (path, number), count in sorted(self.truth.items()):
            symbol = self.index.symbols[number]
            if path != symbol["path"]:
                mine = sum(self.index.references[each][path, number] for each in EVIDENCE)
                has += min(mine, count)
                of += count
                if mine < count:
                    doubtful = self.index.references["ambiguous"][path, number]
                    self.case("reference missing", path, symbol, f"{count}, the index has {mine}; ambiguous {doubtful}")
        of += sum(edge["refs"] for edge in self.unindexed if edge["source"] != edge["target"])
        return has, of

    def unused(self):
        """Exported declarations that pages would list as unused, less those that other files use."""
        used = {number for resolution in (*EVIDENCE, "ambiguous")
                for path, number in self.index.references[resolution] if path != self.index.symbols[number]["path"]}
        really = {number for path, number in self.truth if path != self.index.symbols[number]["path"]}
        listed = [number for number in sorted(set(self.numbers.values()))
                  if self.index.symbols[number]["exported"] and number not in used]
        for number in listed:
            if number in really:
                self.case("unused, but used", self.index.symbols[number]["path"], self.index.symbols[number])
        return sum(number not in really for number in listed), len(listed)


def percent(part):
    return 100.0 * part[0] / part[1] if part[1] else 100.0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("index")
    parser.add_argument("folder")
    parser.add_argument("name")
    parser.add_argument("--goal", action="append", default=[])
    parser.add_argument("--known", action="store_true")
    arguments = parser.parse_args()
    judgement = Judgement(Index(arguments.index), arguments.folder, arguments.known)
    shares = {"declared": judgement.declared, "evidence": judgement.evidence(),
              "unique": judgement.confirmed["unique"], "across": judgement.across(), "unused": judgement.unused()}
    with open(os.path.join(arguments.folder, "cases.txt"), "w", encoding="utf-8") as file:
        file.writelines(case + "\n" for case in judgement.cases)
    goals = {key: float(value) for key, value in (goal.split("=") for goal in arguments.goal)}
    missed = [key for key, goal in goals.items() if percent(shares[key]) < goal]
    cells = [f"{percent(share):.2f} % of {share[1]}" + (f" (goal {goals[key]:g} %)" if key in missed else "")
             for key, share in shares.items()]
    print("| " + " | ".join([arguments.name, *cells]) + " |")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
