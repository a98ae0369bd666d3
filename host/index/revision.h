// A revision of an index: other contents of some of its files, with the declarations that all files have.
#pragma once

#include "host/index/rows.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// What an index holds that its revision depends on.
struct IndexState {
    std::vector<std::int64_t> declarations;  ///< how many each file has, by id
    std::vector<EdgeRow> edges;              ///< from the files that are revised, by source
    std::string test_rules;                  ///< the notes of these names (notes.h)
    std::string report;
};

struct RevisedDeclaration {
    RowId id = 0;
    std::int64_t first_line = 0;
    std::int64_t last_line = 0;
    std::string signature;
    std::string documentation;
};

struct RevisedFile {
    RowId id = 0;
    std::optional<std::int64_t> content_hash;  ///< as of a `FileRow`
    std::int64_t declared_lines = 0;           ///< likewise
    std::vector<RevisedDeclaration> declarations;
};

struct Revision {
    std::vector<RevisedFile> files;
    std::vector<EdgeRow> edges;          ///< in place of all edges from these files
    std::map<RowId, std::int64_t> uses;  ///< what is added to the uses of declarations of whatever files
    std::string report;
};

}  // namespace host
