// Texts for the cells and the lists of a block.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace wiki::scope {

inline constexpr std::size_t CARD_NAMES = 3;  // names in one cell of a file card

/// The parts, one after the other.
std::string _concatenated(std::initializer_list<std::string_view> parts);

/// The last two segments of a path: enough to tell two files of one name apart.
std::string _short_path(std::string_view path);

/// A text made safe to stand in one cell of a Markdown table: bars escaped, line feeds turned into blanks.
std::string _cell(std::string_view text);

/// The shown names joined by ", ", then " +" and the number of the `total` names that are not shown, if any.
std::string _shown(std::span<const std::string> shown, std::size_t total);

/// The first `limit` names joined by ", ", then " +" and the number of names left out, if any. `names` is any list that
/// knows its size and gives what can be made a string.
template <class Names>
std::string _named(const Names& names, std::size_t limit = CARD_NAMES) {
    std::vector<std::string> shown;
    for (std::size_t i = 0; i < names.size() && i < limit; ++i) {
        shown.emplace_back(names[i]);
    }
    return _shown(shown, names.size());
}

}  // namespace wiki::scope
