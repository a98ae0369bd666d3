#include "embedded/sources/mending.h"

#include "embedded/text/ascii.h"
#include "embedded/text/blanks.h"

#include <cstddef>

namespace embedded::sources {

namespace {

// Whether a text may end with a type, or with a comment below one.
bool may_end_type(std::string_view text) {
    constexpr std::string_view ENDS = "0123456789_$>)]}\"'`";
    return !text.empty() &&
           (is_letter(text.back()) || ENDS.find(text.back()) != std::string_view::npos || text.ends_with("*/"));
}

}  // namespace

std::string with_separators(std::string_view text) {
    std::string mended(text);
    for (std::size_t line = text.find('\n'); line != std::string_view::npos; line = text.find('\n', line + 1)) {
        const std::size_t first = text.find_first_not_of(" \t", line + 1);
        const bool is_indented = first != std::string_view::npos && first > line + 1;
        if (is_indented && text[first] == '<' && may_end_type(trimmed_end(text.substr(0, line)))) {
            mended[first - 1] = ';';
        }
    }
    return mended;
}

}  // namespace embedded::sources
