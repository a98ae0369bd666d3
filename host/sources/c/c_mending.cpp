#include "host/sources/c/c_mending.h"

#include "host/sources/c/c_conditions.h"
#include "host/sources/c/c_splits.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace host::sources {

namespace {

using std::string_view;

// Words that may stand before the type of a declaration, and so are no type themselves.
constexpr auto C_MODIFIERS =
    std::to_array<string_view>({"const", "constexpr", "explicit", "extern", "friend", "inline", "private", "protected",
                                "public", "register", "static", "typedef", "virtual", "volatile"});
constexpr auto C_BUILTIN_TYPES = std::to_array<string_view>(
    {"bool", "char", "double", "float", "int", "long", "short", "signed", "unsigned", "void"});
constexpr auto C_KEYWORDS_OF_TYPES =
    std::to_array<string_view>({"alignas",      "asm",           "auto",          "case",      "class",
                                "co_return",    "co_yield",      "concept",       "const",     "consteval",
                                "constexpr",    "constinit",     "decltype",      "default",   "delete",
                                "do",           "else",          "enum",          "explicit",  "export",
                                "extern",       "final",         "for",           "friend",    "goto",
                                "if",           "inline",        "mutable",       "namespace", "new",
                                "noexcept",     "operator",      "override",      "private",   "protected",
                                "public",       "register",      "requires",      "restrict",  "return",
                                "sizeof",       "static",        "struct",        "switch",    "template",
                                "thread_local", "throw",         "typedef",       "typename",  "union",
                                "using",        "virtual",       "volatile",      "while",     "_Atomic",
                                "_Noreturn",    "_Thread_local", "__attribute__", "__inline",  "__extension__",
                                "module",       "import"});
constexpr auto C_TAGS = std::to_array<string_view>({"class", "struct", "union"});

// Finds loose macros among the tokens of a text.
class CLooseMacros {
  public:
    CLooseMacros(string_view text, const CTokens& scanned)
        : text_(text), tokens_(scanned.tokens), directives_(scanned.directives) {}

    struct Part {
        std::size_t begin = 0;
        std::size_t end = 0;
        LooseMacro macro;  // without a name: a bracket or a label
    };

    // Ascending.
    std::vector<Part> find() {
        std::size_t end_of_body = 0;
        for (std::size_t at = 0; at < tokens_.size(); ++at) {
            const string_view word = spelling(at);
            const bool is_macro = tokens_[at].is_word && is_capital(word);
            const bool is_behind_number = is_macro && is_number(before(at));  // `64 KB`
            if (is_behind_number || (at >= end_of_body && word != "{" && !is_macro && is_before_two_words(at))) {
                add(at, at, false);
            } else if (at < end_of_body) {
                consider_label(at);
            } else if (word == "{") {
                end_of_body = begins_a_body(at) ? closing(at, "{", "}") + 1 : 0;
            } else if (is_macro) {
                consider(at);
            } else if (word == "*" && is_before_old_function(at)) {
                parts_.push_back({tokens_[at].begin, tokens_[at].end, {}});
            }
        }
        std::ranges::sort(parts_, {}, &Part::begin);
        return std::move(parts_);
    }

  private:
    [[nodiscard]] string_view spelling(std::size_t at) const {
        return at < tokens_.size() ? text_.substr(tokens_[at].begin, tokens_[at].end - tokens_[at].begin)
                                   : string_view();
    }
    [[nodiscard]] bool is_word(std::size_t at) const { return at < tokens_.size() && tokens_[at].is_word; }

    [[nodiscard]] bool is_name(std::size_t at) const {
        return is_word(at) && !is_one_of(C_KEYWORDS_OF_TYPES, spelling(at));
    }
    [[nodiscard]] bool is_plain_name(std::size_t at) const { return is_name(at) && !is_capital(spelling(at)); }

    // The one before that is not blanked; empty at the beginning.
    [[nodiscard]] string_view before(std::size_t at) const { return at == 0 ? string_view() : spelling(at - 1); }

    static bool is_capital(string_view word) {
        return word.size() >= 2 && std::ranges::none_of(word, [](char c) { return c >= 'a' && c <= 'z'; }) &&
               std::ranges::any_of(word, [](char c) { return c >= 'A' && c <= 'Z'; });
    }

    static bool is_number(string_view word) { return !word.empty() && std::ranges::all_of(word, is_c_digit); }

    static bool is_one_of(const auto& words, string_view word) { return std::ranges::find(words, word) != words.end(); }

    // Of a function, or of an initializer: what is not of a namespace, class or enum.
    [[nodiscard]] bool begins_a_body(std::size_t at) const {
        const string_view last = before(at);
        return last == ")" || last == ";" || last == "=" || last == "const" || last == "override" || last == "noexcept";
    }

