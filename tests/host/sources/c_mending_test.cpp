// Macros that the grammars of C and C++ know no place for.
#include "host/sources/c/c_mending.h"

#include "tests/host/sources/outlined.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace host::sources {
namespace {

TEST(CMending, LooseMacrosAreTakenOutAndEveryOtherByteStays) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"API int f(void);", "    int f(void);"},
        {"API const char *(f)(void);", "    const char *(f)(void);"},
        {"static int CALL f(int a);", "static int      f(int a);"},
        {"typedef int (CALL *f)(int);", "typedef int (     *f)(int);"},
        {"int f ARGS((int a));", "int f      (int a) ;"},
        {"local int f(a) int a; { X y; }", "      int f(a) int a; { X y; }"},
        {"class EXPORT C : public B {", "class        C : public B {"},
        {"void f() const LOCKS(m);", "void f() const         ;"},
        {"class C { int m LOCKED(a); T* p LOCKED(m) = 0; };", "class C { int m          ; T* p           = 0; };"},
        {"class C { T m LOCKED(a); std::string n LOCKED(m) = 0; };",
         "class C { T m          ; std::string n           = 0; };"},
        {"struct S {\n  FIELDS\n  int a;\n};", "struct S {\n        \n  int a;\n};"},
        {"API(\"a\") CALL int f(void);", "              int f(void);"},
        {"void f() { a = 64 KB; }", "void f() { a = 64   ; }"},
        {"void f() {\nout:\n#endif\nb(); }", "void f() {\n    \n#endif\nb(); }"},
        {"local const T x[1];", "      const T x[1];"},
        {"T CALL f ARGS((int a));", "T      f      (int a) ;"},
        {"T FAR x[1];", "T     x[1];"},
        {"char *f(a, b) T a; int *b; { X y; }", "char  f(a, b) T a; int *b; { X y; }"},
        {"DECLARE(a)\nDECLARE(b)\nint c;", "          \n          \nint c;"},
    };
    for (const auto& [text, mended] : cases) {
        EXPECT_EQ(without_loose_macros(text), mended);
    }
}

TEST(CMending, TypesAndWhatStandsInBodiesStays) {
    for (const std::string text : {
             "DWORD a;",
             "static DWORD f(void);",
             "FILE *f(FILE *a);",
             "int f(ZIO *z);",
             "void f() { API int a; FIELDS\n b(); }",
             "#define API int\n#define F(a) \\\n  API int a\nint b;",
             "// API int f();\n/* API int g(); */ char c = '\"', *s = \"API int h();\";",
             "enum E { A, B };",
             "void f() {\nout: b();\n#if A\ndefault:\n#endif\nc ? d :\n#if A\ne\n#endif\n; }",
             "typedef 64BIT_TYPE T64;",
             "static T F(int a); T* G(int a); unsigned int H(int a);",
             "typename T::U f(unsigned long a);",
             "n::TYPE const a;",
             "T const FAR x; struct FAR x; T const x;",
             "char *f(a, b); struct T { int a; }; int *g(a) ATTR = b * f(c); int h(void) { }",
         }) {
        EXPECT_EQ(without_loose_macros(text), text);
    }
}

TEST(CMending, AMacroThatWasTakenOutIsAMentionNonetheless) {
    const std::string text = "#define API\nclass API C { void f(); };\n";
    EXPECT_FALSE(outline("a.cc", text).is_damaged);
    static const std::atomic<bool> never = false;
    const Outline outline = outline_of(text, "", "a.cc", never, Content::NAMES).value();
    ASSERT_EQ(outline.syntax->mentions.size(), 1);
    EXPECT_EQ(outline.syntax->mentions.front().line, 2);
}

}  // namespace
}  // namespace host::sources
