// A change that few files can see is refreshed with these alone; whatever way is taken, the rows are those of a new
// index.

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
        write("a/v.go", "package a\n\nfunc V() T {}\n");
        write("b/use.go",
              "package b\n\nimport \"example.org/m/a\"\n\nfunc use() { a.A(); a.C(); a.V().M(); B().M() }\n");
        write("b/only.go", "package b\n\nimport \"example.org/m/a\"\n\nfunc only() { a.A() }\n");
        for (const std::string file : {"s/a.go", "s/b.go", "s/c.go"}) {
            write(file, "// All is good.\n\npackage s\n");
        }
        write("py/make.py", "from base import A, a\ndef make() -> A: ...\n");
        write("py/use.py", "from make import make, a\nmake().go()\nmake()[0].go()\na().go()\n");
        write("py/take.py", "import names\nfrom names import a\na.go\nnames.a.go\n");
        write("ts/index.ts", "export { f as g } from './a'\n");
        write("ts/use.ts", "import { g } from './index'\ng().m()\n");
        write("java/U.java", "class U { void u() { T.m(1); T.m(\"\"); } }\n");
        write("c/a.h", "int announced(void);\nint other(void);\n");
        write("c/u.c", "#include \"a.h\"\nint u(void) { return announced() + other(); }\n");
        write("rs/src/lib.rs", "pub mod a;\npub mod b;\n");
        write("rs/src/a.rs", "pub struct S;\n");
        write("rs/src/b.rs", "use crate::a::S;\npub fn b(s: &S) { s.e().f(); s.f() }\n");
    }

    // Refreshes and compares. Returns whether the index was made anew, as a whole.
    [[nodiscard]] bool is_made_anew(const std::string& change) const {
        bool is_anew = false;
        EXPECT_EQ(kept_rows([&](std::int64_t done, std::int64_t) { is_anew |= done > 0; }), new_rows()) << change;
        return is_anew;
    }
};

struct Change {
    std::string what;
    std::string path;
    std::string before;
    std::string after;
};

