#include "host/html/site_map.h"

#include "host/text/percent_encoding.h"

#include <algorithm>
#include <cstddef>

namespace host::html {

void SiteMap::add(const SitePage& page, std::span<const std::string> files, const SectionChoice& sections) {
    files_[page.title] = page.file;
    for (const std::string& file : files) {
        pages_.try_emplace(file, Place{.address = page.file,
                                       .has_files = sections.contains(Section::FILES),
                                       .has_declarations = sections.contains(Section::OUTLINE)});
    }
}

std::optional<SiteMap::Place> SiteMap::place(const std::string& from, std::string_view path) const {
    const auto source = files_.find(from);
    const auto found = pages_.find(path);
    if (source == files_.end() || found == pages_.end() || found->second.address == source->second) {
        return std::nullopt;
    }
    Place place = found->second;
    place.address = percent_encoded(place.address);
    for (std::ptrdiff_t above = std::ranges::count(source->second, '/'); above > 0; --above) {
        place.address.insert(0, "../");
    }
    return place;
}

}  // namespace host::html
