// Doc comments as prose for people.
#pragma once

#include <string>
#include <string_view>

namespace host {

/// The lead of a doc comment as Markdown: its paragraphs and lists, down to the first thing that is neither (a block of
/// code outside of a list, a heading, an image, a table, a directive, a list of fields), without a sentence that only
/// introduces that. Empty when there is none. Lines of one paragraph are joined; every item of a list has a line of its
/// own, below and right of the one that it belongs to, and keeps the code that stands in it.
///
/// What stands within a line is printed as inline_markdown.h says: the text cannot break out of its place.
std::string lead_of(std::string_view documentation);

}  // namespace host
