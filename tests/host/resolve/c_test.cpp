// What names of C and C++ mean.
#include "tests/host/resolve/resolved.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace host::resolve {
namespace {

TEST(C, PrototypesLeadToTheOnlyDefinitionAndStaticsStayInTheirFile) {
    EXPECT_EQ(resolved({{"a.c", "#include \"h.h\"\nstatic int s(void) { return f(); }\nint f(void) { return s(); }"},
                        {"b.c", "#include \"h.h\"\nint g(void) { return f() + s(); }"},
                        {"h.h", "int f(void);\nextern int v;"},
                        {"v.c", "#include \"h.h\"\nint v = 1;\nint *p = &v;"}}),
              "a.c: local s of a.c, 1 from line 3\n"
              "a.c: local f of a.c, 1 from line 2\n"
              "b.c: import f of a.c, 1 from line 2\n"
              "v.c: local v of v.c, 1 from line 3\n");
}

TEST(C, ATagIsNoAliasAndAnAliasMayMeanAStructThatIsHiddenFromIt) {
    EXPECT_EQ(resolved({{"a.c", "#include \"own.h\"\nint f(S *s) { return s->a; }\nstruct S *g(void);"},
                        {"own.h", "#include \"s.h\"\nstruct S { int a; };"},
                        {"s.h", "typedef struct S S;"}}),
              "a.c: ambiguous S of own.h, 1 from line 2\n"
              "a.c: import S of own.h, 1 from line 3\n"
              "a.c: import S.a of own.h, 1 from line 2\n"
              "a.c: import S of s.h, 1 from line 2\n"
              "s.h: ambiguous S of own.h, 1 from line 1\n");
}

TEST(C, OfManyAnnouncementsOneStandsForAllThatHaveItsDefinitions) {
    const std::string both = "#include \"g.h\"\n#include \"h.h\"\n";
    EXPECT_EQ(targets_from("a.c", {{"a.c", both + "int a(struct T *t) { return f(t) + f(t, 1) + u() + t->m; }"},
                                   {"f.c", "int f(struct T *t) {}\nint f(struct T *t, int i) {}"},
                                   {"g.h", "struct T;\nint f(struct T *);\nint u(void);"},
                                   {"h.h", "struct T;\nint f(struct T *, int);\nint u(void);"},
                                   {"t.h", "struct T { int m; };"}}),
              "f.c:f f.c:f ?g.h:u ?h.h:u t.h:T t.h:T.m");
}

TEST(C, NamesThatNoIncludeBringsMayMeanWhatTheLinkerFinds) {
    std::map<std::string, std::string> sources{
        {"a.c", "#include <stdio.h>\nstruct v; int f(void) { return g(MAX) + s() + u.v; }"},
        {"b.h", "#define MAX 1\nstatic int s(void) {}\nint g(int a) {}\nAPI(const int u[1];)"},
        {"u.c", "const int u[1];"}};
    EXPECT_EQ(targets_from("a.c", sources), "?b.h:g ?u.c:u");
    sources["u.h"] = "#define V (u + MAX)";  // what it means where one includes both headers
    sources["b.c"] = "#include \"u.h\"";
    sources["c.c"] = "#include \"b.h\"\n#include \"u.h\"";
    EXPECT_EQ(targets_from("u.h", sources), "?b.h:MAX ?u.c:u");
    for (char copy = 'd'; copy < 't'; ++copy) {  // more of a name tell nothing
        sources[std::string(1, copy) + "/u.c"] = "int u;";
    }
    EXPECT_EQ(targets_from("u.h", sources), "?b.h:MAX");
}

TEST(C, AMacroThatIsDefinedAgainIsAmbiguous) {
    EXPECT_EQ(resolved({{"a.c", "#include \"b.h\"\n#define M 1\nint a = M;"}, {"b.h", "#define M 2"}}),
              "a.c: ambiguous M of a.c, 1 from line 3\na.c: ambiguous M of b.h, 1 from line 3\n");
}

TEST(C, MacrosTakeThePlaceOfOthersAndOfDeclaredNames) {
    EXPECT_EQ(targets_from("a.h", {{"a.h", "#define M 1\n#define N M"}, {"b.h", "#include \"a.h\"\n#define M 2"}}),
              "a.h:M ?b.h:M");
    EXPECT_EQ(targets_from("a.c", {{"a.c", "#include \"a.h\"\nint f(void) {}\nint g(int f) {}"},
                                   {"a.h", "#ifdef PREFIX\n#define f PREFIX(f)\n#define g h\n#endif"},
                                   {"b.h", "#define g i"}}),
              "?a.h:f ?a.h:g");
}

TEST(C, ALinkerTakesOneNameForOneThing) {
    const std::string fits = "#include \"a.h\"\nint g(void) { return f(1, 2); }";
    EXPECT_EQ(targets_from("a.c", {{"a.c", fits}, {"a.h", "int f(int, int);"}, {"f.c", "int f(int a) {}"}}),
              "a.h:f ?f.c:f");
    EXPECT_EQ(targets_from("a.c", {{"a.c", fits}, {"a.h", "function f;"}, {"f.c", "int f(int a, int b) {}"}}),
              "a.h:f ?f.c:f");
    EXPECT_EQ(targets_from("a.c", {{"a.c", "extern char **v;\nchar *c(void) { return v[0]; }"},
                                   {"b.c", "extern char **v;"},
                                   {"c.c", "static char **v;"}}),
              "a.c:v ?b.c:v");
}

TEST(C, ACallIsOfNoTypeAndAnAliasMayBeAStructInAnotherBranch) {
    EXPECT_EQ(targets_from("a.c", {{"a.c", "struct kill { int a; };\nint f(void) { return kill(1); }"}}), "");
    EXPECT_EQ(targets_from("a.c", {{"a.c", "#include \"t.h\"\nT t;"},
                                   {"t.h", "#ifdef A\ntypedef int T;\n#else\ntypedef struct { int a; } T;\n#endif"}}),
              "?t.h:T ?t.h:T");
}

TEST(C, ATypedefIsNoReferenceToTheStructThatItDeclares) {
    const std::map<std::string, std::string> sources{{"a.h", "typedef struct S T;\ntypedef struct S U;"},
                                                     {"b.h", "#include \"s.h\"\ntypedef struct S V;"},
                                                     {"s.h", "struct S { int a; };"}};
    EXPECT_EQ(targets_from("a.h", sources), "?s.h:S s.h:S");
    EXPECT_EQ(targets_from("b.h", sources), "s.h:S");
}

TEST(C, WhatThisSystemHasComesBeforeWhatOthersHave) {
    const std::string header =
        "#ifdef _WIN32\nstruct S { int a; };\n#define M 1\n#else\nstruct S { int a; };\n#define M 2\n#endif\n";
    EXPECT_EQ(
        targets_from("a.c", {{"a.c", "#include \"s.h\"\nint f(struct S *s) { return M + s->a; }"}, {"s.h", header}}),
        "?s.h:S ?s.h:S.a ?s.h:M s.h:S s.h:S.a s.h:M");
    // What stands where other systems look may mean either.
    EXPECT_EQ(targets_from("a.c", {{"a.c", "#include \"s.h\"\n#if 0\nint a = M;\n#endif"}, {"s.h", header}}),
              "?s.h:M ?s.h:M");
    // What no declaration of this system bears may be of its library.
    EXPECT_EQ(
        targets_from("a.c", {{"a.c", "#ifdef _WIN32\n#define unlink _unlink\n#endif\nint f(void) { "
                                     "return unlink(0); }\n#ifdef _WIN32\nint g(void) { return unlink(1); }\n#endif"}}),
        "?a.c:unlink a.c:unlink");
}

TEST(C, AFileThatAlwaysIncludesAHeaderOfAnotherSystemIsOfThat) {
    EXPECT_EQ(resolved({{"main.c", "#include \"run.h\"\nint main(void) { return run(); }"},
                        {"run.h", "#ifdef _WIN32\n#include <windows.h>\n#endif\nint run(void);"},
                        {"unix.c", "#include \"run.h\"\nint run(void) {}"},
                        {"win.c", "#include \"win.h\"\nint run(void) {}"},
                        {"win.h", "#include \"run.h\"\n#include <Windows.h>"}}),
              "main.c: import run of unix.c, 1 from line 2\nmain.c: ambiguous run of win.c, 1 from line 2\n");
}

TEST(C, WhatOnlyOtherSystemsIncludeIsTheirs) {
    const std::map<std::string, std::string> sources{
        {"a.c", "#include <epoll.h>\n#ifdef __MVS__\n#include \"mvs.h\"\n#endif\nint f(struct e *a) { return a->n; }"},
        {"mvs.c", "#include \"mvs.h\"\nint g(struct e *a) { return a->n; }"},
        {"mvs.h", "#include \"events.h\""},
        {"events.h", "struct e { int n; };"}};
    EXPECT_EQ(targets_from("a.c", sources), "?events.h:e ?events.h:e.n");
    EXPECT_EQ(targets_from("mvs.c", sources), "events.h:e events.h:e.n");
    EXPECT_EQ(targets_from("a.c", {{"a.c", "#ifdef __MVS__\n#include \"mvs.h\"\n#endif\nint f(void) { return ctl(); }"},
                                   {"mvs.c", "int ctl(void) {}"},
                                   {"mvs.h", "int ctl(void);"}}),
              "?mvs.c:ctl");
    const std::map<std::string, std::string> configured{{"a.c", "#include \"config.h\"\nint a = A;"},
                                                        {"b.c", "#include \"WIN32-Code/config.h\"\nint a = A;"},
                                                        {"WIN32-Code/c/b.c", "#include <config.h>\nint a = A;"},
                                                        {"WIN32-Code/config.h", "#define A 1"}};
    EXPECT_EQ(targets_from("a.c", configured), "?WIN32-Code/config.h:A");
    EXPECT_EQ(targets_from("b.c", configured), "WIN32-Code/config.h:A");
    EXPECT_EQ(targets_from("WIN32-Code/c/b.c", configured), "WIN32-Code/config.h:A");
}

TEST(C, WhatABuildMayLackAndNoFileDefinesMayBeOfTheLibrary) {
    EXPECT_EQ(targets_from("a.c", {{"a.c", "#ifndef STDC\nextern void *malloc();\n#endif\nvoid *own();\n"
                                           "void *f(void) { return malloc(own()); }"}}),
              "?a.c:malloc a.c:own");
}

TEST(C, WhatALibraryMayHaveInsteadIsAmbiguous) {
    const std::string f = "#define f(a) g(a)\n";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"#ifndef HAVE_F\n" + f + "#endif", "?h.h:f"},
        {"#if !A || !defined(X_HAVE_F)\n" + f + "#endif", "h.h:f"},
        {"#if HAVE_F\n#else\n" + f + "#endif", "?h.h:f"},
        {"#if SSL_VERSION < 0x101L\n" + f + "#endif", "?h.h:f"},
        {"#if !HAVE_F\n" + f + "#endif\n#ifdef _WIN32\n" + f + "#endif", "?h.h:f ?h.h:f"},
        {"#ifdef F\n" + f + "#endif", "h.h:f"},
        {"#if HAVE_F\n" + f + "#else\n" + f + "#endif", "h.h:f"},
        {"#if HAVE_F\n#error\n#else\n#if A\n" + f + "#elif B\n" + f + "#else\n" + f + "#endif\n#endif", "h.h:f"},
        {"#ifdef HAVE_S\n#define s t\n#else\nstruct s { int m; };\n#endif", "?h.h:s ?h.h:s ?h.h:s.m"},
        {"#ifndef EPOLLIN\n#define EPOLLIN 1\n#endif\n#ifndef LIMIT\n#define LIMIT 2\n#endif",
         "?h.h:EPOLLIN h.h:LIMIT"},
    };
    for (const auto& [header, targets] : cases) {
        EXPECT_EQ(
            targets_from("a.c", {{"a.c", "#include \"h.h\"\nint a(struct s *p) { return f(p->m + EPOLLIN + LIMIT); }"},
                                 {"h.h", header}}),
            targets)
            << header;
    }
}

