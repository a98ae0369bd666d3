// Looks at pages in a browser, and fails when one of them breaks a promise: check.mjs PAGE... SITE
import { createRequire } from "node:module";
import { readFileSync, readdirSync } from "node:fs";
import { join } from "node:path";
import { pathToFileURL } from "node:url";
import { HtmlValidate } from "html-validate";
import puppeteer from "puppeteer-core";

const require = createRequire(import.meta.url);
const axe = readFileSync(require.resolve("axe-core/axe.min.js"), "utf8");
const validator = new HtmlValidate({
  extends: ["html-validate:standard", "html-validate:a11y"],
  rules: {
    "long-title": "off", // a page is called as its paths are
    "prefer-native-element": "off", // a group that scrolls is no fieldset
    "tel-non-breaking": "off", // numbers of lines are no telephone numbers
  },
});

let faults = 0;
const expect = (holds, fault) => {
  if (!holds) {
    console.error(`  ${fault}`);
    faults += 1;
  }
};

const checkMarkup = async (path) => {
  const report = await validator.validateString(readFileSync(path, "utf8"));
  for (const message of report.results.flatMap((result) => result.messages).slice(0, 20)) {
    expect(false, `${message.ruleId}: ${message.message} (line ${message.line})`);
  }
};

const checkLinks = async (page) => {
  const dead = await page.$$eval("a[href]", (links) =>
    links
      .filter((link) => {
        const address = link.getAttribute("href");
        return address.startsWith("#")
          ? document.getElementById(address.slice(1)) === null
          : !/^https:\/\/forge\.example\/[\w/.%<>-]+#L\d+-L\d+$/.test(address);
      })
      .map((link) => link.getAttribute("href")),
  );
  expect(dead.length === 0, `dead links: ${dead.join(" ")}`);
  const ids = await page.$$eval("[id]", (elements) => elements.map((element) => element.id));
  expect(new Set(ids).size === ids.length, "an id that is not the only one");
  // A link into something folded opens it, also by the browser's own way to find the target.
  const folded = await page.$("details.outline li[id]");
  if (folded) {
    const id = await folded.evaluate((item) => item.id);
    await page.evaluate((hash) => (location.hash = hash), `#${id}`);
    await page.waitForFunction((target) => document.getElementById(target).closest("details").open, {}, id);
    await page.evaluate(() => document.querySelectorAll("details").forEach((details) => (details.open = false)));
  }
};

const checkSorting = async (page) => {
  const column = () =>
    page.$$eval("#files tbody tr", (rows) => rows.map((row) => Number(row.cells[1].textContent.replace("?", "-1"))));
  const before = await column();
  const button = await page.$("#files thead th:nth-child(2) button");
  const sorted = [...before].sort((a, b) => a - b);
  await button.focus();
  await page.keyboard.press("Enter");
  expect(JSON.stringify(await column()) === JSON.stringify([...sorted].reverse()), "lines do not sort downwards");
  await page.keyboard.press("Enter");
  expect(JSON.stringify(await column()) === JSON.stringify(sorted), "lines do not sort upwards");
  expect((await page.$$("[aria-sort]")).length === 1, "aria-sort is not on one column");
};

const checkFilter = async (page) => {
  const name = await page.$eval(".declaration h3 code", (code) => code.textContent);
  await page.keyboard.press("/");
  await page.keyboard.type(name);
  const left = await page.$$eval(".declaration:not(.left-out) h3 code", (codes) =>
    codes.map((code) => code.textContent),
  );
  expect(left.includes(name), `the filter does not find ${name}`);
  const count = await page.$eval("#found", (found) => found.textContent);
  expect(/^[1-9]\d* found$/.test(count), "the filter does not count");
  await page.keyboard.type(" qqqqqq");
  const others = await page.$$(".declaration:not(.left-out), .filtered tbody tr:not(.left-out)");
  expect(others.length === 0, "the filter leaves what does not match");
  await page.keyboard.press("Escape");
  expect((await page.$$(".left-out")).length === 0, "the filter is not taken back");
};

