"""from_index.py INDEX.db OUT_DIR: what an index made from a compiler's SCIP file knows, in the form of a referee."""
import sqlite3, json, os, sys, collections
db = sqlite3.connect(f"file:{sys.argv[1]}?mode=ro", uri=True)
out = sys.argv[2]
os.makedirs(out, exist_ok=True)
paths = dict(db.execute("SELECT id, path FROM files"))
names = dict(db.execute("SELECT id, name FROM resolutions"))
symbols = {}
with open(out + "/defs.jsonl", "w") as f:
    for i, file, name, kind, export, first, last in db.execute(
            "SELECT id, file_id, name, kind, is_export, start_line, end_line FROM symbols ORDER BY file_id, start_line"):
        if kind == "module":
            continue  # a file's own name: no name token declares it
        symbols[i] = (paths[file], first, name)
        f.write(json.dumps({"path": paths[file], "line": first, "name": name, "kind": kind, "first": first, "last": last,
                            "exported": bool(export)}) + "\n")
sums = collections.Counter()
either = collections.Counter()
skipped = collections.Counter()
for source, target, resolution, refs in db.execute("SELECT source_file_id, target_id, resolution_id, refs FROM edges"):
    if target not in symbols:
        skipped["module"] += refs
    elif names[resolution] not in ("local", "import"):
        skipped[names[resolution]] += refs
        either[(paths[source], *symbols[target])] += refs
    else:
        sums[(paths[source], *symbols[target])] += refs
with open(out + "/edges.jsonl", "w") as f:
    for (source, target, line, name), refs in sorted(sums.items()):
        f.write(json.dumps({"source": source, "target": target, "line": line, "name": name, "refs": refs}) + "\n")
with open(out + "/ambiguous.jsonl", "w") as f:  # one of several declarations: neither right nor wrong
    for (source, target, line, name), refs in sorted(either.items()):
        f.write(json.dumps({"source": source, "target": target, "line": line, "name": name, "refs": refs}) + "\n")
with open(out + "/files.jsonl", "w") as f:
    for path in sorted(paths.values()):
        f.write(json.dumps({"path": path}) + "\n")
print(f"{sys.argv[1]}: files {len(paths)} defs {len(symbols)} edges {len(sums)} refs {sum(sums.values())} left out {dict(skipped)}", file=sys.stderr)
