#include "embedded/page/passage.h"

#include <algorithm>

namespace embedded {

std::string what_is_left_out(const Passage& passage, std::size_t items) {
    const std::size_t left_out = passage.items.size() - std::min(items, passage.items.size());
    if (left_out == 0) {
        return "";
    }
    return (passage.is_bulleted ? "- _..." : "\n_...") + std::to_string(left_out) + (items > 0 ? " more " : " ") +
           std::string(passage.item_name) + (left_out == 1 ? "" : "s") + " left out to fit_\n";
}

std::string shortened(const Passage& passage, std::size_t items) {
    const std::size_t kept = std::min(items, passage.items.size());
    std::string text = passage.before + (kept > 0 ? passage.table_head : "");
    for (std::size_t at = 0; at < kept; ++at) {
        text += passage.items[at];
    }
    return text + what_is_left_out(passage, kept) + passage.after;
}

}  // namespace embedded
