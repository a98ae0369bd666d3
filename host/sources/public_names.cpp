#include "host/sources/public_names.h"

#include "host/text/ascii.h"
#include "host/text/split_lines.h"

#include <algorithm>
#include <utility>

namespace host::sources {

namespace {

using std::string_view;

// Whether a text begins with the word, and not with a longer one.
bool begins_with_word(string_view text, string_view word) {
    constexpr string_view OTHERS_OF_WORDS = "0123456789_$";
    return text.starts_with(word) && text.size() > word.size() && !is_letter(text[word.size()]) &&
           OTHERS_OF_WORDS.find(text[word.size()]) == string_view::npos;
}

// What the declarations of a file are that nothing marks or lists.
Unmarked unmarked_of(const Language& language, const Captures& captures, bool has_marks) {
    if (captures.has_list) {
        return Unmarked::PRIVATE;
    }
    if (language.unmarked == Unmarked::PUBLIC_OUTSIDE_MODULES) {
        return captures.is_module || has_marks ? Unmarked::PRIVATE : Unmarked::PUBLIC;
    }
    return language.unmarked;
}

// The lines that the word begins, if there is one.
std::vector<std::int32_t> lines_with_mark(string_view text, string_view mark) {
    std::vector<std::int32_t> lines;
    std::int32_t number = 0;
    for (string_view line : split_lines(text)) {
        ++number;
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        if (!mark.empty() && begins_with_word(line, mark)) {
            lines.push_back(number);
        }
    }
    return lines;
}

}  // namespace

PublicNames::PublicNames(string_view text, const Language& language, Captures& captures)
    : marked_lines_(captures.is_damaged ? lines_with_mark(text, language.mark) : std::vector<std::int32_t>()),
      unmarked_(unmarked_of(language, captures, !marked_lines_.empty())), listed_(std::move(captures.exports)) {}

bool PublicNames::contains(const std::string& name) const {
    const bool is_capitalized = !name.empty() && 'A' <= name.front() && name.front() <= 'Z';
    return listed_.contains(name) || unmarked_ == Unmarked::PUBLIC ||
           (unmarked_ == Unmarked::PUBLIC_IF_CAPITALIZED && is_capitalized);
}

bool PublicNames::contains(const std::string& name, std::int32_t line) const {
    const bool is_marked = std::ranges::binary_search(marked_lines_, line);
    return listed_.contains(name) || contains(name) != is_marked;
}

}  // namespace host::sources
