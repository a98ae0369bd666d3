#include "host/sqlite/new_sqlite_index.h"

#include "host/sqlite/page_checksums.h"
#include "host/sqlite/schema.h"

#include <cstdint>

namespace host {

namespace {

constexpr const char* REMEDY = "make room on its disk or choose another place";

const std::string& replaceable(const std::string& path) {
    require_replaceable(path);
    return path;
}

std::int64_t count_rows(const SqliteConnection& index, const std::string& table) {
    Statement count(index, "SELECT count(*) FROM " + table);
    count.step();
    return count.integer(0);
}

}  // namespace

NewSqliteIndex::Filling::Filling(const std::string& path, const CheckInterrupt& check_interrupt)
    : connection_(path, SqliteConnection::Mode::CREATE) {
    connection_.watch(check_interrupt);
    // Whatever goes wrong, the file is thrown away; it is made durable as a whole when it is complete.
    connection_.execute("PRAGMA journal_mode = MEMORY; PRAGMA synchronous = OFF; PRAGMA threads = 4");
    leave_room_for_checksums(connection_);
    transaction_.emplace(connection_);
    create_schema(connection_);
    writer_.emplace(connection_);
    writer_->note(CHECKSUMS_NOTE, "xxh3");
}

void NewSqliteIndex::Filling::finish() {
    writer_.reset();
    create_indexes(connection_);
    transaction_->commit();
}

NewSqliteIndex::NewSqliteIndex(const std::string& path) : path_(replaceable(path)), replacement_(path) {}

std::string NewSqliteIndex::scratch_path(const std::string& role) const {
    return replacement_.partial_path() + "-" + role;
}

bool NewSqliteIndex::would_replace() const {
    return holds_something(path_);
}

RowWriter& NewSqliteIndex::rows() {
    if (!filling_) {
        filling_.emplace(replacement_.partial_path(), check_interrupt_);
    }
    return filling_->writer();
}

void NewSqliteIndex::complete(const RowCounts& counts) {
    filling_->finish();
    filling_.reset();
    if (!write_checksums(replacement_.partial_path())) {
        throw cannot_replace(path_, last_system_error());
    }
    if (!holds(counts)) {
        throw cannot_replace(path_, "rows are missing from what was written", REMEDY);
    }
    replacement_.sync();
}

// Whether what was written can be opened again and holds every row.
bool NewSqliteIndex::holds(const RowCounts& counts) const {
    SqliteConnection index = open_index(replacement_.partial_path());
    index.watch(check_interrupt_);
    return count_rows(index, "files") == counts.files && count_rows(index, "symbols") == counts.declarations &&
           count_rows(index, "edges") == counts.edges;
}

std::runtime_error NewSqliteIndex::failure(const IndexError& error) const {
    return cannot_replace(path_, error.reason(), REMEDY);
}

}  // namespace host
