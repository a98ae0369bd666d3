// The names of a wiki's files.
#pragma once

#include <string>
#include <string_view>

namespace host::pages {

/// Returns the name for a page with this title: its letters and digits, A to Z small, and one "-" for whatever stands
/// between them. Letters that are not ASCII stay as they are. Empty when there is neither a letter nor a digit.
std::string name_for_title(std::string_view title);

/// Returns whether a name stays in the wiki's folder and shows there: segments separated by "/", none of them empty,
/// none that begins with ".", and no control characters or backslashes. At most 200 bytes.
bool is_page_name(std::string_view name);

}  // namespace host::pages
