#include "host/page/passage.h"

#include "host/text/counted.h"

#include <cstdint>

namespace host {

std::string what_is_left_out(const Passage& passage, std::size_t kept, std::size_t sources, std::size_t comments) {
    const std::string items = (kept > 0 ? "more " : "") + std::string(passage.item_name);
    std::string list;
    const auto add = [&list](std::size_t count, const std::string& thing) {
        if (count > 0) {
            list.append(list.empty() ? "" : ", ").append(counted(static_cast<std::int64_t>(count), thing));
        }
    };
    add(passage.items.size() - kept, items);
    add(sources, "source");
    add(comments, "doc comment");
    return list.empty() ? "" : (passage.is_bulleted ? "- _..." : "\n_...") + list + " left out to fit_\n";
}

}  // namespace host
