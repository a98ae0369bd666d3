// `wiki-scope diff` and the server's tool of the same use, on a repository of Git and on indexes.

#include "tests/host/indexed_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace host {
namespace {

class Diff : public IndexedFolder {
  protected:
    void SetUp() override {
        if (shell("git --version").exit_code != 0) {
            GTEST_SKIP() << "there is no Git here";
        }
        folder.write("r/src/a.ts", "export function f() {}\nexport function g() {}\n");
        folder.write("r/src/b.ts", "import { f } from './a';\nf();\n");
        folder.write("r/other/a.ts", "export const x = 1;\n");
        in_repository("git init -q -b main && git add -A && git commit -q -m one");
        folder.write("r/src/a.ts", "export function f(a) {}\n");
        in_repository("git commit -q -a -m two");
    }

    Outcome in_repository(const std::string& line, const std::string& below = "") const {
        return shell("cd r/" + below + " && export XDG_CACHE_HOME='" + folder / "cache" +
                     "' GIT_CONFIG_GLOBAL=/dev/null GIT_AUTHOR_NAME=n GIT_AUTHOR_EMAIL=e GIT_COMMITTER_NAME=n "
                     "GIT_COMMITTER_EMAIL=e; " +
                     line);
    }
    [[nodiscard]] Outcome diff(const std::string& arguments, const std::string& below = "") const {
        return in_repository("wiki-scope diff " + arguments, below);
    }

    const std::string f_changed =
        "- `f` (function, `src/a.ts:L1-L1`)\n  - Before: `export function f()`\n  - Now: `export function f(a)`\n"
        "  - Used, before and now, by `src/b.ts` (2)\n";
};

TEST_F(Diff, TellsRevisionsAndTheWorkTreeApart) {
    const std::string both = diff("HEAD~1 HEAD").out;
    EXPECT_NE(both.find(f_changed), std::string::npos) << both;
    EXPECT_EQ(diff("HEAD~1").out, both);
    EXPECT_EQ(diff("main").out, "");
    folder.write("r/other/a.ts", "");
    EXPECT_EQ(diff("HEAD~1 main").out, both);
    EXPECT_NE(diff("main").out.find("- `x` (constant, `other/a.ts:L1-L1`)"), std::string::npos);
    EXPECT_TRUE(
        std::filesystem::is_empty(in_repository("echo \"$XDG_CACHE_HOME\"/wiki-scope/*/revisions | tr -d '\\n'").out))
        << "a revision's index is left";
}

TEST_F(Diff, TakesANameThatIsNoStateForAPath) {
    const std::string all = diff("HEAD~1").out;
    EXPECT_EQ(diff("HEAD~1 src").out, all);
    EXPECT_EQ(diff("HEAD~1 . ../src", "other").out, all);
    EXPECT_EQ(diff("HEAD~1 HEAD other").out, "");
    const Outcome missing = diff("HEAD~1 HEAD~7");
    EXPECT_EQ(missing.exit_code, 1);
    EXPECT_EQ(missing.err, "wiki-scope: HEAD~7: not in the index\n");
}

TEST_F(Diff, ExitsAsGitDoesWhereItIsAsked) {
    EXPECT_EQ(diff("HEAD~1 HEAD").exit_code, 0);
    EXPECT_EQ(diff("HEAD~1 HEAD --exit-code").exit_code, 1);
    EXPECT_EQ(diff("HEAD --exit-code").exit_code, 0);
    EXPECT_LE(diff("HEAD~1 HEAD --max-bytes 300").out.size(), 300U);
}

TEST_F(Diff, ExplainsInOneLineWhatCannotBeCompared) {
    folder.write("other.db", "this is no index");
    for (const auto& [arguments, says] : std::vector<std::pair<std::string, std::string>>{
             {"none", "none: no such index, and no revision of the repository in "},
             {"HEAD..main", "HEAD..main: no such index, and no revision"},
             {"HEAD other.db", "other.db: not in the index"},
             {"HEAD ../other.db", "../other.db: not a wiki-scope index; name another file"},
             {"../other.db", "../other.db: not a wiki-scope index"},
             {"HEAD --depth 0", "--depth: 0 is less than 1"},
             {"HEAD --format json --max-bytes 9", "--max-bytes: applies to Markdown only"},
             {"'' HEAD", "OLD: an empty name"}}) {
        const Outcome outcome = diff(arguments);
        EXPECT_NE(outcome.exit_code, 0) << arguments;
        EXPECT_TRUE(outcome.err.starts_with("wiki-scope: " + says)) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    const Outcome without = shell("mkdir plain && cd plain && wiki-scope diff HEAD");
    EXPECT_NE(without.err.find("not a checkout of a Git repository; name two indexes instead\n"), std::string::npos)
        << without.err;
}

TEST_F(Diff, IsWhatTheServerTellsOfItsIndex) {
    using nlohmann::json;
    const auto call = [](int id, const std::string& revision) {
        return json({{"jsonrpc", "2.0"},
                     {"id", id},
                     {"method", "tools/call"},
                     {"params", {{"name", "changes"}, {"arguments", {{"revision", revision}}}}}})
            .dump();
    };
    folder.write("r/calls", R"({"jsonrpc":"2.0","id":0,"method":"initialize","params":{"protocolVersion":"2025-06-18",)"
                            R"("capabilities":{},"clientInfo":{"name":"t","version":"1"}}})"
                            "\n" +
                                call(1, "HEAD~1") + "\n" + call(2, "none") + "\n");
    const std::string answers = in_repository("wiki-scope serve <calls").out;
    EXPECT_NE(answers.find(json(diff("HEAD~1").out).dump()), std::string::npos) << answers;
    EXPECT_NE(answers.find("none: no revision of the repository in "), std::string::npos) << answers;
}

}  // namespace
}  // namespace host
