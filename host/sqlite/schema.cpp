#include "host/sqlite/schema.h"

#include "host/index/index_error.h"
#include "host/sqlite/checking_vfs.h"
#include "host/sqlite/page_checksums.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <bit>
#include <filesystem>
#include <fstream>
#include <optional>
#include <span>
#include <stdexcept>
#include <system_error>

namespace host {

namespace {

constexpr const char* TABLES = R"sql(
    CREATE TABLE files(
        id INTEGER PRIMARY KEY,             -- ascends with the path
        path TEXT UNIQUE NOT NULL,
        language TEXT,                      -- NULL when unknown
        content_hash INTEGER,               -- of the source that was read; NULL when none was
        declarations INTEGER,               -- how many
        declared_lines INTEGER              -- how many lines these take up together
    );
    CREATE TABLE languages(
        name TEXT PRIMARY KEY,
        import_resolved INTEGER NOT NULL    -- whether the indexer resolves the language's imports
    );
    CREATE TABLE symbols(
        id INTEGER PRIMARY KEY,             -- ascends with the file
        file_id INTEGER,
        name TEXT,
        fqn TEXT,
        kind TEXT,
        is_export INTEGER,
        start_line INTEGER,                 -- 1-based, inclusive
        end_line INTEGER,                   -- 1-based, inclusive
        uses INTEGER                        -- by production code, as the fan-in of a page counts them
    );
    CREATE TABLE descriptions(              -- of those declarations of which something is known
        symbol_id INTEGER PRIMARY KEY,
        signature TEXT NOT NULL,            -- up to the body
        documentation TEXT NOT NULL         -- the doc comment as prose
    );
    CREATE TABLE resolutions(
        id INTEGER PRIMARY KEY,             -- ascends with the name
        name TEXT UNIQUE NOT NULL
    );
    CREATE TABLE edges(
        source_file_id INTEGER,
        target_id INTEGER,
        resolution_id INTEGER,
        refs INTEGER,                       -- how many references the row stands for
        first_line INTEGER,                 -- of the source, 1-based, on which one of them stands; 0 when unknown
        PRIMARY KEY(source_file_id, target_id, resolution_id)
    ) WITHOUT ROWID;
    CREATE TABLE meta(key TEXT PRIMARY KEY, value TEXT);
)sql";

constexpr const char* INDEXES = R"sql(
    CREATE INDEX symbols_by_file ON symbols(file_id);
    CREATE INDEX symbols_by_name ON symbols(name, uses);
    CREATE INDEX edges_by_target ON edges(target_id, source_file_id, resolution_id, refs, first_line);
)sql";

// The statements that have made what is in a database, written as those above. The table that lists them is asked for
// by its oldest name, which nothing else can bear.
std::string statements_of(const SqliteConnection& connection) {
    std::string statements;
    Statement made(connection, "SELECT sql FROM sqlite_master WHERE sql <> '' ORDER BY rowid");
    while (made.step()) {
        statements.append("    ").append(made.text(0)).append(";\n");
    }
    return statements;
}

// Whether a database has the tables and indexes that an import makes, word for word, and nothing else. What others
// define may do anything when it is read: a view without an end, a column that is computed, a table of some extension.
bool is_made_by_import(const SqliteConnection& connection) {
    return "\n" + statements_of(connection) == TABLES + std::string(INDEXES).substr(1);
}

// The schema version that an index states of itself; none when a database is no index. Many programs state one in a
// table of this name, but they have other tables beside it; and what is no table is not asked.
std::optional<std::string> schema_version_of(const SqliteConnection& connection) {
    Statement tables(connection, R"sql(
        SELECT count(*) FROM sqlite_master
        WHERE sql = 'CREATE TABLE meta(key TEXT PRIMARY KEY, value TEXT)'
              OR (type = 'table' AND name IN ('files', 'symbols', 'edges'))
    )sql");
    tables.step();
    if (tables.integer(0) != 4) {
        return std::nullopt;
    }
    Statement version(connection, "SELECT value FROM meta WHERE key = 'schema_version'");
    const bool is_stated = version.step() && !version.is_null(0);
    return is_stated ? std::optional(std::string(version.text(0))) : std::nullopt;
}

