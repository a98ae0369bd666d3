// A revision of an index: what some of its files declare and refer to now.
#pragma once

#include "host/index/rows.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

/// A declaration that an index has of a file that is revised.
struct IndexedDeclaration {
    RowId id = 0;
    RowId file = 0;
    std::string name;
    std::string kind;
    std::int64_t uses = 0;
};

/// What an index holds that its revision depends on.
struct IndexState {
    std::vector<std::int64_t> declarations;  ///< how many each file has, by id
    std::vector<RowId> first;                ///< the lowest id of these, by id of the file; 0 where it has none
    // Of the files that are revised:
    std::vector<IndexedDeclaration> revised;  ///< their declarations, by id
    std::vector<EdgeRow> edges;               ///< from them, by source
    std::vector<EdgeRow> edges_into;          ///< into them from other files, in no order
    std::string test_rules;                   ///< the notes of these names (notes.h)
    std::string report;
};

struct RevisedDeclaration {
    RowId id = 0;
    std::string name;
    std::string fqn;
    std::string_view kind;  ///< of static storage
    bool is_export = false;
    std::int64_t first_line = 0;
    std::int64_t last_line = 0;
    std::int64_t uses = 0;
    std::string signature;
    std::string documentation;
};

struct RevisedFile {
    RowId id = 0;
    std::optional<std::int64_t> content_hash;      ///< as of a `FileRow`
    std::int64_t declared_lines = 0;               ///< likewise
    std::vector<RevisedDeclaration> declarations;  ///< in place of all that it has
};

struct Revision {
    std::vector<RevisedFile> files;
    std::vector<EdgeRow> edges;  ///< in place of all edges from these files
    /// Edges from other files whose target has another id now, and what they are then.
    std::vector<std::pair<EdgeRow, EdgeRow>> moved_edges;
    std::map<RowId, std::int64_t> uses;  ///< what is added to the uses of declarations of other files
    std::string shared_summaries;        ///< the notes of these names (notes.h)
    std::string report;
};

}  // namespace host
