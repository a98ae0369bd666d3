// Writes a repository whose names, comments and sources would like to be markup: hostile.mjs FOLDER
import { mkdirSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";

const folder = process.argv[2];
const turnAround = "\u202E";
const files = {
  "package.json": '{"name": "hostile"}',
  "src/<img src=x onerror=alert(1)>.js": `
/**
 * <script>alert(1)</script> <b onclick="alert(2)">bold</b> \`<i>\` &lt;script&gt; [link](javascript:alert(3))
 *
 * - <img src="https://example.com/x.png" onerror="alert(4)">
 * - {@link https://example.com "text"}
 */
export function run() { return "</code></pre></details><script>alert(5)</script>${turnAround}"; }
`,
  "src/a&b \"c\" 'd'.js": `
import { run } from "./<img src=x onerror=alert(1)>.js";
/** {{title}} {{{script}}} <!-- --> ]]> */
export class A { '"><svg onload=alert(6)>'() { return run() + \`\${run()} <\${1}\`; } }
`,
  "src/\u05D0\u05D1/#x?y%20.js": `
import { A } from "../a&b \\"c\\" 'd'.js";
export const \u00FCber\u4E2D\u6587 = new A();
`,
  "lib/<title><script>alert(7).js": `
import { A } from "../src/a&b \\"c\\" 'd'.js";
import { run } from "../src/<img src=x onerror=alert(1)>.js";
export const both = [new A(), run()];
`,
};
for (const [path, text] of Object.entries(files)) {
  const file = join(folder, path);
  mkdirSync(dirname(file), { recursive: true });
  writeFileSync(file, text);
}
