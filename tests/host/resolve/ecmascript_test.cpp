// What names of JavaScript and TypeScript mean: modules, merged declarations, globals.
#include "tests/host/resolve/resolved.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace host::resolve {
namespace {

// The references from a.ts (or the file that is named first) to others.
std::string references_from(const std::map<std::string, std::string>& sources,
                            const std::vector<Package>& packages = {}) {
    std::string found;
    const std::string all = resolved(sources, packages);
    for (std::size_t at = 0; at < all.size(); at = all.find('\n', at) + 1) {
        const std::string line = all.substr(at, all.find('\n', at) - at);
        if (line.starts_with("a.")) {
            found += line.substr(line.find(": ") + 2) + "\n";
        }
    }
    return found;
}

Package package(const std::string& folder, const std::string& name) {
    Package package;
    package.folder = folder;
    package.visible_below = folder;
    package.name = name;
    package.language = "javascript";
    return package;
}

TEST(Ecmascript, ImportsLeadThroughEveryFormOfExport) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"import {F} from './m'; F();", "export function F() {}"},
        {"import {G} from './m.js'; G();", "function F() {} export {F as G};"},
        {"import G from './m'; G();", "function F() {} export default F;"},
        {"import G from './m'; G();", "export default function F() {}"},
        {"import * as n from './m'; n.F();", "export * from './sub';"},
        {"import {n} from './m'; n.F();", "export * as n from './sub';"},
        {"import {G} from './m'; G();", "export {F as G} from './sub';"},
        {"import {G} from './m'; G();", "import {F} from './sub'; export {F as G};"},
        {"import G = require('./m'); G();", "function F() {} export = F;"},
        {"import G from './m'; G();", "function F() {} export = F;"},
    };
    for (const auto& [user, module] : cases) {
        const std::string found =
            references_from({{"a.ts", user}, {"m.ts", module}, {"sub/index.ts", "export function F() {}"}});
        EXPECT_NE(found.find("import F of "), std::string::npos) << user << " " << module << "\n" << found;
        EXPECT_EQ(found.find("ambiguous"), std::string::npos) << user << " " << module << "\n" << found;
    }
    EXPECT_EQ(references_from({{"a.js", "const {F, G: H} = require('./m'), m = require('./m'); F(); H(); m.G();"},
                               {"m.js", "function F() {}\nmodule.exports = {F, G() {}};"}}),
              "import F of m.js, 2 from line 1\nimport G of m.js, 3 from line 1\nimport m.js of m.js, 1 from line 1\n");
}

TEST(Ecmascript, ATypeOfAFunctionIsNotWhatItStandsFor) {
    const std::string found =
        references_from({{"a.ts", "import {T} from './m';\nfunction f(b: T) { type R = T; let c: R; c = b as R; }"},
                         {"m.ts", "export interface T {}"}});
    EXPECT_NE(found.find("import T of m.ts, 3 from line 1\n"), std::string::npos) << found;
}

TEST(Ecmascript, AssignmentsDeclareWhatCommonJsExports) {
    const auto found = [](const std::string& user, const std::string& module) {
        return references_from({{"a.js", user}, {"m.js", module}});
    };
    const auto imported = [](const std::string& name) { return "import " + name + " of m.js, 1 from line 2\n"; };
    for (
        const auto& [user, module, name] : std::vector<std::tuple<std::string, std::string, std::string>>{
            {"const F =\nrequire('./m').F;", "exports.F = function () {};", "exports.F"},
            {"const m = require('./m');\nm.F();", "module.exports.F = 1;", "exports.F"},
            {"const m = require('./m');\nm.F();", "module.exports = {F: () => 1};", "exports.F"},
            {"const m = require('./m');\nm.F();", "const m = module.exports = {}; m.F = function () {};", "F"},
            {"const m = require('./m');\nm.F();", "function m() {} m.F = m.G = () => 1; module.exports = m;", "F"},
            {"const {\nF} = require('./m');", "const m = module.exports = {}; m.F = () => 1;", "F"},
            {"const C = require('./m');\nnew C().F();", "module.exports = C; function C() {} C.prototype.F = () => 1;",
             "F"},
            {"const C = require('./m');\nnew C().F();",
             "class C {} C.prototype.G = C.prototype.F = require; module.exports = C;", "F"},
            {"const C = require('./m');\nC.prototype.F();", "module.exports = class { F() {} };", ".F"},
            {"const C = require('./m');\nnew C().F();", "class C { F() {} } C.prototype.F = 1; module.exports = C;",
             "C.F"},
            {"const C = require('./m');\nnew C().F();", "module.exports = class { F() {} };", ".F"},
            {"const C = require('./m');\nnew C().d.F();",
             "function C() { this.d = null; this.d = new D(); } C.prototype.e = 1; class D { F() {} } module.exports = C;",
             "D.F"},
            {"const m = require('./m');\nm();", "module.exports = function F() {};", "export="},
            {"const m = require('./m');\nm();", "module.exports = class F {};", "export="},
            {"const m = require('./m');\nm();", "const F = exports.G = module.exports = () => 1;", "F"},
            {"const m = require('./m');\nm();", "module.exports = () => 1;", "m.js"},  // it has no name
        }) {
        EXPECT_NE(found(user, module).find(imported(name)), std::string::npos) << user << module << found(user, module);
    }
    // What is exported is no name of the file, but a member of `exports`; `this` is what the function is a member of.
    EXPECT_EQ(found("exports.F = function () { F(); };\nexports.F(exports.G);\nexports.H = a.H;\nH();", ""),
              "local exports.F of a.js, 1 from line 2\n");
    EXPECT_EQ(found("function C() {}\nC.prototype.F = function () { this.G(); C.H(); };\n"
                    "C.prototype.G = () => 1;\nC.H = () => 1;",
                    ""),
              "local C of a.js, 4 from line 2\nlocal G of a.js, 1 from line 2\nlocal H of a.js, 1 from line 2\n");
}

