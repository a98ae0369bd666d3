// The files that an index holds.
#pragma once

#include "embedded/sqlite/connection.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace embedded {

struct ListedFile {
    std::string path;
    std::string language;  ///< empty when unknown
    std::int64_t declarations = 0;
    std::int64_t declared_lines = 0;  ///< that its declarations take up together
    bool is_test = false;             ///< by the rules that are in force (rules/test_paths.h)
};

/// The files of the index at these paths, in path order, each once. Throws `SqliteError`.
std::vector<ListedFile> list_files(const Connection& index, std::span<const std::string> paths);

}  // namespace embedded
