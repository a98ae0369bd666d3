#include "host/resolve/name_set.h"

#include <limits>

namespace host::resolve {

void NameSet::add(std::string_view name) {
    if (!name.empty() && !contains(name)) {
        numbers_.add(spellings_.emplace_back(name));
    }
}

bool NameSet::contains(std::string_view name, std::size_t first) const {
    constexpr Name MISSING = std::numeric_limits<Name>::max();
    const Name number = numbers_.find(name, MISSING);
    return number != MISSING && number >= first;
}

bool NameSet::is_in_path(std::string_view path, std::size_t first) const {
    constexpr std::string_view SEPARATORS = ":./";
    bool is_found = contains(path, first);
    for (std::size_t end = path.find_first_of(SEPARATORS); !is_found && end != std::string_view::npos;
         end = path.find_first_of(SEPARATORS)) {
        is_found = contains(path.substr(0, end), first);
        path.remove_prefix(end + 1);
        is_found = is_found || contains(path, first);
    }
    return is_found;
}

}  // namespace host::resolve
