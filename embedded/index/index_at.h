// Which kind of index lies where.
#pragma once

#include "embedded/index/index.h"

#include <memory>
#include <string>

namespace embedded {

/// The index at a place, which is the path of an SQLite file.
std::unique_ptr<Index> index_at(const std::string& place);

}  // namespace embedded