TEST(Ecmascript, NamesOfPackagesAndAliasesLeadWhereManifestsSay) {
    Package library = package("lib", "@s/lib");
    library.exports = {{".", "src/main.ts"}, {"./parts/*", "src/*.ts"}, {"./parts/x", "src/main.ts"}};
    Package root = package("", "");
    root.aliases = {{"~/*", {"gone/*", "lib/src/*"}}};
    root.roots = {"lib"};
    const std::map<std::string, std::string> sources{{"a.ts", ""},
                                                     {"lib/index.ts", "export function F() {}"},
                                                     {"lib/src/main.ts", "export function F() {}"},
                                                     {"lib/src/x.ts", "export function F() {}"},
                                                     {"lib/b.ts", "export {F} from '@s/lib';"}};
    const auto file_of = [&](const std::string& module, const std::string& visible) {
        library.visible_below = visible;
        std::map<std::string, std::string> changed = sources;
        changed["a.ts"] = "import {F} from '" + module + "';";
        const std::string found = references_from(changed, {root, library});
        return found.substr(0, found.find(','));
    };
    EXPECT_EQ(file_of("@s/lib", ""), "import F of lib/src/main.ts");
    EXPECT_EQ(file_of("@s/lib", "lib"), "");
    EXPECT_EQ(file_of("@s/lib/parts/x", ""), "import F of lib/src/main.ts");
    EXPECT_EQ(file_of("@s/lib/parts/main", ""), "import F of lib/src/main.ts");
    EXPECT_EQ(file_of("./lib", "lib"), "import F of lib/src/main.ts");
    EXPECT_EQ(file_of("./lib/index", "lib"), "import F of lib/index.ts");
    EXPECT_EQ(file_of("~/x", ""), "import F of lib/src/x.ts");
    EXPECT_EQ(file_of("src/x", ""), "import F of lib/src/x.ts");
    EXPECT_EQ(file_of("x", ""), "");
}

TEST(Ecmascript, DeclarationsOfOneNameAreOne) {
    EXPECT_EQ(references_from({{"a.ts", "import {A, B, C} from './m';\nlet a: A;\na.x; a.y;\nA();\nB.z; C(1);\n"},
                               {"m.ts", "export interface A { x: string }\nexport interface A { y: string }\n"
                                        "export const A = () => 1;\nexport class B {}\n"
                                        "export namespace B { export const z = 1; }\n"
                                        "export function C(): void;\nexport function C(a?: number) {}\n"}}),
              "local a of a.ts, 2 from line 3\n"
              "import A of m.ts, 3 from line 1\n"
              "import A.x of m.ts, 1 from line 3\n"
              "import A.y of m.ts, 1 from line 3\n"
              "import A of m.ts, 3 from line 1\n"
              "import B of m.ts, 2 from line 1\n"
              "import B of m.ts, 2 from line 1\n"
              "import B.z of m.ts, 1 from line 5\n"
              "import C of m.ts, 2 from line 1\n");
}

TEST(Ecmascript, GlobalsAreThoseOfDeclarationFilesOfTheirPackage) {
    const std::map<std::string, std::string> sources{{"a.ts", "export const a = [DEV, x, script];"},
                                                     {"lib/globals.d.ts", "declare const x: string;"},
                                                     {"globals.d.ts", "declare const DEV: boolean;"},
                                                     {"module.d.ts", "export {}; declare const x: number;"},
                                                     {"script.ts", "const script = 1;"}};
    EXPECT_EQ(references_from(sources, {package("lib", "lib")}), "import DEV of globals.d.ts, 1 from line 1\n");
}

