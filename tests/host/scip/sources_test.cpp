// What an import takes from the sources, and what it does without them.

#include "tests/host/scip/import_fixture.h"

namespace host::scip {
namespace {

std::string texts_of(const std::string& name) {
    return "SELECT signature || '|' || documentation AS row FROM descriptions "
           "JOIN symbols ON id = symbol_id WHERE name = '" +
           name + "'";
}

TEST_F(ScipImport, TheSourceGivesWhatTheDocumentLeavesOut) {
    folder.write("checkout/a.ts", "/** Doubles. */\nexport const twice = (\n  x: number,\n) => {\n  return 2 * x\n}\n"
                                  "const limit = 1;\nfunction hidden() {}\nexport { hidden as shown };\n");
    const ImportReport report =
        import_with_sources({ScipDocument("a.ts")
                                 .defines(symbol("twice."), {1, 13, 18})
                                 .defines(symbol("limit."), {6, 6, 11})
                                 .defines(symbol("hidden()."), {7, 9, 15}, {7, 0, 20})
                                 .describes(symbol("hidden()."), {.documentation = {"Not this."}})});
    EXPECT_EQ(declarations(), "twice function 2-6 public; limit constant 7-7; hidden function 8-8 public");
    EXPECT_EQ(rows(texts_of("twice")), "export const twice = (\n  x: number,\n)|Doubles.");
    EXPECT_EQ(rows(texts_of("hidden")), "function hidden()|");
    EXPECT_EQ(report.sources, 1);
    EXPECT_EQ(report.unread.count + report.unparsed.count + report.moved.count, 0);
}

TEST_F(ScipImport, AnEnclosingRangeThatDoesNotHoldTheNameIsNotTheWholeDeclaration) {
    folder.write("checkout/a.ts", "export const f: (\n  a: number,\n) => number =\n  (a) => {\n    return a\n  }\n");
    import_with_sources({ScipDocument("a.ts").defines(symbol("f."), {0, 13, 14}, {3, 2, 5, 3})});
    EXPECT_EQ(declarations(), "f function 1-6 public");
}

TEST_F(ScipImport, WithoutASourceTheDocumentsSpeak) {
    folder.write("checkout/a.ts", "export function f() {}\n");
    folder.write("checkout/latin.ts", "function g() {}  // \xE9\n");
    const Says says{.documentation = {"```ts\nfunction f(): void\n```", "Does it.", "---", "Twice."}};
    const ImportReport report =
        import_with_sources({ScipDocument("gone.ts").defines(F).describes(F, says),
                             ScipDocument("latin.ts").defines(G, {0, 9, 10}).describes(G, says)});
    EXPECT_EQ(declarations(), "f function 1-1 public; g function 1-1 public");
    EXPECT_EQ(rows(texts_of("g")), "function f(): void\n|Does it.\n\nTwice.");
    EXPECT_EQ(report.unread.first, std::vector<std::string>{"gone.ts"});
    EXPECT_EQ(report.unparsed.first, std::vector<std::string>{"latin.ts"});
    EXPECT_EQ(rows("SELECT path || ' ' || (content_hash IS NULL) AS row FROM files"), "gone.ts 1; latin.ts 0");
}

TEST_F(ScipImport, ALanguageThatNobodyReadsIsPublicAsItsSignaturesSay) {
    folder.write("checkout/a.cs", "class C\n");
    folder.write("checkout/a.kt", "class C\n");
    const std::string h = symbol("h().");
    const std::string k = symbol("k().");
    import_with_sources({ScipDocument("a.cs", "CSharp")
                             .defines(F)
                             .describes(F, {.signature = "static public void f()"})
                             .defines(G, {1, 0, 1})
                             .describes(G, {.signature = "static void g()"})
                             .defines(symbol("C#"), {2, 0, 1}),
                         ScipDocument("a.kt", "Kotlin")
                             .defines(h)
                             .describes(h, {.signature = "suspend fun h()"})
                             .defines(k, {1, 0, 1})
                             .describes(k, {.signature = "internal fun k()"})});
    EXPECT_EQ(declarations(), "f function 1-1 public; g function 2-2; C class 3-3 public; h function 1-1 public; "
                              "k function 2-2");
}

TEST_F(ScipImport, AHeaderIsOfTheLanguageThatItsTextIsInUnlessItIsStated) {
    folder.write("checkout/c.h", "/* Sorts. */\nstruct s {\n  int class;\n};\n");
    const std::string text = "namespace n {\n/// Sorts.\nclass C {\n public:\n  int m();\n};\n}\n";
    folder.write("checkout/cpp.h", text);
    folder.write("checkout/stated.h", text);
    import_with_sources({ScipDocument("c.h").defines(symbol("s#"), {1, 7, 8}),
                         ScipDocument("cpp.h").defines(symbol("n/C#"), {2, 6, 7}), ScipDocument("stated.h", "C")});
    EXPECT_EQ(declarations(), "s struct 2-4 public; C class 3-6 public");
    EXPECT_EQ(rows(texts_of("s")) + rows(texts_of("C")), "struct s|Sorts.class C|Sorts.");
    EXPECT_EQ(rows("SELECT path || ' ' || language AS row FROM files"), "c.h c; cpp.h cpp; stated.h c");
}

TEST_F(ScipImport, ASourceThatHasChangedSinceItWasIndexedIsKnownByWhatHasMoved) {
    folder.write("checkout/a.ts", "// a new line\nexport function f() {}\n");
    folder.write("checkout/b.ts", "export function g() {}\n");
    const ImportReport report = import_with_sources(
        {ScipDocument("a.ts").defines(F, {0, 16, 17}), ScipDocument("b.ts").defines(G, {0, 16, 17})});
    EXPECT_EQ(report.moved.first, std::vector<std::string>{"a.ts"});
    EXPECT_EQ(rows("SELECT path || ' ' || (content_hash = 0) AS row FROM files"), "a.ts 1; b.ts 0");
}

TEST_F(ScipImport, TheSourcesAreWhereTheScipFileSaysUnlessToldOtherwise) {
    folder.write("my checkout/a.ts", "export function f() {}\n");
    const std::vector<ScipDocument> documents{ScipDocument("a.ts").defines(F, {0, 16, 17})};
    const auto sources = [&](const std::string& root) {
        return import_as({{folder.write("in.scip", scip_file(documents, root))}, std::nullopt}).sources;
    };
    EXPECT_EQ(sources("file://" + folder / "my%20checkout"), 1);
    EXPECT_EQ(sources("file://" + folder / "nowhere"), 0);
    EXPECT_EQ(sources("http://host/" + folder / "my%20checkout"), 0);
}

TEST_F(ScipImport, TheSourceSaysTheKindThatAnIndexerLeavesOpen) {
    folder.write("checkout/a.go", "package a\ntype S struct{}\ntype I interface{ M() }\ntype F func()\n");
    folder.write("checkout/a.cc", "enum class E { A };\nusing U = E;\n#define MAX 1\n#define F(x) x\n");
    import_with_sources({ScipDocument("a.cc")
                             .defines(symbol("E#"), {0, 11, 12})
                             .defines(symbol("E#A."), {0, 15, 16})
                             .defines(symbol("U#"), {1, 6, 7})
                             .defines(symbol("MAX!"), {2, 8, 11})
                             .defines(symbol("F!"), {3, 8, 9})
                             .describes(symbol("F!"), {.kind = 8}),
                         ScipDocument("a.go")
                             .defines(symbol("S#"), {1, 5, 6})
                             .defines(symbol("I#"), {2, 5, 6})
                             .defines(symbol("I#M."), {2, 18, 19})
                             .defines(symbol("F#"), {3, 5, 6})});
    EXPECT_EQ(declarations(),
              "E enum 1-1 public; A constant 1-1; U type 2-2 public; MAX constant 3-3 public; F constant 4-4 public; "
              "S struct 2-2 public; I interface 3-3 public; M method 3-3; F type 4-4 public");
}

TEST_F(ScipImport, AParameterThatIsAPropertyOfItsClassIsAnAttribute) {
    folder.write("checkout/a.ts", "class A {\n  constructor(private b: 1, c: 2) {}\n}\n");
    const std::string constructor = symbol("A#`<constructor>`().");
    import_with_sources({ScipDocument("a.ts")
                             .defines(symbol("A#"), {0, 6, 7})
                             .defines(constructor, {1, 2, 13})
                             .defines(constructor + "(b)", {1, 22, 23})
                             .defines(constructor + "(c)", {1, 28, 29})});
    EXPECT_EQ(rows("SELECT kind || ' ' || fqn AS row FROM symbols"),
              "class A; constructor A.constructor; attribute A.b");
}

TEST_F(ScipImport, AConstructorThatNobodyWroteIsOneWithItsType) {
    folder.write("checkout/A.java", "class A {}\nclass B {\n  B() {}\n}\n");
    const std::string implicit = symbol("A#`<init>`().");
    import_with_sources({ScipDocument("A.java")
                             .defines(symbol("A#"), {0, 6, 7})
                             .defines(implicit, {0, 6, 7})
                             .describes(implicit, {.signature = "public A()"})
                             .defines(symbol("B#"), {1, 6, 7})
                             .defines(symbol("B#`<init>`()."), {2, 2, 3}),
                         ScipDocument("C.java").refers(implicit)});
    EXPECT_EQ(declarations(), "A class 1-1; B class 2-4; constructor constructor 3-3");
    EXPECT_EQ(rows(texts_of("A")), "class A|");
    EXPECT_EQ(edges(), "C.java 1 import 1");
}

TEST_F(ScipImport, AFunctionInAMethodIsNoMethodOfItsClass) {
    folder.write("checkout/a.py", "class A:\n  def m(self):\n    def g(): pass\n    self.g = g\n");
    import_with_sources({ScipDocument("a.py")
                             .defines(symbol("`a`/A#"), {0, 6, 7})
                             .defines(symbol("`a`/A#m()."), {1, 6, 7})
                             .defines(symbol("`a`/A#g()."), {2, 8, 9})
                             .defines(symbol("`a`/A#g."), {3, 9, 10})
                             .refers_to_all({symbol("`a`/A#g()."), symbol("`a`/A#g.")})});
    EXPECT_EQ(declarations(), "A class 1-4 public; m method 2-4; g attribute 4-4");
}

TEST_F(ScipImport, AConstantWhoseTypeCanBeCalledIsAFunction) {
    folder.write("checkout/t.ts", "export interface Parse { (a: 1): 2 }\nexport type Alias = Parse & { b: 1 }\n"
                                  "export type Two = () => 1\nexport interface No {}\n");
    folder.write("checkout/u.ts", "export type Two = 1\n");
    folder.write("checkout/a.ts", "const a: Parse = x\nconst b: t.Alias & No = x\nconst c: Two = x\nconst d: No = x\n"
                                  "const e: (<A>(a: A) => A) & No = x\nconst f = x\n");
    ScipDocument constants("a.ts");
    for (const char* const name : {"a", "b", "c", "d", "e", "f"}) {
        constants.defines(symbol(std::string(name) + "."), {name[0] - 'a', 6, 7});
    }
    constants.describes(symbol("f."), {.signature = "const f: Alias"});
    import_with_sources({constants, ScipDocument("t.ts"), ScipDocument("u.ts")});
    EXPECT_EQ(rows("SELECT name || ' ' || kind AS row FROM symbols ORDER BY name"),
              "a function; b function; c constant; d constant; e function; f function");
}

TEST_F(ScipImport, WhatDoesNotParseMakesNothingPublicAndIsReported) {
    folder.write("checkout/a.ts",
                 "export function f() {}\nfunction g() {}\n<<<<<<< HEAD\nexport const h = (((\nconst i = {{{\n");
    const ImportReport report = import_with_sources({ScipDocument("a.ts")
                                                         .defines(F, {0, 16, 17})
                                                         .defines(G, {1, 9, 10})
                                                         .defines(symbol("h."), {3, 13, 14})
                                                         .defines(symbol("i."), {4, 6, 7})});
    EXPECT_EQ(rows("SELECT name AS row FROM symbols WHERE is_export ORDER BY name"), "f; h");
    EXPECT_EQ(report.damaged.first, std::vector<std::string>{"a.ts"});
    EXPECT_EQ(report.out_of_damage, 3);
}

TEST_F(ScipImport, WhatIsCompiledForTestsAloneIsNoProductionCode) {
    folder.write("checkout/a.rs",
                 "pub fn f() {}\n#[cfg(test)]\nmod tests {\n  fn g() { f() }\n}\npub fn h() { f() }\n");
    const ImportReport report = import_with_sources({ScipDocument("a.rs")
                                                         .defines(F, {0, 7, 8})
                                                         .defines(symbol("tests/g()."), {3, 5, 6})
                                                         .occurs(F, 0, {3, 11, 12})
                                                         .defines(symbol("h()."), {5, 7, 8})
                                                         .occurs(F, 0, {5, 13, 14})});
    EXPECT_EQ(declarations(), "f function 1-1 public; h function 6-6 public");
    EXPECT_EQ(edges(), "a.rs 1 local 1");
    EXPECT_EQ(report.references_in_test_code, 1);
}

TEST_F(ScipImport, TheDocumentationOfAnOverloadIsThatOfAll) {
    folder.write("checkout/a.ts",
                 "/** Does. */\nexport function f(): 1;\nconst a = 1\nexport function f(b?: 1) {\n}\n");
    import_with_sources({ScipDocument("a.ts").defines(F, {1, 16, 17}).defines(F, {3, 16, 17}, {3, 0, 4, 1})});
    EXPECT_EQ(rows(texts_of("f")), "export function f(b?: 1)|Does.");
}

TEST_F(ScipImport, WhatComesOutOfAnObjectIsADeclarationOfItsFile) {
    const std::string module = symbol("`a.ts`/");
    folder.write("checkout/a.ts", "export const { f, g } = o\nfunction h() {\n  const { i } = f(f, g)\n}\n"
                                  "if (h) {\n  const { j } = o\n}\n");
    folder.write("checkout/b.ts", "import { f, g as k } from './a'\nf(k)\n");
    import_with_sources({ScipDocument("a.ts")
                             .defines(module, {0, 0, 0})
                             .defines("local 1", {0, 15, 16})
                             .occurs(symbol("`o.ts`/f0:"), 0, {0, 15, 16})
                             .defines("local 2", {0, 18, 19})
                             .defines(module + "h().", {1, 9, 10}, {1, 0, 3, 1})
                             .defines("local 3", {2, 10, 11})
                             .occurs("local 1", 0, {2, 16, 17})
                             .occurs("local 1", 0, {2, 18, 19})
                             .occurs("local 2", 0, {2, 21, 22})
                             .occurs("local 1", 0, {4, 4, 5}),  // another one of this number
                         ScipDocument("b.ts")
                             .occurs("local 1", 0, {0, 9, 10})
                             .occurs("local 2", 0, {0, 17, 18})
                             .occurs("local 1", 0, {1, 0, 1})
                             .occurs("local 2", 0, {1, 2, 3})});
    EXPECT_EQ(declarations(), "f constant 1-1 public; g constant 1-1 public; h function 2-4");
    EXPECT_EQ(edges(), "a.ts 1 local 2; a.ts 2 local 1; b.ts 1 import 2; b.ts 2 import 2");
}

TEST_F(ScipImport, AttributesThatScipPythonTakesForSomethingElseAreDeclaredByTheSource) {
    const std::string type = "scip-python python python-stdlib 3.11 builtins/type#";
    folder.write("checkout/a.py",
                 "class A:\n  __slots__ = ('x', 'y')\n  type: str\n  def f(self):\n    self.x = self.z = 1\n"
                 "    self.x = other.y = 2\n");
    import_with_sources({ScipDocument("a.py")
                             .defines(symbol("a/__init__:"), {0, 0, 0})
                             .defines(symbol("a/A#"), {0, 6, 7})
                             .occurs(type, 0, {2, 2, 6})
                             .defines(symbol("a/A#f()."), {3, 6, 7})});
    EXPECT_EQ(declarations(), "A class 1-6 public; type attribute 3-3; f method 4-6; x attribute 5-5");
}

TEST_F(ScipImport, NotesTheSummariesThatMoreThanThreeFilesShare) {
    for (const char* const file : {"a.ts", "b.py", "c.ts", "d.txt"}) {
        folder.write(std::string("checkout/") + file, "\xEF\xBB\xBF# Formats\r\n# dates.\r\n\r\n# More.\r\n");
    }
    folder.write("checkout/e.ts", "// Sorts.\n");
    import_with_sources({ScipDocument("a.ts"), ScipDocument("b.py"), ScipDocument("c.ts"), ScipDocument("d.txt"),
                         ScipDocument("e.ts"), ScipDocument("gone.ts")});
    EXPECT_EQ(rows("SELECT value AS row FROM meta WHERE key = 'shared_summaries'"), "Formats dates.\n");
}

TEST_F(ScipImport, AMoreDistantPlaceThanTheColumnsSayIsFoundByName) {
    folder.write("checkout/a.ts", "/* \xF0\x9F\x98\x80\xC3\xA9 */ export const a = 1, b = 2;\n");
    // Columns in UTF-16, as most indexers count, and in bytes.
    import_with_sources({ScipDocument("a.ts").defines(symbol("b."), {0, 30, 31}).defines(symbol("a."), {0, 26, 27})});
    EXPECT_EQ(declarations(), "b constant 1-1 public; a constant 1-1 public");
}

}  // namespace
}  // namespace host::scip
