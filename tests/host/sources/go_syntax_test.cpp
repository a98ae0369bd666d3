// What Go files state about names.
#include "tests/host/sources/outlined.h"
#include "tests/host/syntax/syntax_text.h"

#include "host/sources/outline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <utility>
#include <vector>

namespace host::sources {
namespace {

Outline go_names(const std::string& text) {
    return names_in("a.go", "package p\n" + text);
}

// The mentions in the body of a function, without that of the parameter's type.
std::string go_mentions(const std::string& statements) {
    const std::string mentions = mentions_of(*go_names("func f(s *Store) {\n" + statements + "\n}").syntax);
    return mentions.substr(mentions.find('\n') + 1);
}

void go_expect(const std::vector<std::pair<std::string, std::string>>& cases) {
    for (const auto& [statements, mentions] : cases) {
        EXPECT_EQ(go_mentions(statements), mentions) << statements;
    }
}

TEST(GoSyntax, NamesOfLocalsAreNoMentionsAndTheirTypesAreKnown) {
    go_expect({
        {"s.x = 1", "3 value of(Store').x\n"},
        {"t, err := s.get(); t.x()", "3 call of(Store').get\n3 call call(of(Store').get)[0].x\n"},
        {"var t []T; t[0].x()", "3 type T'\n3 call element(of(list(T'))).x\n"},
        {"t := (*T)(nil); t.x()", "3 value T\n3 call call(T).x\n"},
        {"t := map[K]T{}; for k, v := range t { k.x(v.y) }",
         "3 type K'\n3 type T'\n3 call key(of(map(K' T'))).x\n3 value element(of(map(K' T'))).y\n"},
        {"t := make(chan T); for v := range t { v.x() }; (<-t).y()",
         "3 call make\n3 type T'\n3 call key(of(map(T' T'))).x\n3 call element(of(map(T' T'))).y\n"},
        {"switch t := s.(type) { case T: t.x(); case A, B: t.y() }",
         "3 type T'\n3 call of(T').x\n3 type A'\n3 type B'\n3 call of(Store').y\n"},
        {"t, ok := s.(T); ok = t.x", "3 type T'\n3 value of(T').x\n"},
        {"append(s.all, nil)[0].x()", "3 call append\n3 value of(Store').all\n3 call element(of(Store').all).x\n"},
        {"t := func(n int) (a, b T) { n = 1; return }; t().x()",
         "3 type T'\n3 type int'\n3 call call(of(function(tuple(T' T')))).x\n"},
        {"{ n := 1 }; n++; { s := s.x; s.y = 1 }", "3 value n\n3 value of(Store').x\n3 value of(Store').x.y\n"},
        {"const c T = 1; c.x()", "3 type T'\n3 call of(T').x\n"},
        {"_ = s; _, a := s.x, 1; _ = a", "3 value of(Store').x\n"},
        {"again: for { continue again }", ""},
    });
}

TEST(GoSyntax, ANameThatIsBoundAgainInItsScopeKeepsItsType) {
    go_expect({
        {"var a T; a, b := g(); a.x()", "3 type T'\n3 call g\n3 call of(T').x\n"},
        {"s, b := g(); s.x()", "3 call g\n3 call of(Store').x\n"},
        {"if s, b := g(); b { s.x() }", "3 call g\n3 call call(g)[0].x\n"},
    });
}

TEST(GoSyntax, KeysOfLiteralsAreMembersOfTheirTypes) {
    go_expect({
        {"T{a: s}", "3 type T'\n3 key of(T').a\n"},
        {"[]*T{{a: 1}}", "3 type T'\n3 key element(of(list(T'))).a\n"},
        {"map[K]T{{k: 1}: {a: b}}", "3 type K'\n3 type T'\n3 key key(of(map(K' T'))).k\n"
                                    "3 key element(of(map(K' T'))).a\n3 value b\n"},
        {"map[string]int{a: 1}", "3 type string'\n3 type int'\n3 value a\n"},
        {"u.T{a: 1}", "3 value u\n3 type u.T'\n3 key of(u.T').a\n"},
    });
}

TEST(GoSyntax, TypesOfAFunctionAreItsOwn) {
    go_expect({
        {"type T struct { U; n T }; T{}.n.x()", "3 type U'\n3 type @T x2\n3 value of(@T).n\n3 call of(@T).n.x\n"},
        {"t := []struct{ n N }{{n: 1}}; t[0].n.x()",
         "3 type N'\n3 key element(of(list(@))).n\n3 value element(of(list(@))).n\n"
         "3 call element(of(list(@))).n.x\n"},
    });
    const Outline outline = go_names("func f() { type T struct { n int } }");
    EXPECT_TRUE(std::ranges::all_of(outline.syntax->declarations, [&](const syntax::Declaration& declaration) {
        return declaration.is_hidden || outline.syntax->name(declaration.name) == "f";
    }));
}

// The declarations with their types and owners.
std::string go_declarations(const std::string& text) {
    const syntax::Syntax syntax = *go_names(text).syntax;
    std::string all;
    for (const syntax::Declaration& declaration : syntax.declarations) {
        const std::string owner = declaration.owner == syntax::UNKNOWN ? "" : text_of(syntax, declaration.owner) + " ";
        std::string bases;
        for (const syntax::ExpressionId base : syntax.list(declaration.bases)) {
            bases += " < " + text_of(syntax, base);
        }
        all +=
            owner + std::string(syntax.name(declaration.name)) + " " + text_of(syntax, declaration.type) + bases + "\n";
    }
    return all;
}

TEST(GoSyntax, DeclarationsStateTypesOwnersAndBases) {
    EXPECT_EQ(go_declarations("func (l *L[E]) f(e E) (E, error) { return l.g(e) }"),
              "L' f tuple(parameter0(?) error')\n");
    EXPECT_EQ(go_declarations("func f[T I](t T) T { return t.x }"), "f ?\n");
    EXPECT_EQ(go_declarations("type L[E I] struct { *B; u.C[E]; e, d E }"),
              "L ? < B' < u.C'<parameter0(I')>\nB of(B')\nC of(u.C'<parameter0(I')>)\n"
              "e of(parameter0(I'))\nd of(parameter0(I'))\n");
    EXPECT_EQ(go_declarations("type I interface { B; int | string; f() T }"), "I ? < B'\nf T'\n");
    EXPECT_EQ(go_declarations("type F func(a A) (T, error)\ntype M = map[K]T"),
              "F function(tuple(T' error'))\nM map(K' T')\n");
    EXPECT_EQ(go_declarations("const ( A C = iota; B; _; D )\nvar a, b = f()"),
              "A of(C')\nB of(C')\nD of(C')\na call(f)[0]\nb call(f)[1]\n");
}

TEST(GoSyntax, ImportsBindNamesOrAllOfAPackage) {
    const syntax::Syntax syntax = *go_names("import (\n\"a/b\"\nc `d`\n. \"e\"\n)").syntax;
    std::string imports;
    for (const syntax::Import& import : syntax.imports) {
        imports += std::string(syntax.name(import.name)) + "=" + std::string(syntax.name(import.module)) +
                   (import.is_star ? "* " : " ");
    }
    EXPECT_EQ(imports, "=a/b c=d =e* ");
    EXPECT_EQ(syntax.name(syntax.package), "p");
}

TEST(GoSyntax, ConstraintsStandAboveThePackageClause) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"// A file.\n\n//go:build linux && !cgo\n// +build linux,!cgo\n\n", "linux && !cgo"},
        {"// +build a,!b c\n// +build d\n\n", "(a && !b || c) && (d)"},
        {"package q\n//go:build linux\n", ""},
    };
    static const std::atomic<bool> never = false;
    for (const auto& [head, constraint] : cases) {
        const Outline outline = outline_of(head + "package p\n", "", "a.go", never, Content::NAMES).value();
        EXPECT_EQ(outline.syntax->name(outline.syntax->constraint), constraint);
    }
}

TEST(GoSyntax, WhatTheOutlineHasOutsideOfFunctionsIsDeclaredWhereItStands) {
    const Outline outline =
        go_names("type ( A struct { B; *c.D; E[F]; g, h struct { i int } }; J = K; L interface { m() } )\n"
                 "const ( N, O = 1, 2 )\nvar ( p int; q = func() { r := 1 } )\nfunc (s A) t() {}\nfunc u() {}");
    for (const SourceDeclaration& declaration : outline.declarations) {
        const auto found =
            std::ranges::find(outline.syntax->declarations, declaration.offset, &syntax::Declaration::offset);
        ASSERT_NE(found, outline.syntax->declarations.end()) << declaration.name;
        EXPECT_EQ(outline.syntax->name(found->name), declaration.name);
        EXPECT_FALSE(found->is_hidden) << declaration.name;
    }
    EXPECT_EQ(outline.declarations.size(), 16);
}

}  // namespace
}  // namespace host::sources