TEST(Ecmascript, AModuleDeclaresGlobalsInABlockForThem) {
    const std::map<std::string, std::string> sources{
        {"p/g.d.ts", "import './m'\ndeclare global {\n  enum E { A }\n  interface I { e: E }\n}\n"},
        {"p/m.ts", "export function f(i: I): E { return i.e }\n"},
        {"q.ts", "export function f(i: I): E { return i.e }\n"}};
    EXPECT_EQ(targets_from("p/m.ts", sources, {package("p", "p")}),
              "p/g.d.ts:global.E p/g.d.ts:global.I p/g.d.ts:global.I.e");
    EXPECT_EQ(targets_from("q.ts", sources, {package("p", "p")}), "");
}

TEST(Ecmascript, MembersAreThoseOfTheTypesThatTheSourceStates) {
    EXPECT_EQ(references_from({{"a.ts", "import {Store, Item, make} from './m';\n"
                                        "class Mine extends Store<Item> {\n"
                                        "  constructor(private readonly other: Store<Item>) { super(); }\n"
                                        "  run() { this.other.first().next; super.first(); this.all; }\n"
                                        "}\n"
                                        "async function f() { (await make()).next; const next = 1; }\n"},
                               {"m.ts", "export interface Item { next: Item }\n"
                                        "export class Store<T> { all: T[] = []; first(): T { return this.all[0]; } }\n"
                                        "export async function make() { return new Store<Item>().first(); }\n"}}),
              "local Mine.other of a.ts, 1 from line 4\n"
              "import Item of m.ts, 3 from line 1\n"
              "import Item.next of m.ts, 2 from line 4\n"
              "import Store of m.ts, 3 from line 1\n"
              "import Store.all of m.ts, 1 from line 4\n"
              "import Store.first of m.ts, 2 from line 4\n"
              "import make of m.ts, 2 from line 1\n");
}

TEST(Ecmascript, CommentsStateTypesOfJavaScript) {
    EXPECT_EQ(
        references_from(
            {{"a.js",
              "const {Map} = require('./m');\n"
              "/** @typedef {import('./n').Item} Item\n * @typedef {import('./n')} Box */\n"
              "class Mine {\n"
              "  constructor() { /** @type {Item[]} */ this.all = []; /** @type {?Box} */ this.box = null; }\n"
              "  /** @return {Box} */ get own() { return this.other; }\n"
              "  /** @return {Promise<Map>} */ async find() {}\n"
              "  async run() { this.all[0].next; this.box.open(); this.own.open().next; (await this.find()).size; }\n"
              "}\n"},
             {"m.js", "class Map { get size() {} }\nmodule.exports = {Map};"},
             {"n.js", "class Box { /** @return {Item} */ open() {} }\nmodule.exports = Box;\n"
                      "class Item { /** @return {Item} */ get next() {} }\nmodule.exports.Item = Item;\n"}}),
        "local Mine.own of a.js, 1 from line 8\n"
        "local Mine.find of a.js, 1 from line 8\n"
        "local Mine.all of a.js, 2 from line 5\n"
        "local Mine.box of a.js, 2 from line 5\n"
        "import Map of m.js, 1 from line 1\n"
        "import Map.size of m.js, 1 from line 8\n"
        "import Box.open of n.js, 2 from line 8\n"
        "import Item.next of n.js, 2 from line 8\n");
}

TEST(Ecmascript, CodeImportsNoTypesThatCommentsName) {
    const std::map<std::string, std::string> sources{
        {"m.js", "/** @typedef {import('./n')} N\n * @typedef {N} O */\nmodule.exports.N = require('./n');"},
        {"n.js", "module.exports = class C { f() {} };"}};
    const auto found = [&](const std::string& user) {
        std::map<std::string, std::string> all = sources;
        all["a.js"] = user;
        return references_from(all);
    };
    EXPECT_EQ(found("const {N} = require('./m');\nnew N().f();"),
              "import m.js of m.js, 2 from line 1\nimport export=.f of n.js, 1 from line 2\n");
    EXPECT_EQ(found("/** @param {import('./m').O} a */\nfunction g(a) { a.f(); }"),
              "import export=.f of n.js, 1 from line 2\n");
}

