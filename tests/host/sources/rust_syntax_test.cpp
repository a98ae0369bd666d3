// What Rust files state about names.
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

Outline rust_names(const std::string& text) {
    return names_in("a.rs", text);
}

// The mentions in the body of a function, without that of the parameter's type.
std::string rust_mentions(const std::string& statements) {
    const std::string mentions = mentions_of(*rust_names("fn f(s: &Store) {\n" + statements + "\n}").syntax);
    return mentions.substr(mentions.find('\n') + 1);
}

TEST(RustSyntax, NamesOfLocalsAreNoMentionsAndTheirTypesAreKnown) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"s.x;", "2 value of(pointer(Store'))..x\n"},
        {"let t: T = g(); t.x();", "2 type T'\n2 call g\n2 call of(T').x\n"},
        {"if let Some(t) = g() { t.x() }", "2 call g\n2 call awaited(call(g)).x\n"},
        {"let (a, b) = g()?; b.x;", "2 call g\n2 value one_of(awaited(call(g))[1] awaited(call(g))..1)..x\n"},
        {"let T { x, y: z } = g(); z.n();",
         "2 call g\n2 type T'\n2 key of(T')..x\n2 key of(T')..y\n2 call of(T')..y.n\n"},
        {"match g() { E::A(t) => t.x(), NONE => {} }",
         "2 call g\n2 value E\n2 value E.A\n2 call one_of(of(E.A)[0] of(E.A)..0).x\n2 value NONE\n"},
        {"for t in s.all { t.x() }", "2 value of(pointer(Store'))..all\n2 call element(of(pointer(Store'))..all).x\n"},
        {"g(|t| t.x());", "2 call g\n2 call ?.x\n"},
        {"h(); fn h() {} s::h();", "2 value s\n2 call s.h\n"},
        {"'a: loop { break 'a; }", ""},
    };
    for (const auto& [statements, mentions] : cases) {
        EXPECT_EQ(rust_mentions(statements), mentions) << statements;
    }
}

TEST(RustSyntax, ArgumentsOfMacrosAreReadWhereTheyAreExpressions) {
    EXPECT_EQ(rust_mentions("assert_eq!(g(s), vec![T::new(); 2], \"{}\", n = N);"),
              "2 call g\n2 value T\n2 call T.new\n2 value N\n");
    EXPECT_EQ(rust_mentions("own!(g(s));"), "2 call own\n");
}

TEST(RustSyntax, MembersOfAnImplBelongToItsTypeButThoseOfATraitToThat) {
    const syntax::Syntax syntax =
        *rust_names("impl<T: B> S<T> { fn a(self) -> Self { self.t } }\nimpl Tr for S { fn b() {} }").syntax;
    std::string members;
    for (const syntax::Declaration& declaration : syntax.declarations) {
        members += std::string(syntax.name(declaration.name)) + " of " + text_of(syntax, declaration.owner) + ", ";
    }
    EXPECT_EQ(members, "a of S'<parameter0(B')>,  of S',  of ?, b of ?, ");
    EXPECT_EQ(text_of(syntax, syntax.list(syntax.declarations[1].bases).front()), "Tr'");
    EXPECT_TRUE(syntax.declarations[2].is_hidden);
}

TEST(RustSyntax, TreesOfUseAreFlattened) {
    const syntax::Syntax syntax =
        *rust_names("use a::{self, b::{C as D, *}};\npub use crate::e;\nmod m { use super::f; }").syntax;
    EXPECT_EQ(mentions_of(syntax), "1 import import(a )\n1 import import(a b)\n1 import import(a::b C)\n"
                                   "2 import import(crate e)\n3 import import(super f)\n");
    std::string bound;
    for (const syntax::Import& import : syntax.imports) {
        bound += std::string(syntax.name(import.name)) + (import.is_star ? "*" : "") + (import.is_exported ? "!" : "") +
                 (import.around == syntax::NO_DECLARATION ? "" : "@") + " ";
    }
    EXPECT_EQ(bound, " a  D * e! f@ ");
}

TEST(RustSyntax, WhatTheOutlineHasOutsideOfFunctionsIsDeclaredWhereItStands) {
    const Outline outline =
        rust_names("mod n; struct S { x: u8 } enum E { A, B { y: u8 } } trait T { type O; const K: u8; fn m(); }\n"
                   "const C: u8 = 1; static D: u8 = 1; type L = S; macro_rules! q { () => {} }\n"
                   "#[cfg(test)] mod t { fn r#in() { fn local() {} } }");
    std::string declared;
    for (const SourceDeclaration& declaration : outline.declarations) {
        const auto found =
            std::ranges::find(outline.syntax->declarations, declaration.offset, &syntax::Declaration::offset);
        if (found != outline.syntax->declarations.end()) {
            declared += std::string(outline.syntax->name(found->name)) + (found->is_in_test ? "? " : " ");
        }
    }
    EXPECT_EQ(declared, "n S .x E A B .y T O K m C D L q t? in? ");
}

}  // namespace
}  // namespace host::sources
