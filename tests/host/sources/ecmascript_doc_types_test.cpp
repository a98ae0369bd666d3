// What doc comments of JavaScript state of types.
#include "tests/host/sources/outlined.h"
#include "tests/host/syntax/syntax_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace host::sources {
namespace {

using DocCases = std::vector<std::pair<std::string, std::string>>;

std::string mentions_of_script(const std::string& text) {
    return mentions_of(*names_in("a.js", text).syntax);
}

TEST(EcmascriptDocTypes, TypesOfCommentsAreThoseOfTypeScript) {
    for (const auto& [type, value] : DocCases{
             {"T", "of(T')"},
             {"?T", "of(T')"},
             {"(!T|null|undefined)=", "of(T')"},
             {"T | U", "of(one_of(T' U'))"},
             {"n.m.T", "of(n.m.T')"},
             {"T[]", "of(list(T'))"},
             {"Array.<T>", "of(list(T'))"},
             {"...T", "of(list(T'))"},
             {"Promise<?T>", "of(awaitable(T'))"},
             {"Map<string,\n *  T[]>", "of(map(foreign list(T')))"},
             {"Object<string, T>", "of(map(foreign T'))"},
             {"T<U, 'u'>", "of(T'<U' foreign>)"},
             {"import('./m').T", "of(one_of(import(./m typedef T) import(./m T)))"},
             {"import(\"./m\").n.T[]", "of(list(one_of(import(./m typedef n) import(./m n)).T'))"},
             {"import('./m')", "of(import(./m ))"},
             {"string", "of(foreign)"},
             {"T | {a: U, b?: any}", "of(one_of(T' @))"},
             {"function(T): U", "of(function(U'))"},
             {"(a: T, ...b: any[]) => U", "of(function(U'))"},
             {"((T) => U) | V", "of(one_of(function(U') V'))"},
             {"() => any", "of(function(?))"},
             {"Map<string, any>", "of(map(foreign ?))"},
             {"Record<string, any> & T", "of(one_of(map(foreign ?) T'))"},
             {"typeof T.a", "of(type_of(T.a))"},
             // What is not followed leaves all of the type unknown.
             {"T | any", "?"},
             {"Array<*>", "?"},
             {"T | import(m)", "?"},
             {"T[", "?"},
             {"T U", "?"},
             {"{a: T, [key: string]: U}", "?"},
             {"({a}: T) => U", "?"},
             {"(a: T, b: U", "?"},
             {"{a: T", "?"},
             {"typeof import('./m')", "?"},
             {"Object", "?"},
             {"", "?"},
             {std::string(40, '(') + "T" + std::string(40, ')'), "?"},
         }) {
        EXPECT_EQ(mentions_of_script("/** @param {" + type + "} a */\nfunction f(a) {\na.x; }"),
                  std::to_string(3 + std::count(type.begin(), type.end(), '\n')) + " value local(" + value + ").x\n")
            << type;
    }
}

TEST(EcmascriptDocTypes, ACommentDocumentsWhatFollowsIt) {
    for (const auto& [text, mentions] : DocCases{
             {"/** @arg {T} [a=1] @param {T} b.c\n * @argument c {U} */ export const f = (a, b, c) => [a.x, b.x, c.x];",
              "2 value local(of(T')).x\n2 value local(?).x\n2 value local(of(U')).x\n"},
             {"/** @param {T} a */ // so\n/* it is */ export default async function (a = 1) { a.x; }",
              "2 value local(of(T')).x\n"},
             {"/** @param {T} a */ m.n = function (a) { a.x; };", "1 value m\n1 value m.n\n1 value local(of(T')).x\n"},
             {"f({ /** @param {T} a */ g: (a) => a.x, /** @param {U} a */ h(a) { a.x; } });",
              "1 call f\n1 key argument0(f).g\n1 value local(of(T')).x\n1 value local(of(U')).x\n"},
             {"f(/** @type {T} */ a => a.x, /** @param {T} a */ a => a.x, function (/** @type {U} */ a) { a.x; });",
              "1 call f\n1 value local(argument0(argument0(f))).x\n1 value local(of(T')).x\n1 value local(of(U')).x\n"},
             {"/** @this {T} */ function f() { this.x; }", "1 value of(T').x\n"},
             {"/** @template U\n * @param {U} a @returns {T} */ function f(a) { a.x; return {y: 1}; }",
              "2 value local(of(local(?))).x\n2 key of(T').y\n"},
             {"/** @type {T} */ let a, b; a.x; b.x;", "1 value a\n1 value a.x\n1 value b\n1 value b.x\n"},
             {"function f() { /** @type {T} */ let a = g(), b; a.x; b.x; }",
              "1 call g\n1 value local(of(T')).x\n1 value local(?).x\n"},
             {"function f() { /** @type {T} */ const {a} = g(); }", "1 call g\n1 key of(T').a\n"},
             // A comment before parentheses casts.
             {"const a = /** @type {T} */ (b).x, c = d || /** @type {U} */ (d); c.y;",
              "1 value b\n1 value of(T').x\n1 value d x2\n1 value c\n1 value c.y\n"},
             {"function f() { return /** @type {T} */ ({x: /** @type {U} */ (b)}).y; }",
              "1 key of(T').x\n1 value b\n1 value of(T').y\n"},
             // What says nothing of a function: a name that it does not have, and what other tags declare.
             {"/** @param {T} b */ function f(a) { a.x; }", "1 value local(?).x\n"},
             {"/** @callback g\n * @param {T} a */ function f(a) { a.x; }", "2 value local(?).x\n"},
             {"/** @param {T} a */ g(); function f(a) { a.x; }", "1 call g\n1 value local(?).x\n"},
             {"/* @param {T} a */ function f(a) { a.x; }", "1 value local(?).x\n"},
             {"/** {@param {T} a */ function f(a) { a.x; }", "1 value local(?).x\n"},
             {"/** @param {T a */ function f(a) { a.x; }", "1 value local(?).x\n"},
         }) {
        EXPECT_EQ(mentions_of_script(text), mentions) << text;
    }
    EXPECT_EQ(mentions_of(*names_in("a.ts", "/** @param {T} a */ function f(a) { a.x; }").syntax),
              "1 value local(?).x\n");
}

}  // namespace
}  // namespace host::sources
