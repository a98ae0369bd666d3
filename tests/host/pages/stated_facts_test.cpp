// What a page states decides its text: of random indexes and random changes to them.

#include "host/pages/stated_facts.h"

#include "host/pages/fact_changes.h"
#include "host/pages/page_file.h"
#include "host/pages/stamp.h"
#include "tests/host/indexed_folder.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace host::pages {
namespace {

constexpr std::int64_t FILES = 5;
constexpr std::int64_t DECLARATIONS = 12;

class RandomPages : public IndexedFolder {
  protected:
    std::int64_t below(std::int64_t end) { return static_cast<std::int64_t>(random_() % static_cast<unsigned>(end)); }

    static std::string path(std::int64_t file) {
        return (file < 3 ? "p/f" : "u/f") + std::to_string(file) + (file == FILES ? ".test.ts" : ".ts");
    }

    void fill() {
        const SqliteConnection connection(index, SqliteConnection::Mode::CREATE);
        connection.execute("BEGIN");
        SqliteRowWriter writer(connection);
        for (RowId file = 1; file <= FILES; ++file) {
            std::string text = "// Is for " + std::to_string(below(3)) + ".\n";
            for (int line = 0; line < 20; ++line) {
                text += "line" + std::to_string(below(9)) + "();\n";
            }
            folder.write(path(file), text);
            writer.add(FileRow{.id = file, .path = path(file), .language = "typescript"});
        }
        for (RowId id = 1; id <= DECLARATIONS; ++id) {
            const std::string name = "d" + std::to_string(below(8));
            writer.add(DeclarationRow{.id = id,
                                      .file = 1 + below(FILES - 1),
                                      .name = name,
                                      .fqn = name,
                                      .kind = below(2) == 0 ? "function" : "class",
                                      .is_export = below(3) != 0,
                                      .first_line = 2 + below(9),
                                      .last_line = 12 + below(9)});
            writer.add(DescriptionRow{id, "sig" + std::to_string(below(3)), below(2) == 0 ? "Does it." : ""});
            for (RowId file = 1; file <= FILES; ++file) {
                if (below(3) == 0) {
                    writer.add(EdgeRow{file, id, 1 + below(3), 1 + below(4), below(9)});
                }
            }
        }
        connection.execute("COMMIT");
    }

    // Changes one thing, maybe one that no page shows.
    void change_something() {
        const std::string id = std::to_string(1 + below(DECLARATIONS));
        const std::vector<std::string> changes{
            "UPDATE symbols SET name = 'other', fqn = 'other' WHERE id = " + id,
            "UPDATE symbols SET kind = 'interface' WHERE id = " + id,
            "UPDATE symbols SET is_export = NOT is_export WHERE id = " + id,
            "UPDATE symbols SET start_line = start_line + 1 WHERE id = " + id,
            "UPDATE symbols SET end_line = end_line - 1 WHERE id = " + id,
            "UPDATE descriptions SET signature = 'another' WHERE symbol_id = " + id,
            "UPDATE descriptions SET documentation = 'Says more.' WHERE symbol_id = " + id,
            "UPDATE edges SET refs = refs + 1 WHERE target_id = " + id,
            "UPDATE edges SET first_line = first_line + 1 WHERE target_id = " + id,
            "DELETE FROM edges WHERE target_id = " + id,
            "DELETE FROM edges WHERE source_file_id = " + std::to_string(1 + below(FILES)),
            "DELETE FROM edges WHERE target_id = " + id + ";DELETE FROM symbols WHERE id = " + id,
            "UPDATE files SET language = 'cobol' WHERE id = " + std::to_string(1 + below(FILES)),
            "UPDATE resolutions SET name = 'ambiguous' WHERE name = 'unique'",
        };
        const auto which = static_cast<std::size_t>(below(std::ssize(changes) + 2));
        if (which < changes.size()) {
            change(changes[which]);
        } else {
            const std::string file = path(1 + below(FILES));
            std::string text = folder.read(file);
            text.replace(text.find("line"), 4, which == changes.size() ? "Line" : "a\nb");
            folder.write(file, text);
        }
    }

    [[nodiscard]] PageFile page(const WikiPage& asked) const {
        const std::unique_ptr<IndexConnection> connection = served_index()->connect();
        return page_file(asked, markdown_format(), *connection->read());
    }

    // Without what depends on the facts themselves.
    static std::string text_below_stamp(const PageFile& page) { return page.text.substr(page.text.find('\n')); }

