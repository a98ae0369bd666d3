// The table of what was compared, with the causes of the cases.
import { readFileSync } from "node:fs";

const SHARE = 0.002; // of what is checked, that may differ where the goal is not 0

// Each cause names the row that it explains and says why; `in` names the repositories that it holds for, and `like` is
// a regular expression for the lines of its cases. Where these are absent, it holds for all.
const causes = JSON.parse(readFileSync(new URL("known.json", import.meta.url)));

export class Table {
  #name;
  #rows = [];

  constructor(name) {
    this.#name = name;
  }

  // Adds a row: of what was `checked`, each with a path and a name, `fault` tells what is wrong, if anything. One of
  // these may stand for several (`of`), and be wrong in several places (`weight`).
  row(title, { goal = SHARE, checked, fault }) {
    const cases = checked.flatMap((each) => {
      const detail = fault(each);
      if (detail === undefined) return [];
      const line = [each.path, each.name, detail].join("\t");
      return [{ line, weight: each.weight ?? 1, why: this.#causeOf(title, line) }];
    });
    const sum = (total, each) => total + each;
    const of = checked.map((each) => each.of ?? 1).reduce(sum, 0);
    this.#rows.push({ title, goal, of, cases, count: cases.map((each) => each.weight).reduce(sum, 0) });
  }

  #causeOf(title, line) {
    const cause = causes.find((each) => each.row === title && (each.in ?? [this.#name]).includes(this.#name) &&
      new RegExp(each.like ?? "").test(line));
    return cause?.why ?? "not known";
  }

  get isReached() {
    return this.#rows.every(({ goal, of, count }) => count <= goal * of);
  }

  // A line for each case.
  get cases() {
    const lines = ({ title, cases }) => cases.map(({ line, why }) => `${title}\t${line}\t${why}\n`);
    return this.#rows.flatMap(lines).join("");
  }

  toString() {
    const head = `| ${this.#name} | cases | of | | goal | why the cases |\n|---|---|---|---|---|---|`;
    const rows = this.#rows.map(({ title, goal, of, cases, count }) => {
      const share = of ? count / of : 0;
      const whys = new Map();
      for (const { why, weight } of cases) whys.set(why, (whys.get(why) ?? 0) + weight);
      const why = [...whys].map(([each, its]) => `${each} (${its})`).join("; ");
      return `| ${title} | ${count} | ${of} | ${(100 * share).toFixed(2)} % | ${100 * goal} % | ${why} |`;
    });
    return [head, ...rows].join("\n");
  }
}
