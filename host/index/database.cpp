#include "host/index/database.h"

#include <algorithm>
#include <limits>

namespace storage {

namespace {

using host::DeclarationRow;
using host::DeclarationTable;
using host::FileRow;
using host::OnRow;
using host::ResolutionRow;
using host::RowId;

}  // namespace

models::Text Database::text(std::string_view characters) {
    const auto known = texts_.find(characters);
    return known != texts_.end() ? *known : *texts_.insert(models::Text(characters)).first;
}

void Database::read_paths(std::vector<FileId> files) {
    std::erase_if(files, [&](FileId file) { return paths_.contains(file); });
    if (!files.empty()) {
        read_files(std::move(files), [&](const FileRow& file) { paths_[file.id] = text(file.path); });
    }
}

std::int32_t Database::line(std::int64_t stored) {
    using Line = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(stored, Line::min(), Line::max()));
}

models::Text Database::resolution(RowId id) {
    if (resolutions_.empty()) {
        read_resolutions([&](const ResolutionRow& row) { resolutions_[row.id] = text(row.name); });
    }
    return resolutions_.get(id, models::Text());
}

const DeclarationTable& Database::declarations_of(std::span<const FileId> files) {
    if (!std::ranges::equal(page_, files)) {
        page_.clear();
        declarations_of_page_ = records([&](const OnRow<DeclarationRow>& on_row) {
            read_declarations_in({files.begin(), files.end()}, on_row);
        });
        page_.assign(files.begin(), files.end());
    }
    return declarations_of_page_;
}

const host::Edges& Database::edges_out_of(std::span<const FileId> files) {
    if (!std::ranges::equal(sources_, files)) {
        forget_edges();
        read_edges_out_of({files.begin(), files.end()},
                          [&](const host::EdgeRow& edge) { edges_out_of_sources_.push_back(edge); });
        host::sort_edges(edges_out_of_sources_);
        sources_.assign(files.begin(), files.end());
    }
    return edges_out_of_sources_;
}

void Database::forget_edges() {
    sources_.clear();
    edges_out_of_sources_ = {};
}

DeclarationTable Database::declarations(const std::vector<SymbolId>& ids) {
    return ids.empty() ? DeclarationTable()
                       : records([&](const OnRow<DeclarationRow>& on_row) { read_declarations(ids, on_row); });
}

DeclarationTable Database::records(const std::function<void(const OnRow<DeclarationRow>&)>& read) {
    std::vector<ScopeSymbol> declarations;
    std::vector<FileId> files;
    read([&](const DeclarationRow& row) {
        files.push_back(row.file);
        // Most names are the only one of their kind: finding those that are not would cost more than it saves.
        const models::Text name(row.name);
        declarations.push_back({.id = row.id,
                                .path = {},
                                .name = name,
                                .kind = text(row.kind),
                                .is_export = row.is_export,
                                .start_line = line(row.first_line),
                                .end_line = line(row.last_line),
                                .fqn = row.fqn == row.name ? name : models::Text(row.fqn)});
    });
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
    return DeclarationTable(std::move(declarations));
}

}  // namespace storage