TEST(C, WhatIsNotAlwaysDeclaredMayStandForWhatAnIncludeBrings) {
    EXPECT_EQ(targets_from("a.c", {{"a.c", "#ifdef M\nstatic int t[2];\n#else\n#include \"t.h\"\n#endif\n"
                                           "int f(void) { return t[0]; }"},
                                   {"t.h", "static int t[2];"}}),
              "?a.c:t ?t.h:t");
}

TEST(C, MacrosMayBeWhatMembersAndIncludedFilesName) {
    EXPECT_EQ(targets_from("a.c", {{"a.c", "#include \"b.h\"\nint f(struct s *a) { return a->m + a->n; }"},
                                   {"b.h", "#define m x.y\nstruct s { int k; };\nint n;"}}),
              "?b.h:m b.h:s");
    EXPECT_EQ(
        targets_from(
            "c.h", {{"c.c", "#define M\n#include \"c.h\""}, {"c.h", "#ifdef M\n#endif"}, {"d.c", "#include \"c.h\""}}),
        "?c.c:M");
}

TEST(C, ADefinitionWithoutParametersMayBeOfAnyPrototype) {
    EXPECT_EQ(targets_from("a.c", {{"a.c", "#include \"b.h\"\nint g(void) { return f(); }"},
                                   {"b.c", "int f() {}"},
                                   {"b.h", "int f(void);"}}),
              "b.c:f");
}

