#include "host/location/index_at.h"

#include "host/index/place.h"
#include "host/index/server_index.h"
#include "host/sqlite/sqlite_index.h"

namespace host {

std::unique_ptr<Index> index_at(const std::string& place, const std::string& repository) {
    if (is_server(place)) {
        return server_index(place, repository);
    }
    return std::make_unique<SqliteIndex>(place);
}

}  // namespace host
