#include "host/git/attributes.h"

#include "host/files/checkout.h"

#include <algorithm>
#include <utility>

namespace host::git {

namespace {

using std::string_view;

constexpr string_view BLANKS = " \t";
constexpr string_view MACRO = "[attr]";
constexpr string_view GENERATED = "linguist-generated";
constexpr string_view VENDORED = "linguist-vendored";

// Takes the first word of a line off it.
string_view next_word(string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(BLANKS), line.size()));
    const string_view word = line.substr(0, line.find_first_of(BLANKS));
    line.remove_prefix(word.size());
    return word;
}

// "-diff" says no, "!diff" nothing, "diff=false" no, "diff" and "diff=x" yes.
AttributeState state_of(string_view word) {
    const bool is_unset = word.starts_with('-');
    const bool is_taken_back = word.starts_with('!');
    word.remove_prefix(is_unset || is_taken_back ? 1 : 0);
    const string_view name = word.substr(0, word.find('='));
    const string_view value = word.substr(name.size());
    return {.attribute = std::string(name),
            .value = is_taken_back ? std::nullopt : std::optional(!is_unset && value != "=false" && value != "=0")};
}

std::vector<AttributeState> states_in(string_view line) {
    std::vector<AttributeState> states;
    for (string_view word = next_word(line); !word.empty(); word = next_word(line)) {
        states.push_back(state_of(word));
    }
    return states;
}

}  // namespace

AttributeMacros attribute_macros(string_view text) {
    AttributeMacros macros;
    for (const std::string& whole : lines_of(text)) {
        string_view line = whole;
        if (const string_view subject = next_word(line); subject.starts_with(MACRO)) {
            macros[std::string(subject.substr(MACRO.size()))] = states_in(line);
        }
    }
    return macros;
}

void FileAttributes::complete(const std::vector<AttributeState>& states) {
    std::for_each(states.rbegin(), states.rend(), [&](const AttributeState& state) {
        const auto macro = macros_.find(state.attribute);
        if (values_.emplace(state.attribute, state.value).second && macro != macros_.end() &&
            state.value.value_or(false)) {
            complete(macro->second);
        }
    });
}

Origin FileAttributes::origin() const {
    const auto value = [&](string_view attribute) {
        const auto found = values_.find(attribute);
        return found == values_.end() ? std::nullopt : found->second;
    };
    return {.is_generated = value(GENERATED), .is_vendored = value(VENDORED)};
}

AttributeRules::AttributeRules(string_view text, const AttributeMacros& macros) {
    const auto is_unused = [&](const AttributeState& state) {
        return state.attribute != GENERATED && state.attribute != VENDORED && !macros.contains(state.attribute);
    };
    for (const std::string& whole : lines_of(text)) {
        string_view line = whole;
        const string_view subject = next_word(line);
        std::vector<AttributeState> states = states_in(line);
        std::erase_if(states, is_unused);
        std::optional<Pattern> pattern =
            states.empty() || subject.starts_with('#') || subject.starts_with('!') || subject.starts_with(MACRO)
                ? std::nullopt
                : Pattern::read(subject);
        if (pattern) {
            rules_.push_back({std::move(*pattern), std::move(states)});
        }
    }
}

void AttributeRules::complete(string_view path, FileAttributes& attributes) const {
    std::for_each(rules_.rbegin(), rules_.rend(), [&](const Rule& rule) {
        if (rule.pattern.matches(path, false)) {
            attributes.complete(rule.states);
        }
    });
}

}  // namespace host::git