TEST(C, BranchesOfWhichABuildTakesOneDeclareOneThing) {
    const std::string header = "#if A\n#define M 1\ntypedef int T;\nstruct S { int a; };\nint v;\n"
                               "#else\n#define M 2\ntypedef long T;\nstruct S { int a; int b; };\nint v;\n#endif\n";
    EXPECT_EQ(targets_from("a.c", {{"a.c", "#include \"s.h\"\nT f(struct S *s) { return M + s->a + s->b + v; }"},
                                   {"s.h", header}}),
              "s.h:M s.h:T s.h:S s.h:S.a s.h:v s.h:S.b");
    EXPECT_EQ(
        targets_from("a.cc", {{"a.cc", "#if A\nvoid f(int a) {}\n#endif\nvoid f(long a) {}\nvoid g() { f(1); }"}}),
        "?a.cc:f ?a.cc:f");
    EXPECT_EQ(targets_from("a.c", {{"a.c", "#define M 1\nint a = M;\n#undef M\n#define M 2\n"}}), "?a.c:M ?a.c:M");
}

TEST(C, AHeaderThatIncludesNothingSeesWhatAllSeeThatIncludeIt) {
    std::map<std::string, std::string> sources{
        {"a.c", "#include \"m.h\"\n#include \"list.h\""}, {"list.h", "M(one)"}, {"m.h", "#define M(a) int a;"}};
    EXPECT_EQ(targets_from("list.h", sources), "m.h:M");
    sources["b.c"] = "#include \"list.h\"";
    EXPECT_EQ(targets_from("list.h", sources), "?m.h:M");
    sources.erase("b.c");
    sources["list.h"] = "#include <m2.h>\nM(one)";
    EXPECT_EQ(targets_from("list.h", sources), "?m.h:M");
}

