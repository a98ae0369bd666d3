// What an import makes of documents, and what it says of what is no SCIP file.

#include "host/indexing/report_json.h"
#include "host/scip/symbol.h"
#include "tests/host/scip/import_fixture.h"

#include <algorithm>
#include <stdexcept>

namespace host::scip {
namespace {

TEST_F(ScipImport, NumbersFilesByPathAndDeclarationsByFileLineAndDefinition) {
    import({ScipDocument("b.c").defines(G, {8, 0, 1}).defines(symbol("b#"), {3, 0, 1}).defines(symbol("a#"), {3, 0, 1}),
            ScipDocument("a.py", "Python").defines("local 1").defines(F, {0, 4, 5}, {0, 0, 2, 0})});
    EXPECT_EQ(rows("SELECT id || ' ' || path || ' ' || language AS row FROM files"), "1 a.py python; 2 b.c c");
    EXPECT_EQ(rows("SELECT id || ' ' || file_id || name || ' ' || start_line || ' ' || end_line AS row FROM symbols"),
              "1 1f 1 2; 2 2b 4 4; 3 2a 4 4; 4 2g 9 9");
    EXPECT_EQ(rows("SELECT name || ' ' || import_resolved AS row FROM languages"), "c 1; python 1");
}

TEST_F(ScipImport, NotesWhatItHasFoundForThoseWhoLookForThings) {
    const ImportReport report =
        import({ScipDocument("a.ts").defines(F, {0, 0, 9, 0}).defines(G, {4, 0, 19, 0}).refers(F),
                ScipDocument("b.ts").refers(F).refers(F).defines(symbol("b#"), {3, 0, 1}),
                ScipDocument("b.test.ts").refers(F)});
    EXPECT_EQ(rows("SELECT path || ' ' || declarations || ' ' || declared_lines AS row FROM files ORDER BY id"),
              "a.ts 2 19; b.test.ts 0 0; b.ts 1 1");
    EXPECT_EQ(rows("SELECT name || ' ' || uses AS row FROM symbols ORDER BY id"), "f 3; g 0; b 0");
    EXPECT_EQ(rows("SELECT value AS row FROM meta WHERE key = 'report'"), to_json(report));
    EXPECT_EQ(to_json(indexing::read_report(to_json(report))), to_json(report));
    EXPECT_EQ(report.source, folder / "in.scip");
    EXPECT_EQ(report.tool, "indexer 1.2");
    EXPECT_EQ(report.files_by_language.at("typescript"), 3);
    EXPECT_EQ(report.declarations_by_kind.at("function"), 2);
    EXPECT_EQ(report.edges_by_resolution.at("import").references, 3);
    EXPECT_EQ(report.edges_by_resolution.at("ambiguous").edges, 0);
    EXPECT_THROW(indexing::read_report("{}"), std::invalid_argument);
}

TEST_F(ScipImport, AnOccurrenceInItsOwnDocumentIsLocalAndElsewhereAnImport) {
    import({ScipDocument("a.ts").defines(F).refers(F, 8).refers(F, 64).refers("local 1").refers(""),
            ScipDocument("b.ts").refers(F, 2).refers(symbol("external().")).refers(F)});
    EXPECT_EQ(edges(), "a.ts 1 local 1; b.ts 1 import 2");
}

TEST_F(ScipImport, DocumentsOfOnePathAddUp) {
    import({ScipDocument("a.ts").describes(F, {.display_name = "one"}).defines(F, {7, 0, 1}).refers(G),
            ScipDocument("b.ts").defines(G),
            ScipDocument("a.ts", "tsx").describes(F, {.kind = 61, .display_name = "two"}).describes(F, {.kind = 7}),
            ScipDocument("a.ts", "lua").defines(F, {1, 0, 2, 1}).refers(G).refers(F)});
    EXPECT_EQ(rows("SELECT name || ' ' || kind || ' ' || start_line || ' ' || end_line AS row FROM symbols"),
              "one variable 2 3; g function 1 1");
    EXPECT_EQ(rows("SELECT path || ' ' || language AS row FROM files"), "a.ts tsx; b.ts typescript");
    EXPECT_EQ(edges(), "a.ts 1 local 1; a.ts 2 import 2");
}

TEST_F(ScipImport, OfEquallyLongDefinitionsTheFirstCountsAndOneWithoutARangeIsDropped) {
    const ImportReport report =
        import({ScipDocument("a.ts").defines(F, {5, 0, 1}).defines(F, {2, 0, 1}).defines(F, {}).defines(G, {1, 2})});
    EXPECT_EQ(declarations(), "f function 6-6 public");
    EXPECT_EQ(report.unusable_definitions, 2);
}

TEST_F(ScipImport, SaysWhatItsReferencesLackAndWhichTestsReachNothing) {
    const ImportReport report =
        import({ScipDocument("src/a.ts").defines(F).defines(symbol("src/`a.ts`/")).refers(symbol("src/`gone.ts`/")),
                ScipDocument("test/lost.ts")
                    .refers("tool npm big 1 x#")
                    .refers("tool npm big 1 `b.ts`/")
                    .refers("tool npm small 1 y#"),
                ScipDocument("test/empty.ts"), ScipDocument("test/found.ts").refers(F).refers(symbol("f().(p)"))});
    using Package = std::pair<std::string, std::int64_t>;
    EXPECT_EQ(report.nowhere, (std::vector<Package>{{"big", 2}, {"small", 1}}));
    EXPECT_EQ(report.missing_modules.first, std::vector<std::string>{"src/gone.ts"});
    EXPECT_EQ(report.lost_tests.first, std::vector<std::string>{"test/lost.ts"});
}

TEST_F(ScipImport, LeavesOutPathsAndNamesWithControlCharactersAndCountsThem) {
    const ImportReport report = import({ScipDocument("a.ts", "\x1B")
                                            .describes(F, {.display_name = "\u202E"})
                                            .defines(F)
                                            .defines(symbol("`f\n\n## G`#"))
                                            .defines(symbol("f().(`{\n  body }`)typeLiteral1:body.")),
                                        ScipDocument("b\n|.ts"), ScipDocument("\u0085.ts"), ScipDocument("\u2028.ts"),
                                        ScipDocument("\x7F.ts")});
    EXPECT_EQ(rows("SELECT path || ' ' || language AS row FROM files"), "a.ts typescript");
    EXPECT_EQ(rows("SELECT fqn AS row FROM symbols"), "f; f.{   body }.typeLiteral1.body");
    EXPECT_EQ(report.unparsed_symbols, 1);
    EXPECT_EQ(report.unusable_documents, 4);
    const Projects projects{{"a%1B", {ScipDocument("a.ts")}}, {"b", {ScipDocument("b.ts")}}};
    EXPECT_EQ(import_all(projects).unusable_documents, 1);
}

TEST_F(ScipImport, LeavesOutWhatARuleExcludesOrAllOfWhichIsGenerated) {
    folder.write("checkout/.wiki-scope.toml", "exclude = ['*.gen.ts']\ninclude = ['kept.ts']\n");
    const std::vector<ScipDocument> documents{
        ScipDocument("a.ts").occurs(F, 1 | 16, {0, 0, 1}).defines(G, {1, 0, 1}).refers(symbol("gone().")),
        ScipDocument("made.ts").occurs(symbol("gone()."), 1 | 16, {0, 0, 1}),
        ScipDocument("kept.ts").occurs(symbol("kept()."), 1 | 16, {0, 0, 1}),
        ScipDocument("src/b.gen.ts"),
        ScipDocument("node_modules/c/d.ts"),
        ScipDocument("one/e.ts"),
        ScipDocument("one/f.gen.ts")};
    const ImportRequest request{.scip_paths = {folder.write("in.scip", scip_file(documents))},
                                .checkout = folder / "checkout",
                                .exclusions = {{"one/f.gen.ts", false}, {"one", true}}};
    const ImportReport report = import_as(request);
    EXPECT_EQ(rows("SELECT path AS row FROM files"), "a.ts; kept.ts; one/f.gen.ts");
    EXPECT_EQ(report.excluded.first,
              (std::vector<std::string>{"made.ts", "node_modules/c/d.ts", "one/e.ts", "src/b.gen.ts"}));
}

TEST_F(ScipImport, WhatTheLibraryItselfImportsIsNoTestWhateverItsFolderUnlessARuleSaysSo) {
    const std::vector<ScipDocument> documents{
        ScipDocument("src/index.ts").refers(F), ScipDocument("src/other.ts").defines(G),
        ScipDocument("src/test/act.ts").defines(F).refers(G), ScipDocument("test/a.ts").refers(F).refers(G)};
    const std::string uses = "SELECT name || ' ' || uses AS row FROM symbols ORDER BY id";
    const std::string noted = "SELECT value AS row FROM meta WHERE key = 'test_rules'";
    EXPECT_EQ(import(documents).misnamed_tests.first, std::vector<std::string>{"src/test/"});
    EXPECT_EQ(rows(uses), "g 1; f 1");
    EXPECT_EQ(rows(noted), to_json(std::vector<PathRule>{{"/src/test/", false}}));
    const ImportRequest request{
        .scip_paths = {folder.write("in.scip", scip_file(documents))}, .checkout = {}, .tests = {{"src/test/", true}}};
    EXPECT_EQ(import_as(request).misnamed_tests.count, 0);
    EXPECT_EQ(rows(uses), "g 0; f 1");
}

TEST_F(ScipImport, LeavesOutNamesAndPathsThatAreTooLong) {
    const std::string longest = symbol(std::string(LONGEST_SYMBOL - symbol("#").size(), 'a') + "#");
    const ImportReport report = import({ScipDocument("a.ts")
                                            .defines(longest)
                                            .defines(symbol(std::string(LONGEST_SYMBOL, 'a') + "#"))
                                            .defines(symbol(std::string(LONGEST_SYMBOL, 'a') + "b#"))
                                            .defines(F)
                                            .describes(F, {.display_name = std::string(LONGEST_SYMBOL + 1, 'a')}),
                                        ScipDocument(std::string(4096, 'b')), ScipDocument(std::string(4097, 'c'))});
    EXPECT_EQ(rows("SELECT length(fqn) || ' ' || substr(name, 1, 1) AS row FROM symbols ORDER BY name"),
              std::to_string(LONGEST_SYMBOL - symbol("#").size()) + " a; 1 f");
    EXPECT_EQ(report.unparsed_symbols, 1);
    EXPECT_EQ(report.files, 2);
    EXPECT_EQ(report.unusable_documents, 1);
}

TEST_F(ScipImport, EachFailureSaysWhatIsWrongAndLeavesTheOldIndex) {
    const std::string old = import_old();
    const std::string whole = scip_file({ScipDocument("a.ts").defines(F)});
    const std::string head = scip_file({});
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "not a SCIP file"},
        {"\nhello world", "not a SCIP file"},
        {"\n\x04text, and more", "not a SCIP file"},
        {whole.substr(head.size()), "not a SCIP file"},
        {whole.substr(0, 1), "a truncated SCIP file (it ends within the message at byte 0)"},
        {whole.substr(0, head.size() - 3), "a truncated SCIP file (it ends within the message at byte 0)"},
        {whole.substr(0, head.size() + 1), "a truncated SCIP file (it ends within the message at byte 18)"},
        {whole.substr(0, whole.size() - 1), "a truncated SCIP file (it ends within the message at byte 18)"},
        {whole + std::string(9, '\0'), "(the field at byte " + std::to_string(whole.size()) + " does not parse)"},
        {head + "\x12\x02\x0A\x50", "a damaged SCIP file (the document at byte 18 does not parse)"},
        {scip_file({ScipDocument("a.ts").defines(F), ScipDocument("b.ts").adds_occurrence("\x12\x50")}),
         "a damaged SCIP file (the document at byte " + std::to_string(whole.size()) + " does not parse)"},
        {scip_file({ScipDocument("a.ts").adds_occurrence("\x12\x0C"
                                                         "a . . . x().\x18\x01\x0A\x01\xFF")}),
         "(the document at byte 18 does not parse)"},
    };
    for (const auto& [bytes, message] : cases) {
        const std::string said = failure(folder.write("in.scip", bytes));
        EXPECT_TRUE(said.starts_with(folder / "in.scip" + ": ")) << said;
        EXPECT_NE(said.find(message), std::string::npos) << said << "\nexpected: " << message;
        EXPECT_EQ(std::ranges::count(said, '\n'), 0) << said;
        EXPECT_TRUE(stands_alone(old)) << message;
    }
}

TEST_F(ScipImport, ItsProgressGrowsUpToItsTotal) {
    std::vector<std::int64_t> steps;
    std::int64_t total = 0;
    const auto keep = [&](std::int64_t done, std::int64_t of) {
        steps.push_back(done);
        total = of;
    };
    import({ScipDocument("a.ts").defines(F), ScipDocument("b.ts").refers(F), ScipDocument("")}, keep);
    EXPECT_TRUE(std::ranges::is_sorted(steps));
    EXPECT_EQ(steps.back(), total);
    EXPECT_GT(total, 1);
}

TEST_F(ScipImport, AScipFileThatIsShortenedInTheMeantimeIsTruncated) {
    const ScipDocument large = ScipDocument("a.ts").describes(F, {.documentation = {std::string(1 << 20, ' ')}});
    const std::string scip = folder.write("in.scip", scip_file({large, large}));
    const auto shorten = [&](std::int64_t done, std::int64_t) {
        if (done == 1) {
            std::filesystem::resize_file(scip, 2000);
        }
    };
    const std::string said = failure(scip, shorten);
    EXPECT_NE(said.find("a truncated SCIP file"), std::string::npos) << said;
}

}  // namespace
}  // namespace host::scip
