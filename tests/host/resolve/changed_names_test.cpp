// Which files see a change: those that are told, and no others.
#include "host/resolve/changed_names.h"

#include "host/resolve/differences.h"
#include "tests/host/resolve/resolved.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace host::resolve {
namespace {

using Sources = std::map<std::string, std::string>;

bool is_seen_in(const File& file, const ChangedNames& names) {
    using Change = ChangedNames::Change;
    Change most = Change::UNCHANGED;
    for (syntax::NameId name = 0; name < file.syntax->names.size(); ++name) {
        most = std::max(most, names.change_of(file.syntax->name(name)));
    }
    return most == Change::EVERYWHERE || (most == Change::IN_MODULES && names.are_looked_up_in(file));
}

// The paths of the other files that see that a file has another text, or "unknown". What the rest refers to must stay.
std::string seeing(Sources sources, const std::string& path, const std::string& text) {
    const Stated before = stated(sources);
    sources.at(path) = text;
    const Stated now = stated(sources);
    const auto changed = static_cast<FileId>(std::distance(sources.begin(), sources.find(path)));
    const std::vector<File>& files = now.repository.files;
    ChangedNames names;
    if (!add_differences(before.repository.files[changed], files[changed], files, names) ||
        !names.add_leading_to_these(files)) {
        return "unknown";
    }
    const Resolver old_resolver(before.repository);
    const Resolver resolver(now.repository);
    std::string seen_in;
    for (FileId file = 0; file < files.size(); ++file) {
        if (file != changed && is_seen_in(files[file], names)) {
            seen_in += (seen_in.empty() ? "" : " ") + files[file].path;
        } else if (file != changed) {
            EXPECT_EQ(references_text(now.repository, resolver, file),
                      references_text(before.repository, old_resolver, file));
        }
    }
    return seen_in;
}

TEST(ChangedNames, AreThoseOfDeclarationsThatDiffer) {
    const Sources sources{{"A.java", "class A { int a; void m(A a) {} static class I { int i; } }\n"},
                          {"ua.java", "class Ua extends A { int fa() { return a; } }\n"},
                          {"ui.java", "class Ui { int fi(A.I x) { return x.i; } }\n"},
                          {"um.java", "class Um extends A { void fm() { m(this); } }\n"}};
    const auto after = [&](const std::string& text) { return seeing(sources, "A.java", text); };
    EXPECT_EQ(after("class A { static class I { int i; }\n\n void m(A b) { b.a = 1; } int a; }\n"), "");
    EXPECT_EQ(after("class A { long a; void m(A a) {} static class I { int i; } }\n"), "ua.java");
    EXPECT_EQ(after("class A { int a; void m(Um a) {} static class I { int i; } }\n"), "um.java");
    EXPECT_EQ(after("class A { int a; void m(A a) {} void m(int a) {} static class I { int i; } }\n"), "um.java");
    EXPECT_EQ(after("class A { int a; void m(A a) {} static class J { int i; } }\n"), "ui.java");
    EXPECT_EQ(after("class A { int a; void m(A a) {} static class I { int j; } }\n"), "ui.java");
    EXPECT_EQ(after("class A extends B { int a; void m(A a) {} static class I { int i; } }\n"),
              "ua.java ui.java um.java");
}

TEST(ChangedNames, LeadOnThroughWhatDeclarationsState) {
    const std::string use = "from make import make\nmake().go()\n";
    for (const std::string make : {
             "from a import A\ndef make() -> A: ...\n",
             "from a import A\nmake = lambda: A()\n",
             "import a\ndef make(): return a.A()\n",
             "def make():\n    from a import A\n    return A()\n",
             "from a import A\nclass C(A): pass\ndef make(): return C()\n",
             "from a import A\ndef make():\n    class L(A): pass\n    return L()\n",
         }) {
        const Sources sources{{"a.py", "class B:\n    def go(self): pass\nclass A: pass\n"},
                              {"make.py", make},
                              {"other.py", "def go(): pass\ndef other(): go()\n"},
                              {"use.py", use}};
        EXPECT_EQ(seeing(sources, "a.py", "class B:\n    def go(self): pass\nclass A(B): pass\n"), "make.py use.py")
            << make;
        EXPECT_EQ(seeing(sources, "a.py", "class B:\n    def went(self): pass\nclass A: pass\n"), "other.py use.py")
            << make;
    }
}

TEST(ChangedNames, HaveTheTypesWhoseMembersAreLookedUpWithoutAName) {
    const Sources python{{"a.py", "class A:\n    def go(self): pass\n"},
                         {"make.py", "from a import A\ndef make() -> A: ...\n"},
                         {"use.py", "from make import make\nmake()[0].go()\n"}};
    EXPECT_EQ(seeing(python, "a.py", "class A:\n    def go(self): pass\n    def __getitem__(self, at): return self\n"),
              "make.py use.py");
    const Sources rust{{"lib.rs", "pub mod s;\npub mod t;\npub mod imp;\npub mod make;\npub mod use_it;\n"},
                       {"s.rs", "pub struct S;\n"},
                       {"t.rs", "pub trait T { fn t(&self) {} }\npub trait U {}\n"},
                       {"imp.rs", "use crate::s::S;\nuse crate::t::{T, U};\nimpl U for S {}\n"},
                       {"make.rs", "pub fn make() -> crate::s::S { crate::s::S }\n"},
                       {"use_it.rs", "pub fn f() { crate::make::make().t() }\n"}};
    EXPECT_EQ(seeing(rust, "imp.rs", "use crate::s::S;\nuse crate::t::{T, U};\nimpl T for S {}\n"),
              "lib.rs make.rs s.rs use_it.rs");
}

TEST(ChangedNames, OfImportsAreSeenWhereTheyAreTakenFromAModule) {
    const Sources sources{{"a.py", "class A:\n    x = 1\n"},
                          {"both.py", "from a import gone as a\nfrom here import *\na.A\n"},
                          {"has.py", "import a\ndef f(): return a.A().x\n"},
                          {"here.py", "import sys\n"},
                          {"member.py", "import here\nhere.a.A\n"},
                          {"named.py", "from here import a as b\ndef g(): return b.A()\n"},
                          {"next.py", "from named import g\ng().x\n"},
                          {"passed.py", "from named import b\nb.A\n"},
                          {"star.py", "from here import *\na.A\n"}};
    const std::string seeing_it = "both.py member.py named.py next.py passed.py star.py";
    EXPECT_EQ(seeing(sources, "here.py", "import sys\nimport a\n"), seeing_it);
    EXPECT_EQ(seeing(sources, "here.py", ""), "");
    const Sources typescript{{"a.ts", "export function f() {}\nexport function g() {}\n"},
                             {"index.ts", "import { g } from './a'\nexport { f as e } from './a'\n"},
                             {"other.ts", "import { g } from './a'\ng()\n"},
                             {"use.ts", "import { e } from './index'\ne()\n"}};
    EXPECT_EQ(seeing(typescript, "a.ts", "export function h() {}\nexport function g() {}\n"), "index.ts use.ts");
    EXPECT_EQ(seeing(typescript, "index.ts", "export { f as e } from './a'\n"), "");
    EXPECT_EQ(seeing(typescript, "index.ts", "import { g } from './a'\nexport { g as e } from './a'\n"), "use.ts");
}

TEST(ChangedNames, AreThoseOfDeclarationsThatLookUpWhatTheirFileImports) {
    const Sources go{{"a/a.go", "package a\n\ntype T struct{}\n\nfunc (t T) M() {}\n"},
                     {"b/b.go", "package b\n\nfunc B() a.T { return x }\n\nfunc C() int { return 1 }\n"},
                     {"go.mod.go", "package m\n"},
                     {"use.go", "package m\n\nimport \"b\"\n\nfunc u() { b.B().M() }\n"}};
    EXPECT_EQ(
        seeing(go, "b/b.go", "package b\n\nimport \"a\"\n\nfunc B() a.T { return x }\n\nfunc C() int { return 1 }\n"),
        "use.go");
    const Sources java{{"p/A.java", "package p;\npublic class A { public void m() {} }\n"},
                       {"q/B.java", "package q;\npublic class B { public A b() { return null; } }\n"},
                       {"q/U.java", "package q;\nclass U { void u(B x) { x.b().m(); } }\n"}};
    EXPECT_EQ(seeing(java, "q/B.java", "package q;\nimport p.A;\npublic class B { public A b() { return null; } }\n"),
              "q/U.java");
}

TEST(ChangedNames, AreThoseOfMembersOfAnotherTypeThanBefore) {
    const Sources rust{{"a.rs", "pub use crate::s::S as A;\n"},
                       {"imp.rs", "use crate::a::A;\nimpl A { pub fn m(&self) {} }\n"},
                       {"lib.rs", "mod a;\nmod imp;\nmod s;\nmod use_it;\nmod w;\n"},
                       {"s.rs", "pub struct S;\npub struct R;\n"},
                       {"use_it.rs", "pub fn f(w: &crate::w::W) { w.x.m() }\n"},
                       {"w.rs", "pub struct W { pub x: crate::s::R }\n"}};
    EXPECT_EQ(seeing(rust, "a.rs", "pub use crate::s::R as A;\n"), "imp.rs use_it.rs");
}

TEST(ChangedNames, AreThoseOfMembersOfWhatALibraryMayHave) {
    const Sources c{{"h.h", "enum e { A, B };\n"}, {"use.c", "#include \"h.h\"\nint f(void) { return A; }\n"}};
    EXPECT_EQ(seeing(c, "h.h", "#ifndef HAVE_E\nenum e { A, B };\n#endif\n"), "use.c");
}

TEST(ChangedNames, AreFoundInPaths) {
    const Sources java{{"p/Base.java", "package p;\npublic class Base { public static class I { public int i; } }\n"},
                       {"p/Outer.java", "package p;\npublic class Outer {}\n"},
                       {"q/U.java", "package q;\nimport p.Outer.I;\nclass U { int u(I x) { return x.i; } }\n"}};
    EXPECT_EQ(seeing(java, "p/Outer.java", "package p;\npublic class Outer extends Base {}\n"), "q/U.java");
}

TEST(ChangedNames, AreUnknownWhereAFileMaySeeMoreThanNamesTell) {
    const Sources sources{{"c.c", "#include <stdio.h>\n#include \"c.h\"\nint c;\n"},
                          {"c.h", "int h;\n"},
                          {"g.d.ts", "declare const g: number\n"},
                          {"lib.rs", "mod m;\n"},
                          {"m.rs", "pub use crate::n as k;\n"},
                          {"n.rs", "pub fn f() {}\n"},
                          {"p.go", "package p\n"},
                          {"r.rs", "use crate::m::k::*;\n"},
                          {"s.py", "import os\n"},
                          {"w.js", "module.exports = 1\n"}};
    for (const auto& [path, text] : Sources{
             {"c.c", "#include <stdio.h>\n#include \"c.h\"\n#include \"d.h\"\nint c;\n"},
             {"c.h", "#include <stdio.h>\nint h;\n"},
             {"g.d.ts", "declare const h: number\n"},
             {"lib.rs", "mod m;\nmod n;\n"},
             {"m.rs", "pub use crate::lib as k;\n"},
             {"p.go", "package q\n"},
             {"s.py", "from os import *\n"},
             {"w.js", "module.exports = function f() {}\n"},
         }) {
        EXPECT_EQ(seeing(sources, path, text), "unknown") << path;
    }
    EXPECT_EQ(seeing(sources, "c.c", "#include <string.h>\n#include <stdio.h>\n#include \"c.h\"\nint c;\n"), "");
    EXPECT_EQ(seeing(sources, "c.c", "#include \"c.h\"\nint c;\n"), "unknown");
}

}  // namespace
}  // namespace host::resolve
