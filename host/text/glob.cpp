#include "host/text/glob.h"

#include "host/text/utf8.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <utility>

namespace host {

namespace {

using std::string_view;

// Positions in a pattern and in the text that it is matched against.
struct Places {
    std::size_t pattern = 0;
    std::size_t text = 0;
};

// Returns whether a pattern matches a whole text. A star matches any number of elements. `take_one` matches any other
// element of the pattern and returns the positions behind it, or none. On a mismatch only the last star takes one
// element more: what precedes it has matched already, and matching it later cannot help.
template <class IsStar, class TakeOne>
bool matches_all(const Places& size, IsStar is_star, TakeOne take_one) {
    Places at;
    std::optional<Places> behind_star;
    while (at.text < size.text) {
        if (at.pattern < size.pattern && is_star(at.pattern)) {
            behind_star = {++at.pattern, at.text};
            continue;
        }
        const std::optional<Places> next = at.pattern < size.pattern ? take_one(at) : std::nullopt;
        if (next) {
            at = *next;
        } else if (behind_star) {
            ++behind_star->text;
            at = *behind_star;
        } else {
            return false;
        }
    }
    while (at.pattern < size.pattern && is_star(at.pattern)) {
        ++at.pattern;
    }
    return at.pattern == size.pattern;
}

// The character at a position of a text.
string_view character_at(string_view text, std::size_t place) {
    const string_view rest = text.substr(place);
    return rest.substr(0, std::max<std::size_t>(code_point_bytes(rest), 1));
}

// The characters between brackets.
struct CharacterClass {
    string_view content;  // without the "!" or "^" that inverts it
    bool is_inverted = false;
    std::size_t end = 0;  // in the pattern, behind the closing bracket

