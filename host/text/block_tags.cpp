#include "host/text/block_tags.h"

#include "host/text/ascii.h"

#include <algorithm>
#include <array>
#include <string>

namespace host {

namespace {

struct DescribingTag {
    std::string_view name;
    bool is_of_declarations;
    bool is_of_files;
};

constexpr auto DESCRIBING_TAGS = std::to_array<DescribingTag>({
    {"brief", true, true},
    {"desc", true, true},
    {"description", true, true},
    {"details", true, true},
    {"file", false, true},
    {"fileoverview", false, true},
    {"overview", true, true},
    {"remarks", true, false},
    {"summary", true, true},
});

bool is_tag_of(std::string_view tag, bool DescribingTag::*subject) {
    const std::string name = lowered(tag);
    return std::ranges::any_of(DESCRIBING_TAGS,
                               [&](const DescribingTag& row) { return row.name == name && row.*subject; });
}

}  // namespace

bool describes_declaration(std::string_view tag) {
    return is_tag_of(tag, &DescribingTag::is_of_declarations);
}

bool describes_file(std::string_view tag) {
    return is_tag_of(tag, &DescribingTag::is_of_files);
}

}  // namespace host
