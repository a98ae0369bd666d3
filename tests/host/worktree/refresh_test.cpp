// A change that no other file can see is refreshed by itself; whatever way is taken, the rows are those of a new index.

#include "host/worktree/refresh.h"

#include "host/worktree/bytes.h"
#include "tests/host/worktree/kept_rows.h"

namespace host::worktree {
namespace {

class RefreshedRows : public KeptRows {
  protected:
    RefreshedRows() {
        write("a/a.go", "package a\n\nfunc A() {}\n\nfunc C() {}\n");
        write("a/e.go", "package a\n");
        write("py/m.py", "def f(): pass\n");
        write("lib/l.go", "package lib\n\nfunc L() {}\n");
        write("lib/test/t.go", "package test\n\nfunc T() {}\n");
    }

    // Refreshes and compares. Returns whether the index was made anew.
    [[nodiscard]] bool is_made_anew(const std::string& change) const {
        bool is_anew = false;
        EXPECT_EQ(kept_rows([&](std::int64_t done, std::int64_t) { is_anew |= done > 0; }), new_rows()) << change;
        return is_anew;
    }
};

TEST_F(RefreshedRows, AreMadeAnewOnlyForWhatOtherFilesCanSee) {
    struct Change {
        std::string what;
        std::string path;
        std::string before;
        std::string after;
        bool is_seen;
    };
    const std::string go = "package b\n\nimport \"example.org/m/a\"\n\n";
    for (const auto& [what, path, before, after, is_seen] : std::vector<Change>{
             {"a call", "b/b.go", go + "func B() { a.A() }\n", go + "func B() { a.A(); a.C(); a.C() }\n", false},
             {"no call", "b/b.go", go + "func B() { a.A(); B() }\n", go + "func B() {}\n", false},
             {"lines", "b/b.go", go + "func B() {}\n\nfunc D() {}\n", go + "func B() {\n\n}\nfunc D() {\n}\n", false},
             {"names in another order", "b/b.go", go + "func B() { a.A(); D() }\n\nfunc D() {}\n",
              go + "func B() { D(); a.A() }\n\nfunc D() {}\n", false},
             {"unknown names", "b/b.go", go + "func B() {}\n", go + "func B() { a.X(); Y() }\n", false},
             {"no unknown names", "b/b.go", go + "func B() { a.X() }\n", go + "func B() {}\n", false},
             {"documentation", "b/b.go", go + "func B() {}\n", go + "// B is good.\nfunc B() {}\n", false},
             {"no documentation", "b/b.go", go + "// B is good.\nfunc B() {}\n", go + "func B() {}\n", false},
             {"the name of a parameter", "b/b.go", go + "func B(c int) {}\n", go + "func B(d int) {}\n", false},
             {"a summary", "b/b.go", go + "func B() {}\n", "// Package b is good.\n" + go + "func B() {}\n", true},
             {"a declaration", "b/b.go", go + "func B() {}\n", go + "func B() {}\n\nfunc D() {}\n", true},
             {"a type", "b/b.go", go + "func B() int {}\n", go + "func B() string {}\n", true},
             {"an import", "b/b.go", go + "func B() {}\n", "package b\n\nfunc B() {}\n", true},
             {"damage", "b/b.go", go + "func B() {}\n", go + "func B() { ) }\n", true},
             {"what a function returns", "py/u.py", "from m import f\ndef g(): return f\n",
              "from m import f\ndef g(): return 1\n", true},
             {"a module that is used by a member", "py/u.py", "import m\ndef g(): m\n", "import m\ndef g(): m.f()\n",
              true},
             {"a use of a file in a folder of tests", "lib/u.go",
              "package lib\n\nimport \"example.org/m/lib/test\"\n\nfunc U() {}\n",
              "package lib\n\nimport \"example.org/m/lib/test\"\n\nfunc U() { test.T() }\n", true},
             {"a test that reaches nothing", "a/a_test.go", "package a\n\nfunc TestA() { A() }\n",
              "package a\n\nfunc TestA() { TestA() }\n", true},
             {"a test that reaches something else", "a/a_test.go", "package a\n\nfunc TestA() { A(); TestA() }\n",
              "package a\n\nfunc TestA() { C(); TestA() }\n", false},
         }) {
        write(path, before);
        static_cast<void>(is_made_anew(what + ", before"));
        write(path, after);
        EXPECT_EQ(is_made_anew(what), is_seen) << what;
        EXPECT_FALSE(is_made_anew(what + ", again"));
    }
}

TEST_F(RefreshedRows, AreThoseOfSeveralChangedFiles) {
    static_cast<void>(is_made_anew("before"));
    write("a/a.go", "package a\n\nfunc A() { C() }\n\nfunc C() {\n}\n");
    write("b/b.go", "package b\n\nimport \"example.org/m/a\"\n\nfunc B() { a.C() }\n");
    EXPECT_FALSE(is_made_anew("two"));
}

TEST_F(RefreshedRows, FollowAChangeWhileTheyAreMade) {
    const auto text = [](const std::string& call) {
        return "package b\n\nimport \"example.org/m/a\"\n\nfunc B() { " + call + " }\n";
    };
    static_cast<void>(kept_rows());
    for (int call = 0; call < 6; ++call) {
        write("b/b.go", text("a.A() // " + std::to_string(call)));
        static_cast<void>(kept_rows([&, left = call](std::int64_t, std::int64_t) mutable {
            if (left-- == 0) {
                write("b/b.go", text("a.C()"));
            }
        }));
        EXPECT_EQ(kept_rows(), new_rows()) << call;
    }
}

TEST_F(RefreshedRows, AreOldOrNewWhereTheRefreshIsKilled) {
    static_cast<void>(kept_rows());
    const std::string index = kept_folder() / "index.db";
    write("b/b.go", "package b\n\nimport \"example.org/m/a\"\n\nfunc B() { a.C() }\n");
    EXPECT_GE(times_killed(), 3);
    EXPECT_EQ(rows_in(index), new_rows());
}

}  // namespace
}  // namespace host::worktree