TEST(Cpp, DefaultsOfAPrototypeCountForItsDefinition) {
    EXPECT_EQ(targets_from("a.cc", {{"a.cc", "#include \"b.h\"\nint g() { return f(1); }"},
                                    {"b.cc", "int f(int a, int b) {}\nint f() {}"},
                                    {"b.h", "int f(int a, int b = 0);\nint f();"}}),
              "b.cc:f");
}

TEST(Cpp, MacrosAndSeveralNamespacesLeadIntoNamespaces) {
    EXPECT_EQ(
        targets_from("a.cc", {{"a.cc", "#include <v>\n#include \"b.h\"\nusing namespace std;\nusing namespace n;\n"
                                       "#define M n::f(T::g())\nC c;"},
                              {"b.h", "namespace n { void f(); class C {}; }"}}),
        "b.h:n b.h:n.f b.h:n.C");
}

TEST(Cpp, HoweverManyFilesAreIncludedNamespacesAreFoundInOneAnother) {
    std::map<std::string, std::string> sources{{"z.cpp",
                                                "namespace a { namespace b { int f(); } }\n"
                                                "using namespace a;\nusing namespace b;\nint g() { return f(); }\n"}};
    for (int at = 0; at < 21; ++at) {
        std::string& text = sources["a" + std::to_string(at) + ".cpp"];
        for (int header = 0; header < 1'000; ++header) {
            text += "#include <" + std::to_string(header) + ".h>\n";
        }
    }
    EXPECT_EQ(targets_from("z.cpp", sources), "z.cpp:a.b.f");
}

