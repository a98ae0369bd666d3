// What the index says of declarations in words: their signatures and their doc comments.
#pragma once

#include "host/index/database.h"
#include "host/index/rows.h"

#include <cstddef>
#include <functional>
#include <span>

namespace host {

/// Calls `on_row` with the description of each declaration, in their order and with their places; its texts are empty
/// where the index says nothing, and valid for as long as it is called. Holds no more than some hundred descriptions at
/// a time. Throws `IndexError`.
void read_descriptions(storage::Database& db, std::span<const storage::SymbolId> declarations,
                       const std::function<void(std::size_t place, const DescriptionRow& description)>& on_row);

}  // namespace host
