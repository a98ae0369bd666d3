#include "host/postgresql/grants.h"

#include "host/postgresql/snapshot_tables.h"

#include <string_view>

namespace host::postgresql {

namespace {

std::string doubled(std::string_view text, char quote) {
    std::string result;
    for (const char character : text) {
        result.append(character == quote ? 2 : 1, character);
    }
    return result;
}

std::string identifier(const std::string& name) {
    return "\"" + doubled(name, '"') + "\"";
}

// Where it holds a backslash it is written so that no setting of the server changes what that means.
std::string literal(const std::string& text) {
    const std::string quoted = "'" + doubled(text, '\'') + "'";
    return text.find('\\') == std::string::npos ? quoted : "E" + doubled(quoted, '\\');
}

// What lets a role have the rows of which a condition holds, as far as its grants go. A role has one such policy.
std::string policy(const Rights& rights, const std::string& role, std::string_view table,
                   const std::string& condition) {
    const std::string target = "wiki_scope." + std::string(table);
    const std::string name = identifier(rights.role) + " ON " + target;
    const bool is_held = !rights.repository.empty();
    return (is_held ? "ALTER TABLE " + target + " ENABLE ROW LEVEL SECURITY;\n" : "") + "DROP POLICY IF EXISTS " +
           name + ";\nCREATE POLICY " + name + " TO " + role + " USING (" + (is_held ? condition : "true") + ");\n";
}

}  // namespace

std::string grants(const Rights& rights) {
    const std::string role = rights.role == "public" ? "PUBLIC" : identifier(rights.role);  // no role is called so
    const std::string tables = snapshot_table_list();
    std::string sql = "BEGIN;\n"
                      "SET LOCAL search_path = pg_catalog, pg_temp;\n"
                      "REVOKE ALL ON ALL TABLES IN SCHEMA wiki_scope FROM " +
                      role + ";\nREVOKE ALL ON ALL FUNCTIONS IN SCHEMA wiki_scope FROM " + role +
                      ";\n-- To read.\n"
                      "GRANT USAGE ON SCHEMA wiki_scope TO " +
                      role + ";\nGRANT SELECT ON wiki_scope.versions, wiki_scope.repositories, " + tables + " TO " +
                      role + ";\n";
    if (rights.may_import) {
        sql += "-- To import.\n"
               "GRANT INSERT (name), UPDATE (snapshot, bytes, made, checksums) ON wiki_scope.repositories TO " +
               role + ";\nGRANT INSERT ON " + tables + " TO " + role +
               ";\nGRANT EXECUTE ON FUNCTION wiki_scope.remove_other_snapshots TO " + role + ";\n";
    }
    sql += rights.repository.empty()
               ? "-- Of every repository, also where policies guard the tables.\n"
               : "-- Of one repository. From now on, who does not own the tables sees what policies let him see.\n";
    const std::string is_named = "name = " + literal(rights.repository);
    sql += policy(rights, role, "repositories", is_named);
    for (const SnapshotTable& table : SNAPSHOT_TABLES) {
        sql += policy(rights, role, table.name,
                      "repository = (SELECT its.repository FROM wiki_scope.repositories AS its WHERE its." + is_named +
                          ")");
    }
    return sql + "COMMIT;\n";
}

}  // namespace host::postgresql