TEST(Cpp, MembersAreThoseOfTheStatedTypeAndOfItsBases) {
    EXPECT_EQ(resolved({{"a.cc", "#include \"a.h\"\nnamespace n {\nint A::m() { return b + B::s(); }\n"
                                 "int f(std::vector<A*> all) { return all[0]->m(); }\n}"},
                        {"a.h", "#include \"b.h\"\nnamespace n { class A : public B { int m(); }; }"},
                        {"b.h", "namespace n { class B { protected: int b; static int s() { return 1; } }; }"}}),
              "a.cc: local n.m of a.cc, 1 from line 4\n"
              "a.cc: import n.A of a.h, 2 from line 3\n"
              "a.cc: import n.B of b.h, 1 from line 3\n"
              "a.cc: import n.B.b of b.h, 1 from line 3\n"
              "a.cc: import n.B.s of b.h, 1 from line 3\n"
              "a.h: import n.B of b.h, 1 from line 2\n");
}

TEST(Cpp, ANestedClassThatStandsOutsideHasMembersOfItsOwn) {
    EXPECT_EQ(resolved({{"a.cc", "#include \"a.h\"\nclass A::B { public: int x; int m(); };\n"
                                 "int A::B::m() { return x; }\nint A::x() { return b->m(); }"},
                        {"a.h", "class A { class B; B* b; int x(); };"}}),
              "a.cc: local B of a.cc, 1 from line 3\n"
              "a.cc: local B.x of a.cc, 1 from line 3\n"
              "a.cc: local m of a.cc, 1 from line 4\n"
              "a.cc: import A of a.h, 3 from line 2\n"
              "a.cc: import A.b of a.h, 1 from line 4\n"
              "a.h: import B of a.cc, 1 from line 1\n");
}

TEST(Cpp, APointerHasNoMembersOfItsTarget) {
    const std::string type = "struct A { void reset(); A* operator->(); void x(); };\n";
    EXPECT_EQ(resolved({{"a.cc", type + "void f(std::unique_ptr<A> p) { p.reset(); p->x(); }"}}),
              "a.cc: local A of a.cc, 2 from line 1\na.cc: local A.x of a.cc, 1 from line 2\n");
}

TEST(Cpp, OverloadsAreToldApartByTheNumberOfArguments) {
    EXPECT_EQ(
        resolved({{"a.cc", "void f(int a) {}\nvoid f(int a, int b = 1, int c = 2) {}\nvoid g() { f(1, 2); f(1); }"}}),
        "a.cc: ambiguous f of a.cc, 1 from line 3\n"
        "a.cc: ambiguous f of a.cc, 1 from line 3\n"
        "a.cc: local f of a.cc, 1 from line 3\n");
}

}  // namespace
}  // namespace host::resolve
