#include "host/git/pattern.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <utility>

namespace host::git {

namespace {

struct NamedClass {
    std::string_view name;
    std::string_view members;
};

constexpr std::array<NamedClass, 8> NAMED_CLASSES{{{"[:alnum:]", "0-9A-Za-z"},
                                                   {"[:alpha:]", "A-Za-z"},
                                                   {"[:blank:]", " \t"},
                                                   {"[:digit:]", "0-9"},
                                                   {"[:lower:]", "a-z"},
                                                   {"[:space:]", " \t-\r"},
                                                   {"[:upper:]", "A-Z"},
                                                   {"[:xdigit:]", "0-9A-Fa-f"}}};

// Takes the characters between brackets off a pattern that begins with one, in the form of `Glob`. None when they have
// no end.
std::optional<std::string> take_class(std::string_view& pattern) {
    const std::size_t begin = pattern.substr(1, 1).find_first_of("!^") == 0 ? 2 : 1;
    std::string glob(pattern.substr(0, begin));
    pattern.remove_prefix(begin);
    for (bool is_first = true; !pattern.empty(); is_first = false) {
        const auto* const named =
            std::ranges::find_if(NAMED_CLASSES, [&](const NamedClass& each) { return pattern.starts_with(each.name); });
        const bool is_end = pattern.front() == ']' && !is_first;
        glob += named != NAMED_CLASSES.end() ? named->members : pattern.substr(0, 1);
        pattern.remove_prefix(named != NAMED_CLASSES.end() ? named->name.size() : 1);
        if (is_end) {
            return glob;
        }
    }
    return std::nullopt;
}

// The pattern for `Glob`, where braces are special and "a/**" matches "a", too. None for one that matches nothing: its
// last bracket is not closed, or nothing stands behind its last backslash.
std::optional<std::string> in_globs(std::string_view pattern) {
    std::string glob;
    while (!pattern.empty()) {
        const char next = pattern.front();
        if (next == '[') {
            const std::optional<std::string> characters = take_class(pattern);
            if (!characters) {
                return std::nullopt;
            }
            glob += *characters;
            continue;
        }
        const std::size_t size = next == '\\' ? 2 : 1;
        if (size > pattern.size()) {
            return std::nullopt;
        }
        glob.append(next == '{' || next == '}' ? "\\" : "").append(pattern.substr(0, size));
        pattern.remove_prefix(size);
    }
    return glob.ends_with("/**") ? glob + "/*" : glob;
}

}  // namespace

std::optional<Pattern> Pattern::read(std::string_view text) {
    const bool is_for_folders = text.ends_with('/');
    text.remove_suffix(is_for_folders ? 1 : 0);
    const bool is_name = text.find('/') == std::string_view::npos;
    text.remove_prefix(text.starts_with('/') ? 1 : 0);
    const std::optional<std::string> glob = in_globs(text);
    if (!glob || glob->empty()) {
        return std::nullopt;
    }
    try {
        Pattern pattern{Glob(*glob)};
        pattern.is_name_ = is_name;
        pattern.is_for_folders_ = is_for_folders;
        return pattern;
    } catch (const std::invalid_argument&) {
        return std::nullopt;
    }
}

bool Pattern::matches(std::string_view path, bool is_folder) const {
    return (is_folder || !is_for_folders_) && glob_.matches(is_name_ ? path.substr(path.rfind('/') + 1) : path);
}

}  // namespace host::git
