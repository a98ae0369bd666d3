#include "host/html/site_map.h"

#include "host/html/anchors.h"
#include "host/text/percent_encoding.h"

#include <algorithm>
#include <cstddef>

namespace host::html {

void SiteMap::add(const SitePage& page, std::span<const std::string> files, bool has_table) {
    files_[page.title] = page.file;
    for (const std::string& file : files) {
        pages_.try_emplace(file, Place{page.file, has_table});
    }
}

std::string SiteMap::address(const std::string& from, std::string_view path) const {
    const auto source = files_.find(from);
    const auto place = pages_.find(path);
    if (source == files_.end() || place == pages_.end() || place->second.page == source->second) {
        return "";
    }
    std::string address;
    for (std::ptrdiff_t above = std::ranges::count(source->second, '/'); above > 0; --above) {
        address += "../";
    }
    address += percent_encoded(place->second.page);
    return place->second.has_table ? address + "#" + file_anchor(path) : address;
}

}  // namespace host::html
