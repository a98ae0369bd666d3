// The import of SCIP: symbol strings, the wire format, the rules of the rows, and what a failure leaves behind.

#include "embedded/index.h"
#include "embedded/scip/declarations.h"
#include "embedded/scip/import.h"
#include "embedded/scip/input_file.h"
#include "embedded/scip/reader.h"
#include "embedded/scip/symbol.h"
#include "tests/embedded/scip_builder.h"
#include "tests/embedded/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/file.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <limits>

namespace embedded::scip {
namespace {

constexpr std::int32_t MAX = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t MIN = std::numeric_limits<std::int32_t>::min();

std::string symbol(std::string_view descriptors) {
    return "tool npm pkg 1.0 " + std::string(descriptors);
}

const std::string F = symbol("f().");
const std::string G = symbol("g().");

TEST(ScipSymbol, EveryDescriptorHasItsNameAndSuffix) {
    using S = Suffix;
    const std::vector<std::pair<std::string, std::vector<Descriptor>>> cases{
        {symbol("a/B#c().d."), {{"a", S::NAMESPACE}, {"B", S::TYPE}, {"c", S::METHOD}, {"d", S::TERM}}},
        {symbol("m!n:"), {{"m", S::MACRO}, {"n", S::META}}},
        {symbol("f(+1).(p)[T]"), {{"f", S::METHOD}, {"p", S::PARAMETER}, {"T", S::TYPE_PARAMETER}}},
        {symbol("`a/b.ts`/`x``y`#"), {{"a/b.ts", S::NAMESPACE}, {"x`y", S::TYPE}}},
        {symbol("[`T x`](`p q`)"), {{"T x", S::TYPE_PARAMETER}, {"p q", S::PARAMETER}}},
        {symbol("_+-$9\xC3\xA9#"), {{"_+-$9\xC3\xA9", S::TYPE}}},
        {"a  b . . c   d#", {{"d", S::TYPE}}},
    };
    for (const auto& [string, descriptors] : cases) {
        EXPECT_EQ(parse_symbol(string), descriptors) << string;
    }
}

TEST(ScipSymbol, WhatDoesNotParseIsNoSymbol) {
    for (const std::string& string : {
             std::string(),
             std::string("tool"),
             std::string("tool npm pkg 1.0"),
             symbol(""),
             symbol("a"),
             symbol("#"),
             symbol("a b#"),
             symbol("a.?/"),
             symbol("`a"),
             symbol("`a`"),
             symbol("``#"),
             symbol("f("),
             symbol("f(1"),
             symbol("f()"),
             symbol("f()#"),
             symbol("f(a b)."),
             symbol("[T"),
             symbol("(p]"),
             symbol("a#?"),
             std::string(" npm pkg 1.0 a#"),
             std::string("tool  npm pkg 1.0 a#"),
             symbol(std::string(100'000, '(')),
             symbol(std::string(99'999, '`')),
         }) {
        EXPECT_EQ(parse_symbol(string), std::nullopt) << string.substr(0, 40);
    }
}

// What `lines_of` makes of an occurrence whose fields are those that `write` writes.
template <class Write>
std::optional<Lines> lines_when(const Write& write) {
    std::string bytes;
    protozero::pbf_writer message(bytes);
    write(message);
    return lines_of(Occurrence::read(bytes));
}

TEST(ScipRange, BecomesInclusiveLinesWithinBounds) {
    const std::vector<std::tuple<Numbers, std::optional<Lines>>> cases{
        {{4, 0, 7}, Lines{5, 5}},
        {{4, 2, 6, 1}, Lines{5, 7}},
        {{4, 2, 6, 0}, Lines{5, 6}},
        {{4, 0, 4, 0}, Lines{5, 5}},
        {{4, 2, 5, 0}, Lines{5, 5}},
        {{4, 2, 1, 3}, Lines{5, 5}},
        {{-3, 0, 2, 1}, Lines{1, 3}},
        {{MIN, 0, MIN, 0}, Lines{1, 1}},
        {{MIN, 0, MAX, 0}, Lines{1, MAX}},
        {{0, 0, MAX, 1}, Lines{1, MAX}},
        {{MAX, 0, 1}, Lines{MAX, MAX}},
        {Numbers(), std::nullopt},
        {{1}, std::nullopt},
        {{1, 2}, std::nullopt},
        {{1, 2, 3, 4, 5}, std::nullopt},
    };
    for (const auto& [numbers, lines] : cases) {
        const Numbers& range = numbers;
        const auto packed = lines_when([&](auto& message) { add_packed(message, 1, range); });
        const auto unpacked = lines_when([&](auto& message) {
            for (const std::int32_t number : range) {
                message.add_int32(1, number);
            }
        });
        EXPECT_EQ(packed, lines) << testing::PrintToString(numbers);
        EXPECT_EQ(unpacked, lines) << testing::PrintToString(numbers);
    }
}

TEST(ScipRange, TheNewerSpellingsWinAndTheEnclosingRangeBeforeTheRange) {
    const auto add = [](auto& message, protozero::pbf_tag_type field, const Numbers& numbers) {
        protozero::pbf_writer range(message, field);
        for (std::size_t at = 0; at < numbers.size(); ++at) {
            range.add_int32(static_cast<protozero::pbf_tag_type>(at + 1), numbers[at]);
        }
    };
    EXPECT_EQ(lines_when([&](auto& message) {
                  add(message, 8, {4, 1, 2}), add_packed(message, 1, {9, 0, 1});
              }),
              (Lines{5, 5}));
    EXPECT_EQ(lines_when([&](auto& message) { add(message, 9, {4, 1, 6, 0}); }), (Lines{5, 6}));
    EXPECT_EQ(lines_when([&](auto& message) {
                  add(message, 10, {4, 1, 2}), add(message, 9, {1, 0, 9, 9});
              }),
              (Lines{5, 5}));
    EXPECT_EQ(lines_when([&](auto& message) {
                  add(message, 11, {4, 1, 6, 1}), add_packed(message, 7, {0, 0, 1});
              }),
              (Lines{5, 7}));
    EXPECT_EQ(lines_when([&](auto& message) {
                  add_packed(message, 7, {4, 0}), add_packed(message, 1, {2, 0, 1});
              }),
              (Lines{3, 3}));
}

TEST(ScipReader, PassesOverUnknownFieldsAndUnexpectedWireTypes) {
    EXPECT_EQ(lines_when([](auto& message) {
                  message.add_string(99, "new"), message.add_fixed64(100, 1), message.add_fixed32(101, 1);
                  message.add_fixed32(1, 7), message.add_int32(2, 7), message.add_string(3, "x");
                  message.add_int32(8, 1), add_packed(message, 1, {4, 0, 1});
              }),
              (Lines{5, 5}));
}

TEST(ScipDeclaration, FollowsFromKindThenDescriptorsThenSignature) {
    const auto fenced = [](const std::string& text) {
        return Says{.documentation = {"Says.", "Doc\n```ts\n" + text + "\n```\n"}};
    };
    const std::vector<std::tuple<std::string, Says, std::string>> cases{
        // Nothing stated: by descriptor.
        {"m/f().", {}, "function f m.f exported"},
        {"C#f().", {}, "method f C.f exported"},
        {"C#`<constructor>`().", {}, "constructor constructor C.<constructor> exported"},
        {"C#__init__().", {}, "constructor __init__ C.__init__ exported"},
        {"__init__().", {}, "function __init__ __init__ exported"},
        {"M!", {}, "function M M exported"},
        {"C#x.", fenced("const x: 1"), "attribute x C.x exported"},
        {"MAX_9.", {}, "constant MAX_9 MAX_9 exported"},
        {"max.", fenced("var max"), "variable max max exported"},
        {"max.", fenced(" const max"), "constant max max exported"},
        {"max.", fenced("constant max"), "variable max max exported"},
        {"max.", {.documentation = {"const max", "a ``` const"}}, "variable max max exported"},
        {"max.", {.signature = "var max", .documentation = {"```\nconst max\n```"}}, "variable max max exported"},
        {"T#", {}, "class T T exported"},
        {"T#", fenced("interface T<U>"), "interface T T exported"},
        {"T#", fenced("enum T"), "enum T T exported"},
        {"T#", fenced("struct T"), "struct T T exported"},
        {"T#", {.signature = "type T = 1"}, "type T T exported"},
        {"T#", fenced("public interface T"), "class T T exported"},
        // Inside a body nothing is exported.
        {"f().x.", {}, "variable x f.x"},
        {"x.C#f().", {}, "method f x.C.f"},
        {"M!x.", {}, "variable x M.x"},
        // Stated kinds, one of each row kind; an unknown one says nothing.
        {"f().", {.kind = 7, .display_name = "F"}, "class F f exported"},
        {"T#", {.kind = 59}, "struct T T exported"},
        {"T#", {.kind = 86}, "interface T T exported"},
        {"T#", {.kind = 11}, "enum T T exported"},
        {"T#", {.kind = 73}, "type T T exported"},
        {"C#f().", {.kind = 34}, "function f C.f exported"},
        {"f().", {.kind = 72}, "method f f exported"},
        {"f().", {.kind = 9, .display_name = "<constructor>"}, "constructor constructor f exported"},
        {"x.", {.kind = 77}, "attribute x x exported"},
        {"x.", {.kind = 12}, "constant x x exported"},
        {"C#x.", {.kind = 60}, "variable x C.x exported"},
        {"C#x.", {.kind = 999}, "attribute x C.x exported"},
        {"C#x.", {.kind = -1}, "attribute x C.x exported"},
        // Scopes and parameters declare nothing, unless a module is a type.
        {"M#", {.kind = 29}, "class M M exported"},
        {"M#", {.kind = 64}, "class M M exported"},
        {"m.", {.kind = 35}, ""},
        {"x.", {.kind = 44}, ""},
        {"T#", {.kind = 58}, ""},
        {"a/", {.kind = 7}, ""},
        {"a:", {}, ""},
        {"f().(p)", {.kind = 61}, ""},
        {"C#[T]", {}, ""},
    };
    for (const auto& [descriptors, says, expected] : cases) {
        const std::string bytes = ScipDocument("a").describes(symbol(descriptors), says).bytes();
        Description description;
        description.add(Document{bytes}.symbols().next().value());
        const auto row = declaration_of(parse_symbol(symbol(descriptors)).value(), description);
        EXPECT_EQ(row ? std::string(row->kind) + " " + row->name + " " + row->fqn + (row->is_export ? " exported" : "")
                      : "",
                  expected)
            << descriptors << " kind " << says.kind;
    }
}

TEST(ScipLanguage, IsStatedElseByExtension) {
    const std::vector<std::tuple<std::string, std::string, std::string>> cases{
        {"TypeScript", "a.py", "typescript"},
        {std::string("lua\0", 4), "a.py", "python"},
        {"", "a.d.mts", "typescript"},
        {"", "src.py/a.cjs", "javascript"},
        {"", "a.pyi", "python"},
        {"", "a.h", "c"},
        {"", "a.hxx", "cpp"},
        {"", "a.mm", "objective-c"},
        {"", "a.txt", ""},
        {"", "a.", ""},
        {"", "src.ts/Makefile", ""},
    };
    for (const auto& [stated, path, language] : cases) {
        EXPECT_EQ(language_of(stated, path), language) << path;
    }
}

class ScipImport : public testing::Test {
  protected:
    // NOLINTNEXTLINE(modernize-use-nodiscard): most tests look at the index, not at the counts
    ImportCounts import(const std::vector<ScipDocument>& documents, const ImportProgress& progress = {}) const {
        return import_scip(folder.write("in.scip", scip_file(documents)), index, progress);
    }

    // The message of the failure to import one file into another.
    [[nodiscard]] static std::string failure(const std::string& scip, const std::string& index_path) {
        try {
            import_scip(scip, index_path, {});
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "no failure";
    }

    // The rows that a query of the index gives: columns separated by a space, rows by "; ".
    [[nodiscard]] std::string rows(const std::string& query) const {
        const Connection connection = open_index(index);
        Statement statement(connection, "SELECT group_concat(row, '; ') FROM (" + query + ")");
        statement.step();
        return std::string(statement.text(0));
    }
    [[nodiscard]] std::string edges() const {
        return rows("SELECT path || ' ' || target_id || ' ' || resolution || ' ' || refs AS row "
                    "FROM edges JOIN files ON id = source_file_id ORDER BY edges.rowid");
    }

    // Whether the index is the one with these bytes, and nothing else lies beside it and the input.
    [[nodiscard]] bool stands_alone(const std::string& bytes) const {
        std::size_t entries = 0;
        for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder / "")) {
            ++entries;
        }
        return folder.read("index.db") == bytes && entries == 2;
    }

    TemporaryFolder folder;
    std::string index = folder / "index.db";
};

TEST_F(ScipImport, NumbersFilesByPathAndDeclarationsByFileLineAndDefinition) {
    const ImportCounts counts = import({
        ScipDocument("b.ts")
            .defines(G, {8, 0, 1})
            .defines(symbol("late#"), {3, 0, 1})
            .defines(symbol("early#"), {3, 0, 1}),
        ScipDocument("a.py", "Python")
            .describes(F, {.kind = 17})
            .defines("local 1")
            .defines(F, {0, 4, 5}, {0, 0, 2, 0}),
    });
    EXPECT_EQ(rows("SELECT id || ' ' || path || ' ' || language AS row FROM files"),
              "1 a.py python; 2 b.ts typescript");
    EXPECT_EQ(rows("SELECT id || ' ' || file_id || ' ' || name || ' ' || start_line || ' ' || end_line AS "
                   "row FROM symbols"),
              "1 1 f 1 2; 2 2 late 4 4; 3 2 early 4 4; 4 2 g 9 9");
    EXPECT_EQ(rows("SELECT name || ' ' || import_resolved AS row FROM languages"), "python 1; typescript 1");
    EXPECT_EQ(rows("SELECT key || ' ' || value AS row FROM meta ORDER BY key"),
              "schema_version 1; source " + folder / "in.scip" + "; tool indexer 1.2");
    EXPECT_EQ(counts.files, 2);
    EXPECT_EQ(counts.declarations, 4);
    EXPECT_EQ(counts.edges, 0);
}

TEST_F(ScipImport, AnOccurrenceInItsOwnDocumentIsLocalAndElsewhereAnImport) {
    import({ScipDocument("a.ts").defines(F).refers(F, 8).refers(F, 64).refers("local 1").refers(""),
            ScipDocument("b.ts").refers(F, 2).refers(symbol("external().")).refers(F)});
    EXPECT_EQ(edges(), "a.ts 1 local 2; b.ts 1 import 2");
}

TEST_F(ScipImport, OfSeveralDeclarationsADescribedOneIsTheTargetThenTheFirstByPath) {
    import({ScipDocument("d.ts").defines(F).describes(F).defines(G), ScipDocument("c.ts").defines(F).describes(F),
            ScipDocument("b.ts").defines(F).defines(G).refers(F), ScipDocument("a.ts").refers(F).refers(G)});
    EXPECT_EQ(rows("SELECT id || ' ' || file_id || name AS row FROM symbols"), "1 2f; 2 2g; 3 3f; 4 4f; 5 4g");
    EXPECT_EQ(edges(), "a.ts 2 import 1; a.ts 3 import 1; b.ts 1 local 1");
}

TEST_F(ScipImport, TwoDocumentsOfOnePathAddUp) {
    import({ScipDocument("a.ts").defines(F, {7, 0, 1}).refers(G), ScipDocument("b.ts").defines(G),
            ScipDocument("a.ts", "tsx").describes(F, {.kind = 61}).defines(F, {1, 0, 2, 1}).refers(G).refers(F)});
    EXPECT_EQ(rows("SELECT name || ' ' || kind || ' ' || start_line || ' ' || end_line AS row FROM symbols"),
              "f variable 2 3; g function 1 1");
    EXPECT_EQ(rows("SELECT path || ' ' || language AS row FROM files"), "a.ts tsx; b.ts typescript");
    EXPECT_EQ(edges(), "a.ts 1 local 1; a.ts 2 import 2");
}

TEST_F(ScipImport, OfEquallyLongDefinitionsTheFirstCountsAndNoRangeIsLineOne) {
    import({ScipDocument("a.ts").defines(F, {5, 0, 1}).defines(F, {2, 0, 1}).defines(F, {}).defines(G, {1, 2})});
    EXPECT_EQ(rows("SELECT name || start_line AS row FROM symbols ORDER BY name"), "f6; g1");
}

TEST_F(ScipImport, WhatCannotBeUsedIsPassedOverAndCounted) {
    const ImportCounts counts = import({
        ScipDocument("ok..ts").defines("no symbol").refers("no symbol").describes("nor this").refers(F),
        ScipDocument("").defines(F),
        ScipDocument("/a.ts").defines(F),
        ScipDocument("../a.ts"),
        ScipDocument("a/.."),
        ScipDocument(std::string_view("a\0b", 3)),
    });
    EXPECT_EQ(counts.unparsed_symbols, 2);
    EXPECT_EQ(counts.unusable_documents, 5);
    EXPECT_EQ(counts.files, 1);
    EXPECT_EQ(counts.declarations + counts.edges, 0);
}

TEST_F(ScipImport, EachFailureSaysWhatIsWrongAndLeavesTheOldIndex) {
    import({ScipDocument("old.ts").defines(F)});
    const std::string old = folder.read("index.db");
    const std::string whole = scip_file({ScipDocument("a.ts").defines(F)});
    const std::string head = scip_file({});
    const std::vector<std::pair<std::string, std::string>> cases{
        {"", "not a SCIP file"},
        {"{\"json\": 1}", "not a SCIP file"},
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
        const std::string said = failure(folder.write("in.scip", bytes), index);
        EXPECT_TRUE(said.starts_with(folder / "in.scip" + ": ") && said.find(message) != std::string::npos &&
                    said.find('\n') == std::string::npos)
            << said << "\nexpected: " << message;
        EXPECT_TRUE(stands_alone(old)) << message;
    }
}

TEST_F(ScipImport, AFileThatCannotBeReadOrWrittenIsNamed) {
    const std::string scip = folder.write("in.scip", scip_file({}));
    EXPECT_TRUE(failure(folder / "no.scip", index).starts_with(folder / "no.scip" + ": no such file; "));
    EXPECT_TRUE(failure(folder / "", index).starts_with(folder / "" + ": not a regular file; "));
    EXPECT_TRUE(failure(scip, folder / "no/index.db").starts_with(folder / "no/index.db" + ": cannot be written ("));
}

TEST_F(ScipImport, AnInterruptionAtAnyPointLeavesTheOldIndex) {
    import({ScipDocument("old.ts").defines(F)});
    const std::string old = folder.read("index.db");
    struct Interrupted {};
    std::string made;
    const auto is_interrupted_at = [&](int call) {
        try {
            import({ScipDocument("a.ts").defines(F), ScipDocument("b.ts").refers(F)}, [&](auto done, auto total) {
                EXPECT_LE(done, total);
            if (--call == 0) {
                made = folder.read(".index.db.wiki-scope-partial");
                throw Interrupted();
            }
        });
        return false;
    } catch (const Interrupted&) {
        return true;
    }
};
int calls = 0;
while (is_interrupted_at(calls + 1)) {
    ++calls;
    EXPECT_TRUE(stands_alone(old)) << calls;
}
EXPECT_GE(calls, 4);
EXPECT_TRUE(stands_alone(made));  // at the last call nothing was left to do but to take the place
}

TEST(ConnectionWatch, EndsALongStatementWithWhatItThrows) {
    const TemporaryFolder folder;
    Connection connection(folder / "a.db", Connection::Mode::CREATE);
    connection.watch([] { throw std::out_of_range("enough"); });
    const std::string endless =
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n";
    EXPECT_THROW(connection.execute(endless), std::out_of_range);
    EXPECT_THROW(Statement(connection, endless).step(), std::out_of_range);
    EXPECT_THROW(connection.execute("SELECT * FROM nothing"), SqliteError);
}

TEST_F(ScipImport, AFullDiskLeavesTheOldIndexAndSaysSo) {
    import({ScipDocument("old.ts").defines(F)});
    const std::string old = folder.read("index.db");
    const std::string scip = folder.write("in.scip", scip_file({ScipDocument(std::string(100'000, 'a')).defines(F)}));
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{150'000, before.rlim_max};
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const std::string said = failure(scip, index);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(said.rfind(index + ": cannot be written (", 0), 0U) << said;
    EXPECT_NE(said.find("is as it was before"), std::string::npos) << said;
    EXPECT_TRUE(stands_alone(old));
}

TEST_F(ScipImport, OneThatIsKilledLeavesTheOldIndexAndIsCleanedUpByTheNext) {
    import({ScipDocument("old.ts").defines(F)});
    const std::string old = folder.read("index.db");
    const std::vector<ScipDocument> documents{ScipDocument("a.ts").defines(F), ScipDocument("b.ts").refers(F)};
    const auto is_killed_at = [&](int call) {
        const auto kill_at_call = [&call](std::int64_t, std::int64_t) {
            if (--call == 0) {
                raise(SIGKILL);
            }
        };
        const pid_t child = fork();
        if (child == 0) {
            import(documents, kill_at_call);
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFSIGNALED(status);
    };
    int calls = 0;
    while (is_killed_at(calls + 1)) {
        ++calls;
        EXPECT_EQ(folder.read("index.db"), old) << calls;
        EXPECT_TRUE(std::filesystem::exists(folder / ".index.db.wiki-scope-partial"));
    }
    EXPECT_GE(calls, 4);
    EXPECT_EQ(rows("SELECT path AS row FROM files"), "a.ts; b.ts");
    EXPECT_TRUE(stands_alone(folder.read("index.db")));
}

TEST_F(ScipImport, RemovesWhatIsItsOwnAndNothingElse) {
    for (const char* const name : {"partial", "partial-journal", "partial-wal", "lock"}) {
        folder.write(std::string(".index.db.wiki-scope-") + name, "left behind");
    }
    import({ScipDocument("a.ts").defines(F)});
    EXPECT_TRUE(stands_alone(folder.read("index.db")));
    folder.write("index.db.lock", "mine");
    folder.write("index.db.partial", "mine");
    import({ScipDocument("a.ts").defines(F)});
    EXPECT_EQ(folder.read("index.db.lock") + folder.read("index.db.partial"), "minemine");
}

TEST_F(ScipImport, AnIndexThatAKilledProgramLeftHalfWrittenIsReplaced) {
    import({ScipDocument("a.ts").defines(F)});
    const std::string alone = folder.read("index.db");
    std::string half_written;
    std::string journal;
    {
        const Connection program(index, Connection::Mode::CREATE);
        program.execute("PRAGMA cache_size = 1; BEGIN; WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
                        "INSERT INTO files(path) SELECT i FROM n LIMIT 5000");
        half_written = folder.read("index.db");
        journal = folder.read("index.db-journal");
    }
    folder.write("index.db", half_written);
    folder.write("index.db-journal", journal);
    EXPECT_THROW(open_index(index), SqliteError);
    import({ScipDocument("a.ts").defines(F)});
    EXPECT_TRUE(stands_alone(alone));
}

TEST_F(ScipImport, AJournalOfTheOldIndexIsNotPlayedIntoTheNew) {
    const std::vector<ScipDocument> documents{ScipDocument("a.ts").defines(F)};
    import(documents);
    const std::string alone = folder.read("index.db");
    std::string journal;
    {
        const Connection writer(index, Connection::Mode::CREATE);
        writer.execute("PRAGMA journal_mode = WAL; INSERT INTO files VALUES(9, 'late.ts', NULL)");
        journal = folder.read("index.db-wal");
        EXPECT_NE(failure(folder / "in.scip", index).find("another program is using it"), std::string::npos);
        EXPECT_EQ(folder.read("index.db-wal"), journal);
    }
    for (const bool old_is_there : {true, false}) {
        folder.write("index.db-wal", journal);
        if (!old_is_there) {
            std::filesystem::remove(index);
        }
        import(documents);
        EXPECT_TRUE(stands_alone(alone)) << old_is_there;
    }
}

TEST_F(ScipImport, ALinkToTheIndexAndItsPermissionsStay) {
    using std::filesystem::perms;
    std::filesystem::create_symlink("real.db", index);
    const std::vector<ScipDocument> documents{ScipDocument("a.ts").defines(F)};
    import(documents);
    std::filesystem::permissions(index, perms::owner_read | perms::owner_write | perms::group_read);
    import(documents);
    EXPECT_TRUE(std::filesystem::is_symlink(index));
    EXPECT_EQ(std::filesystem::status(folder / "real.db").permissions(),
              perms::owner_read | perms::owner_write | perms::group_read);
}

TEST_F(ScipImport, ADamagedIndexIsReplacedButNeverByAnEmptyOne) {
    import({});
    import({ScipDocument("a.ts").defines(F)});
    const std::string old = folder.read("index.db");
    EXPECT_THROW(import({ScipDocument("/a.ts")}), std::runtime_error);
    EXPECT_TRUE(stands_alone(old));
    folder.write("index.db", old.substr(0, 5000));
    import({ScipDocument("a.ts").defines(F)});
    EXPECT_TRUE(stands_alone(old));
}

TEST_F(ScipImport, TwoImportsIntoOneIndexDoNotRunAtOnce) {
    std::string inner;
    const std::string other = folder.write("other.scip", scip_file({}));
    const auto import_another = [&](std::int64_t done, std::int64_t) {
        if (done == 1) {
            inner = failure(other, index);
        }
    };
    import({ScipDocument("a.ts").defines(F)}, import_another);
    EXPECT_NE(inner.find("another import into this index is running"), std::string::npos) << inner;
    EXPECT_EQ(rows("SELECT name AS row FROM symbols"), "f");
}

TEST_F(ScipImport, AScipFileThatIsShortenedInTheMeantimeIsTruncated) {
    const ScipDocument large = ScipDocument("a.ts").describes(F, {.documentation = {std::string(1 << 20, ' ')}});
    const std::string scip = folder.write("in.scip", scip_file({large, large}));
    const auto shorten = [&](std::int64_t done, std::int64_t) {
        if (done == 1) {
            std::filesystem::resize_file(scip, 2000);
        }
    };
    std::string said;
    try {
        import_scip(scip, index, shorten);
    } catch (const std::runtime_error& error) {
        said = error.what();
    }
    EXPECT_NE(said.find("a truncated SCIP file"), std::string::npos) << said;
}

TEST(InputFile, IsNoLongerThanItWasWhenItWasOpened) {
    const TemporaryFolder folder;
    InputFile file(folder.write("in.scip", "abc"));
    folder.write("in.scip", "abcdef");
    EXPECT_EQ(file.read(1, 9), "bc");
}

TEST_F(ScipImport, EqualInputGivesEqualBytes) {
    std::vector<ScipDocument> documents;
    for (int file = 0; file < 40; ++file) {
        documents.push_back(
            ScipDocument("f" + std::to_string(file) + ".ts").defines(symbol("f" + std::to_string(file) + "().")));
        for (int target = 0; target < 40; ++target) {
            documents.back().refers(symbol("f" + std::to_string(target) + "()."));
        }
    }
    EXPECT_EQ(import(documents).edges, 1600);
    const std::string first = folder.read("index.db");
    import(documents);
    EXPECT_TRUE(stands_alone(first));
}

}  // namespace
}  // namespace embedded::scip