    [[nodiscard]] bool contains(string_view character) const {
        for (std::size_t place = 0; place < content.size();) {
            const string_view first = character_at(content, place);
            place += first.size();
            string_view last = first;
            if (content.substr(place).starts_with('-') && place + 1 < content.size()) {
                last = character_at(content, place + 1);
                place += 1 + last.size();
            }
            if (first <= character && character <= last) {  // the order of bytes is that of code points
                return !is_inverted;
            }
        }
        return is_inverted;
    }
};

// The class at a position of a pattern; none when it is not closed. A "]" right behind the opening bracket is a member.
std::optional<CharacterClass> class_at(string_view pattern, std::size_t place) {
    const bool is_inverted = pattern.substr(place + 1, 1).find_first_of("!^") == 0;
    const std::size_t begin = place + (is_inverted ? 2 : 1);
    const std::size_t end = pattern.find(']', begin + 1);
    if (end == string_view::npos) {
        return std::nullopt;
    }
    return CharacterClass{pattern.substr(begin, end - begin), is_inverted, end + 1};
}

bool matches_segment(string_view pattern, string_view text) {
    const auto is_star = [&](std::size_t place) { return pattern[place] == '*'; };
    const auto take_one = [&](const Places& at) -> std::optional<Places> {
        if (pattern[at.pattern] == '?') {
            return Places{at.pattern + 1, at.text + character_at(text, at.text).size()};
        }
        if (pattern[at.pattern] == '[') {
            if (const std::optional<CharacterClass> these = class_at(pattern, at.pattern)) {
                const string_view character = character_at(text, at.text);
                return these->contains(character) ? std::optional(Places{these->end, at.text + character.size()})
                                                  : std::nullopt;
            }
        }
        const bool is_escaped = pattern[at.pattern] == '\\' && at.pattern + 1 < pattern.size();
        const std::size_t literal = at.pattern + (is_escaped ? 1 : 0);
        return pattern[literal] == text[at.text] ? std::optional(Places{literal + 1, at.text + 1}) : std::nullopt;
    };
    return matches_all({pattern.size(), text.size()}, is_star, take_one);
}

std::vector<string_view> segments_of(string_view path) {
    std::vector<string_view> segments;
    segments.reserve(static_cast<std::size_t>(std::ranges::count(path, '/')) + 1);
    for (std::size_t slash = path.find('/'); slash != string_view::npos; slash = path.find('/')) {
        segments.push_back(path.substr(0, slash));
        path.remove_prefix(slash + 1);
    }
    segments.push_back(path);
    return segments;
}

constexpr string_view SPECIAL = "*?[]\\";

// What every path begins with that a pattern without alternatives matches. A "**" takes the slash before it, too.
string_view literal_beginning(string_view pattern) {
    string_view beginning = pattern.substr(0, pattern.find_first_of(SPECIAL));
    beginning.remove_suffix(beginning.ends_with('/') ? 1 : 0);
    return beginning;
}

// And what it ends with. A "**" takes the slash behind it, too.
string_view literal_end(string_view pattern) {
    string_view end = pattern.substr(pattern.find_last_of(SPECIAL) + 1);
    end.remove_prefix(end.starts_with('/') ? 1 : 0);
    return end;
}

// Expands the first innermost braces that contain a comma: returns one pattern for each alternative. None when there
// are no such braces.
std::vector<std::string> alternatives_in(const std::string& pattern) {
    std::vector<std::vector<std::size_t>> open;  // for each open brace: its position, then those of its commas
    for (std::size_t place = 0; place < pattern.size(); ++place) {
        const char character = pattern[place];
        if (character == '\\') {
            ++place;
        } else if (character == '{') {
            open.push_back({place});
        } else if (character == ',' && !open.empty()) {
            open.back().push_back(place);
        } else if (character == '}' && !open.empty()) {
            std::vector<std::size_t> marks = std::move(open.back());
            open.pop_back();
            if (marks.size() == 1) {
                continue;
            }
            const string_view before = string_view(pattern).substr(0, marks.front());
            const string_view after = string_view(pattern).substr(place + 1);
            marks.push_back(place);
            std::vector<std::string> alternatives;
            for (std::size_t mark = 0; mark + 1 < marks.size(); ++mark) {
                const std::size_t begin = marks[mark] + 1;
                alternatives.push_back(
                    std::string(before).append(pattern, begin, marks[mark + 1] - begin).append(after));
            }
            return alternatives;
        }
    }
    return {};
}

std::invalid_argument unusable(string_view pattern, const std::string& reason) {
    constexpr std::size_t SHOWN = 60;  // bytes
    const std::string beginning(pattern.substr(0, SHOWN));
    return std::invalid_argument(beginning + (pattern.size() > SHOWN ? "..." : "") + ": the pattern " + reason);
}

}  // namespace

Glob::Glob(std::string_view pattern) {
    constexpr std::size_t MOST = 1'000;
    if (pattern.size() > LONGEST) {
        throw unusable(pattern, "is longer than any path");
    }
    std::vector<std::string> patterns{std::string(pattern)};
    while (!patterns.empty()) {
        const std::string next = std::move(patterns.back());
        patterns.pop_back();
        if (std::vector<std::string> alternatives = alternatives_in(next); !alternatives.empty()) {
            std::ranges::move(alternatives, std::back_inserter(patterns));
        } else {
            const std::vector<string_view> parts = segments_of(next);
            alternatives_.push_back({.beginning = std::string(literal_beginning(next)),
                                     .end = std::string(literal_end(next)),
                                     .segments = {parts.begin(), parts.end()}});
        }
        if (patterns.size() + alternatives_.size() > MOST) {
            throw unusable(pattern, "has too many alternatives");
        }
    }
}

bool Glob::matches(std::string_view path) const {
    std::vector<string_view> segments;  // split only for an alternative that the path comes near to
    return std::ranges::any_of(alternatives_, [&](const Alternative& alternative) {
        if (!path.starts_with(alternative.beginning) || !path.ends_with(alternative.end)) {
            return false;
        }
        if (segments.empty()) {
            segments = segments_of(path);
        }
        const std::vector<std::string>& pattern = alternative.segments;
        const auto is_star = [&](std::size_t place) { return pattern[place] == "**"; };
        const auto take_one = [&](const Places& at) {
            const bool is_taken = matches_segment(pattern[at.pattern], segments[at.text]);
            return is_taken ? std::optional(Places{at.pattern + 1, at.text + 1}) : std::nullopt;
        };
        return matches_all({pattern.size(), segments.size()}, is_star, take_one);
    });
}

bool is_glob(std::string_view text) {
    return text.find_first_of("*?[{") != std::string_view::npos;
}

std::string escaped(std::string_view text) {
    std::string pattern;
    for (const char character : text) {
        pattern.append(string_view("*?[{\\").find(character) == string_view::npos ? "" : "\\").push_back(character);
    }
    return pattern;
}

}  // namespace host
