#include "host/page/page_sources.h"

#include <optional>
#include <utility>

namespace host {

namespace {

models::OrderedMap<std::string, std::int64_t> indexed_hashes(storage::Database& db,
                                                             std::span<const std::string> paths) {
    models::OrderedMap<std::string, std::int64_t> hashes;
    db.read_files_at(paths, [&](const FileRow& file) {
        if (file.content_hash) {
            hashes[std::string(file.path)] = *file.content_hash;
        }
    });
    return hashes;
}

}  // namespace

PageSources::PageSources(storage::Database& db, Checkout checkout, SourceAccess access,
                         std::span<const std::string> paths)
    : checkout_(std::move(checkout)), access_(access), indexed_(indexed_hashes(db, paths)) {}

PageSource PageSources::read(const models::Text& path) const {
    using State = PageSource::State;
    std::optional<FileLines> file = checkout_.read_lines(path);
    if (!file) {
        return {.state = checkout_.leads_out(path) ? State::OUTSIDE : State::MISSING};
    }
    const std::int64_t* const indexed = indexed_.find(std::string(path));
    const bool is_as_indexed = indexed != nullptr && *indexed == file->hash;
    if (!is_as_indexed && access_ == SourceAccess::AS_INDEXED) {
        return {.state = State::WITHHELD};
    }
    const bool is_changed = indexed != nullptr && !is_as_indexed;
    return {.state = is_changed ? State::CHANGED : State::READ, .lines = std::move(file->lines)};
}

}  // namespace host
