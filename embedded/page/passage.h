// Markdown that can be shortened without being broken.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace embedded {

/// A list and what stands around it. Everything is whole lines, and an item is never cut in two.
struct Passage {
    /// Which lists are shortened first: those that say more of the page, or the ones that name each of its files.
    enum class Rank { DETAIL, FILE_BY_FILE };

    std::string before = {};              ///< stands whatever is left out
    std::string table_head = {};          ///< stands above the items, unless there is none left
    std::vector<std::string> items = {};  ///< what matters most first
    std::string after = {};               ///< stands whatever is left out
    std::string_view item_name = {};      ///< of one item: "file"
    bool is_bulleted = false;             ///< whether an item is a point of a list
    Rank rank = Rank::DETAIL;
};

/// What stands below the first items where the others are left out; empty when none is.
std::string what_is_left_out(const Passage& passage, std::size_t items);

/// The passage with the first items only, and what says that the others are left out.
std::string shortened(const Passage& passage, std::size_t items);

}  // namespace embedded
