// Whatever happens to a checkout and to what is kept for it, the kept index has the rows of one that is made anew.

#include "fixtures/temporary_folder.h"
#include "host/sqlite/sqlite_index.h"
#include "host/worktree/bytes.h"
#include "host/worktree/import.h"
#include "tests/host/without_threads.h"
#include "tests/host/worktree/kept_rows.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <set>
#include <stdexcept>
#include <utility>

namespace host::worktree {
namespace {

namespace fs = std::filesystem;

struct Edited {
    std::string path;
    std::vector<std::string> texts;
};

// Few texts, so that files become what they or others were.
const std::vector<Edited> EDITED{
    {"go.mod", {"module example.org/m\n", "module example.org/n\n"}},
    {"a/a.go",
     {"package a\n\nfunc A() {}\n", "package a\n\n// Says.\nfunc A() {}\n\nfunc C() {}\n", "package a\n\xFF"}},
    {"a/c.go",
     {"package a\n\nfunc A() {}\n", "package a\n\nfunc D() { A() }\n", "package a\n\nfunc D() {\n\tD()\n}\n"}},
    {"w/package.json", {R"({"workspaces": ["p"]})", "{}"}},
    {"w/pnpm-workspace.yaml", {"packages:\n  - p\n", "packages:\n  - q\n"}},
    {"w/p/package.json", {R"({"name": "p", "main": "lib/index.js"})", R"({"name": "p", "main": "other.ts"})", "{"}},
    {"w/p/src/index.ts", {"export function f() {}\n", "export class f {}\n"}},
    {"w/p/other.ts", {"export function f() {}\n"}},
    {"w/p/lib/index.js", {"exports.f = 1\n"}},
    {"w/q/use.ts",
     {"import { f } from \"p\";\nf();\n", "import { f } from \"../p/other\";\nf();\n",
      "import { f } from \"../p/other\";\n\n", "\n\nimport { f } from \"../p/other\";\n\nf();\n"}},
    {"s/pkg/__init__.py", {"", "from .x import X\n"}},
    {"s/pkg/x.py", {"class X:\n    def m(self): pass\n", "X = 1\n"}},
    {"s/use.py", {"from pkg import X\nX().m()\n", "from pkg import X\nX\n", "import pkg.x\npkg.x.X()\n"}},
    {"c/t.h", {"struct T { int a; };\n", "class T { public: int a; };\n"}},
    {"c/t.c",
     {"#include \"t.h\"\nint f(struct T *t) { return t->a; }\n",
      "#include \"t.h\"\n\nint f(struct T *t) { return f(t) + t->b; }\n"}},
    {".gitignore", {"a/c.go\n", "*.py\n", ""}},
    {".gitattributes", {"w/p/lib/* linguist-generated\n", "a.go linguist-vendored\n", ""}},
    {".wiki-scope.toml", {"exclude = [\"a/a.go\"]\n", "test = [\"a/\"]\n", ""}},
};

class KeptRowsAfter : public KeptRows, public testing::WithParamInterface<unsigned> {};

TEST_P(KeptRowsAfter, RandomEditsAreThoseOfANewIndex) {
    std::mt19937 random(GetParam());
    const auto below = [&](std::size_t end) { return random() % end; };
    write(".git/HEAD", "");
    std::string edits;
    for (int step = 0; step < 25; ++step) {
        for (std::size_t left = 1 + below(step == 0 ? 20 : 3); left > 0; --left) {
            const auto& [path, texts] = EDITED[below(EDITED.size())];
            const fs::path file = folder / ("checkout/" + path);
            const std::size_t action = below(8);
            const bool is_there = fs::exists(file);
            edits += std::to_string(step) + ": " + path + " " + std::to_string(action) + "\n";
            if (action == 0) {
                fs::remove(file);
            } else if (action == 1 && is_there) {
                fs::rename(file, file.parent_path() / ("moved_" + file.filename().string()));
            } else if (action == 2 && is_there) {
                fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::hours(1 + below(3)));
            } else if (action == 3 && is_there) {
                fs::permissions(file, fs::status(file).permissions() ^ fs::perms::owner_read);
            } else {
                fs::remove(file);
                write(path, texts[below(texts.size())]);
            }
        }
        write("b/b.go", "package b\n\nfunc B() {}\n");
        ASSERT_EQ(kept_rows(), new_rows()) << edits;
        ASSERT_EQ(kept_rows(), new_rows()) << "when nothing has changed; " << edits;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, KeptRowsAfter, testing::Range(1U, 4U));

TEST_F(KeptRows, AreThoseOfANewIndexAfterAChangeWhileTheyWereMade) {
    struct Change {
        std::string path;
        std::string before;
        std::string after;
    };
    for (const Change& change : std::vector<Change>{
             {"go.mod", "module example.org/m\n", "module example.org/n\n"},
             {"a/a.go", "package a\n\nfunc A() {}\n", "package a\n\nfunc Z() {}\n"},
             {".gitattributes", "", "a.go linguist-generated\n"},
             {".wiki-scope.toml", "", "exclude = [\"a/\"]\n"},
         }) {
        for (std::int64_t step = 1; step <= 9; ++step) {
            write(change.path, change.before);
            write("d.go", "package d // " + change.path + std::to_string(step));
            static_cast<void>(kept_rows([&](std::int64_t done, std::int64_t) {
                if (done >= step) {
                    write(change.path, change.after);
                }
            }));
            EXPECT_EQ(kept_rows(), new_rows()) << change.path << " at step " << step;
        }
        fs::remove(folder / ("checkout/" + change.path));
    }
}

TEST_F(KeptRows, StayWhenTheirRefreshIsKilledAndAreRefreshedByTheNext) {
    const std::string old_rows = kept_rows();
    const std::string index = kept_folder() / "index.db";
    write("c/c.go", "package c\n\nfunc C() {}\n");
    EXPECT_GE(times_killed(), 5);
    EXPECT_NE(rows_in(index), old_rows);
    EXPECT_EQ(kept_rows(), new_rows());
    std::set<std::string> left;
    for (const fs::directory_entry& entry : fs::directory_iterator(kept_folder())) {
        left.insert(entry.path().filename());
    }
    EXPECT_EQ(left, (std::set<std::string>{"facts", "files", "index.db", "lock"}));
}

TEST_F(KeptRows, AreMadeByOneOfManyProcesses) {
    std::array<pid_t, 4> children{};
    for (pid_t& child : children) {
        child = fork();
        if (child == 0) {
            bool has_made = false;
            const std::string rows = kept_rows([&](std::int64_t done, std::int64_t) { has_made |= done > 0; });
            _exit(rows.empty() ? 100 : has_made ? 1 : 0);
        }
    }
    int made = 0;
    for (const pid_t child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        made += WIFEXITED(status) ? WEXITSTATUS(status) : 100;
    }
    EXPECT_EQ(made, 1);
    EXPECT_EQ(kept_rows(), new_rows());
}

TEST_F(KeptRows, SurviveEveryDamageToWhatIsKept) {
    using Damage = std::function<void(const std::string&)>;
    const auto overwrite = [](const std::string& path, const std::string& bytes) {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
    };
    const std::vector<std::pair<std::string, Damage>> damages{
        {"gone", [](const std::string& path) { fs::remove(path); }},
        {"empty", [&](const std::string& path) { overwrite(path, ""); }},
        {"cut", [](const std::string& path) { fs::resize_file(path, fs::file_size(path) / 2); }},
        {"of one byte more", [](const std::string& path) { std::ofstream(path, std::ios::app) << 'x'; }},
        {"changed",
         [](const std::string& path) {
             std::fstream(path, std::ios::in | std::ios::out)
                     .seekp(static_cast<std::streamoff>(fs::file_size(path) / 2))
                 << "\xA5\x5A";
         }},
        {"foreign", [&](const std::string& path) { overwrite(path, std::string(5'000, '\xFF')); }},
        {"a folder",
         [](const std::string& path) {
             fs::remove(path);
             fs::create_directory(path);
         }},
        {"a link to nowhere",
         [](const std::string& path) {
             fs::remove(path);
             fs::create_symlink("nowhere", path);
         }},
    };
    for (const std::string file : {"index.db", "facts", "files"}) {
        for (const auto& [kind, damage] : damages) {
            for (const bool is_changed : {false, true}) {
                write("a/a.go", "package a\n\nfunc A() {} // " + file + kind + "\n");
                static_cast<void>(kept_rows());
                damage(kept_folder() / file);
                if (is_changed) {
                    write("c/c.go", "package c // " + file + kind);
                }
                EXPECT_EQ(kept_rows(), new_rows()) << file << " is " << kind;
                fs::remove_all(kept_folder());
            }
        }
    }
}

TEST_F(KeptRows, AreUsedButNotRefreshedWhereNothingCanBeWritten) {
    const std::string old_rows = kept_rows();
    const fs::path kept = kept_folder();
    fs::permissions(kept, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(kept_rows(), old_rows);
    write("c/c.go", "package c\n");
    EXPECT_THROW(static_cast<void>(kept_rows()), std::runtime_error);
    fs::permissions(kept, fs::perms::owner_all);
    EXPECT_EQ(kept_rows(), new_rows());
}

TEST_F(KeptRows, AreNotKeptWhereAnotherCouldChangeThem) {
    const fs::path all = folder / "cache/wiki-scope";
    fs::create_directories(folder / "elsewhere");
    const std::vector<std::pair<std::string, std::function<void()>>> others{
        {"a link", [&] { fs::create_directory_symlink(folder / "elsewhere", all); }},
        {"a file", [&] { folder.write("cache/wiki-scope", ""); }},
        {"for the group",
         [&] {
             fs::create_directory(all);
             fs::permissions(all, fs::perms::group_write, fs::perm_options::add);
         }},
    };
    for (const auto& [kind, place] : others) {
        fs::remove_all(all);
        fs::create_directories(folder / "cache");
        place();
        EXPECT_THROW(static_cast<void>(kept_rows()), std::runtime_error) << kind;
        EXPECT_TRUE(fs::is_empty(folder / "elsewhere"));
    }
}

TEST_F(KeptRows, AreThoseOfACheckoutWithTheLongestName) {
    const std::string name(255, 'n');
    folder.write(name + "/a.go", "package a\n");
    const CheckoutIndex index(folder / name, {});
    static_cast<void>(index.connect());
    EXPECT_NE(rows_in(index.name()).find("'a.go'"), std::string::npos);
}

TEST(NewRows, AreTheSameHoweverManyThreadsTheSystemGives) {
    const TemporaryFolder folder;
    for (int number = 0; number < 40; ++number) {
        const std::string own = std::to_string(number);
        const std::string next = std::to_string((number + 7) % 40);
        folder.write("checkout/p/f" + own + ".go", "package p\n\nfunc F" + own + "() { F" + next + "() }\n");
        folder.write("checkout/m" + own + ".py",
                     "from m" + next + " import f\ndef f(): pass\nclass C" + own + ":\n    def g(self): f()\n");
    }
    fs::permissions(folder / "", fs::perms::all);
    const auto rows_with = [&](rlim_t most) {
        return with_most_threads(most, [&] {
            const std::string path = folder / (std::to_string(most) + ".db");
            import_sources({.folder = folder / "checkout"}, *SqliteIndex(path).replace(), {});
            return std::to_string(checksum(rows_in(path)));
        });
    };
    const std::string rows = rows_with(1'000);
    EXPECT_EQ(rows_in(folder / "1000.db").substr(0, 13), "descriptions ");
    for (const rlim_t most : {0U, 2U, 3U}) {
        EXPECT_EQ(rows_with(most), rows) << most;
    }
}

}  // namespace
}  // namespace host::worktree
