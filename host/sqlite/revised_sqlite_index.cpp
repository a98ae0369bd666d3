#include "host/sqlite/revised_sqlite_index.h"

#include "host/index/notes.h"
#include "host/sqlite/page_checksums.h"
#include "host/sqlite/row_writer.h"

#include <utility>

namespace host {

namespace {

std::string note(const SqliteConnection& connection, std::string_view key) {
    Statement note(connection, "SELECT value FROM meta WHERE key = ?1");
    note.bind(1, key);
    return note.step() ? std::string(note.text(0)) : "";
}

void revise_files(const SqliteConnection& connection, const Revision& revision, SqliteRowWriter& writer) {
    Statement file(connection, "UPDATE files SET content_hash = ?2, declared_lines = ?3 WHERE id = ?1");
    Statement lines(connection, "UPDATE symbols SET start_line = ?2, end_line = ?3 WHERE id = ?1");
    Statement no_description(connection, "DELETE FROM descriptions WHERE symbol_id = ?1");
    Statement no_edges(connection, "DELETE FROM edges WHERE source_file_id = ?1");
    for (const RevisedFile& revised : revision.files) {
        file.run_with(revised.id, revised.content_hash, revised.declared_lines);
        no_edges.run_with(revised.id);
        for (const auto& [id, first_line, last_line, signature, documentation] : revised.declarations) {
            lines.run_with(id, first_line, last_line);
            no_description.run_with(id);
            if (!signature.empty() || !documentation.empty()) {
                writer.add(DescriptionRow{id, signature, documentation});
            }
        }
    }
}

void revise_rows(const SqliteConnection& connection, const Revision& revision) {
    SqliteRowWriter writer(connection);
    revise_files(connection, revision, writer);
    for (const EdgeRow& edge : revision.edges) {
        writer.add(edge);
    }
    Statement uses(connection, "UPDATE symbols SET uses = uses + ?2 WHERE id = ?1");
    for (const auto& [declaration, more] : revision.uses) {
        uses.run_with(declaration, more);
    }
    Statement report(connection, "UPDATE meta SET value = ?2 WHERE key = ?1");
    report.run_with(notes::REPORT, std::string_view(revision.report));
}

}  // namespace

RevisedSqliteIndex::RevisedSqliteIndex(const std::string& path, CheckInterrupt check_interrupt)
    : path_(path), replacement_(path) {
    if (!copy_with_checksums(path_, replacement_.partial_path())) {
        throw cannot_replace(path_, last_system_error());
    }
    connection_.emplace(replacement_.partial_path(), SqliteConnection::Mode::CREATE);
    connection_->watch(std::move(check_interrupt));
    // Whatever goes wrong, the copy is thrown away; it is made durable as a whole when it is complete.
    connection_->execute("PRAGMA journal_mode = MEMORY; PRAGMA synchronous = OFF");
}

std::string RevisedSqliteIndex::scratch_path(const std::string& role) const {
    return replacement_.partial_path() + "-" + role;
}

IndexState RevisedSqliteIndex::state(std::span<const RowId> files) const {
    IndexState state;
    Statement declarations(*connection_, "SELECT declarations FROM files ORDER BY id");
    while (declarations.step()) {
        state.declarations.push_back(declarations.integer(0));
    }
    Statement edges(*connection_,
                    "SELECT target_id, resolution_id, refs, first_line FROM edges WHERE source_file_id = ?1");
    for (const RowId file : files) {
        edges.bind(1, file);
        while (edges.step()) {
            state.edges.push_back({file, edges.integer(0), edges.integer(1), edges.integer(2), edges.integer(3)});
        }
        edges.reset();
    }
    state.test_rules = note(*connection_, notes::TEST_RULES);
    state.report = note(*connection_, notes::REPORT);
    return state;
}

void RevisedSqliteIndex::commit(const Revision& revision) {
    Transaction transaction(*connection_);
    revise_rows(*connection_, revision);
    transaction.commit();
    connection_.reset();
    if (!write_checksums(replacement_.partial_path())) {
        throw cannot_replace(path_, last_system_error());
    }
    replacement_.sync();
    replacement_.commit();
}

}  // namespace host
