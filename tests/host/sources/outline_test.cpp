// What sources say of their declarations, language by language.

#include "host/sources/module_places.h"
#include "host/sources/query.h"
#include "tests/host/sources/outlined.h"

#include <gtest/gtest.h>

#include <tree_sitter/api.h>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <future>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host::sources {
namespace {

// The declarations of a text as "name first-last marks", by position.
std::string declarations(const std::string& path, const std::string& text) {
    std::string list;
    for (const SourceDeclaration& each : outline(path, text).declarations) {
        list += (list.empty() ? "" : "; ") + each.name + " " + std::to_string(each.first_line) + "-" +
                std::to_string(each.last_line) + (each.is_public ? " public" : "") +
                (each.is_callable ? " callable" : "") + (each.is_constant ? " constant" : "");
    }
    return list;
}

TEST(Outline, EveryLanguageHasAQueryThatFitsItsGrammar) {
    for (const Language& language : languages()) {
        EXPECT_NO_THROW(query_of(language)) << language.name;
        // The library knows more: whether the grammar can have such trees.
        std::string text;
        for (const std::string_view query : language.queries) {
            text += query;
        }
        std::uint32_t offset = 0;
        TSQueryError error = TSQueryErrorNone;
        ts_query_delete(
            ts_query_new(language.grammar(), text.data(), static_cast<std::uint32_t>(text.size()), &offset, &error));
        EXPECT_EQ(error, TSQueryErrorNone) << language.name << ": " << text.substr(offset, 80);
    }
    EXPECT_EQ(understood_language("typescript", "a.tsx")->name, "tsx");
    EXPECT_EQ(understood_language("cpp", "a.h")->name, "cpp");
    EXPECT_EQ(understood_language("c", "a.cpp")->name, "c");
    EXPECT_EQ(understood_language("", "a.rb"), nullptr);
}

TEST(Outline, AQueryMayHaveNoCaptureWithoutAMeaning) {
    Language language = *understood_language("python", "");
    const auto compile = [&](std::string_view query) {
        language.queries = {&query, 1};
        return Query(language);
    };
    EXPECT_NO_THROW(compile("(class_definition name: (_) @anything (#eq? @anything \"A\")) @class"));
    EXPECT_THROW(compile("(class_definition name: (_) @nmae) @class"), std::logic_error);
    EXPECT_THROW(compile("(no_such_node) @class"), std::logic_error);
}

// The names of the declarations of a text as an index of it has them.
std::string indexed_names(const std::string& path, const std::string& text) {
    const std::atomic<bool> never = false;
    const Outline outline = outline_of(text, "", path, never, Content::NAMES).value();
    std::string names = outline.is_cpp ? "C++:" : "";
    for (const SourceDeclaration& each : outline.declarations) {
        names += " " + each.name;
    }
    return names;
}

TEST(Outline, OfAnIndexHasNothingFromBodiesButMacrosAndWhatTellsTheLanguage) {
    EXPECT_EQ(indexed_names("a.c", "int f() { struct S { int a; }; }\nint g() {\n#define M\n}\n"), " f g M");
    EXPECT_EQ(indexed_names("a.h", "inline void f() { class C {}; }"), "C++: f C");
    EXPECT_EQ(indexed_names("a.h", "class B {}; inline void f() { class C {}; }"), "C++: B f");
    EXPECT_EQ(indexed_names("a.go", "package p\nfunc f() { type t int }"), " f");
    EXPECT_EQ(indexed_names("a.py", "class C:\n  def f(self): self.a = 1\n"), " C f a");
}

TEST(Outline, TypeScriptExportsOnTheDeclarationInAListAndByDefault) {
    EXPECT_EQ(declarations("a.ts", "export function a() {}\nfunction b() { const local = 1 }\nclass C {\n  m() {}\n}\n"
                                   "interface D {}\nenum E { F }\nexport { b as x }\nexport default C\n"),
              "a 1-1 public; b 2-2 public; C 3-5 public; m 4-4; D 6-6; E 7-7; F 7-7");
    EXPECT_EQ(declarations("a.ts", "export { a } from './b'\nconst a = 1"), "a 2-2 constant");
    EXPECT_EQ(declarations("a.ts", "function a() {}\nexport = a"), "a 1-1 public");
    EXPECT_EQ(declarations("a.ts", "function global() {}"), "global 1-1 public");
    EXPECT_EQ(declarations("a.tsx", "export const A = () => <b/>;"), "A 1-1 public callable constant");
}

TEST(Outline, AModuleIsLookedForUnderTheNameThatIsImportedWithEveryExtension) {
    EXPECT_EQ(places_of_module("src/a.ts", "./b.js").front(), "src/b.js");
    EXPECT_EQ(places_of_module("src/a.ts", "./b.js")[1], "src/b.ts");
    EXPECT_EQ(places_of_module("src/a.ts", "..").back(), "index.cjs");
    EXPECT_EQ(places_of_module("a.ts", "../b").size() + places_of_module("a.ts", "b").size(), 0);
}

TEST(Outline, TypeScriptNamespacesArePublicWithWhatTheyExport) {
    EXPECT_EQ(
        declarations("a.ts",
                     "import 'b'\nexport namespace N { export const a = 1; let b }\nnamespace M {\nexport let c }"),
        "N 2-2 public; a 2-2 public constant; b 2-2; M 3-4; c 4-4");
    EXPECT_EQ(
        declarations("a.ts", "import 'b'\ndeclare global { interface Error {} }\ndeclare module 'x' { class Y {} }"),
        "Error 2-2; 'x' 3-3; Y 3-3");
}

TEST(Outline, TypeScriptVariablesKnowWhatTheyHold) {
    EXPECT_EQ(
        declarations("a.ts",
                     "const f = function () {}, n = 1\nlet g: (a: 1) => 2\nvar h: { (a: 1): 2 }\n"
                     "const { a, b: c } = o, [d] = p\nclass K { constructor(private e: 1, readonly i: 2, j: 3) {} }\n"
                     "export { f }"),
        "f 1-1 public callable constant; n 1-1 constant; g 2-2 callable; h 3-3 callable; a 4-4 constant; "
        "c 4-4 constant; d 4-4 constant; K 5-5; constructor 5-5; e 5-5; i 5-5");
}

TEST(Outline, TypeScriptTypesKnowWhetherTheyCanBeCalled) {
    const auto callable = [](const std::string& text) {
        const SourceDeclaration each = declaration("a.ts", text, "a");
        std::string list = each.is_callable ? "yes" : "";
        for (const std::string& name : each.type_names) {
            list.append(list.empty() ? "" : " ").append(name);
        }
        return list;
    };
    EXPECT_EQ(callable("let a: (<A>(a: A) => A) & (() => 1)"), "yes");
    EXPECT_EQ(callable("let a: (B)"), "B");
    EXPECT_EQ(callable("const a: core.B<C> & D & { e: 1 }"), "B D");
    EXPECT_EQ(callable("let a: { /** b */ (): 1 }"), "yes");
    EXPECT_EQ(callable("let a: { b: () => 1 } | B"), "");
    EXPECT_EQ(callable("type a = B & (abstract new () => 1)"), "yes B");
    EXPECT_EQ(callable("type a = { b: 1; new (): 1 }"), "yes");
    EXPECT_EQ(callable("type a = () => B"), "yes");
    EXPECT_EQ(callable("interface a extends B<() => 1> { c: 1 }"), "B");
    EXPECT_EQ(callable("interface a { b: () => 1; (): 1 }"), "yes");
    EXPECT_EQ(callable("interface a { b: () => 1 }"), "");
}

TEST(Outline, JavaScriptExportsAsItsModulesAndAsCommonJsDo) {
    EXPECT_EQ(
        declarations("a.js", "const b = require('b')\nfunction f() {}\nfunction g() {}\nmodule.exports = { f, h: g }"),
        "b 1-1 constant; f 2-2 public; g 3-3 public");
    EXPECT_EQ(declarations("a.cjs", "function f() {}\nfunction g() {}\nexports.f = f\nmodule.exports.x = g"),
              "f 1-1 public; g 2-2 public");
    EXPECT_EQ(declarations("a.js",
                           "exports.a = function () {\n};\nmodule.exports.b = c(1);\nexports.d = require('d');\n"
                           "A.prototype.e = A.f = () => 1;\nmodule.exports = { g: 1, h, i: j }\n"
                           "function k() { exports.l = 1; }\nA.prototype.m = A.prototype.q = n;\nA.o = p;"),
              "a 1-2 public callable; b 3-3 public; e 5-5; f 5-5; g 6-6 public; k 7-7; m 8-8; q 8-8");
    EXPECT_EQ(declarations("a.js", "module.exports = class A { m() {} }"), "A 1-1 public; m 1-1");
    EXPECT_EQ(declarations("a.mjs", "export class A { x = 1; m() {} }\nclass B {}"),
              "A 1-1 public; x 1-1; m 1-1; B 2-2");
}

TEST(Outline, PythonExportsWhatItListsOrElseItsTopLevel) {
    const std::string text =
        "X, Y = 1, 2\n@decorated(\n  1)\ndef f():\n    local = 1\nclass C:\n    a = 1\n    def m(self):\n"
        "        self.b = (\n            1)\nif X:\n    def g(): pass\n";
    EXPECT_EQ(declarations("a.py", text), "X 1-1 public; Y 1-1 public; f 2-5 public; C 6-10 public; a 7-7 public; "
                                          "m 8-10 public; b 9-10 public; g 12-12 public");
    EXPECT_EQ(declarations("a.py", "class A:\n  def f(self):\n    b, self.c, *self.d = (\n      1)"),
              "A 1-4 public; f 2-4 public; c 3-4 public; d 3-4 public");
    EXPECT_EQ(declarations("a.py", "__all__ = ['f'] + x\n__all__ += ('g',)\n__all__.append('h')\n"
                                   "def f(): pass\ndef g(): pass\ndef h(): pass\ndef i(): pass"),
              "__all__ 1-1; f 4-4 public; g 5-5 public; h 6-6 public; i 7-7");
}

TEST(Outline, GoExportsCapitals) {
    EXPECT_EQ(
        declarations(
            "a.go",
            "package p\nfunc F() { x := 1 }\nfunc (t *T) m() {}\ntype (\n\tT struct {\n\t\tA int\n\t}\n\tU int\n)\n"
            "const C, d = 1, 2\nvar v = func() {}\ntype I interface { M() }"),
        "F 2-2 public; m 3-3; T 5-7 public; A 6-6 public; U 8-8 public; C 10-10 public; d 10-10; "
        "v 11-11; I 12-12 public; M 12-12 public");
}

TEST(Outline, RustExportsWhatIsPubAndKeepsAttributes) {
    EXPECT_EQ(declarations("a.rs",
                           "#[inline]\n#[must_use]\npub fn f() { let x = 1; }\npub(crate) struct S { a: u8 }\n"
                           "enum E { V }\ntrait T { fn m(&self); }\nconst C: u8 = 1;\nmacro_rules! m { () => {} }"),
              "f 1-3 public; S 4-4 public; a 4-4; E 5-5; V 5-5; T 6-6; m 6-6; C 7-7; m 8-8");
}

TEST(Outline, RustAttributesSayWhatIsPublicOrATest) {
    const std::string text = "#[macro_export]\n/// Doc.\nmacro_rules! m { () => {} }\n#[cfg(test)] // c\n#[allow(x)]\n"
                             "mod tests {\n  #[test]\n  fn a() {}\n}\n#[cfg(not(test))]\nfn b() {}\n"
                             "#[tokio::test]\nasync fn c() {}\n#[cfg(all(test, unix))]\nimpl D {\n  fn d() {}\n}";
    std::string regions;
    for (const auto& [first, last] : outline("a.rs", text).test_regions) {
        regions += std::to_string(first) + "-" + std::to_string(last) + " ";
    }
    EXPECT_EQ(regions, "4-9 12-13 14-17 ");
    EXPECT_TRUE(outline("a.rs", "#![cfg(test)]\nfn a() {}").is_in_test(2));
    EXPECT_TRUE(declaration("a.rs", text, "m").is_public);
}

TEST(Outline, JavaExportsWhatIsPublic) {
    EXPECT_EQ(declarations("A.java",
                           "@Ann\npublic class A {\n  static final int F = 1;\n  A() { int local; }\n  void m() {}\n}\n"
                           "interface I {}\nrecord R(int x) {}\nenum E { V }"),
              "A 1-6 public; F 3-3; A 4-4; m 5-5; I 7-7; R 8-8; x 8-8; E 9-9; V 9-9");
}

TEST(Outline, CAndCppHideWhatIsStaticOrInAnUnnamedNamespace) {
    EXPECT_EQ(declarations("a.c",
                           "#define MAX 1\nstatic int f(void) { int local; return 1; }\nchar *g(int a);\n"
                           "struct s { int *x; };\ntypedef int (*fn)(int);\nconst int t[] = {\n  1 };\nenum e { A };"),
              "MAX 1-1 public; f 2-2; g 3-3 public; s 4-4 public; x 4-4 public; fn 5-5 public; t 6-7 public; "
              "e 8-8 public; A 8-8 public");
    EXPECT_EQ(declarations("a.hpp",
                           "namespace a {\nnamespace { int h() { return 1; } }\ntemplate <class T>\nclass C {\n  C();\n"
                           "  int& m() const { return x; }\n  T x;\n};\nint C::n() {}\nconstexpr int k = 1;\n}"),
              "h 2-2; C 3-8 public; C 5-5 public; m 6-6 public; x 7-7 public; n 9-9 public; k 10-10 public");
}

TEST(Outline, AHeaderIsReadAsTheOneOfCAndCppThatUnderstandsMoreOfIt) {
    const auto header = [](const std::string& text, const std::string& stated = "") {
        static const std::atomic<bool> never = false;
        return outline_of(text, stated, "a.h", never).value();
    };
    EXPECT_TRUE(header("class C { int a; };\n(").is_cpp);
    EXPECT_FALSE(header("class C { int a; };", "c").is_cpp);
    EXPECT_FALSE(header("struct s { int a; };").is_cpp);
    EXPECT_EQ(header("struct s { int class; };").declarations.back().name, "class");
    EXPECT_EQ(header("struct s { s(int& a) : a_(a) {} int a_; };\n(").declarations[1].kind, "constructor");
}

TEST(Outline, ASignatureEndsBeforeTheBodyAndBeforeALongValue) {
    const auto signature = [](const std::string& path, const std::string& text, const std::string& name) {
        return declaration(path, text, name).signature;
    };
    EXPECT_EQ(signature("a.ts", "class C {\n    m(\n        a: 1,\n    ): void {\n    }\n}", "m"),
              "m(\n    a: 1,\n): void");
    EXPECT_EQ(signature("a.ts", "export const f = (a: 1): 2 => { x }", "f"), "export const f = (a: 1): 2");
    EXPECT_EQ(signature("a.ts", "const n = 1;", "n"), "const n = 1");
    EXPECT_EQ(signature("a.ts", "const o: { a: 1 } = {\n a: 1 }", "o"), "const o: { a: 1 }");
    EXPECT_EQ(signature("a.ts", "type U =\n  | 1\n  | 2;", "U"), "type U =\n  | 1\n  | 2");
    EXPECT_EQ(signature("a.py", "class C(B):\n    x = 1", "C"), "class C(B)");
    EXPECT_EQ(signature("a.py", "def f(  # one\n    a):\n    # Two.\n\n    # Three.\n    pass", "f"), "def f(\n    a)");
    EXPECT_EQ(signature("a.ts",
                        "const f: {\n  /** One.\n   */\n  (a: 1, /* Two. */ b: 2): 3 // Three.\n\n  (): 4\n} = g", "f"),
              "const f: {\n  (a: 1, b: 2): 3\n\n  (): 4\n} = g");
    EXPECT_EQ(signature("a.go", "package p\nfunc (t *T) M(a int) (b error) { }", "M"),
              "func (t *T) M(a int) (b error)");
    EXPECT_EQ(signature("a.cpp", "C::C(int a) : a_(a) {}", "C"), "C::C(int a)");
}

TEST(Outline, ADocCommentStandsWhereTheCompilerOfTheLanguageLooksForIt) {
    const auto documentation = [](const std::string& path, const std::string& text, const std::string& name) {
        return declaration(path, text, name).documentation;
    };
    EXPECT_EQ(documentation("a.ts", "/** One. */\n// eslint-disable-next-line\nexport const a = 1", "a"), "One.");
    EXPECT_EQ(documentation("a.ts", "/** Far. */\n\n// Plain.\n\nconst a = 1", "a"), "Far.");
    EXPECT_EQ(documentation("a.ts", "/** One. */\n/** Two. */ /* Plain. */\nconst a = 1", "a"), "Two.");
    EXPECT_EQ(documentation("a.ts", "/** Of the import. */\nimport 'x'\nconst a = 1", "a"), "");
    EXPECT_EQ(documentation("a.ts", "/** Above. */\n@b // c\n/** Between. */\nclass A {}", "A"), "Above.");
    EXPECT_EQ(documentation("a.ts", "// No doc comment.\nconst a = 1", "a"), "");
    EXPECT_EQ(documentation("a.ts", "const b = 1 /** Behind. */\nconst a = 1", "a"), "");
    EXPECT_EQ(documentation("a.ts", "/** Both. */\nfunction f(): 1\nfunction f(a?: 1) {}", "f"), "Both.");
    EXPECT_EQ(outline("a.ts", "/** Both. */\nfunction f(): 1;\nfunction f(a?: 1) {}").declarations[1].documentation,
              "Both.");
    EXPECT_EQ(
        outline("a.go", "package p\n// Of A.\nfunc (a A) F() {}\nfunc (b B) F() {}").declarations[1].documentation, "");
    EXPECT_EQ(documentation("a.py", "def f():\n    r\"\"\"Does.\n\n    And more:\n\n        code\n    \"\"\"", "f"),
              "Does.\n\nAnd more:\n\n    code");
    EXPECT_EQ(documentation("a.rs", "/// Far.\n\n#[a]\n/// Between.\n#[b]\nfn f() {}", "f"), "Far.\nBetween.");
    EXPECT_EQ(documentation("a.rs", "////////\nfn f() {}", "f"), "");
    EXPECT_EQ(documentation("a.go", "package p\n// Far.\n\nfunc f() {}", "f"), "");
    EXPECT_EQ(documentation("a.rs", "/// Does.\n///\n/// More.\n#[test]\nfn f() {}", "f"), "Does.\n\nMore.");
    EXPECT_EQ(documentation("a.c", "/*\n * Does\n * it.\n */\nint f(void);", "f"), "Does\nit.");
    EXPECT_EQ(documentation("A.java",
                            "/**\n * Does. {@code x}\n *   - a\n *\n *\n * Ends.\n * @param a the first\n"
                            " *   of all\n */\nclass A {}",
                            "A"),
              "Does. {@code x}\n  - a\n\nEnds.");
    const std::string code = "- As:\n  ```\n  @Override\n  ```\n- More.";
    EXPECT_EQ(documentation("A.java", "/**\n" + code + "\n@param a b\n*/\nclass A {}", "A"), code);
    EXPECT_EQ(documentation("a.ts", "/** Does:\n\n    - a\n      - b */\nfunction f() {}", "f"), "Does:\n\n- a\n  - b");
    EXPECT_EQ(
        documentation("a.cpp", "/// @brief Does.\n/// @param a is\n/// left out\n/// @details More.\nint f();", "f"),
        "Does.\nMore.");
}

TEST(Outline, MembersOfTypesNeedNoSeparatorBetweenLines) {
    EXPECT_EQ(declarations("a.ts", "export const f: {\n  <A>(a: A): B<A>\n  /** a */\n"
                                   "  <A>(): A\n  <A, B>(a: A): C\n} = g(\n)\nconst h = a\n< b"),
              "f 1-7 public callable constant; h 8-9 constant");
}

TEST(Outline, WhereATextDoesNotParseItsLinesSayWhatIsPublic) {
    const auto is_public = [](const std::string& path, const std::string& text, std::int32_t line) {
        return outline(path, text + "\n((((").public_names.contains("a", line);
    };
    EXPECT_TRUE(is_public("a.ts", "const b = 1\nexport const a = 1", 2));
    EXPECT_FALSE(is_public("a.ts", "export const b = 1\nconst a = 1", 2));
    EXPECT_FALSE(is_public("a.ts", "import b from 'b'\nconst a = 1", 2));
    EXPECT_TRUE(is_public("a.ts", "export { a }\nconst a = 1", 2));
    EXPECT_TRUE(is_public("a.ts", "const b = 1\nconst a = 1", 2));
    EXPECT_TRUE(is_public("a.rs", "  pub(crate) fn a() {}", 1));
    EXPECT_FALSE(is_public("a.rs", "fn a() {}\npublished!()", 2));
    EXPECT_FALSE(is_public("a.c", "static int a;", 1));
    EXPECT_TRUE(is_public("a.c", "int a;", 1));
    EXPECT_FALSE(is_public("a.go", "func a() {}", 1));
    EXPECT_FALSE(is_public("a.py", "__all__ = ['b']\na = 1", 2));
    EXPECT_FALSE(outline("a.ts", "export const b = 1").public_names.contains("a", 1));
}

TEST(Outline, ManyNamesOnOneLineTakeNoMoreThanTheirText) {
    std::string names = "a";
    for (int count = 0; count < 50'000; ++count) {
        names += ", a";
    }
    const Outline all = outline("a.go", "package p\nvar " + names + " int\nvar b int\n");
    EXPECT_EQ(all.declarations.size(), 50'002);
    EXPECT_EQ(all.declarations[50'000].position.column, 150'004);
    EXPECT_EQ(all.declarations[50'000].signature, "");
    EXPECT_EQ(all.declarations[50'001].signature, "var b int");
    EXPECT_EQ(declaration("a.ts", "let \u00E9, \U0001D483, c", "c").position.column, 11);
}

TEST(Outline, DamageCostsNoMoreThanItsPart) {
    EXPECT_EQ(declaration("a.ts", "export function a() {}\n<<<<<<< HEAD\nexport function b() {}\n", "a").first_line, 1);
    EXPECT_FALSE(declaration("a.ts", "export let x\nfunction f() {}\nconst y = (((", "f").is_public);
    const std::atomic<bool> never = false;
    const std::atomic<bool> at_once = true;
    const Language& language = *understood_language("", "a.ts");
    EXPECT_FALSE(outline_of("a\xFF", language, never));
    EXPECT_FALSE(outline_of(std::string(LARGEST_SOURCE + 1, ' '), language, never));
    EXPECT_FALSE(outline_of(std::string(100'000, '('), language, at_once));
    EXPECT_FALSE(outline_of(std::string(70'000, '{'), language, never));
    EXPECT_FALSE(outline_of(std::string(3'000, '!') + "a", language, never));
    std::string decorators;
    for (int count = 0; count < 20'000; ++count) {
        decorators += "@ ";
    }
    EXPECT_FALSE(outline_of(decorators, language, never));
    EXPECT_EQ(outline_of("\xEF\xBB\xBFlet a\r\nlet b\r\n", language, never)->line_count, 2);
    EXPECT_EQ(outline("a.py", "").line_count, 1);
}

// The parser's memory is released with a text, and serves the next one.
TEST(Outline, IsTheSameWhateverTheThreadHasReadBefore) {
    std::string values;  // so many that their list and their trees are larger than what a thread keeps
    for (int count = 0; count < 200'000; ++count) {
        values += std::to_string(count) + ", ";
    }
    std::string functions;
    for (int count = 0; count < 2'000; ++count) {
        functions += "int f" + std::to_string(count) + "(int a) { return g(a, [&] { return a + 1; }); }\n";
    }
    const std::vector<std::pair<std::string, std::string>> texts{
        {"a.cpp", "int all[] = {" + values + "};\n" + functions},
        {"a.py", "def f(a: 'list[int]') -> 'C':\n    return a\nclass C: pass\n"},
        {"a.c", "int f() {\n  if (a {\n}\nstatic int *g(void) { return 0; }\n"},
        {"a.cpp", functions},
        {"a.h", "class A { int b(); };\nLOCAL int c(void);\n"},
        {"a.ts", "export const a = `${b}`\nexport function f<T>(x: T) { return class {} }\n"},
    };
    for (const auto& text : texts) {
        const std::string alone =
            std::async(std::launch::async, [&] { return declarations(text.first, text.second); }).get();
        EXPECT_EQ(declarations(text.first, text.second), alone) << text.first;
    }
}

TEST(Outline, ATextThatWasMadeToTakeMemoryTakesNoMoreThanASourceDoes) {
    std::string text;
    for (int count = 0; count < 400'000; ++count) {
        text += "a<(";
    }
    const pid_t child = fork();
    if (child == 0) {
        const std::atomic<bool> never = false;
        _exit(outline_of(text, *understood_language("", "a.ts"), never) ? 1 : 0);
    }
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    EXPECT_EQ(status, 0);
    // Kilobytes; without a limit the parser takes 1.6 GB.
    EXPECT_LT(usage.ru_maxrss, 600'000);  // NOLINT(*-union-access): so does the system declare it
}

}  // namespace
}  // namespace host::sources
