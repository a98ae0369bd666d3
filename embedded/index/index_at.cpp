#include "embedded/index/index_at.h"

#include "embedded/sqlite/sqlite_index.h"

namespace embedded {

std::unique_ptr<Index> index_at(const std::string& place) {
    return std::make_unique<SqliteIndex>(place);
}

}  // namespace embedded
