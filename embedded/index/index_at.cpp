#include "embedded/index/index_at.h"

#include "embedded/index/server_index.h"
#include "embedded/sqlite/sqlite_index.h"
#include "embedded/text/ascii.h"

#include <array>
#include <string_view>

namespace embedded {

// A password may stand in whatever was meant to be an address, so that is never taken for the name of a file, which
// messages repeat.
bool is_server(const std::string& place) {
    const std::string first_segment = lowered(place.substr(0, place.find('/')));
    const std::size_t at = first_segment.find('@');
    return place.find("://") != std::string::npos || place.find("password=") != std::string::npos ||
           starts_with_any(first_segment, std::array<std::string_view, 2>{"postgresql:", "postgres:"}) ||
           (at != std::string::npos && first_segment.find(':') < at);
}

std::unique_ptr<Index> index_at(const std::string& place, const std::string& repository) {
    if (is_server(place)) {
        return server_index(place, repository);
    }
    return std::make_unique<SqliteIndex>(place);
}

}  // namespace embedded
