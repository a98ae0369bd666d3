// The paragraphs, lists and code of a doc comment's prose.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// A paragraph, an item of a list, or code in one.
struct LeadBlock {
    std::size_t depth = 0;          ///< how many items it stands in, itself not counted
    std::string_view mark;          ///< of an item: "-", "1."; empty for any other block
    std::string text;               ///< on one line; empty for code
    std::vector<std::string> code;  ///< its lines, dedented
    std::string_view language;      ///< of the code, as its fence says
};

/// The blocks of a doc comment up to the first that is none of prose: an example, a heading, a table, the list of its
/// parameters. Code within an item belongs to it. Lines are indented as in CommonMark, except that what looks like an
/// item is one right below a paragraph, too, however far it is indented. Parts of `documentation`.
std::vector<LeadBlock> blocks_of_lead(std::string_view documentation);

}  // namespace host
