import js from "@eslint/js";
import globals from "globals";

export default [
  js.configs.recommended,
  { linterOptions: { reportUnusedDisableDirectives: "error" } },
  { files: ["**/*.mjs", "**/*.cjs"], languageOptions: { globals: globals.node } },
  { files: ["**/*.cjs"], languageOptions: { sourceType: "commonjs" } },
  { files: ["host/html/*.js"], languageOptions: { sourceType: "script", globals: globals.browser } },
  { files: ["tests/view/check.mjs"], languageOptions: { globals: globals.browser } }, // parts of it run in a page
];
