#include "tests/host/resolve/resolved.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace host::resolve {
namespace {

TEST(Resolver, AMemberIsFoundByTheTypeThatTheSourceStates) {
    EXPECT_EQ(resolved({{"a/Store.java", "package a;\n"
                                         "public class Store {\n"
                                         "    Item first;\n"
                                         "    public Item find(int key) { return first; }\n"
                                         "}\n"
                                         "class Item { Item next; }\n"},
                        {"b/Use.java", "package b;\n"
                                       "import a.Store;\n"
                                       "class Use {\n"
                                       "    Object find(Store store, java.util.List other) {\n"
                                       "        other.find(1);\n"
                                       "        return store.find(1).next.next;\n"
                                       "    }\n"
                                       "}\n"}}),
              "a/Store.java: local Store.first of a/Store.java, 1 from line 4\n"
              "a/Store.java: local Item of a/Store.java, 3 from line 3\n"
              "b/Use.java: import Store of a/Store.java, 2 from line 2\n"
              "b/Use.java: import Store.find() of a/Store.java, 1 from line 6\n"
              "b/Use.java: import Item.next of a/Store.java, 2 from line 6\n");
}

// `var` takes the type of what refers to it: neither is known before the other.
TEST(Resolver, WhatRefersToItselfMeansNothingAndEndsSo) {
    EXPECT_EQ(resolved({{"A.java", "class A {\n"
                                   "    A next;\n"
                                   "    A turn(A a) {\n"
                                   "        var b = a.turn(a);\n"
                                   "        for (var c = b; ; ) { c = c.next; var d = d.next; }\n"
                                   "    }\n"
                                   "}\n"
                                   "class B extends C { int x; { y(); } }\n"
                                   "class C extends B { }\n"}}),
              "A.java: local A of A.java, 3 from line 2\n"
              "A.java: local A.next of A.java, 1 from line 5\n"
              "A.java: local A.turn() of A.java, 1 from line 4\n"
              "A.java: local B of A.java, 1 from line 9\n"
              "A.java: local C of A.java, 1 from line 8\n");
}

TEST(Resolver, TokensLeadToWhatBindingsSay) {
    const Stated all = stated({{"a.py", "from p import B\nfrom p.c import C\nclass A: pass\nA(B, C, D, B)\n"},
                               {"p/__init__.py", "if x:\n    class C: pass\nelse:\n    class C: pass\n"},
                               {"p/b.py", "from . import C\nfrom . import b\n"},
                               {"p/c.py", "from p.b import B\n"}});
    const Resolver resolver(all.repository);
    const auto tokens = [&](FileId file) {
        std::string text;
        for (const TokenTarget& token : resolver.tokens_of(file)) {
            text += std::to_string(token.place.offset) + " " + name_of(all.repository, token.target) + "; ";
        }
        return text;
    };
    EXPECT_EQ(tokens(0), "5 p/__init__.py; 21 p/c.py; 48 A; ") << "B and C have no declaration there";
    EXPECT_EQ(tokens(2), "30 p/b.py; ") << "which C is meant, nobody knows";
    EXPECT_EQ(resolver.imports_of(0), (std::vector<FileId>{1, 3}));
    EXPECT_EQ(resolver.imports_of(2), std::vector<FileId>{1}) << "for C, not for b";
}

TEST(Resolver, WhatCommentsTakeFromOtherFilesIsNoImport) {
    const Stated all = stated({{"a.js", "/** @type {import('./b').B} */ let b = require('./c').C;"},
                               {"b.js", "exports.B = class {};"},
                               {"c.js", "exports.C = class {};"}});
    EXPECT_EQ(Resolver(all.repository).imports_of(0), std::vector<FileId>{2});
}

TEST(Resolver, OverloadsThatNothingTellsApartAreAmbiguous) {
    EXPECT_EQ(resolved({{"A.java", "class A {\n"
                                   "    static void f(int a) { f(1, 2); }\n"
                                   "    static void f(int a, int b) { f(unknown); }\n"
                                   "    static void f(String a) { }\n"
                                   "}\n"}}),
              "A.java: ambiguous A.f() of A.java, 1 from line 3\n"
              "A.java: local A.f() of A.java, 1 from line 2\n"
              "A.java: ambiguous A.f() of A.java, 1 from line 3\n");
}

// Sources of all languages that refer to one another in circles.
std::map<std::string, std::string> circles() {
    std::map<std::string, std::string> sources;
    for (int at = 0; at < 8; ++at) {
        const std::string own = std::to_string(at);
        const std::string next = std::to_string((at + 1) % 8);
        const std::string after = std::to_string((at + 5) % 8);
        sources["p/m" + own + ".py"] = "from .m" + next + " import *\nfrom .m" + after + " import f" + after +
                                       " as g\n" + "def f" + own + "(): return f" + next + "()\nx = g().y\n";
        sources["t/m" + own + ".ts"] = "export * from './m" + next + "';\nimport {C" + after + ", C" + next +
                                       "} from './m" + next + "';\nexport class C" + own + " extends C" + next +
                                       " { a" + own + "() { return new C" + after + "().a" + next + "(); } }\n";
        sources["j/C" + own + ".java"] = "package j;\nclass C" + own + " extends C" + next + " { void a" + own +
                                         "() { a" + after + "(); var v = new C" + after + "().next; } C" + after +
                                         " next; }\n";
        sources["c/h" + own + ".h"] = "#include \"h" + next + ".h\"\nint f" + own + "(void);\n#define M " + own + "\n";
        sources["c/c" + own + ".c"] = "#include \"h0.h\"\nint f" + own + "(void) { return f" + after + "() + M; }\n";
        sources["g/g" + own + ".go"] = "package g\ntype T" + own + " struct { *T" + next + "; x" + own +
                                       " int }\nfunc (t *T" + own + ") f" + own + "() { t.x" + after + "; t.f" + after +
                                       "() }\n";
        sources["r/m" + own + ".rs"] =
            "pub use super::m" + next + "::*; pub struct S" + own + "; fn f(s: S" + after + ") {}\n";
        sources["r/lib.rs"] += "pub mod m" + own + ";\n";
    }
    return sources;
}

TEST(Resolver, AllThreadsFindTheSameInWhateverOrderTheyAsk) {
    const Stated all = stated(circles());
    const std::size_t files = all.repository.files.size();
    std::vector<std::string> expected;
    for (FileId file = 0; file < files; ++file) {  // each by a resolver that knows nothing yet
        expected.push_back(references_text(all.repository, Resolver(all.repository), file));
    }
    const Resolver resolver(all.repository);
    std::vector<std::vector<std::string>> found(4, std::vector<std::string>(files));
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < found.size(); ++thread) {
        threads.emplace_back([&, thread] {
            for (std::size_t at = 0; at < files; ++at) {
                const std::size_t file = (thread % 2 == 0 ? at : files - 1 - at + thread) % files;
                found[thread][file] = references_text(all.repository, resolver, static_cast<FileId>(file));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_GT(std::ranges::count_if(expected, [](const std::string& text) { return !text.empty(); }), 40);
    for (const std::vector<std::string>& each : found) {
        EXPECT_EQ(each, expected);
    }
}

TEST(Resolver, TheOrderOfFilesChangesNothing) {
    Stated all = stated(circles());
    const auto lines = [&] {
        const Resolver resolver(all.repository);
        std::vector<std::string> sorted;
        for (FileId file = 0; file < all.repository.files.size(); ++file) {
            std::istringstream text(references_text(all.repository, resolver, file));
            for (std::string line; std::getline(text, line);) {
                sorted.push_back(line);
            }
        }
        std::ranges::sort(sorted);
        return sorted;
    };
    const std::vector<std::string> expected = lines();
    std::ranges::reverse(all.repository.files);
    EXPECT_EQ(lines(), expected);
    std::vector<File>& files = all.repository.files;
    std::rotate(files.begin(), files.begin() + 17, files.end());
    EXPECT_EQ(lines(), expected);
}

TEST(Resolver, BasesAreFollowedHoweverManyAndInCirclesOnce) {
    struct Form {
        std::string path, first, before, between, after, use;
    };
    const std::vector<Form> forms{
        {"a.py", "class C0:\n    def m(self): pass\n", "class C", "(C", "): pass\n", "def f(c: C@): c.m(); c.n()\n"},
        {"a.ts", "class C0 { m() {} }\n", "class C", " extends C", " {}\n", "function f(c: C@) { c.m(); c.n(); }\n"},
        {"A.java", "class C0 { void m() {} }\n", "class C", " extends C", " {}\n",
         "class U { void f(C@ c) { c.m(); c.n(); } }\n"},
        {"a.cc", "struct C0 { void m() {} };\n", "struct C", " : C", " {};\n", "void f(C@ c) { c.m(); c.n(); }\n"},
        {"a.go", "package p\ntype C0 struct { m int }\n", "type C", " struct { C", " }\n",
         "func f(c C@) { c.m; c.n }\n"},
    };
    for (const Form& form : forms) {
        const auto text = [&](int deepest, const std::string& first) {
            std::string classes = first;
            for (int at = 1; at <= deepest; ++at) {
                classes += form.before + std::to_string(at) + form.between + std::to_string(at - 1) + form.after;
            }
            const std::size_t number = form.use.find('@');
            return classes + form.use.substr(0, number) + std::to_string(deepest) + form.use.substr(number + 1);
        };
        EXPECT_NE(resolved({{form.path, text(50, form.first)}}).find("local C0.m"), std::string::npos) << form.path;
        EXPECT_EQ(resolved({{form.path, text(50, form.first)}}).find(".n"), std::string::npos) << form.path;
        EXPECT_EQ(resolved({{form.path, text(1'000, form.first)}}).find("ambiguous"), std::string::npos) << form.path;
        const std::string circle = form.before + "0" + form.between + "3" + form.after;
        EXPECT_EQ(resolved({{form.path, text(3, form.path == "a.go" ? "package p\n" + circle : circle)}}).find("C3.m"),
                  std::string::npos)
            << form.path;
    }
}

TEST(Resolver, WhatLeadsNowhereInTheRepositoryIsCountedUnlessItIsForeign) {
    const Stated all = stated(
        {{"a.py", "from other import f\nimport b\nf()\nf.x\nunbound()\nb.gone\nb.g()\n"}, {"b.py", "def g(): pass\n"}});
    const References found = Resolver(all.repository).references_of(0);
    EXPECT_EQ(found.unresolved, 2);  // unbound, gone
    ASSERT_EQ(found.references.size(), 2U);
    EXPECT_EQ(found.references.front().line, 7U);
}

TEST(Resolver, OnlyWhatHasADefinitionIsDefinedElsewhere) {
    const Stated all =
        stated({{"a.c", "int f(void) { return 1; }\nstatic int s(void) { return 1; }\nint t(int a) { return a; }\n"},
                {"a.h", "int f(void);\nint s(void);\nint t(void);\nint none(void);\nstruct S;\n"},
                {"s.h", "struct S { int a; };\n"}});
    const Resolver resolver(all.repository);
    std::string elsewhere;
    const syntax::Syntax& header = *all.repository.files[1].syntax;
    for (syntax::DeclarationId id = 0; id < header.declarations.size(); ++id) {
        elsewhere +=
            resolver.is_defined_elsewhere(1, id) ? std::string(header.name(header.declarations[id].name)) + " " : "";
    }
    EXPECT_EQ(elsewhere, "f S ");
}

}  // namespace
}  // namespace host::resolve
