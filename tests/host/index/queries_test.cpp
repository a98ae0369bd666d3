// The component's queries over a real index.

#include "storage/grounding_queries.h"
#include "tests/host/indexed_folder.h"

#include <algorithm>
#include <limits>
#include <memory>

namespace host {
namespace {

using Numbers = std::vector<std::int64_t>;
using Paths = std::vector<std::string>;

class Queries : public IndexedFolder {
  protected:
    // The index as it is now.
    storage::Database& read() {
        connection_ = served_index()->connect();
        db_ = connection_->read();
        return *db_;
    }

  private:
    std::unique_ptr<IndexConnection> connection_;
    std::unique_ptr<storage::Database> db_;
};

TEST_F(Queries, GivesFilesInTheOrderOfThePathsEachOnce) {
    add<FileRow>({{1, "a.ts", "typescript"}, {2, "b \"\\|.ts"}, {4, "\xFF.ts", "typescript"}});
    change("INSERT INTO files(id, path, language) VALUES(3, 'c.ts', '')");
    storage::Database& db = read();
    const auto files = scope_files(db, Paths{"c.ts", "b \"\\|.ts", "none", "a.ts", "c.ts", "\xFF.ts"});
    ASSERT_TRUE(std::ranges::equal(files, Numbers{3, 2, 1, 4}, {}, &storage::ScopeFile::id));
    EXPECT_EQ(files[0].language.value_or(""), "");
    EXPECT_EQ(files[1].language, std::nullopt);
    EXPECT_TRUE(files[2].language->same_buffer(*files[3].language));
}

TEST_F(Queries, GiveNoTextThatATerminalOrAPageWouldObey) {
    add<FileRow>({{1, "src\x1B/a`.ts", "<img>"}, {2, "src\x1B/b.ts", "Visual Basic"}, {3, "src/\u2028|.ts", "\u009B"}});
    add<DeclarationRow>({{1, 1, "f`\n\n## G", "a.\u202E", "\u2066", true, 1, 1}});
    add<DescriptionRow>({{1, "a\r\n\tb`\x1B", "c\rd\n"}});
    add<ResolutionRow>({{9, "`\u009B"}});
    change("INSERT INTO meta(key, value) VALUES('checkout', char(27) || char(10))");
    storage::Database& db = read();
    std::string said;
    db.read_files_below("src\uFFFD",
                        [&](const FileRow& row) { said.append(row.path).append(row.language.value_or("-")); });
    EXPECT_EQ(said, "src\uFFFD/a\uFFFD.ts-src\uFFFD/b.tsVisual Basic");
    said.clear();
    db.read_declarations({1},
                         [&](const DeclarationRow& row) { said.append(row.name).append(row.fqn).append(row.kind); });
    db.read_names("f", [&](const NameRow& row) { said.append(row.name); });
    EXPECT_EQ(said, "f\uFFFD\uFFFD\uFFFD## Ga.\uFFFD\uFFFDf\uFFFD\uFFFD\uFFFD## G");
    db.read_descriptions({1}, [&](const DescriptionRow& row) { said.assign(row.signature).append(row.documentation); });
    EXPECT_EQ(said, "a\n\tb`\uFFFDc\uFFFDd\n");
    EXPECT_EQ(db.resolution(9), "\uFFFD\uFFFD");
    EXPECT_EQ(db.noted("checkout"), "\uFFFD\n");
    EXPECT_TRUE(scope_files(db, Paths{"src/\u2028|.ts"}).empty());
    const auto files = scope_files(db, Paths{"src/\uFFFD|.ts", "src\uFFFD/a\uFFFD.ts"});
    EXPECT_TRUE(std::ranges::equal(files, Numbers{3, 1}, {}, &storage::ScopeFile::id));
    EXPECT_EQ(files.at(0).language, std::nullopt);
}

TEST_F(Queries, GivesDeclarationsByFileThenLineThenId) {
    add<FileRow>({{1, "a.ts"}, {2, "b.ts"}});
    add<DeclarationRow>({{5, 1, "later", "m.later", "class", true, 9, 10},
                         {3, 1, "same", "", "enum", false, 2, 2},
                         {2, 1, "line", "", "enum", false, 2, 9}});
    change("INSERT INTO symbols VALUES(1, 2, 'b', NULL, NULL, NULL, NULL, 99999999999, NULL)");
    storage::Database& db = read();
    const auto symbols = scope_symbols(db, std::vector<storage::FileId>{2, 1, 2});
    ASSERT_TRUE(std::ranges::equal(symbols, Numbers{1, 2, 3, 5}, {}, &storage::ScopeSymbol::id));
    EXPECT_EQ(symbols[0].kind, "");
    EXPECT_EQ(symbols[0].start_line, 0);
    EXPECT_EQ(symbols[0].end_line, std::numeric_limits<std::int32_t>::max());
    EXPECT_TRUE(symbols[3].is_export);
    EXPECT_FALSE(symbols[2].is_export);
    EXPECT_EQ(symbols[3].fqn, "m.later");
    EXPECT_TRUE(symbols[1].kind.same_buffer(symbols[2].kind));
}

TEST_F(Queries, GivesReferencesBySourceThenTargetThenResolution) {
    add<FileRow>({{1, "a.ts"}, {2, "page.ts"}, {3, "test/a.ts"}, {4, "z.ts"}});
    add<DeclarationRow>({{1, 2, "one", "one", "class", true, 1, 1},
                         {2, 2, "two", "two", "class", true, 2, 2},
                         {3, 4, "far", "z.far", "function", true, 3, 4}});
    add<EdgeRow>({{4, 2, IMPORT, 1},
                  {4, 1, UNIQUE, 2},
                  {4, 1, IMPORT, 3},
                  {1, 2, IMPORT, 4},
                  {2, 1, LOCAL, 5},
                  {2, 3, IMPORT, 6},
                  {1, 3, IMPORT, 7},
                  {3, 2, IMPORT, 8},
                  {3, 1, UNIQUE, 9}});
    add<EdgeRow>({{9, 1, IMPORT, 1}, {2, 9, IMPORT, 1}});  // from no file, to no declaration
    storage::Database& db = read();
    const std::vector<storage::FileId> page{2};
    const auto inbound = inbound_references(db, page);
    EXPECT_TRUE(std::ranges::equal(inbound, Numbers{4, 5, 9, 8, 3, 2, 1}, {}, &storage::InboundReference::refs));
    const auto outbound = outbound_references(db, page);
    ASSERT_EQ(outbound.size(), 1U);
    EXPECT_EQ(outbound[0].refs, 6);
    EXPECT_EQ(outbound[0].target.path, "z.ts");
    EXPECT_EQ(outbound[0].target.fqn, "z.far");
}

TEST_F(Queries, ReadsFilesAndDeclarationsThatDoNotStandTogether) {
    add<FileRow>({{1, "a.ts"}, {2, "b.ts"}, {3, "c.ts"}, {5, "d.ts"}});
    add<DeclarationRow>({{1, 5, "d", "", "", true, 1, 1},
                         {2, 2, "b", "", "", true, 2, 2},
                         {4, 1, "a", "", "", true, 1, 1},
                         {8, 3, "c", "", "", true, 1, 1},
                         {9, 7, "lost", "", "", true, 1, 1}});
    add<EdgeRow>({{1, 1, IMPORT, 1}, {2, 8, IMPORT, 2}, {3, 2, IMPORT, 3}, {5, 4, IMPORT, 4}});
    storage::Database& db = read();
    const std::vector<storage::FileId> page{5, 1, 3, 5, 7};
    EXPECT_TRUE(std::ranges::equal(scope_symbols(db, page), Numbers{1, 4, 8}, {}, &storage::ScopeSymbol::id));
    EXPECT_TRUE(
        std::ranges::equal(inbound_references(db, page), Numbers{1, 2, 4}, {}, &storage::InboundReference::refs));
    EXPECT_TRUE(
        std::ranges::equal(outbound_references(db, page), Numbers{1, 3, 4}, {}, &storage::OutboundReference::refs));
}

TEST_F(Queries, KnowsTheLanguagesWithResolvedImports) {
    add<FileRow>({{1, "a.ts", "typescript"}, {2, "b.lua", "lua"}, {3, "c.go", "go"}});
    add<LanguageRow>({{"typescript", true}, {"lua", false}, {"go", true}});
    storage::Database& db = read();
    const std::vector<models::Text> languages{"lua", "rust", "typescript"};
    EXPECT_EQ(import_resolved_languages(db, languages), std::vector<models::Text>{"typescript"});
}

}  // namespace
}  // namespace host
