// The page's grounding as Markdown.
//
// A block is a list of lines, each ended by one "\n": the caller's heading unchanged, an empty line, a
// sentence of explanation, then the content. Paths and names stand between backticks.
#pragma once

#include "workers/wiki/scope/facts.h"

#include <span>
#include <string>
#include <string_view>

namespace wiki::scope {

/// The file-card table: a row for every file of the page with its lines ("?" when it could not be read), its
/// number of declarations, what it says it is for, its most used declarations, the other production files
/// that use it and the tests that reach it. Rows in the order of `facts.files`, then one for each path of
/// `missing`, the files of the page that the index does not hold. `fan_in` is the page's. Calls
/// `tests_reaching`, whose failures pass unchanged to the caller.
std::string render_file_cards(const ScopeFacts& facts, const FanIn& fan_in, std::string_view heading,
                              std::span<const std::string> missing = {});

}  // namespace wiki::scope
