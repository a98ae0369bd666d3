#include "host/pages/page_name.h"

#include "host/text/ascii.h"
#include "host/text/control_characters.h"

#include <algorithm>
#include <cstddef>

namespace host::pages {

std::string name_for_title(std::string_view title) {
    std::string name;
    bool is_apart = false;
    for (const char character : title) {
        if (is_part_of_name(character) && character != '_') {
            name += is_apart && !name.empty() ? "-" : "";
            name += lower(character);
            is_apart = false;
        } else {
            is_apart = true;
        }
    }
    return name;
}

bool is_page_name(std::string_view name) {
    constexpr std::size_t LONGEST = 200;
    if (name.size() > LONGEST || has_control_character(name) || name.find('\\') != std::string_view::npos) {
        return false;
    }
    while (true) {
        const std::size_t end = std::min(name.find('/'), name.size());
        if (end == 0 || name.front() == '.') {
            return false;
        }
        if (end == name.size()) {
            return true;
        }
        name.remove_prefix(end + 1);
    }
}

}  // namespace host::pages
