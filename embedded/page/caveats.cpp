#include "embedded/page/caveats.h"

#include "embedded/text/counted.h"

#include <algorithm>
#include <utility>

namespace embedded {

namespace {

// Path -> hash, of the files whose content the import has seen.
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

// Whether the index holds no other files than these, which it holds.
bool are_all(storage::Database& db, std::span<const std::string> paths) {
    return !paths.empty() && db.count_files(std::ssize(paths) + 1) == std::ssize(paths);
}

}  // namespace

std::vector<std::string> remarks_on(const Caveats& caveats, const std::string& checkout) {
    constexpr std::size_t NAMED = 5;
    std::vector<std::string> remarks;
    const std::size_t count = caveats.changed.size();
    for (const models::Text& path : std::span(caveats.changed).first(std::min(count, NAMED))) {
        remarks.push_back(std::string(path) + ": changed since it was indexed; its lines may be off; index again");
    }
    if (count > NAMED) {
        remarks.push_back("... and " + counted(static_cast<std::int64_t>(count - NAMED), "more file") +
                          " changed since indexed; index again");
    }
    if (caveats.has_no_sources) {
        remarks.push_back(checkout +
                          ": holds none of the page's files; name the folder that was indexed with --checkout");
    }
    if (caveats.has_no_outside) {
        remarks.emplace_back(
            "the page consists of every file of the index: nothing is outside of it, so no use from outside is known");
    }
    return remarks;
}

WatchfulReader::WatchfulReader(storage::Database& db, const Checkout& checkout, std::span<const std::string> paths)
    : checkout_(checkout), indexed_(indexed_hashes(db, paths)), has_no_outside_(are_all(db, paths)) {}

std::optional<std::vector<std::string>> WatchfulReader::read(const models::Text& path) {
    ++asked_;
    std::optional<FileLines> file = checkout_.read_lines(path);
    if (!file) {
        return std::nullopt;
    }
    ++given_;
    if (indexed_.get(std::string(path), file->hash) != file->hash) {
        changed_.push_back(path);
    }
    return std::move(file->lines);
}

Caveats WatchfulReader::caveats() const {
    return {.changed = changed_, .has_no_sources = asked_ > 0 && given_ == 0, .has_no_outside = has_no_outside_};
}

}  // namespace embedded
