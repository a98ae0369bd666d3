// What is told of random pairs of indexes is what queries over both find, which know nothing of how it is found.

#include "host/changes/changes.h"

#include "fixtures/temporary_folder.h"
#include "host/sqlite/row_writer.h"
#include "host/sqlite/schema.h"
#include "host/sqlite/sqlite_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace host::changes {
namespace {

class RandomChanges : public testing::TestWithParam<unsigned> {
  protected:
    std::int64_t below(std::int64_t end) { return static_cast<std::int64_t>(random_() % static_cast<unsigned>(end)); }

    // An index of up to seven files. Their content decides what they declare.
    void make(const std::string& path) {
        const SqliteConnection connection(path, SqliteConnection::Mode::CREATE);
        connection.execute("BEGIN");
        create_schema(connection);
        create_indexes(connection);
        SqliteRowWriter writer(connection);
        for (const auto& [id, name] : {std::pair(1, "import"), {2, "local"}, {3, "unique"}, {4, "ambiguous"}}) {
            writer.add(ResolutionRow{id, name});
        }
        std::vector<RowId> files;
        RowId declarations = 0;
        for (RowId file = 1; file <= 7; ++file) {
            if (below(4) == 0) {
                continue;
            }
            files.push_back(file);
            const std::string name = "f" + std::to_string(file) + (file > 5 ? ".test.ts" : ".ts");
            const std::int64_t content = below(3) == 0 ? below(40) : 100 + file;
            const bool is_known = below(8) != 0;
            writer.add(
                FileRow{.id = file, .path = name, .content_hash = is_known ? std::optional(content) : std::nullopt});
            declare(writer, content, file, declarations);
        }
        add_edges(writer, files, declarations);
        connection.execute("COMMIT");
    }

    // A class C, its members, and functions.
    static void declare(SqliteRowWriter& writer, std::int64_t content, RowId file, RowId& id) {
        std::mt19937 random(static_cast<unsigned>(content));
        const auto maybe = [&] { return random() % 3 != 0; };
        for (const std::string fqn : {"C", "C.m", "C.n", "C._p", "f", "g", "_h"}) {
            if (!maybe()) {
                continue;
            }
            const std::string name = fqn.substr(fqn.rfind('.') + 1);
            const bool is_member = name != fqn;
            const std::string kind = fqn == "C" ? (maybe() ? "class" : "interface") : is_member ? "method" : "function";
            writer.add(DeclarationRow{.id = ++id,
                                      .file = file,
                                      .name = name,
                                      .fqn = fqn,
                                      .kind = kind,
                                      .is_export = !is_member && maybe(),
                                      .first_line = id,
                                      .last_line = id});
            writer.add(DescriptionRow{id, maybe() ? name + std::to_string(random() % 2) : "", ""});
        }
    }

    void add_edges(SqliteRowWriter& writer, const std::vector<RowId>& files, RowId declarations) {
        for (const RowId source : files) {
            for (RowId target = 1; target <= declarations; ++target) {
                for (RowId resolution = 1; resolution <= 4; ++resolution) {
                    if (below(12) == 0) {
                        writer.add(EdgeRow{source, target, resolution, 1 + below(3)});
                    }
                }
            }
        }
    }

