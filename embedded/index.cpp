#include "embedded/index.h"

#include <sqlite3.h>

#include <filesystem>
#include <optional>

namespace embedded {

namespace {

constexpr const char* TABLES = R"sql(
    CREATE TABLE files(
        id INTEGER PRIMARY KEY,
        path TEXT UNIQUE NOT NULL,
        language TEXT                       -- NULL when unknown
    );
    CREATE TABLE languages(
        name TEXT PRIMARY KEY,
        import_resolved INTEGER NOT NULL    -- whether the indexer resolves the language's imports
    );
    CREATE TABLE symbols(
        id INTEGER PRIMARY KEY,
        file_id INTEGER,
        name TEXT,
        fqn TEXT,
        kind TEXT,
        is_export INTEGER,
        start_line INTEGER,                 -- 1-based, inclusive
        end_line INTEGER                    -- 1-based, inclusive
    );
    CREATE TABLE edges(                     -- one row per source file, target and resolution
        source_file_id INTEGER,
        target_id INTEGER,
        resolution TEXT,
        refs INTEGER                        -- how many references the row stands for
    );
    CREATE TABLE meta(key TEXT PRIMARY KEY, value TEXT);
)sql";

constexpr const char* INDEXES = R"sql(
    CREATE INDEX symbols_by_file ON symbols(file_id);
    CREATE INDEX edges_by_source ON edges(source_file_id);
    CREATE INDEX edges_by_target ON edges(target_id);
)sql";

// The schema version that an index states of itself; none when the file is no index.
std::optional<std::string> schema_version_of(const Connection& connection) {
    try {
        Statement version(connection, "SELECT value FROM meta WHERE key = 'schema_version'");
        return version.step() ? std::optional(std::string(version.text(0))) : std::nullopt;
    } catch (const SqliteError& error) {
        if (error.code() == SQLITE_NOTADB || error.code() == SQLITE_ERROR) {
            return std::nullopt;
        }
        throw;
    }
}

}  // namespace

void create_schema(const Connection& connection) {
    connection.execute(TABLES);
    Statement meta(connection, "INSERT INTO meta(key, value) VALUES('schema_version', ?1)");
    meta.bind(1, SCHEMA_VERSION);
    meta.run();
}

void create_indexes(const Connection& connection) {
    connection.execute(INDEXES);
}

Connection open_index(const std::string& path) {
    const std::string advice = "make one with: wiki-scope import INDEX.scip --index " + path;
    if (!std::filesystem::exists(path)) {
        throw std::runtime_error(path + ": no such index; " + advice);
    }
    if (!std::filesystem::is_regular_file(path)) {
        throw std::runtime_error(path + ": not a wiki-scope index but a folder or a device; name a file");
    }
    Connection connection(path, Connection::Mode::READ);
    const std::optional<std::string> version = schema_version_of(connection);
    if (!version) {
        throw std::runtime_error(path + ": not a wiki-scope index; name another file, or " + advice);
    }
    if (*version != SCHEMA_VERSION) {
        throw std::runtime_error(path + ": an index of schema version " + *version +
                                 ", but this program reads version " + std::string(SCHEMA_VERSION) +
                                 "; import the SCIP file again");
    }
    return connection;
}

void require_replaceable(const std::string& path) {
    const bool holds_nothing =
        !std::filesystem::exists(path) || (std::filesystem::is_regular_file(path) && std::filesystem::is_empty(path));
    if (!holds_nothing &&
        (!std::filesystem::is_regular_file(path) || !schema_version_of(Connection(path, Connection::Mode::READ)))) {
        throw std::runtime_error(path + ": not a wiki-scope index, so it is not replaced by one; name another file");
    }
}

}  // namespace embedded