const checkPicture = async (page) => {
  const arrowsOf = async (node) => node.evaluate((link) => {
    const name = link.dataset.node;
    const arrows = [...document.querySelectorAll(".arrow")];
    const own = arrows.filter((arrow) => arrow.dataset.from === name || arrow.dataset.to === name);
    const lit = arrows.filter((arrow) => arrow.classList.contains("lit"));
    return own.length > 0 && own.length === lit.length && own.every((arrow) => lit.includes(arrow));
  });
  const nodes = await page.$$("svg.picture .node[href]");
  expect(nodes.length > 1, "no nodes to point at");
  await nodes[0].hover();
  expect(await arrowsOf(nodes[0]), "a node that is pointed at does not show its arrows alone");
  await page.mouse.move(0, 0);
  expect((await page.$$(".arrow.lit")).length === 0, "arrows stay lit");
  await nodes[0].evaluate((node) => node.focus());
  await page.keyboard.press("Tab");
  const second = (await page.evaluateHandle(() => document.activeElement)).asElement();
  expect(await arrowsOf(second), "a node that the keyboard reaches does not show its arrows alone");
  await page.keyboard.press("Enter");
  const [hash, address] = await second.evaluate((link) => [location.hash, link.getAttribute("href")]);
  expect(hash === address, "a node is no link for the keyboard");
};

const checkCopying = async (page) => {
  const copied = await page.evaluate(async () => {
    const texts = [];
    navigator.clipboard.writeText = async (text) => void texts.push(text);
    document.querySelectorAll("details").forEach((details) => (details.open = true));
    const buttons = [...document.querySelectorAll("#files .copy, .declaration .copy, .line[data-lines]")];
    buttons.forEach((button) => button.click());
    await new Promise((resolve) => setTimeout(resolve, 100));
    return buttons.map((button, at) => [button.closest("tr, .declaration, li").textContent, texts[at] ?? "nothing"]);
  });
  const wrong = copied.filter(([, text]) => !/^[^\n]+:L[1-9]\d*-L[1-9]\d*$/.test(text));
  expect(copied.length > 10 && wrong.length === 0, `what is copied is no citation: ${wrong[0]}`);
};

// On paper nothing is folded, no tool is shown, and addresses can be read.
const checkPaper = async (page) => {
  await page.emulateMediaType("print");
  await page.evaluate(() => new Promise(requestAnimationFrame)); // what is unfolded is laid out with the next frame
  const [folded, tools, withoutAddress] = await page.evaluate(() => {
    const isShown = (element) => element.checkVisibility({ contentVisibilityAuto: true }) && element.offsetHeight > 0;
    const hasAddress = (link) => getComputedStyle(link, "::after").content.includes("forge.example");
    return [
      [...document.querySelectorAll("details pre, details li, details td")].filter((element) => !isShown(element)),
      [...document.querySelectorAll("nav, .tools, .copy")].filter(isShown),
      [...document.querySelectorAll("a[href^=http]")].filter((link) => isShown(link) && !hasAddress(link)),
    ].map((elements) => elements.map((element) => element.outerHTML.slice(0, 100)));
  });
  expect(folded.length === 0, `paper folds ${folded[0]}`);
  expect(tools.length === 0, `paper shows ${tools[0]}`);
  expect(withoutAddress.length === 0, `paper lacks the address of ${withoutAddress[0]}`);
  await page.emulateMediaType(null);
};

const checkTheme = async (page) => {
  const ground = () => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
  const system = await ground();
  const grounds = new Set();
  for (let press = 0; press < 2; ++press) {
    await page.click("#theme");
    grounds.add(await ground());
  }
  expect(grounds.size === 2 && grounds.has(system), "the switch does not change the theme");
  const chosen = await ground();
  await new Promise((resolve) => setTimeout(resolve, 200)); // the browser stores it a moment later
  await page.reload();
  expect((await ground()) === chosen, "the theme is not remembered");
  await page.click("#theme");
};

const checkAccess = async (page, theme) => {
  await page.emulateMediaFeatures([{ name: "prefers-color-scheme", value: theme }]);
  await page.evaluate(() => document.querySelectorAll("details").forEach((details) => (details.open = true)));
  const session = await page.createCDPSession();
  await session.send("Page.setBypassCSP", { enabled: true });
  await page.evaluate(axe);
  const { violations } = await page.evaluate(() => globalThis.axe.run());
  for (const { id, help, nodes } of violations) {
    expect(false, `${theme}: ${id}: ${help}: ${nodes.slice(0, 3).map((node) => node.html.slice(0, 160)).join(" ")}`);
  }
};

const checkWidth = async (page, name) => {
  await page.setViewport({ width: 320, height: 900 });
  const width = await page.evaluate(() => document.documentElement.scrollWidth);
  expect(width <= 320, `takes ${width} of 320 pixels`);
  await page.screenshot({ path: `${name}-narrow.png` });
  await page.setViewport({ width: 1280, height: 900 });
};