    // The index of the bracket that closes the one at `at`, or the last token.
    [[nodiscard]] std::size_t closing(std::size_t at, string_view open, string_view close) const {
        std::size_t depth = 0;
        for (; at < tokens_.size(); ++at) {
            const string_view mark = spelling(at);
            depth += mark == open ? 1 : 0;
            if (mark == close && --depth == 0) {
                return at;
            }
        }
        return tokens_.size() - 1;
    }

    void consider(std::size_t at) {
        constexpr std::size_t LONGEST = 200;  // tokens of the arguments
        const bool is_called = spelling(at + 1) == "(";
        const std::size_t last = is_called ? closing(at + 1, "(", ")") : at;
        if (last - at > LONGEST) {
            return;
        }
        const std::size_t next = last + 1;
        if (is_called && spelling(at + 2) == "(" && at > 0 && (is_word(at - 1) || before(at) == ")") &&
            spelling(last - 1) == ")") {
            add(at, at + 1, false);  // `f ARGS((int))`
            parts_.push_back({tokens_[last].begin, tokens_[last].end, {}});
        } else if (is_before_declaration(at, next) || is_calling_convention(at, is_called) ||
                   (!is_called && is_between_type_and_name(at)) || is_in_class_head(at, next) ||
                   is_behind_function(at, next) || (is_called && is_behind_field(at, next)) || is_alone(at, next)) {
            add(at, last, is_called);
        }
    }

    // `char *f(a) T a; {`: the grammars take what gives a pointer for a variable, unless it is `char f(a)`.
    [[nodiscard]] bool is_before_old_function(std::size_t at) const {
        constexpr std::size_t LONGEST = 200;   // tokens of the parameters
        constexpr std::size_t MOST_MARKS = 8;  // between a "*" and a name
        const auto is_mark = [&](string_view word) { return word == "*" || word == "const" || is_capital(word); };
        for (std::size_t marks = 0; marks < MOST_MARKS && is_mark(spelling(at)); ++marks) {
            ++at;
        }
        if (!is_word(at) || spelling(at + 1) != "(") {
            return false;
        }
        for (at += 2; is_word(at) && spelling(at + 1) == ","; at += 2) {
        }
        const std::size_t first = at + 2;
        if (!is_word(at) || spelling(at + 1) != ")" || !is_word(first)) {
            return false;
        }
        for (at = first; at < std::min(first + LONGEST, tokens_.size()); ++at) {
            if (spelling(at) == "{" || spelling(at) == "}" || spelling(at) == "=") {
                return spelling(at) == "{" && before(at) == ";";
            }
        }
        return false;
    }

    // One of a statement behind a directive: `label:`, `#endif`.
    void consider_label(std::size_t at) {
        const bool is_label = tokens_[at].is_word && tokens_[at].is_first && spelling(at) != "default" &&
                              spelling(at + 1) == ":" && at + 2 < tokens_.size() && tokens_[at + 2].is_first;
        if (is_label && std::ranges::binary_search(directives_, at + 2, {}, &CDirective::tokens_before)) {
            parts_.push_back({tokens_[at].begin, tokens_[at + 1].end, {}});
        }
    }

    void add(std::size_t at, std::size_t last, bool is_called) {
        parts_.push_back({tokens_[at].begin, tokens_[last].end, {spelling(at), tokens_[at].line, is_called}});
    }

    // `local int f()`: no declaration has three words that are no keywords, but for a macro behind its name.
    [[nodiscard]] bool is_before_two_words(std::size_t at) const {
        if (!is_word(at) || !is_word(at + 1) || !is_word(at + 2)) {
            return false;
        }
        const bool has_builtin_type = is_one_of(C_BUILTIN_TYPES, spelling(at + 1));
        const bool has_const_type = spelling(at + 1) == "const" && is_plain_name(at + 2) && is_word(at + 3);
        return begins_declaration(at) && is_name(at) && !is_one_of(C_BUILTIN_TYPES, spelling(at)) &&
               ((is_plain_name(at + 1) && is_plain_name(at + 2)) || has_builtin_type || has_const_type);
    }

    [[nodiscard]] bool begins_declaration(std::size_t at) const {
        const string_view last = before(at);
        const bool is_behind_label = last == ":" && before(at - 1) != ":";
        return last.empty() || last == ";" || last == "}" || last == "{" || is_behind_label || last == ">" ||
               last == "\"C\"" || is_one_of(C_MODIFIERS, last);
    }

    // `API int f();`, `API const char* f();`, `API CALL int f();`
    [[nodiscard]] bool is_before_declaration(std::size_t at, std::size_t next) const {
        const bool has_further_macro = is_word(next) && is_capital(spelling(next)) && is_word(next + 1);
        next += has_further_macro && !is_capital(spelling(next + 1)) ? 1 : 0;
        const bool is_const = spelling(next) == "const" || spelling(next) == "volatile";
        const bool has_type = is_word(next) && !is_capital(spelling(next)) && spelling(next) != "operator";
        const bool has_name =
            is_word(next + 1) || (!is_const && (spelling(next + 1) == "*" || spelling(next + 1) == "&"));
        return (begins_declaration(at) || ends_macro(at)) && has_type && has_name;
    }

