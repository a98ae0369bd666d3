#include "host/sources/mending.h"

#include "host/sources/mending_tokens.h"
#include "host/text/ascii.h"
#include "host/text/blanks.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace host::sources {

namespace {

using std::string_view;

constexpr std::size_t LONGEST = 2'000;  // bytes of what is looked for to its end

// The words behind which another one may be an operand.
constexpr std::array<string_view, 7> OPERATORS{"as", "extends", "in", "instanceof", "is", "of", "satisfies"};

bool is_one_of(string_view word, const auto& words) {
    return std::ranges::find(words, word) != words.end();
}

// Fills what stands from one offset to another, but for the line ends.
void fill(std::string& text, std::size_t begin, std::size_t end, char filler) {
    const auto first = text.begin() + static_cast<std::ptrdiff_t>(begin);
    std::replace_if(
        first, first + static_cast<std::ptrdiff_t>(end - begin),
        [](char character) { return character != '\n' && character != '\r'; }, filler);
}

// Blanks what is escaped and would begin or end something in a template.
void blank_escapes(std::string& text) {
    for (std::size_t at = text.find('\\'); at < text.size() - 1; at = text.find('\\', at + 2)) {
        if (text[at + 1] == '`' || text[at + 1] == '$') {
            fill(text, at, at + 2, ' ');
        }
    }
}

// Where the type arguments of a name begin that end at an offset; the offset when there are none.
std::size_t begin_of_type_arguments(string_view text, std::size_t end) {
    int depth = 0;
    for (std::size_t at = end; at > 1 && end - at < LONGEST; --at) {
        const bool is_arrow = text[at - 1] == '>' && text[at - 2] == '=';
        depth += text[at - 1] == '>' && !is_arrow ? 1 : text[at - 1] == '<' ? -1 : 0;
        if (depth == 0) {
            return is_of_name(text[at - 2]) ? at - 1 : end;
        }
    }
    return end;
}

// Blanks the type arguments of the tags of templates.
void blank_arguments_of_tags(std::string& text) {
    for (std::size_t at = text.find(">`"); at != std::string::npos; at = text.find(">`", at + 2)) {
        fill(text, begin_of_type_arguments(text, at + 1), at + 1, ' ');
    }
}

// How long the type parameters of a function type are that is itself a type argument; 0 when the "<" is of something
// else.
std::size_t length_of_type_parameters(const Token& token, string_view text) {
    if (token.text != "<" || token.begin < 2 || text[token.begin - 1] != '<' || !is_of_name(text[token.begin - 2])) {
        return 0;
    }
    const string_view rest = text.substr(token.begin, LONGEST);
    int depth = 0;
    for (std::size_t at = 0; at < rest.size(); ++at) {
        const bool is_arrow = rest[at] == '>' && rest[at - 1] == '=';
        depth += rest[at] == '<' ? 1 : rest[at] == '>' && !is_arrow ? -1 : 0;
        if (depth == 0) {
            return rest.substr(at + 1).starts_with('(') ? at + 1 : 0;
        }
    }
    return 0;
}

// Whether a "<" begins a member of a type, and not the type arguments of the line above.
bool begins_member(const Token& token) {
    constexpr string_view ENDS_OF_TYPES = ">)]}\"'`";
    const bool is_behind_type = is_of_name(token.before()) || ENDS_OF_TYPES.find(token.before()) != string_view::npos;
    return token.text == "<" && token.begins_line && is_behind_type && !token.head.ends_with("=>");
}

// Whether a word of a list of type parameters says how a type varies.
bool is_variance(const Token& word) {
    const bool is_listed = word.before() == '<' || word.before() == ',' || word.previous == "in";
    return is_listed && (word.text == "in" || word.text == "out") && !word.next.empty() &&
           !is_one_of(word.next, OPERATORS);
}

// Whether a word is one that the grammar does not know in front of what it knows without.
bool is_unknown_modifier(const Token& word) {
    if (word.text == "type" || word.text == "defer" || word.text == "source") {
        const bool is_before_name = !word.next.empty() && word.next != "from";
        return word.previous == "export" ? word.text == "type" && word.after() == '*'
                                         : word.previous == "import" && (is_before_name || word.after() == '*');
    }
    return is_variance(word) || (word.text == "override" && word.previous == "abstract");
}

// Whether a word is a name that means something else to the grammar: one that modifies what follows it, with nothing
// there to be modified, or an operator without an operand.
bool is_name(const Token& word) {
    constexpr std::array<string_view, 4> MODIFIERS{"abstract", "accessor", "type", "using"};
    constexpr std::array<string_view, 3> BETWEEN{"as", "in", "satisfies"};
    constexpr std::array<string_view, 5> BEFORE_NAMES{"const", "function", "let", "return", "var"};
    constexpr string_view MODIFIED = "{*[#\"'";
    constexpr string_view BEFORE_OPERANDS = "(,=?:[{;&|";
    if (is_one_of(word.text, MODIFIERS)) {
        return word.next.empty() ? MODIFIED.find(word.after()) == string_view::npos : is_one_of(word.next, OPERATORS);
    }
    const bool lacks_operand = is_one_of(word.previous, BEFORE_NAMES) || word.after() == ':' || word.after() == '?' ||
                               BEFORE_OPERANDS.find(word.before()) != string_view::npos;
    return is_one_of(word.text, BETWEEN) && lacks_operand;
}

// Whether a word that is the name of a type, or a keyword, names a parameter or an element of a tuple.
bool is_label(const Token& word) {
    constexpr std::array<string_view, 16> WORDS{"any",    "bigint", "boolean", "infer",  "keyof",    "never",
                                                "new",    "number", "object",  "string", "readonly", "symbol",
                                                "typeof", "unique", "unknown", "void"};
    const bool is_element = (word.before() == '[' || word.before() == ',') && word.after() == ':';
    const bool is_parameter =
        word.before() == '(' && word.after() == ')' && trimmed(word.tail.substr(1, LONGEST)).starts_with("=>");
    return (is_element || is_parameter) && is_one_of(word.text, WORDS);
}

// How long `with { ... }` is behind the name of a module; 0 when it is none.
std::size_t length_of_import_attributes(const Token& word) {
    const bool is_behind_module = word.before() == '"' || word.before() == '\'';
    if (word.text != "with" || !is_behind_module || word.after() != '{') {
        return 0;
    }
    const auto begin = static_cast<std::size_t>(word.tail.data() - word.text.data());
    const std::size_t end = word.tail.substr(0, LONGEST).find('}');
    return end == string_view::npos ? 0 : begin + end + 1;
}

// How long `import("module")` is in front of a dot; 0 when the word is something else.
std::size_t length_of_import_type(const Token& word) {
    const string_view rest = word.tail.substr(0, LONGEST);
    if (word.text != "import" || (!rest.starts_with("(\"") && !rest.starts_with("('"))) {
        return 0;
    }
    const auto begin = static_cast<std::size_t>(word.tail.data() - word.text.data());
    const std::size_t end = rest.find(rest[1], 2);
    const bool is_type = end != string_view::npos && rest.substr(end + 1).starts_with(").");
    return is_type ? begin + end + 2 : 0;
}

// Whether a word is the `accessor` of a field with accessors.
bool is_accessor(const Token& word) {
    constexpr string_view BEGINS_OF_NAMES = "#[\"'";
    return word.text == "accessor" && (word.next.empty() ? BEGINS_OF_NAMES.find(word.after()) != string_view::npos
                                                         : !is_one_of(word.next, OPERATORS));
}

// Whether a word is the `using` of `for (using a of b)`.
bool is_using_of_loop(const Token& word) {
    return word.text == "using" && word.before() == '(' && !word.next.empty() && word.next != "of";
}

void mend_tokens(std::string& text) {
    const std::string original = text;
    std::size_t done = 0;  // what stands before is not looked at any more
    for_each_token(original, [&](const Token& token) {
        if (token.begin < done) {
            return;
        }
        if (begins_member(token)) {
            if (token.begin > 0 && (original[token.begin - 1] == ' ' || original[token.begin - 1] == '\t')) {
                text[token.begin - 1] = ';';
            }
        } else if (const std::size_t parameters = length_of_type_parameters(token, original); parameters > 0) {
            done = token.begin + parameters;
            fill(text, token.begin, done, ' ');
        } else if (is_unknown_modifier(token)) {
            fill(text, token.begin, token.end(), ' ');
        } else if (is_using_of_loop(token)) {
            text.replace(token.begin, token.text.size(), "const");
        } else if (is_accessor(token)) {
            text.replace(token.begin, token.text.size(), "readonly");
        } else if (is_name(token) || is_label(token) || (token.text == "undefined" && token.previous == "typeof")) {
            text[token.begin] = '_';
        } else if (const std::size_t attributes = length_of_import_attributes(token); attributes > 0) {
            done = token.begin + attributes;
            fill(text, token.begin, done, ' ');
        } else if (const std::size_t type = length_of_import_type(token); type > 0) {
            done = token.begin + type;
            fill(text, token.end(), done, '_');
        }
    });
}

}  // namespace

std::string mended(string_view text) {
    std::string mended(text);
    blank_escapes(mended);
    blank_arguments_of_tags(mended);
    mend_tokens(mended);
    return mended;
}

}  // namespace host::sources
