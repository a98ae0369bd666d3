// Of what kind sources say their declarations are, language by language.

#include "tests/host/sources/outlined.h"

#include <gtest/gtest.h>

namespace host::sources {
namespace {

// The declarations of a text as "kind name", by position; "?" for a kind that is left open.
std::string kinds(const std::string& path, const std::string& text) {
    std::string list;
    for (const SourceDeclaration& each : outline(path, text).declarations) {
        list.append(list.empty() ? "" : ", ").append(each.kind.empty() ? "?" : each.kind).append(" " + each.name);
    }
    return list;
}

TEST(Kinds, CTellsTypesMacrosAndVariablesApart) {
    EXPECT_EQ(kinds("a.c", "#define X 1\n#define F(x) x\nstruct s { int *a; };\nunion u { int b; };\nenum e { A };\n"
                           "typedef int (*fn)(int);\nint f(void);\nint g() {}\nint v = 1;"),
              "constant X, function F, struct s, attribute a, struct u, attribute b, enum e, constant A, type fn, "
              "function f, function g, variable v");
    EXPECT_EQ(kinds("a.c", "const int a = 1;\nconst char *b = 0;\nconst char *const c[] = {0};\nconst char *d(void);"),
              "constant a, variable b, constant c, function d");
}

TEST(Kinds, CppMembersAreWhatStandsInAClassOrIsNamedByIt) {
    EXPECT_EQ(kinds("a.cpp",
                    "class C {\n  C();\n  template <class T> C(T t);\n  ~C();\n  int& m();\n  int n() {}\n"
                    "  friend int f();\n  static const int k = 1;\n#if X\n  int o() {}\n  C(int);\n#endif\n};"),
              "class C, constructor C, constructor C, method ~C, method m, method n, function f, attribute k, "
              "method o, constructor C");
    EXPECT_EQ(kinds("a.cpp", "C::C(int a) : a_(a) {}\nn::C::~C() {}\ntemplate <class T> int D<T>::m() {}\n"
                             "template <class T> n::D<T>::D() {}\nint either::f() {}\nbool operator==(A, B) {}"),
              "constructor C, method ~C, method m, constructor D, ? f, function operator==");
    EXPECT_EQ(kinds("a.cpp", "enum class E { A };\nusing U = int;\ntemplate <class T> concept Q = true;\n"
                             "template <class T> struct S {};\nconstexpr int k{1};\nauto f = [] {};\nauto& r = k;"),
              "enum E, constant A, type U, interface Q, struct S, constant k, function f, variable r");
}

TEST(Kinds, GoTypesAreWhatTheyAreDefinedAs) {
    EXPECT_EQ(kinds("a.go", "package p\ntype S struct { a, b int }\ntype I interface { M() }\ntype F func()\n"
                            "type D int\ntype A = S\ntype G[T any] struct{}\nfunc f() {}\nfunc (s S) m() {}\n"
                            "const c = 1\nvar v, w = 1, 2\nvar g = func() {}\nvar h func()"),
              "struct S, attribute a, attribute b, interface I, method M, type F, type D, type A, struct G, "
              "function f, method m, constant c, variable v, variable w, function g, function h");
}

TEST(Kinds, JavaRecordsAreClassesWithTheirComponents) {
    EXPECT_EQ(kinds("A.java", "class C {\n  static final int F = 1;\n  C() {}\n  void m() {}\n}\n"
                              "interface I { int K = 1; void n(); }\nenum E { V }\n"
                              "record R<T>(@A int x, T... y) { R {} }\n@interface An { int v(); }"),
              "class C, attribute F, constructor C, method m, interface I, attribute K, method n, enum E, constant V, "
              "class R, attribute x, attribute y, constructor R, interface An, method v");
}

TEST(Kinds, RustFunctionsOfTypesAreMethods) {
    EXPECT_EQ(kinds("a.rs",
                    "struct S { a: u8 }\nunion U { b: u8 }\nenum E { V }\ntrait T { type A; fn m(); fn n() {} }\n"
                    "impl S { const C: u8 = 1; fn o() { fn i() {} } }\nextern \"C\" { fn e(); }\ntype Y = S;\n"
                    "static X: u8 = 1;\nmacro_rules! r { () => {} }\nmod d {}"),
              "struct S, attribute a, struct U, attribute b, enum E, constant V, interface T, type A, method m, "
              "method n, constant C, method o, function i, function e, type Y, variable X, function r, ? d");
}

TEST(Kinds, PythonFunctionsDirectlyInAClassAreMethods) {
    EXPECT_EQ(kinds("a.py", "class C:\n  a: int\n  b = 1\n  @x\n  def m(self):\n    self.c = 1\n  def __init__(self):\n"
                            "    def f(): pass\n  if X:\n    def n(self): pass\n  else:\n    def o(self): pass\n"
                            "def g(): pass\ntype T = int\nv = 1"),
              "class C, attribute a, attribute b, method m, attribute c, constructor __init__, function f, method n, "
              "method o, function g, type T, ? v");
}

TEST(Kinds, TypeScriptConstructorsAreThoseOfClasses) {
    EXPECT_EQ(kinds("a.ts",
                    "class C {\n  constructor(private a: 1);\n  constructor(b: 1) {}\n  get c() {}\n  d = () => 1\n}\n"
                    "interface I { constructor(): 1; e: 1 }\nconst o = { constructor() {} }"),
              "class C, constructor constructor, attribute a, constructor constructor, method c, attribute d, "
              "interface I, method constructor, attribute e, ? o, method constructor");
    EXPECT_EQ(kinds("a.ts", "abstract class A { abstract m(): 1 }\nenum E { F, G = 1 }\ntype T = 1\nfunction* f() {}\n"
                            "declare function g(): 1\nnamespace N {}\nlet v = 1"),
              "class A, method m, enum E, constant F, constant G, type T, function f, function g, ? N, ? v");
    EXPECT_EQ(kinds("a.js", "class A { x = 1; constructor() {} }\nA.prototype.y = 1"),
              "class A, attribute x, constructor constructor, attribute y");
}

}  // namespace
}  // namespace host::sources
