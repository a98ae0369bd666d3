#include "host/postgresql/row_copy.h"

#include "host/postgresql/values.h"

namespace host::postgresql {

namespace {

// What the names of staging tables begin with.
const std::string STAGE = "pg_temp.wiki_scope_";

// A value of a row behind its length in bytes.

void append_value(std::string& row, std::int32_t integer) {
    append_integer(row, std::int32_t{sizeof(integer)});
    append_integer(row, integer);
}

void append_value(std::string& row, std::int64_t integer) {
    append_integer(row, std::int32_t{sizeof(integer)});
    append_integer(row, integer);
}

void append_value(std::string& row, bool truth) {
    append_integer(row, std::int32_t{1});
    row += static_cast<char>(truth);
}

void append_value(std::string& row, std::string_view bytes) {
    append_integer(row, static_cast<std::int32_t>(bytes.size()));
    row += bytes;
}

template <class Value>
void append_value(std::string& row, const std::optional<Value>& value) {
    if (value) {
        append_value(row, *value);
    } else {
        append_integer(row, std::int32_t{-1});
    }
}

}  // namespace

RowCopy::RowCopy(Connection& connection, std::int64_t repository, std::int64_t snapshot)
    : connection_(connection), repository_(static_cast<std::int32_t>(repository)),
      snapshot_(static_cast<std::int32_t>(snapshot)) {
    stage();
}

void RowCopy::stage() {
    std::string any = "SELECT 1 WHERE false";
    std::string make;
    for (const SnapshotTable& table : SNAPSHOT_TABLES) {
        const std::string name(table.name);
        any.append(" OR pg_catalog.row_security_active('wiki_scope.").append(name).append("')");
        make.append("CREATE TEMPORARY TABLE " + STAGE).append(name);
        make.append("(LIKE wiki_scope.").append(name).append(") ON COMMIT DROP;");
    }
    Rows guarded(connection_, any, {});
    is_staged_ = guarded.step();
    if (is_staged_) {
        guarded.step();
        connection_.execute(make);
    }
}

template <std::size_t PLACE, class... Values>
void RowCopy::append(const Values&... values) {
    static_assert(sizeof...(values) == SNAPSHOT_TABLES[PLACE].column_count());
    constexpr std::size_t WORTH_A_STATEMENT = 4'000'000;
    Collected& collected = tables_[PLACE];
    append_integer(collected.rows, static_cast<std::int16_t>(2 + sizeof...(values)));
    append_value(collected.rows, repository_);
    append_value(collected.rows, snapshot_);
    const std::size_t begin = collected.rows.size();
    (append_value(collected.rows, values), ...);
    collected.checksum.add(std::string_view(collected.rows).substr(begin));
    if (collected.rows.size() > WORTH_A_STATEMENT) {
        copy(PLACE);
    }
}

void RowCopy::copy(std::size_t table) {
    constexpr std::string_view HEAD("PGCOPY\n\xFF\r\n\0\0\0\0\0\0\0\0\0", 19);  // no flags, no extension
    constexpr std::string_view END("\xFF\xFF", 2);
    const auto& [name, columns] = SNAPSHOT_TABLES.at(table);
    Collected& collected = tables_.at(table);
    if (collected.rows.empty()) {
        return;
    }
    connection_.begin_copy("COPY " + (is_staged_ ? STAGE : "wiki_scope.") + std::string(name) +
                           "(repository, snapshot, " + std::string(columns) + ") FROM STDIN (FORMAT binary)");
    connection_.put(HEAD);
    connection_.put(collected.rows);
    connection_.put(END);
    collected.copied += connection_.end_copy();
    size_ += static_cast<std::int64_t>(collected.rows.size());
    collected.rows.clear();
}

void RowCopy::append_names() {
    if (!names_.is_empty()) {
        append<place_of("names")>(names_.declaration(), names_.lowered(), names_.rows());
        names_ = {};
    }
}

void RowCopy::finish() {
    append_names();
    for (std::size_t table = 0; table < tables_.size(); ++table) {
        copy(table);
        if (is_staged_) {
            std::string statement = "INSERT INTO wiki_scope.";
            statement.append(SNAPSHOT_TABLES.at(table).name).append(" SELECT * FROM " + STAGE);
            statement.append(SNAPSHOT_TABLES.at(table).name);
            tables_.at(table).copied = connection_.execute(statement, Parameters());
        }
    }
}

std::vector<std::int64_t> RowCopy::checksums() const {
    std::vector<std::int64_t> checksums;
    for (const Collected& table : tables_) {
        checksums.push_back(table.checksum.value());
    }
    return checksums;
}

void RowCopy::note(std::string_view key, std::string_view value) {
    append<place_of("notes")>(key, value);
}

void RowCopy::add(const FileRow& row) {
    const bool has_language = !row.language.value_or("").empty();
    append<place_of("files")>(row.id, row.path, has_language ? row.language : std::nullopt, row.content_hash,
                              row.declarations, row.declared_lines);
}

void RowCopy::add(const LanguageRow& row) {
    append<place_of("languages")>(++languages_, row.name, row.import_resolved);
}

void RowCopy::add(const DeclarationRow& row) {
    append<place_of("symbols")>(row.id, row.file, row.name, row.fqn, row.kind, row.is_export, row.first_line,
                                row.last_line, row.uses);
    names_.add({.declaration = row.id, .name = row.name, .uses = row.uses});
    if (names_.is_full()) {
        append_names();
    }
}

void RowCopy::add(const DescriptionRow& row) {
    append<place_of("descriptions")>(row.declaration, row.signature, row.documentation);
}

void RowCopy::add(const ResolutionRow& row) {
    append<place_of("resolutions")>(row.id, row.name);
}

void RowCopy::add(const EdgeRow& row) {
    append<place_of("edges")>(row.source, row.target, row.resolution, row.references, row.first_line);
}

}  // namespace host::postgresql
