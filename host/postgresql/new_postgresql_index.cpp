#include "host/postgresql/new_postgresql_index.h"

#include "host/files/folder_name.h"
#include "host/postgresql/locks.h"
#include "host/postgresql/schema.h"
#include "host/postgresql/snapshot_tables.h"
#include "host/text/control_characters.h"

#include <unistd.h>

#include <filesystem>
#include <string_view>
#include <system_error>

namespace host::postgresql {

namespace {

// What comes of tables that are not vacuumed.
constexpr const char* SLOWER = "pages take longer until autovacuum has passed, or who owns the tables runs: VACUUM";

// An import may read its input for a long time before it sends a row.
constexpr const char* MODE = "ISOLATION LEVEL READ COMMITTED";  // else imports of others might be in its way
constexpr const char* PATIENT = "SET LOCAL idle_in_transaction_session_timeout = 0";

}  // namespace

NewPostgresqlIndex::NewPostgresqlIndex(const Address& address, std::string repository, CheckInterrupt check_interrupt)
    : connection_(address, std::move(check_interrupt)), repository_(std::move(repository)) {
    connection_.begin(MODE, PATIENT);
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
        repository_ = folder.empty() ? "" : folder_name(folder);
    }
    if (repository_.empty()) {
        throw std::runtime_error(connection_.server() +
                                 ": nothing tells what the repository is called; name it with --repository");
    }
    if (has_control_character(repository_)) {
        throw std::runtime_error(repository_ + ": a name with control characters; give another with --repository");
    }
    if (!find_repository()) {
        connection_.execute("INSERT INTO wiki_scope.repositories(name) VALUES($1) ON CONFLICT DO NOTHING",
                            Parameters().text(repository_));
        connection_.execute("COMMIT");  // else a second import of the same name would wait for the end of this one
        connection_.begin(MODE, PATIENT);
        find_repository();
    }
    if (const std::optional<std::string> holder = holder_unless_locked(connection_, repository_id_)) {
        throw holder->empty() ? unchangeable()
                              : std::runtime_error(name() + ": another import into this index is running (" + *holder +
                                                   "); wait for it to end");
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

// What an import that was killed, or anybody else, has left under the number of a snapshot yet to come.
void NewPostgresqlIndex::remove_leftovers() {
    std::string any = "SELECT 1 WHERE false";
    for (const SnapshotTable& table : SNAPSHOT_TABLES) {
        any += " OR EXISTS(SELECT FROM wiki_scope." + std::string(table.name) +
               " WHERE repository = $1 AND snapshot > $2)";
    }
    Rows left(connection_, any, Parameters().integer(repository_id_).integer(current_));
    if (left.step()) {
        left.step();
        remove_other_snapshots();
    }
}

void NewPostgresqlIndex::remove_superseded() {
    // What is not on the disk yet when power is lost goes with the next.
    connection_.begin(MODE, "SET LOCAL synchronous_commit = off");
    if (!holder_unless_locked(connection_, repository_id_)) {  // else the next import has begun, and does it
        remove_other_snapshots();
    }
    connection_.execute("COMMIT");
}

void NewPostgresqlIndex::remove_other_snapshots() {
    connection_.execute("SELECT wiki_scope.remove_other_snapshots($1::pg_catalog.int4)",
                        Parameters().integer(repository_id_));
}

// Indexes alone answer for rows that a vacuum has seen. What is left to autovacuum slows pages down for minutes, twice:
// before it comes, and while it works.
void NewPostgresqlIndex::vacuum() {
    const std::string statement = "VACUUM (TRUNCATE OFF) " + snapshot_table_list();  // to truncate holds off readers
    if (const std::string warning = connection_.warning_of(statement); !warning.empty()) {
        remark_ = connection_.server() + ": " + warning + "; " + SLOWER;
    }
}

RowWriter& NewPostgresqlIndex::rows() {
    if (!rows_) {
        remove_leftovers();
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
        "UPDATE wiki_scope.repositories "
        "SET snapshot = $2, bytes = $3, checksums = $4, made = pg_catalog.clock_timestamp() WHERE repository = $1",
        Parameters().integer(repository_id_).integer(current_ + 1).integer(rows_->size()).integers(rows_->checksums()));
    if (changed != 1) {
        throw unchangeable();
    }
}

std::runtime_error NewPostgresqlIndex::unchangeable() const {
    return std::runtime_error(name() + ": the server does not let the row of the repository be changed; check its "
                                       "row-level security, and import again");
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
    // The new index is there, whatever becomes of the old.
    std::string left = "the snapshots before are still there, the next import may remove them";
    try {
        remove_superseded();
        left = SLOWER;
        vacuum();
    } catch (const PostgresqlError& error) {
        remark_ = std::string(error.what()) + "; " + left;
    } catch (...) {  // what the watch throws
        remark_ = name() + ": interrupted; " + left;
    }
}

std::runtime_error NewPostgresqlIndex::failure(const IndexError& error) const {
    return std::runtime_error(std::string(error.what()) + "; the index of " + repository_ + " is as it was before");
}

}  // namespace host::postgresql
