// A list as one parameter of a statement, however long it is: a JSON array, which `json_each` gives back row by row.
#pragma once

#include "models/text.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace host {

/// Integers as the ranges that they form: [1, 2, 3, 7] gives "[[1,3],[7,7]]", which `json_each(?1) AS range` takes
/// apart into rows with `range.value ->> 0` and `range.value ->> 1`, first and last. In any order, with or without
/// repeats.
std::string bound_ranges(std::vector<std::int64_t> integers);

/// The texts as a JSON array of strings that SQLite reads back byte for byte: bytes that are not UTF-8 stand as they
/// are, where a strict writer of JSON would refuse or replace them.
std::string bound_list(std::span<const std::string> texts);
std::string bound_list(std::span<const models::Text> texts);

}  // namespace host
