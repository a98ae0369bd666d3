#include "host/sqlite/revised_sqlite_index.h"

#include "host/index/notes.h"
#include "host/sqlite/page_checksums.h"
#include "host/sqlite/row_writer.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace host {

namespace {

std::string note(const SqliteConnection& connection, std::string_view key) {
    Statement note(connection, "SELECT value FROM meta WHERE key = ?1");
    note.bind(1, key);
    return note.step() ? std::string(note.text(0)) : "";
}

void remove_old_rows(const SqliteConnection& connection, const Revision& revision) {
    Statement edges(connection, "DELETE FROM edges WHERE source_file_id = ?1");
    Statement descriptions(connection, "DELETE FROM descriptions WHERE symbol_id IN "
                                       "(SELECT id FROM symbols WHERE file_id = ?1)");
    Statement declarations(connection, "DELETE FROM symbols WHERE file_id = ?1");
    for (const RevisedFile& file : revision.files) {
        edges.run_with(file.id);
        descriptions.run_with(file.id);
        declarations.run_with(file.id);
    }
    Statement moved(connection,
                    "DELETE FROM edges WHERE source_file_id = ?1 AND target_id = ?2 AND resolution_id = ?3");
    for (const auto& [old, now] : revision.moved_edges) {
        moved.run_with(old.source, old.target, old.resolution);
    }
}

void add_new_rows(const SqliteConnection& connection, const Revision& revision) {
    SqliteRowWriter writer(connection);
    Statement row(connection,
                  "UPDATE files SET content_hash = ?2, declarations = ?3, declared_lines = ?4 WHERE id = ?1");
    for (const RevisedFile& file : revision.files) {
        row.run_with(file.id, file.content_hash, std::ssize(file.declarations), file.declared_lines);
        for (const auto& [id, name, fqn, kind, is_export, first_line, last_line, uses, signature, documentation] :
             file.declarations) {
            writer.add(DeclarationRow{id, file.id, name, fqn, kind, is_export, first_line, last_line, uses});
            if (!signature.empty() || !documentation.empty()) {
                writer.add(DescriptionRow{id, signature, documentation});
            }
        }
    }
    for (const EdgeRow& edge : revision.edges) {
        writer.add(edge);
    }
    for (const auto& [old, now] : revision.moved_edges) {
        writer.add(now);
    }
}

void revise_rows(const SqliteConnection& connection, const Revision& revision) {
    remove_old_rows(connection, revision);
    add_new_rows(connection, revision);
    Statement uses(connection, "UPDATE symbols SET uses = uses + ?2 WHERE id = ?1");
    for (const auto& [declaration, more] : revision.uses) {
        uses.run_with(declaration, more);
    }
    Statement note(connection, "UPDATE meta SET value = ?2 WHERE key = ?1 AND value <> ?2");
    note.run_with(notes::SHARED_SUMMARIES, std::string_view(revision.shared_summaries));
    note.run_with(notes::REPORT, std::string_view(revision.report));
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
    Statement counts(*connection_, "SELECT declarations, (SELECT min(id) FROM symbols WHERE file_id = files.id) "
                                   "FROM files ORDER BY id");
    while (counts.step()) {
        state.declarations.push_back(counts.integer(0));
        state.first.push_back(counts.is_null(1) ? 0 : counts.integer(1));
    }
    Statement declarations(*connection_, "SELECT id, name, kind, uses FROM symbols WHERE file_id = ?1 ORDER BY id");
    Statement edges(*connection_,
                    "SELECT target_id, resolution_id, refs, first_line FROM edges WHERE source_file_id = ?1");
    Statement edges_into(*connection_, "SELECT source_file_id, target_id, resolution_id, refs, first_line "
                                       "FROM symbols CROSS JOIN edges ON target_id = id WHERE file_id = ?1");
    for (const RowId file : files) {
        declarations.bind(1, file);
        while (declarations.step()) {
            state.revised.push_back({declarations.integer(0), file, std::string(declarations.text(1)),
                                     std::string(declarations.text(2)), declarations.integer(3)});
        }
        declarations.reset();
        edges.bind(1, file);
        while (edges.step()) {
            state.edges.push_back({file, edges.integer(0), edges.integer(1), edges.integer(2), edges.integer(3)});
        }
        edges.reset();
        edges_into.bind(1, file);
        while (edges_into.step()) {
            if (!std::ranges::binary_search(files, edges_into.integer(0))) {
                state.edges_into.push_back({edges_into.integer(0), edges_into.integer(1), edges_into.integer(2),
                                            edges_into.integer(3), edges_into.integer(4)});
            }
        }
        edges_into.reset();
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