    TemporaryFolder folder;
    std::mt19937 random_{GetParam()};
};

using Lines = std::set<std::string>;

// What `compare` finds, one fact a line.
Lines told(const Changes& changes) {
    Lines lines;
    const auto add_all = [&](const std::string& what, const std::vector<std::string>& paths) {
        for (const std::string& path : paths) {
            lines.insert(what + " " + path);
        }
    };
    add_all("added", changes.added_files);
    add_all("removed", changes.removed_files);
    add_all("changed", changes.changed_files);
    for (const MovedFile& file : changes.moved_files) {
        lines.insert("moved " + file.old_path + " " + file.new_path);
    }
    const auto at = [](const Declared& declared) { return declared.path + " " + declared.fqn; };
    const auto add_users = [&](const std::string& whose, const DeclarationChange& change) {
        const std::vector<std::string> now{"uses", "unchanged", "changed", "gone", "unknown"};
        for (const User& user : change.users) {
            lines.insert(whose + " user " + user.path + " " + std::to_string(user.references) + " " +
                         now.at(static_cast<std::size_t>(user.now)));
        }
        add_all(whose + " test", change.tests);
        lines.insert(whose + " matches " + std::to_string(change.name_matches));
    };
    for (const DeclarationChange& change : changes.removed) {
        lines.insert("- " + at(*change.before) + " " + std::to_string(change.members));
        add_users("- " + at(*change.before), change);
    }
    for (const DeclarationChange& change : changes.added) {
        lines.insert("+ " + at(*change.after) + " " + std::to_string(change.members));
    }
    for (const DeclarationChange& change : changes.changed) {
        lines.insert("! " + at(*change.after) + (change.has_other_signature ? " signature" : "") +
                     (change.has_other_kind ? " kind" : "") + (change.has_other_visibility ? " visibility" : "") +
                     (change.is_moved || change.is_renamed ? " elsewhere" : ""));
        add_users("! " + at(*change.after), change);
    }
    for (const FileUsersChange& change : changes.users) {
        add_all("gained " + change.path, change.gained);
        add_all("lost " + change.path, change.lost);
    }
    for (const Declared& declared : changes.unused) {
        lines.insert("unused " + at(declared));
    }
    for (const Declared& declared : changes.used_again) {
        lines.insert("used " + at(declared));
    }
    return lines;
}

// For each state `old` and `new`: its declarations with their files (d_old), and who refers to them (u_old).
std::string views(const std::string& state) {
    const std::string files = state + ".files";
    const std::string symbols = state + ".symbols";
    return "CREATE TEMP TABLE d_" + state +
           " AS SELECT s.id, s.file_id AS file, f.path, s.fqn, s.name, s.kind, coalesce(x.signature, '') AS signature,"
           " type.id AS type, f.path NOT LIKE '%.test.%' AND s.name NOT LIKE '\\_%' ESCAPE '\\' AND"
           " (s.is_export OR coalesce(type.is_export, 0)) AS told,"
           " s.name NOT LIKE '\\_%' ESCAPE '\\' AND (s.is_export OR coalesce(type.is_export, 0)) AS public"
           " FROM " +
           symbols + " s JOIN " + files + " f ON f.id = s.file_id LEFT JOIN " + state +
           ".descriptions x ON x.symbol_id = s.id LEFT JOIN " + symbols +
           " type ON s.fqn LIKE 'C.%' AND type.id = coalesce("
           "(SELECT id FROM " +
           symbols +
           " c WHERE c.fqn = 'C' AND c.file_id = s.file_id), "
           "(SELECT min(id) FROM " +
           symbols +
           " c WHERE c.fqn = 'C' HAVING count(*) = 1));"
           "CREATE TEMP TABLE u_" +
           state +
           " AS SELECT e.target_id AS target, f.id AS source, f.path, e.refs, r.name IN ('import', 'local') AS proven,"
           " f.path LIKE '%.test.%' AS test FROM " +
           state + ".edges e JOIN " + files + " f ON f.id = e.source_file_id JOIN " + state +
           ".resolutions r ON r.id = e.resolution_id JOIN d_" + state +
           " d ON d.id = e.target_id WHERE d.file <> f.id;";
}

const std::string PAIRS = R"sql(
    CREATE TEMP TABLE files AS SELECT o.id AS o, n.id AS n FROM old.files o JOIN new.files n ON n.path = o.path;
    INSERT INTO files SELECT min(o.id), min(n.id)
        FROM old.files o JOIN new.files n ON n.content_hash = o.content_hash
        WHERE o.id NOT IN (SELECT o FROM files) AND n.id NOT IN (SELECT n FROM files) GROUP BY o.content_hash
        HAVING count(DISTINCT o.id) = 1 AND count(DISTINCT n.id) = 1;
    CREATE TEMP TABLE pairs AS SELECT o.id AS o, n.id AS n
        FROM d_old o JOIN files f ON f.o = o.file JOIN d_new n ON n.file = f.n AND n.fqn = o.fqn;
    -- Who is told of as a whole: a declaration without a counterpart, for itself or for its type.
    CREATE TEMP TABLE gone AS SELECT d.id, coalesce(t.id, d.id) AS whole FROM d_old d
        LEFT JOIN d_old t ON t.id = d.type AND t.told AND t.id NOT IN (SELECT o FROM pairs)
        WHERE d.told AND d.id NOT IN (SELECT o FROM pairs);
    CREATE TEMP TABLE came AS SELECT d.id, coalesce(t.id, d.id) AS whole FROM d_new d
        LEFT JOIN d_new t ON t.id = d.type AND t.told AND t.id NOT IN (SELECT n FROM pairs)
        WHERE d.told AND d.id NOT IN (SELECT n FROM pairs);
    CREATE TEMP TABLE kept AS SELECT o.id AS o, n.id AS n, '! ' || n.path || ' ' || n.fqn AS label,
        o.signature <> '' AND n.signature <> '' AND o.signature <> n.signature AS signature,
        o.kind <> n.kind AS kind, o.public <> n.public AND NOT EXISTS (SELECT 1 FROM pairs t
            JOIN d_old a ON a.id = t.o JOIN d_new b ON b.id = t.n
            WHERE t.o = o.type AND t.n = n.type AND a.public <> b.public) AS visibility, o.told AND n.told AND o.type IS NULL AND n.type IS NULL AS top
        FROM pairs p JOIN d_old o ON o.id = p.o JOIN d_new n ON n.id = p.n WHERE o.told OR n.told;
    -- Whose users are told of: in which state they are those of which declarations.
    CREATE TEMP TABLE asked AS
        SELECT '- ' || d.path || ' ' || d.fqn AS label, g.id AS o, NULL AS n FROM gone g JOIN d_old d ON d.id = g.whole
        UNION SELECT label, o, n FROM kept WHERE signature OR kind OR visibility;
)sql";

