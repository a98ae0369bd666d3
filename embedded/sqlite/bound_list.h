// A list as one parameter of a statement, however long it is: a JSON array, which `json_each` gives back row by row.
#pragma once

#include "models/text.h"

#include <cstdint>
#include <span>
#include <string>

namespace embedded {

/// The integers as a JSON array.
std::string bound_list(std::span<const std::int64_t> integers);

/// The texts as a JSON array of strings that SQLite reads back byte for byte: bytes that are not UTF-8 stand as they
/// are, where a strict writer of JSON would refuse or replace them.
std::string bound_list(std::span<const std::string> texts);
std::string bound_list(std::span<const models::Text> texts);

}  // namespace embedded
