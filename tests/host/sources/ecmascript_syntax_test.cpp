// What files of JavaScript and TypeScript state about names.
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

using Cases = std::vector<std::pair<std::string, std::string>>;

// The mentions in the body of a function, without that of its parameter's type.
std::string ecmascript_mentions(const std::string& statements) {
    const std::string text = "function f(s: Store) {\n" + statements + "\n}";
    const std::string mentions = mentions_of(*names_in("a.ts", text).syntax);
    return mentions.substr(mentions.find('\n') + 1);
}

TEST(EcmascriptSyntax, NamesOfLocalsAreNoMentionsAndTheirTypesAreKnown) {
    const Cases cases{
        {"s.x = 1;", "2 value local(of(Store')).x\n"},
        {"g(); { function g() {} } function h() {} h();", "2 call g\n"},
        {"if (s) { var a = s; let b = s; } a.x; b.x;", "2 value local(local(of(Store'))).x\n"
                                                       "2 value b\n"
                                                       "2 value b.x\n"},
        {"const {a, b: {c = 1}, ...d} = s; a.x; c.x; d.x;", "2 key local(of(Store')).a\n"
                                                            "2 key local(of(Store')).b\n"
                                                            "2 key local(of(Store')).b.c\n"
                                                            "2 value local(local(of(Store')).a).x\n"
                                                            "2 value local(local(of(Store')).b.c).x\n"
                                                            "2 value local(local(of(Store'))).x\n"},
        {"const [a, , b] = s; b.x;", "2 value local(local(of(Store'))[2]).x\n"},
        {"for (const a of s.all) a.x;", "2 value local(of(Store')).all\n"
                                        "2 value local(element(local(of(Store')).all)).x\n"},
        {"for (const [k, v] of s.all) v.x;",
         "2 value local(of(Store')).all\n"
         "2 value local(one_of(element(local(of(Store')).all) iterated(local(of(Store')).all)[1])).x\n"},
        {"s.map(a => a.x); s.pop().y;",
         "2 call local(of(Store')).map\n"
         "2 value local(one_of(element(local(of(Store'))) argument0(argument0(local(of(Store')).map)))).x\n"
         "2 call local(of(Store')).pop\n"
         "2 value one_of(call(local(of(Store')).pop) element(local(of(Store')))).y\n"},
        {"let a: T[] | undefined; a[0].x;", "2 type T'\n2 value element(local(of(list(T')))).x\n"},
        {"let a: Map<K, V>; a.get(1).x;",
         "2 type K'\n"
         "2 type V'\n"
         "2 call local(of(map(K' V'))).get\n"
         "2 value one_of(call(local(of(map(K' V'))).get) element(local(of(map(K' V'))))).x\n"},
        {"const a = async () => new T(); (await a()).x;",
         "2 call T\n"
         "2 value awaited(call(local(of(function(awaitable(type_of(of(T)))))))).x\n"},
        {"const a = {b: new T(), c() { return this.b; }}; a.b.x;", "2 call T\n"
                                                                   "2 value ?.b\n"
                                                                   "2 value local(of(@)).b\n"
                                                                   "2 value local(of(@)).b.x\n"},
        {"try { } catch (e) { e.x; }", "2 value local(?).x\n"},
        {"(s as T).x; s!.y; (<U>s).z;", "2 type T'\n"
                                        "2 value of(T').x\n"
                                        "2 value local(of(Store')).y\n"
                                        "2 type U'\n"
                                        "2 value of(U').z\n"},
        {"class B extends T { g() { super.x(); this.y; } }", "2 type T\n2 call super.x\n2 value self.y\n"},
        {"function g<A extends T>(a: A): A { return a.x; } g(s).y;", "2 type T'\n"
                                                                     "2 value local(of(local(T'))).x\n"
                                                                     "2 value call(local(of(function(local(?))))).y\n"},
    };
    for (const auto& [statements, mentions] : cases) {
        EXPECT_EQ(ecmascript_mentions(statements), mentions) << statements;
    }
}

TEST(EcmascriptSyntax, AnObjectHasTheThisOfWhatIsAroundItButForItsMethods) {
    EXPECT_EQ(mentions_of(*names_in("a.js", "class A { f() { return {a: this.x, b: () => this.y, c() { this.z; }, "
                                            "d: function () { this.z; }}; } }")
                               .syntax),
              "1 value self.x\n1 value self.y\n1 value ?.z x2\n");
}

TEST(EcmascriptSyntax, NamesStandInWhatTheyAreLookedUpIn) {
    const Cases cases{
        {"const a: T = {b: 1, c: {d: 2}, s};", "2 type T'\n"
                                               "2 key of(T').b\n"
                                               "2 key of(T').c\n"
                                               "2 key of(T').c.d\n"
                                               "2 key of(T').s\n"},
        {"return {a: 1} satisfies T;", "2 type T'\n2 key of(T').a\n"},
        {"g({a: [{b: 1}]}, (t) => t.x);", "2 call g\n"
                                          "2 key argument0(g).a\n"
                                          "2 key element(argument0(g).a).b\n"
                                          "2 value local(argument0(argument1(g))).x\n"},
        {"f(...s); new s.T<U>(1, 2); super(1);", "2 call f\n2 call local(of(Store')).T\n2 type U'\n"},
        {"let a: n.T<typeof s.x, keyof U, U['k'], (u: V) => u is W>;", "2 value n\n"
                                                                       "2 type n.T'\n"
                                                                       "2 value local(of(Store')).x\n"
                                                                       "2 type U' x2\n"
                                                                       "2 type W'\n"
                                                                       "2 type V'\n"},
        {"let a: T extends (infer U)[] ? U : V;", "2 type T'\n2 type V'\n"},
        {"out: while (s?.x) break out; import.meta; `${s.y}`;", "2 value local(of(Store')).x\n"
                                                                "2 value local(of(Store')).y\n"},
        {"import('./m').then(g); const {a} = require('./m');", "2 call import(./m ).then\n"
                                                               "2 value g\n"
                                                               "2 key import(./m ).a\n"},
    };
    for (const auto& [statements, mentions] : cases) {
        EXPECT_EQ(ecmascript_mentions(statements), mentions) << statements;
    }
}

}  // namespace
}  // namespace host::sources
