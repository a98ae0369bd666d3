#include "host/git/attributes.h"

#include "host/files/checkout.h"

#include <algorithm>
#include <utility>

namespace host::git {

namespace {

using std::string_view;

constexpr string_view BLANKS = " \t";

// Takes the first word of a line off it.
string_view next_word(string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(BLANKS), line.size()));
    const string_view word = line.substr(0, line.find_first_of(BLANKS));
    line.remove_prefix(word.size());
    return word;
}

void overwrite(Origin& origin, const Origin& by) {
    origin.is_generated = by.is_generated ? by.is_generated : origin.is_generated;
    origin.is_vendored = by.is_vendored ? by.is_vendored : origin.is_vendored;
}

// Adds what one word says: "linguist-generated", "-linguist-generated", "linguist-generated=false", or a macro.
void add(string_view word, const AttributeMacros& macros, Origin& origin) {
    const bool is_unset = word.starts_with('-');
    word.remove_prefix(is_unset ? 1 : 0);
    const string_view name = word.substr(0, word.find('='));
    const string_view value = word.substr(name.size());
    const bool is_set = !is_unset && value != "=false" && value != "=0";
    if (name == "linguist-generated") {
        origin.is_generated = is_set;
    } else if (name == "linguist-vendored") {
        origin.is_vendored = is_set;
    } else if (const auto macro = macros.find(name); macro != macros.end() && is_set) {
        overwrite(origin, macro->second);
    }
}

}  // namespace

AttributeRules::AttributeRules(string_view text, AttributeMacros& macros) {
    constexpr string_view MACRO = "[attr]";
    for (const std::string& whole : lines_of(text)) {
        string_view line = whole;
        const string_view subject = next_word(line);
        Origin origin;
        for (string_view word = next_word(line); !word.empty(); word = next_word(line)) {
            add(word, macros, origin);
        }
        if (subject.starts_with(MACRO)) {
            macros[std::string(subject.substr(MACRO.size()))] = origin;
        } else if (std::optional<Pattern> pattern = Pattern::read(subject);
                   pattern && !subject.starts_with('#') && (origin.is_generated || origin.is_vendored)) {
            rules_.push_back({std::move(*pattern), origin});
        }
    }
}

void AttributeRules::complete(string_view path, Origin& origin) const {
    std::for_each(rules_.rbegin(), rules_.rend(), [&](const Rule& rule) {
        if (rule.pattern.matches(path, false)) {
            Origin completed = rule.origin;
            overwrite(completed, origin);
            origin = completed;
        }
    });
}

}  // namespace host::git
