// What C and C++ files state about names.
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

using Cases = std::vector<std::pair<std::string, std::string>>;

syntax::Syntax read(const std::string& path, const std::string& text) {
    static const std::atomic<bool> never = false;
    return outline_of(text, "", path, never, Content::NAMES).value().syntax.value();
}

// The mentions on line 3, in the body of a function of a few locals.
std::string c_mentions(const std::string& path, const std::string& statements) {
    const std::string all =
        mentions_of(read(path, "void f(struct S *s, T t, int (*call)(int), T ts[2])\n{\n" + statements + "\n}"));
    std::string found;
    for (std::size_t at = 0; at < all.size(); at = all.find('\n', at) + 1) {
        const std::string line = all.substr(at, all.find('\n', at) - at);
        found += line.starts_with("3 ") ? line.substr(2) + "\n" : "";
    }
    return found;
}

// The declarations: "outer.inner kind", with "?" for one that only announces another, "-" for a private one, "()" with
// the numbers of arguments, and the type.
std::string c_declarations(const std::string& path, const std::string& text) {
    constexpr std::array<const char*, 8> KINDS{"type",        "alias", "namespace", "function",
                                               "constructor", "value", "property",  "macro"};
    const syntax::Syntax syntax = read(path, text);
    std::string found;
    for (const syntax::Declaration& each : syntax.declarations) {
        if (each.parent != syntax::NO_DECLARATION) {
            found += std::string(syntax.name(syntax.declarations[each.parent].name)) + ".";
        }
        if (each.owner != syntax::UNKNOWN) {
            found += text_of(syntax, each.owner) + "::";
        }
        found += std::string(syntax.name(each.name)) + (each.is_private ? "-" : "") + (each.is_definition ? "" : "?") +
                 " " + KINDS.at(static_cast<std::size_t>(each.kind));
        found += each.type == syntax::UNKNOWN ? "\n" : " " + text_of(syntax, each.type) + "\n";
    }
    return found;
}

TEST(CSyntax, DeclarationsSayWhatTheyAreAndOfWhichType) {
    const Cases cases{
        {"int a, *b, c[2];", "a value of(foreign)\nb value of(pointer(foreign))\nc value of(list(foreign))\n"},
        {"static T a = 1; extern T b;", "a- value of(T')\nb? value of(T')\n"},
        {"T *f(void); static T g(int a) {}", "f? function pointer(T')\ng- function T'\n"},
        {"int (*f)(int); T (*g(int a))(int) {}",
         "f value of(pointer(function(foreign)))\ng function pointer(function(T'))\n"},
        {"API int (f)(T *a);", "f? function int'\n"},
        {"struct A { T a; struct { int b; }; union { int c; } d; };",
         "A type\nA.a value of(A/T')\nA.b value of(foreign)\n type\n.c value of(foreign)\nA.d value of(@)\n"},
        {"typedef struct A { int a; } A, *B;", "A type\nA.a value of(foreign)\nA alias @A\nB alias pointer(@A)\n"},
        {"typedef struct { int a; } A;", "A type\nA.a value of(foreign)\n"},
        {"typedef struct A B;", "A? type\nB alias A\n"},
        {"struct A;", "A? type\n"},
        {"enum E { X, Y = X }; enum { Z };", "E type\nX value of(@E)\nY value of(@E)\nZ value foreign\n"},
        {"#define M 1\n#define N(a) a", "M macro\nN macro\n"},
        {"int f(a) T *a; { int b; struct L { int c; } d; enum { X }; }", "f function foreign\n"},
        {"#if A\nint a;\n#else\nint b;\n#endif", "a value of(foreign)\nb value of(foreign)\n"},
        {"int f(int a) {\n int b;\n if (a) { {\n g(b);\n}\n#if A\n int c;\n#endif\nint h(void) { }\nint d;",
         "h function foreign\nd value of(foreign)\n"},  // a brace is missing
    };
    for (const auto& [text, declarations] : cases) {
        EXPECT_EQ(c_declarations("a.c", text), declarations) << text;
    }
}

TEST(CSyntax, OfTwoTreesThatAreOneErrorTheBetterIsRead) {
    EXPECT_EQ(c_declarations("a.c", "#ifndef H\nint f ARGS((T a));\n{ {\n"), "f? function foreign\n");
}

TEST(CSyntax, MembersAreLookedUpInTheTypesThatAreStated) {
    const Cases cases{
        {"s->a.b = t.c;", "value target(of(pointer(S))).a\nvalue target(of(pointer(S))).a.b\nvalue of(T').c\n"},
        {"call(1); g(2);", "call g\n"},
        {"ts[0].a; (*s).b; (&t)->c;",
         "value element(of(list(T'))).a\nvalue target(of(pointer(S))).b\nvalue target(of(pointer(of(T')))).c\n"},
        {"((struct U *)s)->a; sizeof(struct U);", "type U x2\nvalue target(of(pointer(U))).a\n"},
        {"U u = { .a = 1, .b = { .c = 2 } };", "type U'\nkey of(U').a\nkey of(U').b\nkey of(U').b.c\n"},
        {"U u[] = { [X] = { .a = Y } };", "type U'\nvalue X\nkey element(of(list(U'))).a\nvalue Y\n"},
        {"g((U){ .a = 1 }, offsetof(U, b));", "type U' x2\nkey of(U').a\nvalue of(U').b\ncall g\n"},
        {"{ int n = m; n++; } n++;", "value m\nvalue n\n"},
        {"struct L { int a; } l; l.a = 1; enum { E }; g(E);", "value ?.a\ncall g\n"},
        {"h(g()->a + 1);", "call g\nvalue target(call(g)).a\ncall h\n"},
        {"goto out; out: g();", "call g\n"},
    };
    for (const auto& [statements, mentions] : cases) {
        std::string expected = mentions;
        std::string found = c_mentions("a.c", statements);
        for (std::size_t at = 0; (at = found.find("f/", at)) != std::string::npos;) {
            found.erase(at, 2);  // all are looked up around f
        }
        EXPECT_EQ(found, expected) << statements;
    }
}

