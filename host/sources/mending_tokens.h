// The tokens of a TypeScript text, as far as mending.h looks at them.
#pragma once

#include "host/text/ascii.h"
#include "host/text/blanks.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace host::sources {

/// Whether a character is one of a name. All but those of ASCII are.
constexpr bool is_of_name(char character) {
    return is_letter(character) || ('0' <= character && character <= '9') || character == '_' || character == '$' ||
           static_cast<unsigned char>(character) >= 0x80;
}

/// A word or a "<", and what stands around it, blanks and comments left out.
struct Token {
    std::size_t begin = 0;
    std::string_view text;
    bool begins_line = false;
    std::string_view head;      ///< the text before it
    std::string_view previous;  ///< the word before it; empty where something else stands between
    std::string_view next;      ///< the word behind it on its line; empty where something else stands between
    std::string_view tail;      ///< the text behind it

    [[nodiscard]] std::size_t end() const { return begin + text.size(); }
    [[nodiscard]] char before() const { return head.empty() ? '\n' : head.back(); }
    [[nodiscard]] char after() const { return tail.empty() ? '\n' : tail.front(); }
};

/// The word at the beginning of a text; empty when there is none.
inline std::string_view first_word(std::string_view text) {
    return text.substr(0, static_cast<std::size_t>(std::ranges::find_if_not(text, is_of_name) - text.begin()));
}

/// Where the comment ends that begins at an offset; the offset when none does.
inline std::size_t end_of_comment(std::string_view text, std::size_t begin) {
    const std::string_view mark = text.substr(begin, 2);
    if (mark != "//" && mark != "/*") {
        return begin;
    }
    const std::string_view closing = mark == "//" ? "\n" : "*/";
    const std::size_t end = text.find(closing, begin + 2);
    return end == std::string_view::npos ? text.size() : end + closing.size();
}

/// Where the string ends that begins at an offset and ends on its line; the offset when none does.
inline std::size_t end_of_string(std::string_view text, std::size_t begin) {
    if (text[begin] != '"' && text[begin] != '\'') {
        return begin;
    }
    const std::size_t end = text.find_first_of(text[begin] == '"' ? "\"\n" : "'\n", begin + 1);
    return end == std::string_view::npos || text[end] == '\n' ? begin : end + 1;
}

/// Calls `visit` with each token that is in no comment and no string.
void for_each_token(std::string_view text, const auto& visit) {
    std::string_view head;
    std::string_view previous;
    bool begins_line = true;
    for (std::size_t at = 0; at < text.size();) {
        const bool is_blank = BLANKS.find(text[at]) != std::string_view::npos;
        if (const std::size_t end = is_blank ? at + 1 : end_of_comment(text, at); end > at) {
            begins_line = begins_line || text[end - 1] == '\n';
            at = end;
            continue;
        }
        const std::string_view word = first_word(text.substr(at));
        const std::size_t end = std::max({at + 1, at + word.size(), end_of_string(text, at)});
        if (!word.empty() || text[at] == '<') {
            const std::size_t after = std::min(text.find_first_not_of(BLANKS, end), text.size());
            const bool is_followed = text.substr(end, after - end).find('\n') == std::string_view::npos;
            visit(Token{.begin = at,
                        .text = text.substr(at, end - at),
                        .begins_line = begins_line,
                        .head = head,
                        .previous = previous,
                        .next = is_followed ? first_word(text.substr(after)) : std::string_view(),
                        .tail = text.substr(after)});
        }
        head = text.substr(0, end);
        previous = word;
        begins_line = false;
        at = end;
    }
}

}  // namespace host::sources