TEST(Ecmascript, ArgumentsAreOfTheTypesThatFunctionsTake) {
    EXPECT_EQ(references_from({{"a.tsx", "import {Item, make, View, each, once} from './m';\n"
                                         "make({x: 1, part: {y: 2}});\n"
                                         "new Item({x: 1}, (item) => item.part);\n"
                                         "each((item) => { item.x; });\n"
                                         "export const v = <View x={1} part={{y: 2}} />;\n"
                                         "once({x: 1}, 'a');\n"},
                               {"m.ts", "export interface Part { y: number }\n"
                                        "export class Item {\n"
                                        "  x: number; part: Part;\n"
                                        "  constructor(like: Item, use: (item: Item) => void) {}\n"
                                        "}\n"
                                        "export function make(item: Item | string) {}\n"
                                        "export function View({x, part}: Item) {}\n"
                                        "export const each = (visit: (this: Part, item: Item) => void) => {};\n"
                                        "export function once(a: Item, b: string): void;\n"
                                        "export function once(a: Part, b: number): void {}\n"}}),
              "import Part.y of m.ts, 2 from line 2\n"
              "import Item of m.ts, 2 from line 1\n"
              "import Item.x of m.ts, 4 from line 2\n"
              "import Item.part of m.ts, 3 from line 2\n"
              "import make of m.ts, 2 from line 1\n"
              "import View of m.ts, 2 from line 1\n"
              "import each of m.ts, 2 from line 1\n"
              "import once of m.ts, 2 from line 1\n");
}

TEST(Ecmascript, MembersOfAClassAreNotThoseOfItsInstances) {
    EXPECT_EQ(references_from({{"a.ts", "class A { static f() {}\n f() {} }\nA.f();\nnew A().f(); new A().f();\n"}}),
              "local A of a.ts, 3 from line 3\n"
              "local A.f of a.ts, 1 from line 3\n"
              "local A.f of a.ts, 2 from line 4\n");
}

TEST(Ecmascript, TypesThatStandForThemselvesEndTheLookup) {
    EXPECT_EQ(references_from({{"a.ts", "class A<T extends U, U extends T> { f(t: T) { t.x; } }\n"
                                        "interface B extends C {}\ninterface C extends B {}\n"
                                        "declare const b: B; b.x;\ntype D = D; declare const d: D; d.x;\n"
                                        "const e = e.x; function f(g = f()) { return f().x; }\n"}})
                  .find(".x"),
              std::string::npos);
}

TEST(JavaScript, CommentsStateTheMembersOfObjectsAndWhatFunctionsTake) {
    const std::string m = "class M { go() {} }\nmodule.exports = M\n";
    for (
        const std::string use : {
            "/** @typedef {Object} C @property {M} [m] */\n/** @param {C} c */ function f(c) { c.m.go() }\n",
            "/** @typedef C @prop {object} a @prop {M} a.m */\n/** @param {C} c */ function f(c) { c.a.m.go() }\n",
            "/** @typedef {{m: M}} C */\n/** @param {string} a @param {C} options */ function f(a, { m }) { m.go() }\n",
            "/** @callback C @param {M} m */\n/** @type {C} */ const f = (m) => { m.go() }\n",
            "/** @callback C @returns {M} */\n/** @param {C} c */ function f(c) { c().go() }\n",
            "/** @param {object} o options @param {M} o.m */ function f({ m }) { m.go() }\n",
            "/** @param {{a: any, m: M}} o */ function f(o) { o.m.go() }\n",
            "/** @param {Record<string, any> & {m: M}} o */ function f(o) { o.m.go() }\n",
            "/** @param {(a: string) => M} c */ function f(c) { c('').go() }\n",
            "/** @param {typeof M} c */ function f(c) { new c().go() }\n",
            "/** @param {Iterable<M>} c */ function f(c) { for (const m of new Set(c)) m.go() }\n",
        }) {
        EXPECT_EQ(targets_from("use.js", {{"m.js", m}, {"use.js", "const M = require('./m')\n" + use}}).substr(0, 9),
                  "m.js:M.go")
            << use;
    }
}

TEST(JavaScript, WhatAModuleExportsBesideItselfIsAMemberOfThat) {
    EXPECT_EQ(targets_from("use.js", {{"m.js", "class M { static own() {} }\nconst help = () => 1\nmodule.exports = M\n"
                                               "module.exports.help = help\nmodule.exports.own = 2\n"},
                                      {"f.js", "module.exports = () => 1\nmodule.exports.g = function () {}\n"},
                                      {"use.js", "const M = require('./m')\nconst f = require('./f')\n"
                                                 "M.help(); M.own(); M.other(); f.g(); f.h()\n"
                                                 "if (M) { var n = require('./f'); n.g() }\nn.g()\n"}}),
              "f.js:exports.g*3 f.js*4 m.js:M*4 m.js:M.own m.js:help");
}

}  // namespace
}  // namespace host::resolve
