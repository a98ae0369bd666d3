// What the index says of declarations in words: their signatures and their doc comments.
#pragma once

#include "embedded/sqlite/database.h"
#include "storage/grounding_queries.h"

#include <string_view>

namespace embedded {

/// Either text may be empty.
struct Description {
    std::string_view signature;      ///< the source of the declaration up to its body, on as many lines as it stands
    std::string_view documentation;  ///< the text of its doc comment, without the marks of a comment
};

/// Looks descriptions up one by one, and holds none but the last. The database must outlive it. Throws `SqliteError`.
class Descriptions {
  public:
    explicit Descriptions(const storage::Database& db);

    /// The description of a declaration, valid until the next one is looked up. Empty when the index says nothing.
    Description of(storage::SymbolId declaration);

  private:
    Statement row_;
};

}  // namespace embedded
