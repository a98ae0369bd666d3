// What is told of two states of a repository, each a few sources.

#include "host/changes/changes.h"

#include "fixtures/temporary_folder.h"
#include "host/changes/changes_markdown.h"
#include "host/sqlite/sqlite_index.h"
#include "host/worktree/import.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace host::changes {
namespace {

using Sources = std::map<std::string, std::string>;

// Two checkouts, each with its index.
class TwoStates {
  public:
    TwoStates(const Sources& before, const Sources& after) {
        import("old", before, old_);
        import("new", after, new_);
    }

    [[nodiscard]] Changes changes(const ChangesRequest& request = {}) const {
        const auto before = old_.connect();
        const auto after = new_.connect();
        return compare(*before->read(), *after->read(), request);
    }

  private:
    void import(const std::string& name, const Sources& sources, const Index& index) const {
        folder_.write(name + "/.wiki-scope.toml", "");
        for (const auto& [path, text] : sources) {
            folder_.write(name + "/" + path, text);
        }
        worktree::import_sources({.folder = folder_ / name}, *index.replace(), {});
    }

    TemporaryFolder folder_;
    SqliteIndex old_{folder_ / "old.db"};
    SqliteIndex new_{folder_ / "new.db"};
};

// The Markdown without the headings and the sentences that explain.
std::string told(const Sources& before, const Sources& after, const ChangesRequest& request = {}) {
    std::ostringstream out;
    write_markdown(out, TwoStates(before, after).changes(request), std::nullopt);
    std::istringstream lines(out.str());
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("- ") || line.starts_with("  - ") || line.starts_with("## ")) {
            text += line + "\n";
        }
    }
    return text;
}

const std::string BODY = "{\n    const x = 1;\n    return x;\n}\n";

TEST(Changes, OfEqualStatesAreNone) {
    const Sources sources{{"a.ts", "export function f() {}\n"}, {"b.ts", "import { f } from './a';\nf();\n"}};
    EXPECT_TRUE(TwoStates(sources, sources).changes().empty());
    EXPECT_EQ(told(sources, sources), "");
}

TEST(Changes, TellFilesOfTheSameContentMovedWhereNoOtherCouldBeMeant) {
    EXPECT_EQ(told({{"a.ts", "export function f() {}\n"}, {"b.ts", "f();\n"}, {"c.ts", "f();\n"}},
                   {{"d.ts", "export function f() {}\n"}, {"e.ts", "f();\n"}}),
              "## Files\n- `e.ts` added\n- `b.ts` removed\n- `c.ts` removed\n- `a.ts` moved to `d.ts`\n");
}

TEST(Changes, TellOfWhatIsGoneWhoUsedItAndWhatBecameOfThem) {
    const std::string import = "import { f } from './a';\n";
    EXPECT_EQ(told({{"a.ts", "export function f() {}\nexport function g() {}\n"},
                    {"changed.ts", import + "f(); f();\n"},
                    {"gone.ts", import + "f();\n"},
                    {"same.ts", import + "f();\n"},
                    {"same.test.ts", import + "f();\n"}},
                   {{"a.ts", "export function g() {}\n"},
                    {"changed.ts", ""},
                    {"same.ts", import + "f();\n"},
                    {"same.test.ts", import + "f();\n"}}),
              "## Files\n- `gone.ts` removed\n"
              "## Removed declarations\n- `f` (function, `a.ts:L1-L1`)\n"
              "  - Used before by files that are unchanged: `same.ts` (2)\n"
              "  - Used before by files that have changed: `changed.ts` (3)\n"
              "  - Used before by files that are gone: `gone.ts` (2)\n"
              "  - Tests: `same.test.ts`\n"
              "## Users of files\n- `a.ts`\n  - Lost `changed.ts`, `gone.ts`, `same.ts`\n");
}

