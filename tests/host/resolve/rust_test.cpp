// What names of Rust mean.
#include "tests/host/resolve/resolved.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace host::resolve {
namespace {

// The references of src/b.rs to other files, but for those to modules, in the order of files.
std::string rust_references(std::map<std::string, std::string> sources, const std::string& text) {
    sources["src/b.rs"] = text;
    Package package;
    package.name = "own-crate";
    package.dependencies = {"elsewhere"};
    package.language = "rust";
    const std::string all = resolved(sources, {package});
    std::string found;
    for (std::size_t at = 0; at < all.size(); at = all.find('\n', at) + 1) {
        const std::string line = all.substr(at, all.find('\n', at) - at);
        const std::size_t name = line.find(' ', 10) + 1;
        const std::string target = line.substr(name, line.find(" of ") - name);
        const bool is_module = target == "a" || target == "b" || target == "elsewhere";
        if (line.starts_with("src/b.rs: ") && line.find("of src/b.rs") == std::string::npos && !is_module) {
            found += (line.find("ambiguous") == 10 ? "?" : "") + target + " ";
        }
    }
    return found;
}

TEST(Rust, PathsLeadThroughModulesAndWhatTheyPassOn) {
    const std::map<std::string, std::string> sources{
        {"src/lib.rs", "mod a; mod b; mod elsewhere; pub use a::inner::F; use a::G; struct Top;"},
        {"src/a.rs",
         "pub mod inner { pub struct F; pub fn new() -> F { F } } pub struct G; pub enum E { One, Two(G) }"},
        {"src/elsewhere.rs", "pub struct H;"},
    };
    const std::vector<std::pair<std::string, std::string>> cases{
        {"use crate::a::inner::F;", "inner inner.F "},
        {"use super::a::{inner::{self, F as X}, G}; fn f(x: X, g: G) { inner::new(); }", "inner inner.F inner.new G "},
        {"fn f() { crate::a::inner::new(); super::a::G; }", "inner inner.new G "},
        {"use own_crate::F;", "inner.F src/lib.rs "},
        {"fn f() { own_crate::F; }", "inner.F src/lib.rs "},
        {"use a::G;", "G "},
        {"use elsewhere::H;", ""},
        {"use std::a::G;", ""},
        {"use super::*; fn f(t: Top) {}", "Top "},
        {"mod tests { use super::*; fn f(g: G) {} } use crate::a::G;", "G "},
        {"fn f(g: G) {} fn h() { use crate::a::G; let g: G; }", "G "},
        {"fn f() { use crate::a::E::*; One; } fn g() { One; }", "E E.One "},
        {"use crate::a::E; fn f(a: u8) { match e { E::Two(_) => {} } a::b(); }", "E E.Two "},
    };
    for (const auto& [text, references] : cases) {
        EXPECT_EQ(rust_references(sources, text), references) << text;
    }
}

TEST(Rust, MembersAreThoseOfTheStatedTypeThenOfItsTraits) {
    const std::map<std::string, std::string> sources{
        {"src/lib.rs", "mod a; mod b;"},
        {"src/a.rs",
         "pub struct S<T> { pub len: u8, pub t: T } pub trait Tr { fn tr(&self); fn both(&self) {} }\n"
         "impl<T> S<T> { pub fn new(t: T) -> Self { S { len: 1, t } } pub fn len(&self) -> u8 { self.len }\n"
         "pub fn both(&self) {} pub fn opt(&self) -> Option<Box<S<T>>> { None } }\n"
         "impl<T> Tr for S<T> { fn tr(&self) {} }"},
    };
    const std::string use = "use crate::a::{S, Tr};";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"fn f(s: &S<u8>) { s.len; }", "S S..len Tr "},
        {"fn f(s: &mut S<u8>) { s.len(); s.both(); }", "S Tr len both "},
        {"fn f(s: Box<dyn Tr>) { s.both(); }", "S Tr Tr.both "},
        {"fn f<T: Tr>(t: T) { t.tr(); T::tr(&t); }", "S Tr Tr.tr "},
        {"fn f() { let s = S::new(1); s.tr(); }", "S Tr Tr.tr new "},
        {"fn f(s: S<S<u8>>) { if let Some(o) = s.opt() { o.len(); } }", "S Tr len opt "},
        {"fn f(s: S<u8>) { let S { len: n, .. } = s; S { len: n }; }", "S S..len Tr "},
        {"fn f(s: T) { s.len(); unknown().both(); }", "S Tr "},
    };
    for (const auto& [text, references] : cases) {
        EXPECT_EQ(rust_references(sources, use + text), references) << text;
    }
}

TEST(Rust, TypesThatPointToThemselvesHaveAnEnd) {
    EXPECT_EQ(rust_references({{"src/a.rs", ""}}, "type P = &'static P; fn f(p: P) { p.x; }"), "");
    EXPECT_EQ(resolved({{"a.go", "package a\ntype A struct { *A }\nfunc f(a A) { a.x() }\n"}}).find("ambiguous"),
              std::string::npos);
}

