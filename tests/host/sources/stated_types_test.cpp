// What the values of locals and members are said to be, language by language: of each text, what `probe` is looked up
// in.
#include "tests/host/sources/role_words.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace host::sources {
namespace {

using Probes = std::vector<std::pair<std::string, std::string>>;

// Expects of each text, between a head and a tail, what its probe is looked up in.
void expect_probes(const std::string& path, const std::string& head, const std::string& tail, const Probes& probes) {
    for (const auto& [text, value] : probes) {
        EXPECT_EQ(probed_value(path, head + text + tail), value) << text;
    }
}

TEST(StatedTypes, OfC) {
    expect_probes("a.c", "void f(struct S *s, T t, T (*call)(int)) {", "}",
                  {
                      {"T a[2][3]; a[0][1].probe;", "element(element(of(list(list(f/T')))))"},
                      {"T **a; (**a).probe;", "target(target(of(pointer(pointer(f/T')))))"},
                      {"call(1).probe;", "call(of(pointer(function(f/T'))))"},
                      {"(*call)(1).probe;", "call(target(of(pointer(function(f/T')))))"},
                      {"((T *)s)->probe;", "target(of(pointer(f/T')))"},
                      {"(t ? s : 0)->probe;", "target(one_of(of(pointer(f/S)) foreign))"},
                      {"{ T s; } s->probe;", "target(of(pointer(f/S)))"},
                      {"struct U { int a; } u; u.probe;", "?"},
                  });
}

TEST(StatedTypes, OfCpp) {
    expect_probes("a.cc", "void f(const S& s, std::vector<T> ts, std::map<K, V> m) {", "}",
                  {
                      {"ts.front().probe();", "one_of(call(of(list(f/T')).front) element(of(list(f/T'))))"},
                      {"for (auto it = ts.begin(); it != ts.end(); ++it) it->probe();",
                       "target(one_of(call(of(list(f/T')).begin) of(pointer(element(of(list(f/T')))))))"},
                      {"m.at(1).probe(); ", "one_of(call(of(map(f/K' f/V')).at) element(of(map(f/K' f/V'))))"},
                      {"std::optional<T> a; a->probe();", "target(of(pointer(f/T')))"},
                      {"std::function<T(int)> a; a(1).probe();", "call(of(function(f/T')))"},
                      {"auto a = std::make_shared<T>(); a->probe();", "target(call(of(function(pointer(f/T')))))"},
                      {"const auto& a = static_cast<const T&>(s); a.probe();", "of(f/T')"},
                      {"auto a = [] { return T(); }; a().probe();", "?"},
                      {"n::U<T> a; a.probe();", "of(f/n.U'<f/T'>)"},
                  });
}

TEST(StatedTypes, OfGo) {
    expect_probes("a.go", "package p\nfunc f(s S, ts []*T, m map[K]V, call func() (T, error)) {", "}",
                  {
                      {"ts[0].probe()", "element(of(list(T')))"},
                      {"for _, t := range ts { t.probe() }", "element(of(list(T')))"},
                      {"for i, t := range g() { t.probe(i) }", "element(call(g))"},
                      {"v, ok := m[k]; v.probe(ok)", "element(of(map(K' V')))"},
                      {"t, _ := call(); t.probe()", "call(of(function(tuple(T' error'))))[0]"},
                      {"(&T{}).probe()", "of(T')"},
                      {"new(T).probe()", "of(T')"},
                      {"(*s.a).probe()", "of(S').a"},
                      {"T(s).probe()", "call(T)"},
                      {"g[T](s).probe()", "call(g<T'>)"},
                      {"calls := []func() T{}; calls[k](s).probe()", "call(element(of(list(function(T')))))"},
                      {"var a struct { b T }; a.b.probe()", "of(@).b"},
                  });
}

TEST(StatedTypes, OfJava) {
    expect_probes("A.java",
                  "import java.util.*;\nclass A {\n<P extends B> void f(S s, List<T> ts, Map<K, V> m, P p, T... all) {",
                  "}}",
                  {
                      {"ts.get(0).probe();", "call(of(list(f()/T')).get())"},
                      {"for (var t : all) t.probe();", "element(of(list(f()/T')))"},
                      {"m.get(1).probe();", "call(of(map(f()/K' f()/V')).get())"},
                      {"(s == null ? s : s).probe();", "of(f()/S')"},
                      {"var a = new T[1]; a[0].probe();", "element(of(list(f()/T')))"},
                      {"p.probe();", "of(local(A/B'))"},
                      {"switch (s) { case T t -> t.probe(); }", "of(f()/T')"},
                      {"try { g(); } catch (E1 | E2 e) { e.probe(); }", "one_of(of(f()/E1') of(f()/E2'))"},
                      {"Optional<T> a; a.get().probe();", "call(of(list(f()/T')).get())"},
                      {"ts.forEach(t -> t.probe());", "?"},
                      {"if (!(s instanceof T t)) return; t.probe();", "of(f()/T')"},
                  });
}

TEST(StatedTypes, OfPython) {
    expect_probes(
        "a.py", "from typing import *\ndef f(s: S, ts: list[T], m: dict[K, V], *args: T, **kw: T):\n ", "",
        {
            {"ts[0].probe", "element(local(of(list(T'))))"},
            {"[t.probe for t in ts]", "local(iterated(local(of(list(T')))))"},
            {"for i, t in enumerate(ts): t.probe",
             "local(iterated(of(list(type_of(of(tuple(type_of(foreign) type_of(iterated(local(of(list(T')))))))))))[1])"},
            {"for k, v in m.items(): v.probe",
             "local(iterated(one_of(call(local(of(map(K' V'))).items) of(list(type_of(of(tuple(type_of(key(local(of(map(K' V'))))) type_of(element(local(of(map(K' V'))))))))))))[1])"},
            {"args[0].probe", "element(local(of(list(T'))))"},
            {"kw['a'].probe", "element(local(of(map(foreign T'))))"},
            {"x = T(); x.probe; x = U()", "local(one_of(call(T) call(U)))"},
            {"x: T = g(); x = U(); x.probe", "local(of(T'))"},
            {"x = T() if s else None; x.probe", "local(one_of(call(T) foreign))"},
            {"(s or T()).probe", "one_of(local(of(S')) call(T))"},
            {"with T() as t: t.probe", "local(call(call(T).__enter__))"},
            {"(lambda: T())().probe", "call(of(function(type_of(call(T)))))"},
            {"a, b = T(), U(); b.probe", "local(of(tuple(type_of(call(T)) type_of(call(U))))[1])"},
            {"async def g() -> T: (await g()).probe", "awaited(call(local(@g)))"},
            {"(x := T()).probe", "call(T)"},
        });
}

TEST(StatedTypes, OfRust) {
    expect_probes("a.rs", "fn f(s: &mut S, ts: Vec<Box<T>>, m: HashMap<K, V>, o: Option<T>) {", "}",
                  {
                      {"ts[0].probe();", "element(of(list(pointer(T'))))"},
                      {"for t in &ts { t.probe() }", "element(of(list(pointer(T'))))"},
                      {"o.unwrap().probe();", "call(of(awaitable(T')).unwrap)"},
                      {"if let Some(t) = o { t.probe() }", "awaited(of(awaitable(T')))"},
                      {"let Some(t) = o else { return }; t.probe();", "awaited(of(awaitable(T')))"},
                      {"let t = T { a: 1 }; t.probe();", "of(T')"},
                      {"(*s).probe();", "target(of(pointer(S')))"},
                      {"let (a, b): (T, U) = g(); b.probe();", "one_of(of(tuple(T' U'))[1] of(tuple(T' U'))..1)"},
                      {"let t = if s { T::a() } else { T::b() }; t.probe();", "one_of(call(T.a) call(T.b))"},
                      {"let t = match s { 1 => T {}, _ => return }; t.probe();", "?"},
                      {"let c = |t: T| t.probe(); c(1);", "of(T')"},
                      {"ts.iter().map(|t| t.probe());", "?"},
                  });
}

TEST(StatedTypes, OfTypeScript) {
    expect_probes("a.ts", "function f(s: S, ts: T[], m: Map<K, V>, p: Promise<T>, u: T | null) {", "}",
                  {
                      {"ts[0].probe();", "element(local(of(list(T'))))"},
                      {"for (const t of ts) t.probe();", "local(element(local(of(list(T')))))"},
                      {"for (const [k, v] of m) v.probe();",
                       "local(one_of(element(local(of(map(K' V')))) iterated(local(of(map(K' V'))))[1]))"},
                      {"m.get(1)!.probe();", "one_of(call(local(of(map(K' V'))).get) element(local(of(map(K' V')))))"},
                      {"async () => (await p).probe();", "awaited(local(of(awaitable(T'))))"},
                      {"new T<U>().probe();", "of(T<U'>)"},
                      {"const { a: { b } } = s; b.probe();", "local(local(of(S')).a.b)"},
                      {"const [a, b]: [T, U] = g(); b.probe();", "local(of(tuple(T' U'))[1])"},
                      {"let x = new T(); x = g(); x.probe();", "local(of(T))"},
                      {"ts.map(t => t.probe());",
                       "local(one_of(element(local(of(list(T')))) argument0(argument0(local(of(list(T'))).map))))"},
                      {"(s ? new T() : new U()).probe();", "one_of(of(T) of(U))"},
                      {"const g = (): T => h(); g().probe();", "call(local(of(function(T'))))"},
                      {"let x: typeof s; x.probe();", "local(of(type_of(local(of(S')))))"},
                  });
}

}  // namespace
}  // namespace host::sources
