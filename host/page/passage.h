// Markdown that can be shortened without being broken.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// One point, row or block of a list, and what it had to leave out.
struct PassageItem {
    std::string text;
    bool lacks_source = false;
    bool lacks_comment = false;
};

/// A list and what stands around it. Everything is whole lines, and an item is never cut in two.
struct Passage {
    /// Which lists are shortened faster: those that say more of the page, or the ones that name each of its files.
    enum class Rank { DETAIL, FILE_BY_FILE };

    std::string heading = {};             ///< stands whatever is left out
    std::string sentence = {};            ///< what the list is, for who does not know; gives way first
    std::string table_head = {};          ///< stands above the items, unless there is none left
    std::vector<PassageItem> items = {};  ///< what matters most first
    std::string after = {};               ///< stands whatever is left out
    std::string_view item_name = {};      ///< of one item: "file"
    bool is_bulleted = false;             ///< whether an item is a point of a list
    Rank rank = Rank::DETAIL;

    /// In how many steps the items can be shortened, and how they are after so many of these: as many items.
    std::size_t steps = 0;
    std::function<std::vector<PassageItem>(std::size_t steps)> shortened = {};
};

/// The line that says what is left out where the items behind the first `kept` are, and of these `sources` and
/// `comments`; empty when nothing is.
std::string what_is_left_out(const Passage& passage, std::size_t kept, std::size_t sources, std::size_t comments);

}  // namespace host