TEST(CSyntax, DirectivesMentionMacros) {
    EXPECT_EQ(mentions_of(read(
                  "a.c", "#ifndef G\n#define G\n#endif\n#if defined(A) && B > 1\n#elif C\n#endif\n#ifdef D\n#endif")),
              "4 value A\n4 value B\n5 value C\n7 value D\n");
    EXPECT_EQ(mentions_of(read("a.c", "#define M(a, b) f(a, (struct S *)b) + \"y\" \\\n  + g.h + a##c + #b + 0x1F\n")),
              "1 call f\n1 type S\n2 value g\n");
    EXPECT_EQ(mentions_of(read("a.c", "int a = true;")), "1 value true\n");
    const syntax::Syntax syntax = read("a.c", "#include \"b.h\"\n#include <c/d.h>\n");
    ASSERT_EQ(syntax.imports.size(), 2);
    EXPECT_EQ(syntax.name(syntax.imports.at(1).module), "c/d.h");
    EXPECT_TRUE(syntax.imports.at(1).is_system && !syntax.imports.at(0).is_system);
}

TEST(CppSyntax, DeclarationsStandInWhatTheyBelongTo) {
    const Cases cases{
        {"namespace a::b { inline namespace c { int d; } namespace { int e; } }",
         "a namespace\na.b namespace\nb.d value of(foreign)\nb.e- value of(foreign)\n"},
        {"class A : public B { A(); ~A(); static T s; T m() const { return s; } struct C { int c; }; };",
         "A type\nA.A? constructor\nA.~A? function\nA.s? value of(A/T')\nA.m function A/T'\nA.C type\n"
         "C.c value of(foreign)\n"},
        {"A::A() : b(1) {} T A::s = 1; T A::B::m() {}", "A::A constructor\nA::s value of(T')\nA.B::m function T'\n"},
        {"class A::B { int c; };", "A::B type\nB.c value of(foreign)\n"},
        {"enum class E { X }; struct A { enum F { Y }; };",
         "E type\nE.X value of(@E)\nA type\nA.F type\nA.Y value of(@F)\n"},
        {"template <class K, class V> struct M { V v; template <class K2> V get(K2 k); };",
         "M type\nM.v value of(parameter1(?))\nM.get? function parameter1(?)\n"},
        {"struct A { std::unique_ptr<B> b; std::vector<C*> c; std::map<int, D> d; };",
         "A type\nA.b value of(pointer(A/B'))\nA.c value of(list(pointer(A/C')))\nA.d value of(map(foreign A/D'))\n"},
        {"using A = B<C>; auto f() -> D;", "A alias B'<C'>\nf? function D'\n"},
        {"class A { friend class B; friend int g(A& a); };", "A type\nB? type\ng? function foreign\n"},
        {"TEST(A, b) { int c; }", ""},
    };
    for (const auto& [text, declarations] : cases) {
        EXPECT_EQ(c_declarations("a.cc", text), declarations) << text;
    }
}

TEST(CppSyntax, NamesOfLocalsAreNoMentionsAndTheirTypesAreKnown) {
    const Cases cases{
        {"auto u = new U(1); u->a();", "type U'\ncall target(of(pointer(U'))).a\n"},
        {"auto u = std::make_unique<U>(); u->a();",
         "call foreign.make_unique\ntype U'\ncall target(call(of(function(pointer(U'))))).a\n"},
        {"for (auto& u : g()) u.a();", "call g\ncall element(call(g)).a\n"},
        {"for (auto& [k, v] : t.m) v.a();", "value of(T').m\ncall one_of(element(of(T').m) element(of(T').m)[1]).a\n"},
        {"U u(t); u.a();", "type U'\ncall of(U').a\n"},
        {"auto l = [&t, n = t.a](U u) { u.b(); n.c(); };", "value of(T').a\ntype U'\ncall of(U').b\ncall of(T').a.c\n"},
        {"if (auto* u = dynamic_cast<U*>(s)) u->a();", "type U'\ncall target(of(pointer(U'))).a\n"},
        {"try { g(); } catch (const U& u) { u.a(); }", "call g\ntype U'\ncall of(U').a\n"},
        {"n::U::g<V>(X::y); ::h();", "type X\nvalue X.y\ntype n\ntype n.U\ncall n.U.g\ntype V'\ncall ::h\n"},
        {"using n::g; g(1);", "type n\nimport n.g\ncall import(n g)\n"},
        {"class L { int k; void m() { k++; } }; L().m();", "call ?.m\n"},
        {"std::string x; x.size();", "type foreign.string'\ncall of(foreign.string').size\n"},
    };
    for (const auto& [statements, mentions] : cases) {
        std::string found = c_mentions("a.cc", statements);
        for (std::size_t at = 0; (at = found.find("f/", at)) != std::string::npos;) {
            found.erase(at, 2);  // all are looked up around f
        }
        EXPECT_EQ(found, mentions) << statements;
    }
}

}  // namespace
}  // namespace host::sources
