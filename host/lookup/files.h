// The files that an index holds.
#pragma once

#include "host/index/database.h"
#include "host/rules/path_rules.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace host {

struct ListedFile {
    std::string path;
    std::string language;  ///< empty when unknown
    std::int64_t declarations = 0;
    std::int64_t declared_lines = 0;  ///< that its declarations take up together
    bool is_test = false;
};

struct ListedFiles {
    std::vector<ListedFile> files;     ///< in path order, each once
    std::vector<std::string> remarks;  ///< on paths that are missing, as `remarks_on_missing` makes them
    bool is_failure = false;           ///< whether paths were named of which the index holds none
};

/// Lists the files of the index that these paths stand for, as `find_paths` reads them in the folder that
/// `source_folder` finds; no paths stand for all. `tests` are asked before the rules that the index notes. Throws
/// `IndexError`, and `std::runtime_error` with one line when these cannot be read.
ListedFiles list_files(storage::Database& db, std::span<const std::string> named,
                       const std::vector<PathRule>& tests = {});

}  // namespace host