// Each text is the body of a function, beside a function f, a struct S with a field x and a constant C.
TEST(Rust, WhatBindsANameInAFunctionHidesTheItem) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"let f = 1; f;", ""},
        {"|f| f", ""},
        {"match y { f => f }", ""},
        {"match y { Some(f) if f > 1 => f, _ => 1 }", ""},
        {"if let Some(f) = y { f; }", ""},
        {"while let Some(f) = y { f; }", ""},
        {"for f in y { f(); }", ""},
        {"let (f, g) = y; f;", ""},
        {"let Some(f) = y else { return }; f;", ""},
        {"fn f() {} f();", ""},
        {"f(); fn f() {}", ""},
        {"{ let f = 1; } f();", "a.rs:f"},
        {"let f = f();", "a.rs:f"},
        {"if let Some(f) = y { f; } f();", "a.rs:f"},
        {"|y| f(y)", "a.rs:f"},
        {"{ fn f() {} f(); } f();", "a.rs:f"},
        {"{ use other::f; f(); } f();", "a.rs:f"},
        {"y.f(); y.x;", ""},
        {"match y { C => {} }", "a.rs:C"},
        {"let S { x: f } = y; f;", "a.rs:S a.rs:S..x"},
        {"struct S { z: u8 } let s: S = y; s.x;", ""},
        {"let s: S = y; s.x; s.z;", "a.rs:S a.rs:S..x"},
        {"let s: other::S = y; s.x;", ""},
        {"fn g<S>(s: S) { s.x; }", ""},
        {"self::f(); crate::f();", "a.rs:f*2"},
        {"std::f(); other::f();", ""},
    };
    for (const auto& [body, references] : cases) {
        const std::string text = "fn f() {} struct S { x: u8 } const C: u8 = 1;\nfn outer(y: Y) { " + body + " }\n" +
                                 "fn more() { fn f() {} struct S { z: u8 } }\n";
        EXPECT_EQ(targets_from("a.rs", {{"a.rs", text}}), references) << body;
    }
}

TEST(Rust, WhatSeveralGlobsMayGiveIsAmbiguousAndCirclesOfThemEnd) {
    const std::map<std::string, std::string> sources{
        {"src/lib.rs", "mod a; mod b; pub mod all; mod b_;"},
        {"src/a.rs", "pub use super::b_::*; fn x() {} pub fn y() {}"},
        {"src/b_.rs", "pub use super::a::*; pub use super::a::nothing; pub fn x() {} pub fn z() {}"},
        {"src/all.rs", "pub use super::a::*; pub use super::b_::*; pub fn z() {}"},
    };
    const std::vector<std::pair<std::string, std::string>> cases{
        {"use crate::all::x;", "?x ?x all "},
        {"use super::all::y;", "y all "},
        {"use crate::all::z;", "z all "},
        {"use crate::all::nothing;", "all "},
        {"use crate::all::*; fn f() { x(); y(); z(); }", "?x y z ?x all "},
        {"use crate::all::*; fn z() {} fn f() { z(); }", "all "},
        {"use super::super::all::y;", ""},
        {"use super::all::y as q; fn f() { q(); y(); }", "y all "},
    };
    for (const auto& [text, references] : cases) {
        EXPECT_EQ(rust_references(sources, text), references) << text;
    }
}

TEST(Rust, AMethodIsThatOfTheTypeOfItsReceiver) {
    const std::string types =
        "pub struct A { pub b: B } pub struct B; pub trait T { fn t(&self); fn d(&self) {} } pub trait U { fn t(&self); }\n"
        "impl A { pub fn m(&self) -> &B { &self.b } } impl B { pub fn n(&self) {} pub fn new() -> Self { B } }\n"
        "impl T for A { fn t(&self) {} }\n";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"fn f(a: A) { a.m(); }", "m "},
        {"fn f(a: &mut A) { a.m().n(); }", "m n "},
        {"fn f(a: Vec<A>) { a.m(); }", ""},
        {"fn f(a: Vec<A>) { a[0].m(); }", "m "},
        {"fn f(a: Option<A>) { a.m(); }", ""},
        {"fn f(a: (A, B)) { a.1.n(); a.0.n(); }", "n "},
        {"fn f(a: A) { a.b.n(); }", "A..b n "},
        {"fn f() { B::new().n(); }", "n new "},
        {"fn f(a: impl T) { a.t(); }", "T.t "},
        {"fn f(a: &dyn U) { a.t(); }", "U.t "},
        {"fn f(a: A) { a.d(); }", "T.d "},
        {"fn f(a: B) { a.d(); }", ""},
        {"fn f<X: U>(a: X) { a.t(); a.d(); }", "U.t "},
        {"fn f(a: X) { a.m(); }", ""},
        {"fn f() { unknown().m(); }", ""},
    };
    for (const auto& [text, methods] : cases) {
        std::string members = rust_references({{"src/lib.rs", "mod a; mod b;"}, {"src/a.rs", types}},
                                              "use crate::a::{A, B, T, U}; " + text);
        for (const char* type : {"A ", "B ", "T ", "U "}) {
            members.erase(members.find(type), 2);
        }
        EXPECT_EQ(members, methods) << text;
    }
}

}  // namespace
}  // namespace host::resolve