    // Without the signatures for which sources stand.
    static StatedFacts printed(StatedFacts facts) {
        for (Statement& statement : facts.about(Subject::DECLARATION)) {
            if (!statement.values[aspect::SOURCE].empty()) {
                statement.values[aspect::SIGNATURE].clear();
            }
        }
        return facts;
    }

    void compare(unsigned seed) {
        random_.seed(seed);
        SetUpIndex();
        WikiPage asked{.title = "P", .name = "p", .request = {.paths = {"p"}, .checkout = folder / ""}};
        asked.request.numbers.total = 1 + below(9);
        asked.request.numbers.neighbours = 1 + below(5);
        asked.request.with_source = below(2) == 0;
        asked.request.max_bytes = below(4) == 0 ? std::optional<std::size_t>(1500 + below(1500)) : std::nullopt;
        for (const Section section : SECTIONS) {
            if (below(3) == 0) {
                asked.request.only.add(section);
            }
        }
        const PageFile before = page(asked);
        change_something();
        const PageFile after = page(asked);
        if (before.is_failure || after.is_failure) {  // too few bytes
            return;
        }
        EXPECT_TRUE(is_as_sealed(before.text));
        EXPECT_EQ(read_facts(to_json(before.facts)), before.facts);
        const bool is_same_text = text_below_stamp(before) == text_below_stamp(after);
        const bool states_the_same = printed(before.facts) == printed(after.facts);
        EXPECT_TRUE(asked.request.max_bytes ? is_same_text || !states_the_same : is_same_text == states_the_same)
            << seed << ": " << changes_between(before.facts, after.facts) << "\n"
            << before.text << "\n"
            << after.text;
        EXPECT_EQ(changes_between(before.facts, after.facts).empty(), before.facts == after.facts) << seed;
    }

    void SetUpIndex() {
        change("DELETE FROM edges; DELETE FROM descriptions; DELETE FROM symbols; DELETE FROM files; "
               "UPDATE resolutions SET name = 'unique' WHERE name = 'ambiguous'");
        fill();
    }

    std::mt19937 random_;
};

TEST_F(RandomPages, HaveAnotherTextExactlyWhenTheyStateSomethingElse) {
    for (unsigned seed = 1; seed <= 150; ++seed) {
        compare(seed);
    }
}

TEST(FactChanges, AreToldWithWhatConcernsAReaderMostFirst) {
    const auto declaration = [](const std::string& name, const std::string& signature, const std::string& lines) {
        return Statement{name, "a.ts", {"method", "ts", signature, "", "", lines, "1+0"}};
    };
    const auto page = [](const std::string& users) { return Statement{"", "", {"T", "", users, "0", "", "", "", ""}}; };
    StatedFacts before;
    before.about(Subject::PAGE) = {page("5")};
    before.about(Subject::DECLARATION) = {declaration("Session.close", "close()", "1-2"),
                                          declaration("a", "a()", "3-4"), declaration("a", "a(x)", "5-6"),
                                          declaration("gone", "", "7-8")};
    before.about(Subject::CONSUMER) = {{"x.ts", "", {"1"}}, {"y.ts", "", {"1"}}, {"z.ts", "", {"1"}}};
    StatedFacts after;
    after.about(Subject::PAGE) = {page("3")};
    after.about(Subject::DECLARATION) = {declaration("Session.close", "close(how)", "1-3"),
                                         declaration("a", "a()", "4-5"), declaration("a", "a(x)", "6-7")};
    after.about(Subject::CONSUMER) = {{"z.ts", "", {"1"}}};
    EXPECT_EQ(
        changes_between(before, after),
        "`Session.close` has another signature; `gone` is no longer among the declarations; 2 users fewer; "
        "`x.ts` and `y.ts` are no longer listed as a user; `Session.close`, `a` and 1 other stand on other lines");
    after = before;
    std::swap(after.about(Subject::CONSUMER)[0], after.about(Subject::CONSUMER)[2]);
    EXPECT_EQ(changes_between(before, after), "another order of users");
    EXPECT_EQ(changes_between(before, before), "");
    after.about(Subject::PAGE)[0].values[aspect::OPTIONS] = "others";  // which may be why it shows fewer users
    after.about(Subject::PAGE)[0].values[aspect::USERS] = "";
    EXPECT_EQ(changes_between(before, after), "other options");
}

}  // namespace
}  // namespace host::pages
