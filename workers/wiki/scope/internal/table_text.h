// Texts for the cells and the lists of a block.
#pragma once

#include "models/excerpt.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace wiki::scope {

/// The parts, one after the other.
std::string _concatenated(std::initializer_list<std::string_view> parts);

/// The last two segments of a path: enough to tell two files of one name apart.
std::string _short_path(std::string_view path);

/// A text made safe to stand in one cell of a Markdown table: bars escaped, line feeds turned into blanks.
std::string _cell(std::string_view text);

/// What `text_of` makes of each element, joined by ", ".
template <class Elements, class TextOf>
std::string _joined(const Elements& elements, TextOf text_of) {
    std::string text;
    std::string_view separator;
    for (const auto& element : elements) {
        text.append(separator).append(text_of(element));
        separator = ", ";
    }
    return text;
}

/// The shown elements joined by ", ", then " +" and the number of those left out, if any.
template <class Element, class TextOf>
std::string _listed(const models::Excerpt<Element>& excerpt, TextOf text_of) {
    const std::string shown = _joined(excerpt.shown, text_of);
    return excerpt.left_out() > 0 ? shown + " +" + std::to_string(excerpt.left_out()) : shown;
}

}  // namespace wiki::scope
