// What an import takes from the sources, and what it does without them.

#include "tests/embedded/scip/import_fixture.h"

namespace embedded::scip {
namespace {

std::string texts_of(const std::string& name) {
    return "SELECT signature || '|' || documentation AS row FROM descriptions JOIN symbols ON id = symbol_id WHERE name = '" +
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

TEST_F(ScipImport, AMoreDistantPlaceThanTheColumnsSayIsFoundByName) {
    folder.write("checkout/a.ts", "/* \xF0\x9F\x98\x80\xC3\xA9 */ export const a = 1, b = 2;\n");
    // Columns in UTF-16, as most indexers count, and in bytes.
    import_with_sources({ScipDocument("a.ts").defines(symbol("b."), {0, 30, 31}).defines(symbol("a."), {0, 26, 27})});
    EXPECT_EQ(declarations(), "b constant 1-1 public; a constant 1-1 public");
}

}  // namespace
}  // namespace embedded::scip
