// The handle of the index database.
#pragma once

namespace storage {

/// An open index. Whoever links the component defines this class; the component only passes it on to the queries of
/// `storage/grounding_queries.h`.
class Database;

}  // namespace storage
