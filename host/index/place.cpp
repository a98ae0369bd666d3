#include "host/index/place.h"

#include "host/text/ascii.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace host {

// A password may stand in whatever was meant to be an address, so that is never taken for the name of a file, which
// messages repeat.
bool is_server(const std::string& place) {
    std::string text = lowered(place);
    std::erase(text, ' ');
    const std::string_view beginning =
        std::string_view(text).substr(std::min(text.find_first_not_of('/'), text.size()));
    const std::string_view first =
        beginning.starts_with("postgres") ? beginning : beginning.substr(0, beginning.find('/'));
    const std::size_t at = first.find('@');
    return text.find("://") != std::string::npos || text.find("password=") != std::string::npos ||
           starts_with_any(first, std::array<std::string_view, 2>{"postgresql:", "postgres:"}) ||
           (at != std::string::npos && first.find(':') < at);
}

}  // namespace host
