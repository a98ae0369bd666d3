// Serves a program that speaks on standard input and output over HTTP, to whoever speaks nothing else:
// node bridge.mjs COMMAND ARGUMENT... prints its address. Each session has a process of its own.
import { randomUUID } from "node:crypto";
import { createServer } from "node:http";
import { StdioClientTransport } from "@modelcontextprotocol/sdk/client/stdio.js";
import { StreamableHTTPServerTransport } from "@modelcontextprotocol/sdk/server/streamableHttp.js";

const [command, ...args] = process.argv.slice(2);
const sessions = new Map();

async function begin() {
  const program = new StdioClientTransport({ command, args });
  const http = new StreamableHTTPServerTransport({
    sessionIdGenerator: randomUUID,
    onsessioninitialized: (id) => sessions.set(id, http),
  });
  http.onmessage = (message) => program.send(message);
  program.onmessage = (message) => http.send(message);
  http.onclose = () => program.close();
  await program.start();
  await http.start();
  return http;
}

const server = createServer(async (request, response) => {
  const session = sessions.get(request.headers["mcp-session-id"]) ?? (await begin());
  await session.handleRequest(request, response);
});
server.listen(0, "127.0.0.1", () => console.log(`http://127.0.0.1:${server.address().port}/mcp`));
