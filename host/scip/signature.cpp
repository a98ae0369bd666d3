#include "host/scip/signature.h"

#include "host/text/blanks.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

namespace host::scip {

namespace {

using std::string_view;

bool is_word(char character) {
    return ('a' <= character && character <= 'z') || ('A' <= character && character <= 'Z') ||
           ('0' <= character && character <= '9') || character == '_';
}

string_view trimmed_begin(string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return text;
}

// Takes the word at the front of the text, which is empty where none stands there.
string_view take_word(string_view& text) {
    text = trimmed_begin(text);
    const auto* const end = std::ranges::find_if_not(text, is_word);
    const string_view word = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(word.size());
    return word;
}

// A line that opens or closes a block: the positions where it starts, and where the next line does.
struct Fence {
    std::size_t start;
    std::size_t end;
};

// The next fence in the text from the start of a line on.
std::optional<Fence> next_fence(string_view text, std::size_t line) {
    while (line < text.size()) {
        const std::size_t end = std::min(text.find('\n', line), text.size() - 1) + 1;
        if (text.substr(line).starts_with("```")) {
            return Fence{line, end};
        }
        line = end;
    }
    return std::nullopt;
}

struct Block {
    string_view before;
    string_view content;
    string_view after;
};

std::optional<Block> first_fenced_block(string_view text) {
    const std::optional<Fence> opening = next_fence(text, 0);
    if (!opening) {
        return std::nullopt;
    }
    const Fence closing = next_fence(text, opening->end).value_or(Fence{text.size(), text.size()});
    return Block{text.substr(0, opening->start), text.substr(opening->end, closing.start - opening->end),
                 text.substr(closing.end)};
}

bool is_modifier(string_view word) {
    constexpr auto MODIFIERS =
        std::to_array<string_view>({"abstract",  "async", "const",  "data",     "declare", "default",  "export",
                                    "extern",    "final", "inline", "internal", "open",    "override", "private",
                                    "protected", "pub",   "public", "readonly", "sealed",  "static",   "unsafe"});
    return std::ranges::find(MODIFIERS, word) != MODIFIERS.end();
}

// Behind a bracket at the front of the text, what follows the one that closes it; none when nothing does.
std::optional<string_view> behind_brackets(string_view text) {
    std::size_t depth = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        depth += string_view("([{").find(text[at]) != string_view::npos ? 1 : 0;
        if (string_view(")]}").find(text[at]) != string_view::npos && --depth == 0) {
            return text.substr(at + 1);
        }
    }
    return std::nullopt;
}

// "A<B & C> & D" -> "A<B & C>", "D"
std::vector<string_view> parts_of_intersection(string_view type) {
    std::vector<string_view> parts;
    std::size_t begin = 0;
    int depth = 0;
    for (std::size_t at = 0; at < type.size(); ++at) {
        const bool is_arrow = at > 0 && type.substr(at - 1).starts_with("=>");
        depth += string_view("([{<").find(type[at]) != string_view::npos ? 1 : 0;
        depth -= string_view(")]}>").find(type[at]) != string_view::npos && !is_arrow ? 1 : 0;
        if (type[at] == '&' && depth == 0) {
            parts.push_back(trimmed(type.substr(begin, at - begin)));
            begin = at + 1;
        }
    }
    parts.push_back(trimmed(type.substr(begin)));
    return parts;
}

// Whether a type that is no intersection is that of a function, or of an object that can be called.
bool can_be_called(string_view type) {
    if (type.starts_with('(')) {
        const std::optional<string_view> rest = behind_brackets(type);
        const bool is_in_brackets = rest && trimmed(*rest).empty();
        return is_in_brackets ? can_be_called(trimmed(type.substr(1, type.size() - 2)))
                              : rest && trimmed_begin(*rest).starts_with("=>");  // one that is cut short says nothing
    }
    if (type.starts_with('{')) {
        type = trimmed_begin(type.substr(1));
        return type.starts_with('(') || type.starts_with('<');
    }
    return type.starts_with('<') || take_word(type) == "new";
}

// "a.B<C>" -> "B"; empty for a type that is no name.
string_view name_of_type(string_view type) {
    const string_view name = type.substr(0, type.find('<'));
    const bool is_name = std::ranges::all_of(
        name, [](char character) { return is_word(character) || character == '.' || character == '$'; });
    const bool ends = name.size() == type.size() || type.ends_with('>');
    return is_name && ends ? name.substr(name.rfind('.') + 1) : string_view();
}

}  // namespace

Explanation explanation_of(const SymbolInformation& information) {
    Explanation explanation{.signature = information.signature, .documentation = {}};
    const auto add = [&](string_view text) {
        text = trimmed(text);
        if (!text.empty() && text != "---") {
            explanation.documentation.append(explanation.documentation.empty() ? "" : "\n\n").append(text);
        }
    };
    Repeated<TextElement> documentation = information.documentation();
    while (const std::optional<TextElement> element = documentation.next()) {
        const std::optional<Block> block =
            explanation.signature.empty() ? first_fenced_block(element->text) : std::nullopt;
        if (block) {
            explanation.signature = block->content;
            add(block->before);
            add(block->after);
        } else {
            add(element->text);
        }
    }
    return explanation;
}

SignatureWords words_of(string_view signature) {
    SignatureWords words;
    string_view rest = trimmed_begin(signature);
    words.is_enum_member = rest.starts_with("(enum member)");
    string_view word = take_word(rest);
    words.is_const = word == "const";
    while (is_modifier(word)) {
        words.is_public = words.is_public || word == "public";
        words.is_restricted = words.is_restricted || word == "private" || word == "protected" || word == "internal";
        if (word == "pub" && rest.starts_with('(')) {  // pub(crate)
            rest = behind_brackets(rest).value_or("");
        }
        word = take_word(rest);
        words.is_const = words.is_const || word == "const";
    }
    words.keyword = word;
    return words;
}

CallableType callable_type_of(string_view signature) {
    CallableType callable;
    const std::size_t colon = signature.find(':');
    if (colon == string_view::npos) {
        return callable;
    }
    for (const string_view part : parts_of_intersection(signature.substr(colon + 1))) {
        callable.can_be_called = callable.can_be_called || can_be_called(part);
        if (const string_view name = name_of_type(part); !name.empty()) {
            callable.if_one_can.emplace_back(name);
        }
    }
    return callable;
}

}  // namespace host::scip