TEST(Changes, TellWhatAnExistingDeclarationHasBecome) {
    const std::string use = "import { C, f, T } from './a';\nnew C().m(1); f(); let t: T;\n";
    EXPECT_EQ(
        told({{"a.ts", "export class C {\n  m(a) {}\n  n() {}\n}\nexport function f() {}\nexport type T = 1;\n"},
              {"b.ts", use},
              {"c.test.ts", use}},
             {{"a.ts", "export class C {\n  m(a: number) {}\n  n() {}\n}\nfunction f() {}\nexport interface T {}\n"},
              {"b.ts", use},
              {"c.test.ts", use}}),
        "## Changed declarations\n"
        "- `C.m` (method, `a.ts:L2-L2`)\n  - Before: `m(a)`\n  - Now: `m(a: number)`\n"
        "  - Used, before and now, by `b.ts` (1)\n  - Tests: `c.test.ts`\n"
        "- `f` (function, `a.ts:L5-L5`)\n  - Is no longer public\n  - Before: `export function f()`\n"
        "  - Now: `function f()`\n  - Used before by files that are unchanged: `b.ts` (2)\n"
        "- `T` (interface, `a.ts:L6-L6`)\n  - Was of kind type\n  - Before: `export type T = 1`\n"
        "  - Now: `export interface T`\n  - Used, before and now, by `b.ts` (2)\n  - Tests: `c.test.ts`\n");
}

TEST(Changes, AreNotHowASignatureIsLaidOut) {
    EXPECT_EQ(told({{"a.ts", "export function f(a: number, b = new Set<int>()): void {}\n"}},
                   {{"a.ts", "export function f(\n  a: number,\n  b = new Set< int >(),\n):\n  void {}\n"}}),
              "");
    EXPECT_EQ(told({{"a.ts", "export type T = keyof int;\n"}}, {{"a.ts", "export type T =\n  keyofint;\n"}}),
              "## Changed declarations\n- `T` (type, `a.ts:L1-L2`)\n"
              "  - Before: `export type T = keyof int`\n  - Now: `export type T = keyofint`\n");
}

TEST(Changes, TellAMoveOrAnotherNameOnlyWhereTheTextIsTheSame) {
    const Sources before{{"a.ts", "export function moved() " + BODY + "export function old() " + BODY +
                                      "export class Old {\n  m() {\n    return Old;\n  }\n}\n" +
                                      "export function short() {}\n"},
                         {"b.ts", ""}};
    EXPECT_EQ(told(before, {{"a.ts", "export function now() " + BODY +
                                         "export class Now {\n  m() {\n    return Now;\n  }\n}\n" +
                                         "export function brief() {}\n"},
                            {"b.ts", "export function moved() " + BODY}}),
              "## Removed declarations\n- `short` (function, `a.ts:L14-L14`)\n"
              "## Changed declarations\n"
              "- `moved` (function, `b.ts:L1-L4`)\n  - Was in `a.ts:L1-L4`\n"
              "- `now` (function, `a.ts:L1-L4`)\n  - Was `old`\n"
              "- `Now` (class, `a.ts:L5-L9`)\n  - Was `Old`\n"
              "## Added declarations\n- `brief` (function, `a.ts:L10-L10`)\n");
    // Two could be the one that is gone.
    EXPECT_EQ(told({{"a.ts", "export function old() " + BODY}},
                   {{"a.ts", "export function one() " + BODY + "export function two() " + BODY}}),
              "## Removed declarations\n- `old` (function, `a.ts:L1-L4`)\n"
              "## Added declarations\n- `one` (function, `a.ts:L1-L4`)\n- `two` (function, `a.ts:L5-L8`)\n");
}

TEST(Changes, TellOverloadsApartByTheirSignatures) {
    EXPECT_EQ(told({{"p/A.java", "package p;\npublic class A {\n  void f(int a) {}\n  void f(String a) {}\n}\n"}},
                   {{"p/A.java", "package p;\npublic class A {\n  void f(long a) {}\n  void f(int a) {}\n}\n"}}),
              "## Changed declarations\n- `A.f` (method, `p/A.java:L3-L3`)\n"
              "  - Before: `void f(String a)`\n  - Now: `void f(long a)`\n");
}

