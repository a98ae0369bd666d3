// What names of Java mean.
#include "tests/host/resolve/resolved.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace host::resolve {
namespace {

// The references of class B to others: "Int.put", "?Int.put" where there are several, in the order of files.
std::string java_references(std::map<std::string, std::string> sources, const std::string& text) {
    sources["B.java"] = text;
    const std::string all = resolved(sources);
    std::string found;
    for (std::size_t at = 0; at < all.size(); at = all.find('\n', at) + 1) {
        const std::string line = all.substr(at, all.find('\n', at) - at);
        if (line.starts_with("B.java: ") && line.find("of B.java") == std::string::npos) {
            const std::size_t name = line.find(' ', 8) + 1;
            found += (line.find("ambiguous") == 8 ? "?" : "") + line.substr(name, line.find(" of ") - name) + " ";
        }
    }
    return found;
}

TEST(Java, ACallIsOfTheOverloadThatItsArgumentsFitBest) {
    // Each has one method, and inherits the others.
    const std::map<std::string, std::string> overloads{
        {"Any.java", "class Any { void put(Object a) {} }"},
        {"Int.java", "class Int extends Long { void put(int a) {} }"},
        {"Long.java", "class Long extends Text { void put(long a) {} }"},
        {"Ints.java", "class Ints extends Any { void put(int[] a) {} }"},
        {"More.java", "class More extends Ints { void put(int a, Object... b) {} }"},
        {"Own.java", "class Own extends More { void put(More a) {} }"},
        {"Text.java", "class Text extends Own { void put(String a) {} char c() { return 'c'; } }"},
    };
    const std::vector<std::pair<std::string, std::string>> cases{
        {"put(1)", "Int Int.put() "},
        {"put('c')", "Int Int.put() "},
        {"put(c())", "Int Int.put() Text.c() "},
        {"put(1L)", "Int Long.put() "},
        {"put(\"a\" + n)", "Int Text.put() "},
        {"put(true)", "Any.put() Int "},
        {"put(this)", "Int Own.put() "},
        {"put(is)", "Int Ints.put() "},
        {"put(is[0])", "Int Int.put() "},
        {"put((Foreign) n)", "?Any.put() Int ?Own.put() "},
        {"put(1, 2, 3)", "Int More.put() "},
        {"put(u.v())", "?Any.put() Int ?Int.put() ?Ints.put() ?Long.put() ?More.put() ?Own.put() ?Text.put() "},
        {"put(1, 2, 3, put())", "Int More.put() "},
        {"put()", "Int "},
    };
    for (const auto& [call, references] : cases) {
        EXPECT_EQ(java_references(overloads, "class B extends Int { void m(Foreign u, int[] is) { " + call + "; } }"),
                  references)
            << call;
    }
}

TEST(Java, NamesAreThoseOfClassesAroundThenImportsThenThePackageThenStars) {
    const std::map<std::string, std::string> sources{
        {"A.java", "package p; public class A { int x; void x() {} static class N {} }"},
        {"q/A.java", "package q; public class A extends p.A {}"},
        {"q/C.java",
         "package q; public class C<T> { C(int a) {} C() {} T t; static int f() { return 0; } static int f; }"},
        {"r/C.java", "package r; public class C {}"},
    };
    const std::vector<std::pair<std::string, std::string>> cases{
        {"package p; class B { A a; }", "A "},
        {"package p; import q.*; class B { A a; }", "A "},
        {"package p; import q.A; class B { A a; }", "A "},
        {"package o; import java.util.*; import r.*; class B { C c; }", "C "},
        {"package o; import q.*; import r.*; class B { C c; }", "?C ?C "},
        {"package o; import foreign.C; class B { C c; }", ""},
        {"package o; import static q.C.f; class B { int g = f() + f; }", "C C.f() C.f "},
        {"package o; class B extends q.A { void g() { x = 1; x(); new N(); } }", "A.x A.x() A.N A "},
        {"package p; class B { void g() { new A() { void h() { x(); } }; } void x() {} }", "A A.x() "},
        {"package o; import q.C; class B { C<p.A> c; void g() { c.t.x(); } }", "A A.x() C C.t "},
        {"package q; class B extends C { B() { super(1); } B(int a) { this(); } }", "C C.new C() "},
        {"package p; import java.util.*; class B { void g(Map<B, List<A>> m) { for (var a : m.get(this)) a.x(); } }",
         "A "},
    };
    for (const auto& [text, references] : cases) {
        EXPECT_EQ(java_references(sources, text), references) << text;
    }
}

TEST(Java, WhatBindsANameInAMethodHidesTheField) {
    const std::vector<std::pair<std::string, bool>> cases{
        {"void m(int x) { use(x); }", false},
        {"void m() { int x = 1; use(x); }", false},
        {"void m() { for (int x : y) use(x); }", false},
        {"void m() { for (int x = 0; x < 3; x++) {} }", false},
        {"void m() { try { } catch (E x) { use(x); } }", false},
        {"void m() { try (R x = r()) { use(x); } }", false},
        {"Object m() { return (x) -> x; }", false},
        {"Object m() { return (int x, int y) -> x + y; }", false},
        {"void m(Object o) { if (o instanceof Foo x) { use(x); } }", false},
        {"void m(Object o) { switch (o) { case Foo x -> use(x); } }", false},
        {"void m() { y.x = 1; y.x(); }", false},
        {"void m(int x) { this.x = 1; }", true},
        {"void m() { { int x = 1; } use(x); }", true},
        {"void m() { for (int x : y) {} use(x); }", true},
        {"Object m() { return y -> x; }", true},
        {"class In { int m() { return x; } }", true},
        {"class In { int x; int m() { return B.this.x; } }", true},
        {"static class In extends B { int m() { return super.x; } }", true},
    };
    for (const auto& [method, is_field] : cases) {
        const std::string found = targets_from("B.java", {{"B.java", "class B { int x; " + method + " }"}});
        EXPECT_EQ(found.find("B.java:B.x") != std::string::npos, is_field) << method << ": " << found;
        EXPECT_EQ(found.find('?'), std::string::npos) << method << ": " << found;
    }
}

TEST(Java, TheNearestClassOfANameIsMeant) {
    const std::map<std::string, std::string> sources{
        {"p/A.java", "package p; public class A { public static class B { void x() {} } B b; private void own() {} }"},
        {"p/B.java", "package p; public class B { void x() {} }"},
        {"q/A.java", "package q; public class A { public void f() {} }"},
    };
    const std::vector<std::pair<std::string, std::string>> cases{
        {"package p; class U { void f(B b) { b.x(); } }", "p/B.java:B p/B.java:B.x()"},
        {"package p; class U { void f(A.B b) { b.x(); } }", "p/A.java:A p/A.java:A.B p/A.java:A.B.x()"},
        {"package p; class U extends A { void f(B b) { b.x(); } }", "p/A.java:A p/A.java:A.B p/A.java:A.B.x()"},
        {"package p; class U { void f(A a) { a.b.x(); } }", "p/A.java:A p/A.java:A.B.x() p/A.java:A.b"},
        {"package p; class U { class B {} void f(B b) { b.x(); } }", "U.java:U.B"},
        {"package p; class U<B> { void f(B b) { b.x(); } }", ""},
        {"package p; class U { <B> void f(B b) { b.x(); } }", ""},
        {"package p; import java.util.B; class U { void f(B b) { b.x(); } }", ""},
        {"package p; class U { void f(java.util.B b) { b.x(); } }", ""},
        {"package p; class U extends A { void f() { own(); this.own(); } }", "p/A.java:A"},
        {"package p; class U { void f(q.A a) { a.f(); } }", "q/A.java:A q/A.java:A.f()"},
        {"package o; class U { void f(A a) { a.f(); } }", ""},
        {"package o; import q.*; class U { void f(A a) { a.f(); } }", "q/A.java:A q/A.java:A.f()"},
        {"package o; import p.*; import q.*; class U { void f(A a) {} }", "?p/A.java:A ?q/A.java:A"},
        {"package o; import p.A.*; class U { void f(B b) {} }", "p/A.java:A p/A.java:A.B"},
    };
    for (const auto& [text, references] : cases) {
        std::map<std::string, std::string> changed = sources;
        changed["U.java"] = text;
        EXPECT_EQ(targets_from("U.java", changed), references) << text;
    }
}

// As where a repository holds two editions of a library.
TEST(Java, MethodsOfTwoClassesOfOneNameAreAmbiguousLikeThose) {
    const std::string text = "package p; public class A { public void f(int a) {} int x; }";
    EXPECT_EQ(targets_from("B.java", {{"jre/p/A.java", text},
                                      {"android/p/A.java", text},
                                      {"B.java", "package p; class B { void g(A a) { a.f(1); a.x = 1; } }"}}),
              "?android/p/A.java:A ?android/p/A.java:A.f() ?android/p/A.java:A.x "
              "?jre/p/A.java:A ?jre/p/A.java:A.f() ?jre/p/A.java:A.x");
}

}  // namespace
}  // namespace host::resolve
