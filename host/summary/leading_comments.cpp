#include "host/summary/leading_comments.h"

#include "host/text/ascii.h"
#include "host/text/blanks.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace host {

namespace {

// No comment has longer lines. Minified code has, and only their beginnings are read.
constexpr std::size_t LINE_BYTES = 4096;

// A mark comes before every mark that is a prefix of it.
constexpr std::array STYLES{
    CommentStyle{"/*", "*/", "*!"}, CommentStyle{"<!--", "-->", "-"},     CommentStyle{"--[[", "]]", ""},
    CommentStyle{"{-", "-}", ""},   CommentStyle{R"(""")", R"(""")", ""}, CommentStyle{"'''", "'''", ""},
    CommentStyle{"///", "", "/"},   CommentStyle{"//!", "", ""},          CommentStyle{"//", "", ""},
    CommentStyle{"--", "", "-"},    CommentStyle{";", "", ";"},           CommentStyle{"#", "", "#"},
};

// Code that begins like a comment.
constexpr std::array<std::string_view, 7> NO_COMMENTS{"#!", "#[", "{-#", ";(", ";[", ";!", ";+"};

constexpr std::array<std::string_view, 15> PREPROCESSOR_WORDS{"define",       "elif",   "else",   "endif",  "error",
                                                              "if",           "ifdef",  "ifndef", "import", "include",
                                                              "include_next", "pragma", "region", "undef",  "using"};

// Code that may precede the comment about the file.
constexpr auto FORMALITIES =
    std::to_array<std::string_view>({// for tools that read the file
                                     "#!", "<?php", "<?xml", "<!DOCTYPE", "{-#",
                                     // modes of the language
                                     "\"use ", "'use ", "declare(strict_types", "from __future__ ",
                                     // the package or namespace
                                     "package ", "namespace "});

struct Directive {
    std::string_view word;
    std::string_view argument;
};

std::optional<Directive> preprocessor_directive(std::string_view text) {
    if (!text.starts_with('#')) {
        return std::nullopt;
    }
    const std::string_view indented = text.substr(1);
    const std::string_view directive = trimmed(indented);
    const std::size_t word_end = directive.find_first_not_of("abcdefghijklmnopqrstuvwxyz_");
    const std::string_view word = directive.substr(0, word_end);
    if (std::ranges::find(PREPROCESSOR_WORDS, word) == PREPROCESSOR_WORDS.end()) {
        return std::nullopt;
    }
    const std::string_view argument = trimmed(directive.substr(word.size()));
    // "# define FOO" is a directive, "# define the constants" a comment of another language.
    const bool names_something = argument.find_first_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ_<\"") == 0 || argument == "once";
    if (!indented.starts_with(word) && !names_something) {
        return std::nullopt;
    }
    return Directive{word, argument};
}

bool is_include_guard(const Directive& directive) {
    const auto& [word, argument] = directive;
    if (word == "define") {
        const std::string_view name = argument.substr(0, argument.find_first_of(BLANKS));
        const std::string_view value = trimmed(argument.substr(name.size()));
        return value.empty() || value == "1";
    }
    return word == "pragma" || word == "ifndef" || (word == "if" && argument.starts_with("!defined"));
}

bool is_formality(std::string_view code) {
    const std::optional<Directive> directive = preprocessor_directive(code);
    return directive ? is_include_guard(*directive) : starts_with_any(code, FORMALITIES);
}

// "#menu {" and "#menu," begin a style sheet, not a comment.
bool is_selector(std::string_view text) {
    return text.size() > 1 && text.front() == '#' && BLANKS.find(text[1]) == std::string_view::npos &&
           (text.ends_with(',') || text.find('{') != std::string_view::npos);
}

const CommentStyle* style_of(std::string_view text) {
    if (starts_with_any(text, NO_COMMENTS) || preprocessor_directive(text) || is_selector(text)) {
        return nullptr;
    }
    const auto* const style = std::ranges::find_if(
        STYLES, [text](const CommentStyle& candidate) { return text.starts_with(candidate.open); });
    return style == STYLES.end() ? nullptr : style;
}

// Removes the prefix of a docstring literal: r"""...""".
std::string_view without_literal_prefix(std::string_view text) {
    const std::size_t quote = text.find_first_not_of("rRuUbB");
    const bool is_docstring =
        quote <= 2 && (text.substr(quote).starts_with(R"(""")") || text.substr(quote).starts_with("'''"));
    return is_docstring ? text.substr(quote) : text;
}

std::string_view beginning_of(std::string_view line) {
    if (line.size() <= LINE_BYTES) {
        return line;
    }
    std::size_t end = LINE_BYTES;
    while (end > 0 && continues_code_point(line[end])) {
        --end;
    }
    return line.substr(0, end);
}

}  // namespace

LeadingComments::LeadingComments(NextLine next_line_of_file) : next_line_of_file_(std::move(next_line_of_file)) {}

bool LeadingComments::next_block() {
    while (rest_.empty() || is_formality(rest_)) {
        if (!go_to_next_line()) {
            return false;
        }
    }
    rest_ = without_literal_prefix(rest_);
    open(style_of(rest_));
    delimited_ = style_ != nullptr && !style_->close.empty();
    return style_ != nullptr;
}

std::optional<std::string_view> LeadingComments::next_line() {
    if (style_ == nullptr) {
        return std::nullopt;
    }
    const CommentStyle& style = *style_;
    std::string_view text = rest_;
    if (!delimited_) {
        open(go_to_next_line() && style_of(rest_) == style_ ? style_ : nullptr);
    } else if (const std::size_t end = rest_.find(style.close); end != std::string_view::npos) {
        text = rest_.substr(0, end);
        rest_ = trimmed(rest_.substr(end + style.close.size()));
        style_ = nullptr;
    } else if (!go_to_next_line()) {
        style_ = nullptr;
    }
    text = trimmed(text);
    text.remove_prefix(std::min(text.find_first_not_of(style.decoration), text.size()));
    return trimmed(text);
}

bool LeadingComments::go_to_next_line() {
    const std::optional<std::string_view> line = next_line_of_file_();
    rest_ = line ? trimmed(beginning_of(*line)) : std::string_view();
    return line.has_value();
}

void LeadingComments::open(const CommentStyle* style) {
    style_ = style;
    if (style_ != nullptr) {
        rest_.remove_prefix(style_->open.size());
    }
}

}  // namespace host
