#include "host/html/other_pages.h"

#include <array>
#include <optional>
#include <utility>
#include <vector>

namespace host::html {

OtherPages::OtherPages(const SiteMap& map, std::string title, storage::Database& db)
    : map_(map), title_(std::move(title)), db_(db) {}

std::string OtherPages::file(std::string_view path) const {
    const std::optional<SiteMap::Place> place = map_.place(title_, path);
    if (!place) {
        return "";
    }
    return place->has_files ? place->address + "#" + file_anchor(path) : place->address;
}

std::string OtherPages::declaration(const storage::ScopeSymbol& symbol) const {
    const std::optional<SiteMap::Place> place = map_.place(title_, symbol.path);
    return place && place->has_declarations ? place->address + "#" + anchors_of(std::string(symbol.path)).of(symbol)
                                            : file(symbol.path);
}

const DeclarationAnchors& OtherPages::anchors_of(const std::string& path) const {
    const auto known = anchors_.find(path);
    if (known != anchors_.end()) {
        return known->second;
    }
    std::vector<storage::FileId> ids;
    for (const storage::ScopeFile& file : storage::scope_files(db_, std::array{path})) {
        ids.push_back(file.id);
    }
    return anchors_.emplace(path, DeclarationAnchors(storage::scope_symbols(db_, ids))).first->second;
}

}  // namespace host::html