TEST_F(RefreshedRows, AreRevisedWhereFewFilesCanSeeAChange) {
    const std::string go = "package b\n\nimport \"example.org/m/a\"\n\n";
    for (const auto& [what, path, before, after] : std::vector<Change>{
             {"a call", "b/b.go", go + "func B() { a.A() }\n", go + "func B() { a.A(); a.C(); a.C() }\n"},
             {"no call", "b/b.go", go + "func B() { a.A(); B() }\n", go + "func B() {}\n"},
             {"lines", "b/b.go", go + "func B() {}\n\nfunc D() {}\n", go + "func B() {\n\n}\nfunc D() {\n}\n"},
             {"names in another order", "b/b.go", go + "func B() { a.A(); D() }\n\nfunc D() {}\n",
              go + "func B() { D(); a.A() }\n\nfunc D() {}\n"},
             {"unknown names", "b/b.go", go + "func B() {}\n", go + "func B() { a.X(); Y() }\n"},
             {"no unknown names", "b/b.go", go + "func B() { a.X() }\n", go + "func B() {}\n"},
             {"documentation", "b/b.go", go + "func B() {}\n", go + "// B is good.\nfunc B() {}\n"},
             {"no documentation", "b/b.go", go + "// B is good.\nfunc B() {}\n", go + "func B() {}\n"},
             {"a summary", "b/b.go", go + "func B() {}\n", "// Package b is good.\n" + go + "func B() {}\n"},
             {"a summary that others have", "b/b.go", go + "func B() {}\n",
              "// All is good.\n\n" + go + "func B() {}\n"},
             {"damage", "b/b.go", go + "func B() {}\n", go + "func B() { ) }\n"},
             {"a declaration", "a/a.go", "package a\n\nfunc A() {}\n", "package a\n\nfunc C() {}\n\nfunc A() {}\n"},
             {"no declaration", "a/a.go", "package a\n\nfunc A() {}\n\nfunc C() {}\n", "package a\n\nfunc C() {}\n"},
             {"other declarations", "a/a.go", "package a\n\nfunc A() {}\n", "package a\n\ntype A int\n\nfunc Z() {}\n"},
             {"an import that tells a type", "b/b.go", "package b\n\nfunc B() a.T {}\n", go + "func B() a.T {}\n"},
             {"a type behind a function", "a/t.go", "package a\n\ntype T struct{}\n",
              "package a\n\ntype T struct{ U }\n\ntype U struct{}\n\nfunc (u U) M() {}\n"},
             {"a base", "py/base.py", "class A: pass\n", "class B:\n    def go(self): pass\nclass A(B): pass\n"},
             {"an operator", "py/base.py", "class A:\n    def go(self): pass\n",
              "class A:\n    def go(self): pass\n    def __getitem__(self, key) -> 'A': ...\n"},
             {"what a function returns", "py/base.py", "class A:\n    def go(self): pass\ndef a(): return 1\n",
              "class A:\n    def go(self): pass\ndef a(): return A()\n"},
             {"an import that others take", "py/names.py", "import os\n", "from base import A as a\n"},
             {"an import that others have", "py/names.py", "import os\n", "import os\nimport json\n"},
             {"a name that is exported as another", "ts/a.ts", "export function f() {}\n",
              "export function e() {}\nexport function f(): F { return new F() }\nexport class F { m() {} }\n"},
             {"an overload", "java/T.java", "class T { static void m(int a) {} }\n",
              "class T { static void m(String a) {} static void m(int a) {} }\n"},
             {"a definition of what is announced", "c/a.c", "#include \"a.h\"\n",
              "#include \"a.h\"\nint other(void) { return 1; }\nint announced(void) { return 2; }\n"},
             {"a header from elsewhere", "c/a.c", "#include <stdio.h>\nint main() {}\n",
              "#include <stdio.h>\n#include <stdlib.h>\nint main() {}\n"},
             {"a method of a type", "rs/src/a.rs", "pub struct S;\nimpl S { pub fn f(&self) {} }\n",
              "pub struct S;\nimpl S { pub fn e(&self) -> &S { self } pub fn f(&self) {} }\n"},
         }) {
        write(path, before);
        static_cast<void>(is_made_anew(what + ", before"));
        write(path, after);
        EXPECT_FALSE(is_made_anew(what)) << what;
        write(path, before);
        EXPECT_FALSE(is_made_anew(what + ", and back")) << what;
    }
}

TEST_F(RefreshedRows, AreMadeAnewWhereItIsNotKnownWhoSeesAChange) {
    std::string many;
    for (int declaration = 0; declaration < 20; ++declaration) {
        many += "def f" + std::to_string(declaration) + "(): pass\n";
    }
    for (const auto& [what, path, before, after] : std::vector<Change>{
             {"another package", "a/t.go", "package a\n", "package b\n"},
             {"another system", "a/t.go", "package a\n", "//go:build windows\n\npackage a\n"},
             {"more declarations than there is room for", "py/n.py", "def f(): pass\n", many},
             {"a module that is used by a member", "py/u.py", "import m\ndef g(): m\n", "import m\ndef g(): m.f()\n"},
             {"a use of a file in a folder of tests", "lib/u.go",
              "package lib\n\nimport \"example.org/m/lib/test\"\n\nfunc U() {}\n",
              "package lib\n\nimport \"example.org/m/lib/test\"\n\nfunc U() { test.T() }\n"},
             {"a test that reaches nothing", "a/a_test.go", "package a\n\nfunc TestA() { A() }\n",
              "package a\n\nfunc TestA() { TestA() }\n"},
             {"all names of a module", "py/names.py", "import os\n", "from base import *\n"},
             {"a header of the repository", "c/a.c", "int f() {}\n", "#include \"a.h\"\nint f() {}\n"},
             {"what a module is as a whole", "ts/w.js", "module.exports = 1\n", "module.exports = function f() {}\n"},
             {"what all files see", "ts/g.d.ts", "declare const e: number\n", "declare const g: number\n"},
             {"a module in another file", "rs/src/lib.rs", "pub mod b;\n", "pub mod b;\npub mod a;\n"},
         }) {
        write(path, before);
        static_cast<void>(is_made_anew(what + ", before"));
        write(path, after);
        EXPECT_TRUE(is_made_anew(what)) << what;
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
