// The index as the component's queries see it.
#pragma once

#include "embedded/sqlite.h"
#include "models/text.h"
#include "storage/database.h"

#include <functional>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace storage {

/// An open index, and the texts that its records share. It remembers each distinct text that it has handed out, so it
/// never holds more than the index does. For one thread at a time; its records are for any number.
class Database {
  public:
    explicit Database(embedded::Connection connection) : connection_(std::move(connection)) {}

    [[nodiscard]] const embedded::Connection& connection() const { return connection_; }

    /// The one shared text with these characters.
    [[nodiscard]] models::Text text(std::string_view characters);

  private:
    embedded::Connection connection_;
    std::unordered_set<models::Text, models::TextHash, std::equal_to<>> texts_;
};

}  // namespace storage
