// What Java files state about names.
#include "tests/host/sources/outlined.h"
#include "tests/host/syntax/syntax_text.h"

#include "host/sources/outline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace host::sources {
namespace {

Outline java_names(const std::string& text) {
    return names_in("A.java", text);
}

// The mentions in the body of a method of class A, without that of the parameter's type.
std::string java_mentions(const std::string& statements) {
    const std::string mentions =
        mentions_of(*java_names("class A {\nvoid f(Store s) {\n" + statements + "\n}}").syntax);
    return mentions.substr(mentions.find('\n') + 1);
}

TEST(JavaSyntax, NamesOfLocalsAreNoMentionsAndTheirTypesAreKnown) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"s.x = 1;", "3 value of(f()/Store').x\n"},
        {"var t = s; t.x();", "3 call call(of(f()/Store').x())\n"},
        {"T[] t = s.all; t[0].x();",
         "3 type f()/T'\n3 value of(f()/Store').all\n3 call call(element(of(list(f()/T'))).x())\n"},
        {"for (var t : s) t.x();", "3 call call(element(of(f()/Store')).x())\n"},
        {"if (s instanceof T t) t.x();", "3 type f()/T'\n3 call call(of(f()/T').x())\n"},
        {"((T) s).x();", "3 type f()/T'\n3 call call(of(f()/T').x())\n"},
        {"try (T t = open()) { t.x(); }", "3 call call(f()/open())\n3 type f()/T'\n3 call call(of(f()/T').x())\n"},
        {"g(t -> t.x()); ", "3 call call(?.x())\n3 call call(f()/g())\n"},
        {"{ int n; } n++;", "3 value f()/n\n"},
        {"class B { void g() {} } new B().g();", "3 call call(of(local(@B)).g())\n"},
        {"out: while (true) break out;", ""},
    };
    for (const auto& [statements, mentions] : cases) {
        EXPECT_EQ(java_mentions(statements), mentions) << statements;
    }
}

TEST(JavaSyntax, NamesStandInWhatTheyAreLookedUpIn) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"this.a = super.b();", "3 value self.a\n3 call call(super.b())\n"},
        {"A.super.b(); C.super.b();",
         "3 type f()/A'\n3 call call(super.b())\n3 type f()/C'\n3 call call(of(f()/C').b())\n"},
        {"switch (s.kind()) { case ONE: }",
         "3 call call(of(f()/Store').kind())\n3 value call(of(f()/Store').kind()).ONE\n"},
        {"s.new Part();", "3 call of(f()/Store').Part'\n"},
        {"g(T::new, s::x, T::y);",
         "3 call f()/T'\n3 value of(f()/Store').x()\n3 value f()/T\n3 value f()/T.y()\n3 call call(f()/g())\n"},
        {"@K(v = 1) int n;", "3 type f()/K'\n3 key f()/K'.v()\n"},
        {"a.b.C.d();", "3 value f()/a\n3 value f()/a.b\n3 value f()/a.b.C\n3 call call(f()/a.b.C.d())\n"},
        {"java.util.List.of();", "3 value import(java.util List)\n3 call call(import(java.util List).of())\n"},
    };
    for (const auto& [statements, mentions] : cases) {
        EXPECT_EQ(java_mentions(statements), mentions) << statements;
    }
}

TEST(JavaSyntax, ImportsNameTheClassesAroundWhatTheyTake) {
    const syntax::Syntax syntax =
        *java_names("package p.q;\nimport a.B.C;\nimport static a.D.e;\nimport a.*;\nclass A {}").syntax;
    EXPECT_EQ(syntax.name(syntax.package), "p.q");
    EXPECT_EQ(mentions_of(syntax), "2 import import(a B)\n2 import import(a.B C)\n3 import import(a D)\n"
                                   "3 import import(a.D e())\n");
    EXPECT_TRUE(syntax.imports.back().is_star);
}

TEST(JavaSyntax, ContainersOfTheLibraryHoldTheirArguments) {
    const auto type_of_field = [](const std::string& text) {
        const syntax::Syntax syntax = *java_names(text).syntax;
        return text_of(syntax, syntax.declarations.back().type);
    };
    EXPECT_EQ(type_of_field("import java.util.*; class A { Map<K, ? extends List<T>[]> m; }"),
              "of(map(A/K' list(list(A/T'))))");
    EXPECT_EQ(type_of_field("import own.List; class A { List<T> l; }"), "of(A/List'<A/T'>)");
    EXPECT_EQ(type_of_field("class A<K, T extends B> { T t; }"), "of(parameter1(B'))");
}

TEST(JavaSyntax, WhatTheOutlineHasOutsideOfMethodsIsDeclaredWhereItStands) {
    const Outline outline = java_names(
        "record R(int a, T... b) { R { b = 1; } static class N<T> { N(int... x) {} T t, u; } enum E { X, Y { void g() {} } }"
        " @interface K { int v() default 1; } interface I { int C = 1; default void m(int a, int b) {} } }");
    std::string declared;
    for (const SourceDeclaration& declaration : outline.declarations) {
        const auto found =
            std::ranges::find(outline.syntax->declarations, declaration.offset, &syntax::Declaration::offset);
        if (found != outline.syntax->declarations.end()) {
            declared += std::string(outline.syntax->name(found->name)) + ":" + std::to_string(found->least_arguments) +
                        "-" + std::to_string(found->most_arguments) + " ";
        }
    }
    EXPECT_EQ(declared,
              "R:0-255 a:0-255 b:0-255 new R():0-255 N:0-255 new N():0-255 t:0-255 u:0-255 E:0-255 X:0-255 Y:0-255 "
              "K:0-255 v():0-0 I:0-255 C:0-255 m():2-2 ");
}

}  // namespace
}  // namespace host::sources