bool notes_checksums(const SqliteConnection& connection) {
    Statement note(connection, "SELECT 1 FROM meta WHERE key = ?1");
    note.bind(1, CHECKSUMS_NOTE);
    return note.step();
}

// Whether a later program states this schema version; each counts one on.
bool is_newer(const std::string& version) {
    const std::string_view ours = SCHEMA_VERSION;
    const bool is_number = version.find_first_not_of("0123456789") == std::string::npos;
    return is_number && std::pair(version.size(), std::string_view(version)) > std::pair(ours.size(), ours);
}

std::filesystem::file_type type_of(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_type type = std::filesystem::status(path, error).type();
    if (type == std::filesystem::file_type::none) {
        throw std::runtime_error(path + ": cannot be found (" + error.message() +
                                 "); check the path, and the permissions of its folders");
    }
    return type;
}

bool is_empty(const std::string& path) {
    std::error_code error;
    return std::filesystem::file_size(path, error) == 0;
}

using Header = std::array<unsigned char, DATABASE_HEADER_BYTES>;

Header header_of(const std::string& path) {
    std::array<char, DATABASE_HEADER_BYTES> characters{};
    std::ifstream(path, std::ios::binary).read(characters.data(), characters.size());
    return std::bit_cast<Header>(characters);
}

bool begins_as_database(const Header& header) {
    constexpr std::string_view BEGINNING("SQLite format 3\0", 16);
    return std::ranges::equal(std::span(header).first(BEGINNING.size()), BEGINNING);
}

// Whether the file is an index, or a database so damaged that nobody can tell any more.
bool was_an_index(const std::string& path) {
    const Header header = header_of(path);
    if (layout_with_checksums(header)) {  // nothing but an import states them so
        return true;
    }
    try {
        // Opened for writing, so that SQLite can undo what a killed program has left half written.
        return schema_version_of(SqliteConnection(path, SqliteConnection::Mode::CREATE)).has_value();
    } catch (const SqliteError& error) {
        if (error.is_damage()) {
            return begins_as_database(header);
        }
        throw;
    }
}

}  // namespace

void create_schema(const SqliteConnection& connection) {
    connection.execute(TABLES);
    Statement meta(connection, "INSERT INTO meta(key, value) VALUES('schema_version', ?1)");
    meta.bind(1, SCHEMA_VERSION);
    meta.run();
}

void create_indexes(const SqliteConnection& connection) {
    connection.execute(INDEXES);
}

SqliteConnection open_index(const std::string& path) {
    using std::filesystem::file_type;
    using Fault = UnusableIndex::Fault;
    const file_type type = type_of(path);
    if (type == file_type::not_found) {
        throw UnusableIndex(Fault::MISSING, path, "no such index");
    }
    if (type != file_type::regular) {
        throw UnusableIndex(Fault::FOREIGN, path, "not a wiki-scope index but a folder or a device");
    }
    SqliteConnection connection(path, SqliteConnection::Mode::READ);
    std::optional<std::string> version;
    try {
        version = schema_version_of(connection);
    } catch (const SqliteError& error) {
        if (error.code() != SQLITE_NOTADB) {
            throw;
        }
    }
    if (!version) {
        throw UnusableIndex(Fault::FOREIGN, path, "not a wiki-scope index");
    }
    if (*version != SCHEMA_VERSION) {
        throw UnusableIndex(is_newer(*version) ? Fault::NEWER : Fault::OUTDATED, path,
                            "an index of schema version " + *version + ", but this program reads version " +
                                std::string(SCHEMA_VERSION));
    }
    if (!is_made_by_import(connection)) {
        throw SqliteError(path, "its tables and indexes are not those that an import makes", SQLITE_CORRUPT);
    }
    if (notes_checksums(connection) && !has_checksums(connection.handle())) {
        throw SqliteError(path, "its header is damaged, or was changed by another program", SQLITE_CORRUPT);
    }
    return connection;
}

bool holds_something(const std::string& path) {
    return type_of(path) != std::filesystem::file_type::not_found && !is_empty(path);
}

void require_replaceable(const std::string& path) {
    if (!holds_something(path)) {
        return;
    }
    if (type_of(path) != std::filesystem::file_type::regular || !was_an_index(path)) {
        throw std::runtime_error(path + ": not a wiki-scope index, so it is not replaced by one; name another file");
    }
}

}  // namespace host
