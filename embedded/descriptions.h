// What the index says of declarations in words: their signatures and their doc comments.
#pragma once

#include "embedded/database.h"
#include "storage/grounding_queries.h"

#include <span>
#include <string>
#include <unordered_map>

namespace embedded {

/// Either text may be empty.
struct Description {
    std::string signature;      ///< the source of the declaration up to its body, on as many lines as it stands
    std::string documentation;  ///< the text of its doc comment, without the marks of a comment
};

using Descriptions = std::unordered_map<storage::SymbolId, Description>;

/// The descriptions of these declarations, by one query. Those of which the index says nothing are absent. Throws
/// `SqliteError`.
Descriptions load_descriptions(const storage::Database& db, std::span<const storage::SymbolId> symbol_ids);

}  // namespace embedded