    // `int CALL f(`, `int (CALL *f)(`
    [[nodiscard]] bool is_calling_convention(std::size_t at, bool is_called) const {
        const string_view last = before(at);
        const bool is_behind_type =
            (at > 0 && is_word(at - 1) && !is_one_of(C_MODIFIERS, last) && !is_one_of(C_TAGS, last) && last != "enum" &&
             last != "new" && last != "return" && last != "operator") ||
            last == "*" || last == "&";
        const bool is_before_arguments =
            is_capital(spelling(at + 2)) && spelling(at + 3) == "(" && spelling(at + 4) == "(";
        const bool is_before_name = is_word(at + 1) && (spelling(at + 2) == "(" || is_before_arguments);
        const bool has_parameters = spelling(at + 4) == "(" || spelling(at + 6) == "(";  // or behind ARGS
        const bool is_of_pointer = last == "(" && spelling(at + 1) == "*" && spelling(at + 3) == ")" && has_parameters;
        return !is_called && ((is_behind_type && is_before_name) || is_of_pointer);
    }

    // `Type FAR name[1];`
    [[nodiscard]] bool is_between_type_and_name(std::size_t at) const {
        constexpr string_view ENDS = "[;=,";
        const string_view follows = spelling(at + 2);
        return at > 0 && is_plain_name(at - 1) && is_plain_name(at + 1) && follows.size() == 1 &&
               ENDS.find(follows) != string_view::npos;
    }

    // `class EXPORT C {`
    [[nodiscard]] bool is_in_class_head(std::size_t at, std::size_t next) const {
        const string_view follows = spelling(next + 1);
        return is_one_of(C_TAGS, before(at)) && is_word(next) &&
               (follows == "{" || follows == ":" || follows == "final");
    }

    // `f() ATTRIBUTE;`
    [[nodiscard]] bool is_behind_function(std::size_t at, std::size_t next) const {
        const string_view last = before(at);
        const string_view follows = spelling(next);
        return (last == ")" || last == "const" || last == "override" || last == "noexcept") &&
               (follows == ";" || follows == "{");
    }

    // `Type name ATTRIBUTE(value);`
    [[nodiscard]] bool is_behind_field(std::size_t at, std::size_t next) const {
        const bool is_behind_name = at > 1 && is_plain_name(at - 1) && !is_one_of(C_BUILTIN_TYPES, before(at));
        const string_view type = at > 1 ? before(at - 1) : string_view();
        const string_view follows = spelling(next);
        return is_behind_name && (type == "*" || type == "&" || type == ">" || is_plain_name(at - 2)) &&
               (follows == ";" || follows == "=" || follows == "{");
    }

    // A line of its own between declarations.
    [[nodiscard]] bool is_alone(std::size_t at, std::size_t next) const {
        const string_view last = before(at);
        const bool is_behind_end = last.empty() || last == ";" || last == "}" || last == "{" || ends_macro(at);
        const bool ends_line = next >= tokens_.size() || tokens_[next].is_first;
        const bool is_before_begin = next >= tokens_.size() || is_word(next) || spelling(next) == "}";
        return tokens_[at].is_first && is_behind_end && ends_line && is_before_begin;
    }

    // Whether what stands before is such a macro.
    [[nodiscard]] bool ends_macro(std::size_t at) const {
        return at > 0 && !parts_.empty() && parts_.back().end == tokens_[at - 1].end;
    }

    string_view text_;
    std::span<const CToken> tokens_;
    std::span<const CDirective> directives_;
    std::vector<Part> parts_;
};

void blank(std::string& text, std::size_t begin, std::size_t end) {
    for (std::size_t at = begin; at < end; ++at) {
        text[at] = text[at] == '\n' ? '\n' : ' ';
    }
}

std::string without_loose_macros(string_view text, const CTokens& scanned) {
    std::string mended(text);
    for (const CLooseMacros::Part& part : CLooseMacros(text, scanned).find()) {
        blank(mended, part.begin, part.end);
    }
    return mended;
}

}  // namespace

std::string without_loose_macros(string_view text) {
    return without_loose_macros(text, scan_c(text));
}

std::string mended_c(string_view text) {
    const CTokens scanned = scan_c(text);
    std::string mended = without_loose_macros(text, scanned);
    for (const CSplit& part : split_parts(text, scanned, compiled_c(text, scanned).regions)) {
        blank(mended, part.begin, part.end);
    }
    return mended;
}

std::vector<LooseMacro> loose_macros(string_view text, const CTokens& scanned) {
    std::vector<LooseMacro> macros;
    for (const CLooseMacros::Part& part : CLooseMacros(text, scanned).find()) {
        if (!part.macro.name.empty()) {
            macros.push_back(part.macro);
        }
    }
    return macros;
}

}  // namespace host::sources