const checkWithoutScripts = async (browser, address) => {
  const page = await browser.newPage();
  await page.setJavaScriptEnabled(false);
  await page.goto(address);
  const text = await page.$eval("main", (main) => main.innerText);
  expect(text.includes("Declarations") && text.length > 500, "cannot be read with scripts off");
  expect((await page.$$("button:not([hidden]), .tools:not([hidden])")).length <= 1, "has tools that need a script");
  await page.close();
};

const checkPage = async (browser, path) => {
  const address = pathToFileURL(path).href;
  const name = path.replace(/\.html$/, "");
  const page = await browser.newPage();
  page.on("console", (message) => expect(false, `console: ${message.text()}`));
  page.on("pageerror", (error) => expect(false, `error: ${error.message}`));
  page.on("dialog", (dialog) => (expect(false, `dialog: ${dialog.message()}`), dialog.dismiss()));
  page.on("request", (request) => expect(request.url().split("#")[0] === address, `asks for ${request.url()}`));
  await page.setViewport({ width: 1280, height: 900 });
  await page.goto(address);
  await checkLinks(page);
  await checkSorting(page);
  await checkFilter(page);
  await checkPicture(page);
  await checkPaper(page);
  await checkCopying(page);
  await page.goto(address);
  await checkTheme(page);
  for (const theme of ["light", "dark"]) {
    await page.emulateMediaFeatures([{ name: "prefers-color-scheme", value: theme }]);
    await page.goto(address);
    await page.screenshot({ path: `${name}-${theme}.png` });
    await checkAccess(page, theme);
  }
  await page.goto(address);
  await checkWidth(page, name);
  await page.close();
  await checkWithoutScripts(browser, address);
};

// A folder of pages that lead to one another: every link does, and one search finds what stands on any of them.
const checkSite = async (browser, folder) => {
  const files = readdirSync(folder, { recursive: true }).filter((file) => file.endsWith(".html"));
  const ids = new Map();
  const links = [];
  const page = await browser.newPage();
  page.on("console", (message) => expect(false, `console: ${message.text()}`));
  for (const file of files) {
    await checkMarkup(join(folder, file));
    await page.goto(pathToFileURL(join(folder, file)).href);
    const found = await page.$$eval("[id]", (elements) => elements.map((element) => element.id));
    ids.set(page.url(), new Set(found));
    links.push(...(await page.$$eval("a[href]", (anchors) => anchors.map((anchor) => new URL(anchor.getAttribute("href"), document.baseURI).href))));
  }
  const dead = links.filter((link) => {
    const [address, anchor] = link.split("#");
    return !ids.has(address) || (anchor && !ids.get(address).has(anchor));
  });
  expect(dead.length === 0, `dead links: ${dead.slice(0, 5).join(" ")}`);
  const between = links.filter((link) => !link.includes("index.html")).map((link) => link.split("#")[0]);
  expect(new Set(between).size === files.length - 1, "the pages do not lead to one another");
  const declarations = links.filter((link) => /\.html#(?!file:)[^:]+:/.test(link) && !link.includes("/index.html"));
  expect(declarations.some((link) => link.includes("deep/files.html#")), "no page leads to a declaration of another");

  const index = pathToFileURL(join(folder, "index.html")).href;
  for (const theme of ["light", "dark"]) {
    await page.goto(index);
    await checkAccess(page, theme);
  }
  await page.goto(index);
  const name = await page.$eval(".outline li:last-child a", (link) => link.textContent);
  await page.keyboard.press("/");
  await page.keyboard.type(name);
  const left = await page.$$eval(".outline li:not(.left-out) a", (found) => found.map((link) => link.textContent));
  expect(left.includes(name) && left.every((each) => each.includes(name)), `the search does not find ${name}`);
  await checkWidth(page, join(folder, "index"));
  await page.close();
};

const browser = await puppeteer.launch({
  executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
  args: ["--no-sandbox", "--disable-gpu"], // it opens nothing but these pages, and may run as root
});
try {
  const paths = process.argv.slice(2);
  const site = paths.pop();
  console.log(site);
  await checkSite(browser, site);
  for (const path of paths) {
    console.log(path);
    await checkMarkup(path);
    await checkPage(browser, path);
  }
} finally {
  await browser.close();
}
if (faults > 0) {
  console.error(`view-check: ${faults} faults`);
  process.exit(1);
}
console.log("view-check: no fault");
