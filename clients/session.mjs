// A long session of the official client with the server: node session.mjs WIKI_SCOPE INDEX
//
// Thousands of calls side by side, some cancelled, some wrong, whose answers have the bytes that the command prints;
// then what a call takes, and what 10,000 of them leave in memory. Fails when a promise is broken.
import assert from "node:assert/strict";
import { execFile } from "node:child_process";
import { readFileSync } from "node:fs";
import { promisify } from "node:util";
import { Client } from "@modelcontextprotocol/sdk/client/index.js";
import { StdioClientTransport } from "@modelcontextprotocol/sdk/client/stdio.js";

const [wikiScope, index] = process.argv.slice(2);
const run = promisify(execFile);

const transport = new StdioClientTransport({ command: wikiScope, args: ["serve", "--index", index] });
const client = new Client({ name: "session", version: "1" });
await client.connect(transport);
const { tools } = await client.listTools(); // with which the client checks structured content by its schema
assert.deepEqual(tools.map((tool) => tool.name), ["ground_page", "find_declarations", "list_files", "index_stats"]);
for (const tool of tools) {
  assert.ok(tool.title && tool.description && tool.outputSchema && tool.annotations.readOnlyHint, tool.name);
}

// What the command prints, each line asked for once.
const printed = new Map();
function command(...args) {
  const line = args.join(" ");
  if (!printed.has(line)) {
    printed.set(line, run(wikiScope, [...args, "--index", index], { maxBuffer: 1 << 26 }).then(({ stdout }) => stdout));
  }
  return printed.get(line);
}

// Numbers that are the same in each run.
let state = 7;
function below(count) {
  state = (state * 1103515245 + 12345) % 2147483648;
  return Math.floor((state / 2147483648) * count);
}
const one = (list) => list[below(list.length)];

const files = JSON.parse(await command("files", "--format", "json")).files.map((file) => file.path);
const folders = ["src/internal/util", "src/internal/operators", "tools", "src/internal/scheduler/*.ts"];
const sections = ["files", "consumers", "declarations", "in-depth", "dependencies", "graph", "seeds"];
const names = ["subscribe", "Subject.next", "map", "Obs", "e"];

async function ask(name, args, options = {}) {
  return client.callTool({ name, arguments: args }, undefined, options);
}

