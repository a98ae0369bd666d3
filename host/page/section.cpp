#include "host/page/section.h"

#include <algorithm>
#include <cstddef>

namespace host {

namespace {

// In the order of the sections.
constexpr std::array<std::string_view, SECTIONS.size()> NAMES{"files",        "consumers", "declarations", "in-depth",
                                                              "dependencies", "graph",     "seeds",        "outline"};

}  // namespace

std::optional<Section> section_named(std::string_view name) {
    const auto* const found = std::ranges::find(NAMES, name);
    return found == NAMES.end() ? std::nullopt
                                : std::optional(SECTIONS.at(static_cast<std::size_t>(found - NAMES.begin())));
}

std::string_view name_of(Section section) {
    return NAMES.at(static_cast<std::size_t>(section));
}

std::string section_names() {
    std::string names;
    for (const std::string_view name : NAMES) {
        names.append(names.empty() ? "" : ", ").append(name);
    }
    return names;
}

}  // namespace host
