// The uses that a page cites, against what SQL finds in its index.

#include "host/page/requested_page.h"
#include "tests/host/indexed_folder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <random>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace host {
namespace {

// A page "src" of 8 files, and random edges between its declarations and those of 24 other files, a third of them
// tests.
class CitedUses : public IndexedFolder, public testing::WithParamInterface<unsigned> {
  protected:
    CitedUses() {
        add<LanguageRow>({{"typescript", true}});
        std::mt19937 random(GetParam());
        const auto below = [&](std::uint32_t end) { return static_cast<RowId>(random() % end); };
        const std::vector<std::string> beginnings{"lib/", "src/", "src2/", "test/"};
        RowId id = 0;
        for (const std::string& beginning : beginnings) {
            for (int file = 0; file < 8; ++file) {
                const std::string path = beginning + std::to_string(file) + ".ts";
                ++id;
                add<FileRow>({{.id = id, .path = path, .language = id % 3 == 0 ? "lua" : "typescript"}});
                add<DeclarationRow>({{id, id, "f" + std::to_string(id), "", "function", true, 1, 1}});
            }
        }
        std::set<std::tuple<RowId, RowId, RowId>> edges;
        while (edges.size() < 400) {
            edges.emplace(1 + below(32), 1 + below(32), 1 + below(3));
        }
        for (const auto& [source, target, resolution] : edges) {
            add<EdgeRow>({{source, target, resolution, 1 + below(3), below(4)}});
        }
    }

    // What a query finds that `EVIDENCE` is put into, row by row.
    [[nodiscard]] std::vector<std::string> found(const std::string& query) const {
        const SqliteConnection connection(index, SqliteConnection::Mode::READ);
        Statement statement(connection, query);
        std::vector<std::string> rows;
        while (statement.step()) {
            rows.emplace_back(statement.text(0));
        }
        return rows;
    }

    const std::string evidence = " FROM edges JOIN files AS user ON user.id = source_file_id "
                                 "JOIN symbols ON symbols.id = target_id JOIN files AS used ON used.id = file_id "
                                 "WHERE resolution_id IN (1, 2) AND used.path LIKE 'src/%' "
                                 "AND user.path NOT LIKE 'src/%' AND user.path NOT LIKE 'test/%' ";
};

TEST_P(CitedUses, AreThoseThatTheEdgesProve) {
    const Outcome page = run("page src --index index.db --checkout . --format json --only declarations,consumers");
    ASSERT_EQ(page.exit_code, 0) << page.err;
    const nlohmann::json json = nlohmann::json::parse(page.out);
    ASSERT_EQ(json["uses"].size(), 8U);
    for (const auto& [target, uses] : json["uses"].items()) {
        std::vector<std::string> shown;
        for (const auto& use : uses["shown"]) {
            shown.push_back(use["path"].get<std::string>() + " " + use["references"].dump() + " " + use["line"].dump());
        }
        const std::string of_target = evidence + "AND target_id = " + target;
        EXPECT_EQ(shown, found("SELECT user.path || ' ' || sum(refs) || ' ' || "
                               "coalesce(min(nullif(first_line, 0)), 'null')" +
                               of_target + " GROUP BY user.path ORDER BY sum(refs) DESC, user.path LIMIT 3"));
        EXPECT_EQ(std::vector{uses["total"].dump()}, found("SELECT count(DISTINCT user.path)" + of_target));
    }
    ASSERT_EQ(json["consumers"]["files"]["shown"].size(), 12U);
    for (const auto& consumer : json["consumers"]["files"]["shown"]) {
        const std::string path = consumer["path"];
        const std::string line = json["first_uses"].contains(path) ? json["first_uses"][path].dump() : "";
        EXPECT_EQ(std::vector{line}, found("SELECT coalesce(min(nullif(first_line, 0)), '')" + evidence +
                                           "AND user.path = '" + path + "'"));
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, CitedUses, testing::Range(1U, 5U));

}  // namespace
}  // namespace host
