#include "host/page/passage.h"

#include "host/text/counted.h"

#include <cstdint>

namespace host {

std::vector<ItemSize> FixedItems::sizes(std::size_t /*steps*/) const {
    std::vector<ItemSize> sizes;
    sizes.reserve(texts_.size());
    for (const std::string& text : texts_) {
        sizes.push_back({.bytes = text.size()});
    }
    return sizes;
}

void FixedItems::print(std::string& text, std::size_t count, std::size_t /*steps*/) const {
    for (std::size_t at = 0; at < count; ++at) {
        text += texts_[at];
    }
}

std::string what_is_left_out(const Passage& passage, const LeftOut& left_out, bool has_items) {
    std::string list;
    const auto add = [&list](std::size_t count, const std::string& thing) {
        if (count > 0) {
            list.append(list.empty() ? "" : ", ").append(counted(static_cast<std::int64_t>(count), thing));
        }
    };
    add(left_out.items, (has_items ? "more " : "") + std::string(passage.item_name));
    add(left_out.sources, "source");
    add(left_out.uses, "cited use");
    add(left_out.comments, "doc comment");
    return list.empty() ? "" : (passage.is_bulleted ? "- _..." : "\n_...") + list + " left out to fit_\n";
}

}  // namespace host
