#include "embedded/index/index_at.h"

#include "embedded/index/server_index.h"
#include "embedded/sqlite/sqlite_index.h"

namespace embedded {

bool is_server(const std::string& place) {
    return place.find("://") != std::string::npos || place.find("password=") != std::string::npos;
}

std::unique_ptr<Index> index_at(const std::string& place, const std::string& repository) {
    if (is_server(place)) {
        return server_index(place, repository);
    }
    return std::make_unique<SqliteIndex>(place);
}

}  // namespace embedded
