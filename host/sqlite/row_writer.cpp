#include "host/sqlite/row_writer.h"

namespace host {

SqliteRowWriter::SqliteRowWriter(const SqliteConnection& connection)
    : notes_(connection, "INSERT INTO meta(key, value) VALUES(?1, ?2)"),
      files_(connection, "INSERT INTO files(id, path, language, content_hash, declarations, declared_lines) "
                         "VALUES(?1, ?2, nullif(?3, ''), ?4, ?5, ?6)"),
      languages_(connection, "INSERT INTO languages(name, import_resolved) VALUES(?1, ?2)"),
      declarations_(connection,
                    "INSERT INTO symbols(id, file_id, name, fqn, kind, is_export, start_line, end_line, uses) "
                    "VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)"),
      descriptions_(connection, "INSERT INTO descriptions(symbol_id, signature, documentation) VALUES(?1, ?2, ?3)"),
      resolutions_(connection, "INSERT INTO resolutions(id, name) VALUES(?1, ?2)"),
      edges_(connection, "INSERT INTO edges(source_file_id, target_id, resolution_id, refs, first_line) "
                         "VALUES(?1, ?2, ?3, ?4, ?5)") {}

void SqliteRowWriter::note(std::string_view key, std::string_view value) {
    notes_.run_with(key, value);
}

void SqliteRowWriter::add(const FileRow& row) {
    files_.run_with(row.id, row.path, row.language.value_or(""), row.content_hash, row.declarations,
                    row.declared_lines);
}

void SqliteRowWriter::add(const LanguageRow& row) {
    languages_.run_with(row.name, std::int64_t{row.import_resolved ? 1 : 0});
}

void SqliteRowWriter::add(const DeclarationRow& row) {
    declarations_.run_with(row.id, row.file, row.name, row.fqn, row.kind, std::int64_t{row.is_export ? 1 : 0},
                           row.first_line, row.last_line, row.uses);
}

void SqliteRowWriter::add(const DescriptionRow& row) {
    descriptions_.run_with(row.declaration, row.signature, row.documentation);
}

void SqliteRowWriter::add(const ResolutionRow& row) {
    resolutions_.run_with(row.id, row.name);
}

void SqliteRowWriter::add(const EdgeRow& row) {
    edges_.run_with(row.source, row.target, row.resolution, row.references, row.first_line);
}

}  // namespace host