TEST(Changes, TellATypeThatIsGoneOrNewWithItsMembers) {
    const std::string use = "import { C } from './a';\nnew C().m();\n";
    EXPECT_EQ(told({{"a.ts", "export class C {\n  m() {}\n  _n() {}\n}\n"}, {"b.ts", use}},
                   {{"a.ts", "export class D {\n  m() {}\n  x = 1;\n}\n"}, {"b.ts", use}}),
              "## Removed declarations\n- `C` (class, `a.ts:L1-L4`) and 1 member\n"
              "  - Used before by files that are unchanged: `b.ts` (3)\n"
              "## Added declarations\n- `D` (class, `a.ts:L1-L4`) and 2 members\n"
              "## Users of files\n- `a.ts`\n  - Lost `b.ts`\n");
}

TEST(Changes, TellWhatNothingUsesAnyMoreAndWhatIsUsedAgain) {
    const std::string functions = "export function f() {}\nexport function g() {}\n";
    EXPECT_EQ(told({{"a.ts", functions},
                    {"b.ts", "import { f } from './a';\nf();\n"},
                    {"c.test.ts", "import { f, g } from './a';\nf(); g();\n"}},
                   {{"a.ts", functions},
                    {"b.ts", "import { g } from './a';\ng();\n"},
                    {"c.test.ts", "import { f, g } from './a';\nf(); g();\n"}}),
              "## No longer used\n- `f` (function, `a.ts:L1-L1`)\n## Used again\n- `g` (function, `a.ts:L2-L2`)\n");
}

TEST(Changes, FollowUsersOfUsersAsFarAsIsAsked) {
    const auto sources = [](const std::string& parameter) {
        return Sources{{"a.ts", "export function f(" + parameter + ") {}\n"},
                       {"b.ts", "import { f } from './a';\nexport function g() { f(); }\n"},
                       {"c.ts", "import { g } from './b';\nexport function h() { g(); }\n"},
                       {"d.ts", "import { h } from './c';\nimport { g } from './b';\nh(); g();\n"},
                       {"e.ts", "import './d';\nimport { h } from './c';\nh();\n"},
                       {"e.test.ts", "import { g } from './b';\ng();\n"}};
    };
    const auto told_to = [&](std::size_t depth) {
        const std::string text = told(sources(""), sources("a"), {.depth = depth});
        return text.substr(text.find("  - Used"));
    };
    const std::string first = "  - Used, before and now, by `b.ts` (2)\n";
    EXPECT_EQ(told_to(1), first);
    EXPECT_EQ(told_to(2), first + "  - 2 steps away: `c.ts`, `d.ts`\n");
    EXPECT_EQ(told_to(9), first + "  - 2 steps away: `c.ts`, `d.ts`\n  - 3 steps away: `e.ts`\n");
}

TEST(Changes, TellOfTheChosenFilesAlone) {
    const Sources before{{"a/a.ts", "export function f() {}\n"}, {"b/b.ts", "export function f() {}\n"}};
    const Sources after{{"a/a.ts", ""}, {"b/b.ts", ""}};
    EXPECT_EQ(told(before, after, {.paths = {"a"}}), "## Removed declarations\n- `f` (function, `a/a.ts:L1-L1`)\n");
    const Changes changes = TwoStates(before, after).changes({.paths = {"a/a.tx"}});
    EXPECT_TRUE(changes.is_failure);
    ASSERT_EQ(changes.remarks.size(), 1U);
    EXPECT_NE(changes.remarks.front().find("a/a.ts"), std::string::npos) << changes.remarks.front();
}

}  // namespace
}  // namespace host::changes
