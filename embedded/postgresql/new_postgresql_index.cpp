#include "embedded/postgresql/new_postgresql_index.h"

#include "embedded/postgresql/schema.h"

#include <unistd.h>

#include <array>
#include <filesystem>
#include <system_error>

namespace embedded::postgresql {

namespace {

// All tables whose rows belong to a snapshot.
constexpr std::array TABLES{"notes", "files", "languages", "symbols", "descriptions", "resolutions", "edges"};

// The name of a folder, whether or not a separator ends its path.
std::string folder_name(const std::string& path) {
    const std::filesystem::path folder = std::filesystem::path(path).lexically_normal();
    return (folder.has_filename() ? folder : folder.parent_path()).filename();
}

}  // namespace

NewPostgresqlIndex::NewPostgresqlIndex(const Address& address, std::string repository, Look look)
    : connection_(address, std::move(look)), repository_(std::move(repository)) {
    require_schema(connection_);
}

std::string NewPostgresqlIndex::name() const {
    return connection_.server() + (repository_.empty() ? "" : " (" + repository_ + ")");
}

std::string NewPostgresqlIndex::scratch_path(const std::string& role) const {
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
    if (error) {
        throw std::runtime_error("TMPDIR: no folder for temporary files (" + error.message() + "); name another");
    }
    return folder / ("wiki-scope-" + std::to_string(getpid()) + "-" + role);
}

void NewPostgresqlIndex::claim(const std::string& folder) {
    if (repository_.empty()) {
        repository_ = folder_name(folder);
    }
    if (repository_.empty()) {
        throw std::runtime_error(connection_.server() +
                                 ": nothing tells what the repository is called; name it with --repository");
    }
    if (!find_repository()) {
        connection_.execute("INSERT INTO wiki_scope.repositories(name) VALUES($1) ON CONFLICT DO NOTHING",
                            Parameters().text(repository_));
        find_repository();
    }
    Rows lock(connection_, "SELECT pg_try_advisory_lock(2003397481, $1::integer)",
              Parameters().integer(repository_id_));
    const bool is_mine = lock.step() && lock.integer(0) != 0;
    lock.step();
    if (!is_mine) {
        throw std::runtime_error(name() + ": another import into this index is running; wait for it to end");
    }
    find_repository();  // that import may have ended a moment ago
}

bool NewPostgresqlIndex::find_repository() {
    Rows row(connection_, "SELECT repository, snapshot FROM wiki_scope.repositories WHERE name = $1",
             Parameters().text(repository_));
    const bool is_there = row.step();
    if (is_there) {
        repository_id_ = row.integer(0);
        current_ = row.integer(1);
        row.step();
    }
    return is_there;
}

void NewPostgresqlIndex::remove_superseded() {
    // One transaction, since they are sent together; what is not on the disk yet when power is lost goes with the next.
    std::string statements = "SET synchronous_commit = off;";
    for (const std::string table : TABLES) {
        statements += "DELETE FROM wiki_scope." + table + " WHERE repository = " + std::to_string(repository_id_) +
                      " AND snapshot < " + std::to_string(current_) + ";";
    }
    connection_.execute(statements);
}

// Indexes alone answer for rows that a vacuum has seen. It may be left to autovacuum: who does not own the table is not
// let do it, and another vacuum is not waited for.
void NewPostgresqlIndex::make_visible() {
    connection_.execute("VACUUM (SKIP_LOCKED, INDEX_CLEANUP OFF, TRUNCATE OFF) wiki_scope.edges");
}

RowWriter& NewPostgresqlIndex::rows() {
    if (!rows_) {
        connection_.execute("BEGIN ISOLATION LEVEL READ COMMITTED");  // else imports of others might be in its way
        rows_.emplace(connection_, repository_id_, current_ + 1);
    }
    return *rows_;
}

void NewPostgresqlIndex::complete(const RowCounts& counts) {
    rows_->finish();
    if (rows_->files() != counts.files || rows_->declarations() != counts.declarations ||
        rows_->edges() != counts.edges) {
        throw std::runtime_error(name() + ": the server has not taken every row; import again");
    }
    const std::int64_t changed = connection_.execute(
        "UPDATE wiki_scope.repositories SET snapshot = $2, bytes = $3, made = clock_timestamp() WHERE repository = $1",
        Parameters().integer(repository_id_).integer(current_ + 1).integer(rows_->size()));
    if (changed != 1) {
        throw std::runtime_error(name() + ": the server does not let the row of the repository be changed; check its "
                                          "row-level security, and import again");
    }
}

void NewPostgresqlIndex::commit() {
    const auto unknown = [](const std::string& why) {
        return std::runtime_error(why +
                                  "; whether the new index was put into its place is not known: see wiki-scope stats");
    };
    try {
        connection_.execute("COMMIT");
    } catch (const PostgresqlError& error) {
        throw unknown(error.what());
    } catch (...) {  // what the watch throws, which does not know how far this has come
        throw unknown(name() + ": interrupted at the last step");
    }
    ++current_;
    try {
        remove_superseded();
        make_visible();
    } catch (...) {  // the new index is there, whatever becomes of the old: the next import removes it
    }
}

std::runtime_error NewPostgresqlIndex::failure(const IndexError& error) const {
    return std::runtime_error(std::string(error.what()) + "; the index of " + repository_ + " is as it was before");
}

}  // namespace embedded::postgresql
