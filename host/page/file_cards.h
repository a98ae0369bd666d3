// The table of a page's files.
#pragma once

#include "workers/wiki/scope/file_cards.h"

#include <span>
#include <string>

namespace host {

/// The row of a file, in which no path, name or summary is more than its text: what Markdown would interpret is
/// escaped, so that one that holds a bar stays in its cell. The summary is Markdown already.
std::string file_row(const wiki::scope::FileCard& card);

/// The whole table, as the component lays it out, under the heading "## Files".
std::string file_table(std::span<const wiki::scope::FileCard> cards);

}  // namespace host