const std::string FACTS = R"sql(
    SELECT 'added ' || path FROM new.files WHERE id NOT IN (SELECT n FROM files)
    UNION SELECT 'removed ' || path FROM old.files WHERE id NOT IN (SELECT o FROM files)
    UNION SELECT 'moved ' || o.path || ' ' || n.path FROM files f JOIN old.files o ON o.id = f.o
        JOIN new.files n ON n.id = f.n WHERE o.path <> n.path
    UNION SELECT 'changed ' || o.path FROM files f JOIN old.files o ON o.id = f.o JOIN new.files n ON n.id = f.n
        WHERE o.path = n.path AND o.content_hash <> n.content_hash
    UNION SELECT '- ' || d.path || ' ' || d.fqn || ' ' || (count(*) - 1) FROM gone g JOIN d_old d ON d.id = g.whole
        GROUP BY g.whole
    UNION SELECT '+ ' || d.path || ' ' || d.fqn || ' ' || (count(*) - 1) FROM came g JOIN d_new d ON d.id = g.whole
        GROUP BY g.whole
    UNION SELECT label || iif(signature, ' signature', '') || iif(kind, ' kind', '') ||
        iif(visibility, ' visibility', '') FROM kept WHERE signature OR kind OR visibility
    UNION SELECT a.label || ' user ' || u.path || ' ' || sum(u.refs) || ' ' || CASE
            WHEN f.n IS NULL THEN 'gone'
            WHEN EXISTS (SELECT 1 FROM u_new x WHERE x.target = a.n AND x.source = f.n AND x.proven) THEN 'uses'
            WHEN o.content_hash = n.content_hash THEN 'unchanged'
            WHEN o.content_hash <> n.content_hash THEN 'changed' ELSE 'unknown' END
        FROM asked a JOIN u_old u ON u.target = a.o LEFT JOIN files f ON f.o = u.source
        LEFT JOIN old.files o ON o.id = f.o LEFT JOIN new.files n ON n.id = f.n
        WHERE u.proven AND NOT u.test GROUP BY a.label, u.source
    UNION SELECT a.label || ' test ' || u.path FROM asked a JOIN u_old u ON u.target = a.o
        WHERE a.n IS NULL AND u.proven AND u.test
    UNION SELECT a.label || ' test ' || u.path FROM asked a JOIN u_new u ON u.target = a.n WHERE u.proven AND u.test
    UNION SELECT label || ' matches ' || sum(refs) FROM (
        SELECT a.label, 0 AS refs FROM asked a
        UNION ALL SELECT a.label, u.refs FROM asked a JOIN u_old u ON u.target = a.o
            WHERE a.n IS NULL AND NOT u.proven AND NOT u.test
        UNION ALL SELECT a.label, u.refs FROM asked a JOIN u_new u ON u.target = a.n WHERE NOT u.proven AND NOT u.test)
        GROUP BY label
    UNION SELECT 'gained ' || d.path || ' ' || u.path FROM d_new d JOIN u_new u ON u.target = d.id AND u.proven
        JOIN files f ON f.n = d.file LEFT JOIN files s ON s.n = u.source WHERE NOT u.test AND d.path NOT LIKE '%.test.%'
        AND NOT EXISTS (SELECT 1 FROM d_old e JOIN u_old x ON x.target = e.id AND x.proven
                        WHERE e.file = f.o AND x.source = s.o AND NOT x.test)
    UNION SELECT 'lost ' || n.path || ' ' || u.path FROM d_old d JOIN u_old u ON u.target = d.id AND u.proven
        JOIN files f ON f.o = d.file JOIN new.files n ON n.id = f.n LEFT JOIN files s ON s.o = u.source
        WHERE NOT u.test AND n.path NOT LIKE '%.test.%'
        AND NOT EXISTS (SELECT 1 FROM d_new e JOIN u_new x ON x.target = e.id AND x.proven
                        WHERE e.file = f.n AND x.source = s.n AND NOT x.test)
    UNION SELECT 'unused ' || substr(label, 3) FROM kept k WHERE top
        AND EXISTS (SELECT 1 FROM u_old u WHERE u.target = k.o AND u.proven AND NOT u.test)
        AND NOT EXISTS (SELECT 1 FROM u_new u WHERE u.target = k.n AND NOT u.test)
    UNION SELECT 'used ' || substr(label, 3) FROM kept k WHERE top
        AND EXISTS (SELECT 1 FROM u_new u WHERE u.target = k.n AND u.proven AND NOT u.test)
        AND NOT EXISTS (SELECT 1 FROM u_old u WHERE u.target = k.o AND NOT u.test)
)sql";

