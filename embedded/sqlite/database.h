// The index as the component's queries see it.
#pragma once

#include "embedded/sqlite/connection.h"
#include "embedded/sqlite/declaration_table.h"
#include "models/ordered_map.h"
#include "models/text.h"
#include "storage/database.h"
#include "storage/grounding_queries.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace storage {

/// An open index, and what its records have in common. Rows refer to files, declarations and resolutions by number;
/// each of these is read once, and its texts are shared. For one thread at a time; its records are for any number.
///
/// What was read once is answered from memory from then on: whoever wants to see what has been written since then calls
/// `forget`, as a page does when it begins.
class Database {
  public:
    /// The connection must outlive this object.
    explicit Database(const embedded::Connection& connection) : connection_(connection) {}

    [[nodiscard]] const embedded::Connection& connection() const { return connection_; }

    /// Forgets what was read of rows.
    void forget();

    /// The one shared text with these characters. It never holds more texts than the index does.
    [[nodiscard]] models::Text text(std::string_view characters);

    /// Reads the paths of files, for `path`.
    void read_paths(std::vector<FileId> files);

    /// The path of a file, if the index has it and `read_paths` has read it; else null. Valid until the next reading.
    [[nodiscard]] const models::Text* path(FileId file) const { return paths_.find(file); }

    /// The name of a resolution; the empty text when the index has none.
    [[nodiscard]] models::Text resolution(std::int64_t id);

    /// The declarations of these files, as far as the index has both. The last answer is remembered, as all questions
    /// of a page are about the same files; it is valid until the next question.
    const embedded::DeclarationTable& declarations_of(std::span<const FileId> files);

    /// The declarations with these ids, as far as the index has them and their files.
    [[nodiscard]] embedded::DeclarationTable declarations(const std::vector<SymbolId>& ids);

  private:
    std::vector<ScopeSymbol> read_declarations(const std::string& column, std::vector<std::int64_t> integers);

    const embedded::Connection& connection_;
    std::unordered_set<models::Text, models::TextHash, std::equal_to<>> texts_;
    models::OrderedMap<FileId, models::Text> paths_;
    models::OrderedMap<std::int64_t, models::Text> resolutions_;
    std::vector<FileId> page_;  // the files of which these are the declarations
    embedded::DeclarationTable declarations_of_page_;
};

}  // namespace storage
