#include "host/sqlite/bound_list.h"

#include "host/index/ranges.h"

#include <string_view>
#include <utility>

namespace host {

namespace {

void append_quoted(std::string& list, std::string_view text) {
    constexpr std::string_view HEX = "0123456789abcdef";
    list += '"';
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x20) {
            list += "\\u00";
            list += HEX[byte / 16U];
            list += HEX[byte % 16U];
        } else {
            if (character == '"' || character == '\\') {
                list += '\\';
            }
            list += character;
        }
    }
    list += '"';
}

template <class Element, class Append>
std::string array_of(std::span<const Element> elements, Append append) {
    std::string list = "[";
    for (const Element& element : elements) {
        list += list.size() > 1 ? "," : "";
        append(list, element);
    }
    return list += "]";
}

}  // namespace

std::string bound_ranges(std::vector<std::int64_t> integers) {
    std::string list = "[";
    const auto ranges = ranges_of(std::move(integers));
    for (const auto& [first, last] : ranges) {
        list.append(list.size() > 1 ? ",[" : "[").append(std::to_string(first)).append(",");
        list.append(std::to_string(last)).append("]");
    }
    return list += "]";
}

std::string bound_list(std::span<const std::string> texts) {
    return array_of(texts, append_quoted);
}

std::string bound_list(std::span<const models::Text> texts) {
    return array_of(texts, append_quoted);
}

}  // namespace host