Lines queried(const std::string& old_path, const std::string& new_path) {
    const TemporaryFolder folder;
    const SqliteConnection connection(folder / "queries", SqliteConnection::Mode::CREATE);
    connection.execute("ATTACH '" + old_path + "' AS old; ATTACH '" + new_path + "' AS new");
    connection.execute(views("old") + views("new") + PAIRS);
    Statement facts(connection, FACTS);
    Lines lines;
    while (facts.step()) {
        lines.insert(std::string(facts.text(0)));
    }
    return lines;
}

TEST_P(RandomChanges, AreWhatQueriesFind) {
    for (int pair = 0; pair < 25; ++pair) {
        const std::string number = std::to_string(pair);
        const std::string old_path = folder / ("old" + number);
        const std::string new_path = folder / ("new" + number);
        make(old_path);
        make(new_path);
        const SqliteIndex old_index(old_path);
        const SqliteIndex new_index(new_path);
        const auto before = old_index.connect();
        const auto after = new_index.connect();
        const Lines found = told(compare(*before->read(), *after->read(), {}));
        const Lines expected = queried(old_path, new_path);
        Lines differing;
        std::ranges::set_symmetric_difference(found, expected, std::inserter(differing, differing.end()));
        EXPECT_EQ(differing, Lines()) << number;
    }
}
INSTANTIATE_TEST_SUITE_P(Seeds, RandomChanges, testing::Range(0U, 4U));

}  // namespace
}  // namespace host::changes