const right = [
  async () => {
    const paths = below(4) ? Array.from({ length: 1 + below(12) }, () => one(files)) : [one(folders)];
    const only = one(sections);
    const total = below(30);
    const answer = await ask("ground_page", { paths, sections: [only, "files"], total });
    const expected = await command("page", ...paths, "--only", `${only},files`, "--total", String(total));
    assert.equal(answer.content[0].text, expected);
    assert.deepEqual(Object.keys(answer.structuredContent), ["missing", "remarks"]);
  },
  async () => {
    const path = one(files);
    const answer = await ask("ground_page", { paths: [path], format: "json" });
    const expected = await command("page", path, "--format", "json");
    assert.equal(answer.content[0].text, expected);
  },
  async () => {
    const path = one(folders);
    const tokens = 500 + below(2000);
    const answer = await ask("ground_page", { paths: [path], sections: ["outline"], max_tokens: tokens });
    const options = ["--only", "outline", "--max-tokens", String(tokens)];
    assert.equal(answer.content[0].text, await command("page", path, ...options));
    assert.ok(Buffer.byteLength(answer.content[0].text) <= 4 * tokens);
  },
  async () => {
    const path = one(files);
    const value = path.slice(0, path.lastIndexOf("/") + 2);
    const ref = { type: "ref/resource", uri: "scope://page/{+path}" };
    const { completion } = await client.complete({ ref, argument: { name: "path", value } });
    assert.ok(completion.values.every((each) => each.startsWith(value)));
    assert.ok(completion.hasMore || completion.values.includes(path), path);
  },
  async () => {
    const name = one(names);
    const limit = 1 + below(60);
    const answer = await ask("find_declarations", { name, limit });
    assert.equal(answer.content[0].text, await command("find", name, "--limit", String(limit)));
  },
  async () => {
    const path = one([...folders, "."]);
    assert.equal((await ask("list_files", { paths: [path] })).content[0].text, await command("files", path));
  },
  async () => assert.equal((await ask("index_stats", {})).content[0].text, await command("stats")),
  async () => {
    const path = one(files);
    const { contents } = await client.readResource({ uri: `scope://page/${encodeURI(path)}` });
    assert.equal(contents[0].text, await command("page", path));
  },
  async () => {
    const paths = [one(files), one(files)];
    const { messages } = await client.getPrompt({ name: "write_wiki_page", arguments: { paths: paths.join("\n") } });
    assert.ok(messages[0].content.text.endsWith(await command("page", ...paths)));
  },
];
async function corrected(tool, args, reason) {
  const answer = await ask(tool, args);
  assert.ok(answer.isError && answer.content[0].text.startsWith(reason), answer.content[0].text);
}
const wrong = [
  () => corrected("ground_page", { paths: "src" }, "paths: must be a list"),
  () => corrected("ground_page", { paths: ["src"], total: -1 }, "total: must be at least 0"),
  () => corrected("find_declarations", {}, "name: is missing"),
  () => assert.rejects(ask("no_such_tool", {}), { code: -32602 }),
  () => assert.rejects(client.readResource({ uri: "scope://page/../../etc/passwd" }), { code: -32002 }),
  async () => assert.equal((await ask("ground_page", { paths: ["src/none.ts"] })).isError, true),
];
async function cancelled() {
  const patience = new AbortController();
  const answer = ask("ground_page", { paths: ["."], format: "json" }, { signal: patience.signal });
  setTimeout(() => patience.abort(), below(20));
  await answer.then(
    () => {},
    (error) => assert.match(String(error), /abort/i),
  );
}

const counts = { right: 0, wrong: 0, cancelled: 0 };
async function mixed() {
  const kind = below(10);
  const [name, call] = kind < 7 ? ["right", one(right)] : kind < 9 ? ["wrong", one(wrong)] : ["cancelled", cancelled];
  await call();
  counts[name] += 1;
}

const MIXED = 1000;
const SIDE_BY_SIDE = 16;
let left = MIXED;
await Promise.all(
  Array.from({ length: SIDE_BY_SIDE }, async () => {
    while (left-- > 0) {
      await mixed();
    }
  }),
);
console.log(`${MIXED} calls, ${SIDE_BY_SIDE} at once: ${counts.right} with the bytes of the command, ` +
  `${counts.wrong} refused, ${counts.cancelled} cancelled`);

let steps = 0;
await ask("ground_page", { paths: ["."] }, { onprogress: () => (steps += 1) });
assert.ok(steps > 0, "a long call tells its progress");

const dozen = { paths: files.filter((path) => path.startsWith("src/internal/util/")).slice(0, 12) };
const times = [];
for (let i = 0; i < 300; i += 1) {
  const begin = performance.now();
  await ask("ground_page", dozen);
  times.push(performance.now() - begin);
}
times.sort((a, b) => a - b);
console.log(`a page of ${dozen.paths.length} files: ${times[150].toFixed(1)} ms, nine of ten within ` +
  `${times[270].toFixed(1)} ms, with the client's own part`);

const memory = () => Number(/VmRSS:\s+(\d+)/.exec(readFileSync(`/proc/${transport.pid}/status`, "utf8"))[1]);
const MANY = 10_000;
const before = memory();
for (let i = 0; i < MANY; i += 8) {
  await Promise.all(Array.from({ length: 8 }, () => ask("ground_page", { paths: [one(files)] })));
}
const after = memory();
console.log(`memory before and after ${MANY} calls: ${before} kB, ${after} kB`);
assert.ok(after < before * 1.2, "10,000 calls leave memory as it was");

const begin = performance.now();
const closed = new Promise((resolve) => (transport.onclose = resolve));
await client.close();
await closed;
console.log(`the server ended ${(performance.now() - begin).toFixed(0)} ms after its input`);
