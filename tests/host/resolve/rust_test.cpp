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

}  // namespace
}  // namespace host::resolve
