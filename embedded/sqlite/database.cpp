#include "embedded/sqlite/database.h"

#include "embedded/sqlite/edge_scan.h"

#include <algorithm>
#include <limits>

namespace storage {

namespace {

using embedded::bound_ranges;
using embedded::DeclarationTable;
using embedded::Statement;

// An index may hold any integer as a line; the nearest line that a record can hold stands for it.
std::int32_t line(std::int64_t stored) {
    using Line = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(stored, Line::min(), Line::max()));
}

}  // namespace

void Database::forget() {
    paths_ = {};
    resolutions_ = {};
    page_.clear();
    declarations_of_page_ = {};
}

models::Text Database::text(std::string_view characters) {
    const auto known = texts_.find(characters);
    return known != texts_.end() ? *known : *texts_.insert(models::Text(characters)).first;
}

void Database::read_paths(std::vector<FileId> files) {
    std::erase_if(files, [&](FileId file) { return paths_.contains(file); });
    if (files.empty()) {
        return;
    }
    Statement rows(connection_, R"sql(
        SELECT file.id, file.path
        FROM json_each(?1) AS range CROSS JOIN files AS file
            ON file.id BETWEEN range.value ->> 0 AND range.value ->> 1
    )sql");
    rows.bind(1, bound_ranges(std::move(files)));
    while (rows.step()) {
        paths_[rows.integer(0)] = text(rows.text(1));
    }
}

models::Text Database::resolution(std::int64_t id) {
    if (resolutions_.empty()) {
        Statement rows(connection_, "SELECT id, name FROM resolutions");
        while (rows.step()) {
            resolutions_[rows.integer(0)] = text(rows.text(1));
        }
    }
    return resolutions_.get(id, models::Text());
}

const DeclarationTable& Database::declarations_of(std::span<const FileId> files) {
    if (!std::ranges::equal(page_, files)) {
        page_.clear();
        declarations_of_page_ = DeclarationTable(read_declarations("file_id", {files.begin(), files.end()}));
        page_.assign(files.begin(), files.end());
    }
    return declarations_of_page_;
}

DeclarationTable Database::declarations(const std::vector<SymbolId>& ids) {
    return ids.empty() ? DeclarationTable() : DeclarationTable(read_declarations("id", ids));
}

// The declarations that have one of some integers in a column.
std::vector<ScopeSymbol> Database::read_declarations(const std::string& column, std::vector<std::int64_t> integers) {
    Statement rows(connection_, R"sql(
        SELECT symbol.id, symbol.file_id, symbol.name, symbol.kind, symbol.is_export, symbol.start_line,
               symbol.end_line, symbol.fqn
        FROM json_each(?1) AS range CROSS JOIN symbols AS symbol
            ON symbol.)sql" + column +
                                    " BETWEEN range.value ->> 0 AND range.value ->> 1");
    rows.bind(1, bound_ranges(std::move(integers)));
    std::vector<ScopeSymbol> declarations;
    std::vector<FileId> files;
    while (rows.step()) {
        files.push_back(rows.integer(1));
        declarations.push_back({.id = rows.integer(0),
                                .path = {},
                                .name = text(rows.text(2)),
                                .kind = text(rows.text(3)),
                                .is_export = rows.integer(4) != 0,
                                .start_line = line(rows.integer(5)),
                                .end_line = line(rows.integer(6)),
                                .fqn = text(rows.text(7))});
    }
    read_paths(files);
    std::size_t kept = 0;
    for (std::size_t place = 0; place < files.size(); ++place) {
        if (const models::Text* const path = this->path(files[place])) {
            declarations[place].path = *path;
            std::swap(declarations[kept++], declarations[place]);
        }
    }
    declarations.resize(kept);
    declarations.shrink_to_fit();
    return declarations;
}

}  // namespace storage
