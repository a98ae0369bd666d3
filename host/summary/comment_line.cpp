#include "host/summary/comment_line.h"

#include "host/text/ascii.h"
#include "host/text/blanks.h"
#include "host/text/block_tags.h"
#include "host/text/markdown_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace host {

namespace {

using std::string_view;

// How a directive to a tool begins, in the tool's spelling.
constexpr auto DIRECTIVES = std::to_array<string_view>(
    {// JavaScript, TypeScript
     "eslint ", "eslint-", "tslint:", "prettier-", "oxlint-", "biome-ignore", "deno-lint-ignore", "deno-fmt-ignore",
     "dprint-ignore", "jshint ", "jslint ", "jscs:", "stylelint-", "global ", "globals ", "istanbul ", "c8 ignore",
     "v8 ignore", "node:coverage ", "use strict", "<reference ", "sourceMappingURL=",
     // editors, encodings, spelling
     "vim:", "coding:", "coding=", "encoding:", "cspell:", "cSpell:", "spell-checker:", "codespell:",
     // Python
     "noqa", "pylint:", "flake8:", "ruff:", "mypy:", "type:", "pyright:", "pyre-strict",
     "pytype:", "fmt:", "isort:", "yapf:", "pragma: no cover", "nosec", "nosemgrep",
     // C++, Go, Rust
     "clang-format ", "NOLINT", "IWYU pragma", "go:", "+build ", "nolint", "lint:", "rustfmt-",
     // Java, Kotlin, Swift, Ruby, PHP
     "noinspection ", "CHECKSTYLE", "checkstyle:", "ktlint-", "NOSONAR",
     "swiftlint:", "rubocop:", "frozen_string_literal:", "phpcs:"});

// Facts about the file that do not say what it is for. Lower case, like all lists below.
constexpr auto FIELDS =
    std::to_array<string_view>({"author:", "authors:", "author(s):", "created:", "created by ", "written by ",
                                "contact:", "date:", "version:", "@(#)", "$", "file:", "spdx-"});

// How the first line of a licence begins, even directly below a description.
constexpr std::array<string_view, 9> NOTICES{
    "copyright",       "begin license",        "(c) ", "©", "licensed ", "license:", "license ",
    "released under ", "this file is part of "};

constexpr auto LICENCE_PHRASES = std::to_array<string_view>(
    {// the owner
     "copyright (c)", "copyright 19", "copyright 20", "(c) 19", "(c) 20", "all rights reserved", "disclaims copyright",
     "trademarks",
     // the name
     "mit license", "apache license", "bsd license", "public license", "public domain", "free software", "/license",
     // the terms
     "licensed under", "distributed under", "under the terms of", "permission is hereby", "permission to use",
     "redistribution and use", "warranty"});

constexpr std::array<string_view, 12> LICENCE_HINTS{"licen",   "warrant",   "redistribut", "permission",
                                                    "liab",    "software",  "copyright",   "gnu",
                                                    "endorse", "permitted", "notice",      "contributor"};

// Notes about work that is still to be done.
constexpr std::array<string_view, 4> NOTES{"TODO", "FIXME", "XXX", "HACK"};

struct Tag {
    string_view name;
    string_view argument;
};

bool contains_any(string_view text, const auto& parts) {
    return std::ranges::any_of(parts, [text](string_view part) { return text.find(part) != string_view::npos; });
}

// Dashes, signs and box drawings (U+2000 to U+2FFF, which begin with the byte E2) are not words.
bool has_words(string_view text) {
    return std::ranges::any_of(text, [](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return is_letter(character) || ('0' <= character && character <= '9') || (byte >= 0xC0 && byte != 0xE2);
    });
}

// "===- foo.h - Foos --*- C++ -*-===" -> "===- foo.h - Foos -"
string_view without_modeline(string_view text) {
    constexpr string_view MARK = "-*-";
    const std::size_t start = text.find(MARK);
    const std::size_t end = start == string_view::npos ? string_view::npos : text.find(MARK, start + MARK.size());
    return end == string_view::npos ? text : text.substr(0, start);
}

// "===- foo.h - Foos -" -> "foo.h - Foos", "foo     *" -> "foo"
string_view without_frame(string_view text) {
    constexpr string_view FRAME = "=*-#~/|!";
    constexpr std::size_t RULE = 3;
    const std::size_t start = text.find_first_not_of(FRAME);
    if (start != string_view::npos && (start >= RULE || text.starts_with("| "))) {
        text.remove_prefix(start);
    }
    const string_view framed = text.substr(0, text.find_last_not_of(FRAME) + 1);
    const bool stands_apart = trimmed(framed).size() < framed.size();
    return trimmed(stands_apart || text.size() - framed.size() >= RULE ? framed : text);
}

// "@brief Foos" and "\brief Foos" -> {"brief", "Foos"}; ":Date: today" -> {"Date", "today"}
std::optional<Tag> tag_of(string_view text) {
    if (text.empty() || string_view("@\\:").find(text.front()) == string_view::npos) {
        return std::nullopt;
    }
    const auto* const name_end = std::find_if_not(text.begin() + 1, text.end(), [](char character) {
        return is_letter(character) || character == '-' || character == '_';
    });
    const string_view name(text.begin() + 1, name_end);
    string_view rest(name_end, text.end());
    const bool has_colon = rest.starts_with(':');
    if (has_colon) {
        rest.remove_prefix(1);
    }
    const bool ends =
        rest.empty() || (BLANKS.find(rest.front()) != string_view::npos) || rest.front() == '{' || rest.front() == '[';
    if (name.empty() || !ends || (text.front() == ':' && !has_colon)) {
        return std::nullopt;
    }
    return Tag{name, trimmed(rest)};
}

bool is_note(string_view text) {
    return std::ranges::any_of(NOTES, [text](string_view note) {
        return text.starts_with(note) && (text.size() == note.size() || !is_letter(text[note.size()]));
    });
}

// "a.b", "a[0]", "$x"
bool is_expression(string_view word) {
    return !word.empty() && std::ranges::all_of(word, [](char character) {
        return is_letter(character) || string_view("0123456789_$.[]\"'").find(character) != string_view::npos;
    });
}

// Whether a line is code that is commented out: a statement of some language that imports, declares, assigns or calls,
// or a line that begins or ends as only code does.
bool is_code(string_view text) {
    constexpr std::array<string_view, 3> DECLARING{"const ", "let ", "var "};
    constexpr std::array<string_view, 6> ASSIGNING{"=", ":=", "+=", "-=", "|=", "&="};
    const string_view first = text.substr(0, text.find_first_of(BLANKS));
    const string_view rest = trimmed(text.substr(first.size()));
    const string_view second = rest.substr(0, rest.find_first_of(BLANKS));
    const string_view third = trimmed(rest.substr(second.size()));
    const bool ends_in_quote = text.ends_with('"') || text.ends_with('\'');
    const bool imports =
        (first == "import" && (third.empty() || (ends_in_quote && text.find(" from ") != string_view::npos))) ||
        (first == "export" && ends_in_quote) || (first == "from" && third.starts_with("import "));
    const bool is_value =
        third.find_first_of(BLANKS) == string_view::npos || third.find_first_of("()[]{}+*/\"'") != string_view::npos;
    const bool assigns =
        is_expression(first) && std::ranges::find(ASSIGNING, second) != ASSIGNING.end() && !third.empty() && is_value;
    const std::size_t open = text.find('(');
    const bool calls = open != string_view::npos && text.ends_with(')') && is_expression(text.substr(0, open));
    const bool ends = text.ends_with(';') && text.find_first_of("=()[]{}\"'") != string_view::npos;
    const bool opens = text.ends_with('{') || text == "}" || (text.starts_with("def ") && text.ends_with(':'));
    const bool declares = starts_with_any(text, DECLARING) && text.find(" = ") != string_view::npos;
    return imports || declares || assigns || calls || ends || opens;
}

CommentLine read_tag(const Tag& tag) {
    if (tag.argument.empty()) {
        return {Role::BREAK, {}};
    }
    return {describes_file(tag.name) ? Role::INTRODUCTION : Role::ASIDE, tag.argument};
}

}  // namespace

CommentLine read_comment_line(string_view line, bool delimited) {
    const string_view text = without_frame(without_modeline(line));
    if (!has_words(text)) {
        return {Role::BREAK, {}};
    }
    if (const std::optional<Tag> tag = tag_of(text)) {
        return read_tag(*tag);
    }
    if (starts_with_any(text, DIRECTIVES) || text == "prettier") {
        return delimited ? CommentLine{Role::ASIDE, text} : CommentLine{Role::BREAK, {}};
    }
    // A directive of reStructuredText, a comment on the next variable, a note, code.
    if (text.starts_with(".. ") || text.starts_with(": ") || is_note(text) || is_code(text)) {
        return {Role::ASIDE, text};
    }
    if (is_heading(text)) {
        return {Role::BREAK, {}};
    }
    const std::string folded = lowered(text);
    if (starts_with_any(folded, FIELDS)) {
        return {Role::BREAK, {}};
    }
    return {starts_with_any(folded, NOTICES) ? Role::NOTICE : Role::PROSE, text};
}

bool speaks_of_licence(string_view paragraph, bool in_licence) {
    const std::string folded = lowered(paragraph);
    const bool goes_on = folded == "or" || folded.starts_with("or ");  // between two licences to choose from
    return contains_any(folded, LICENCE_PHRASES) || (in_licence && (goes_on || contains_any(folded, LICENCE_HINTS)));
}

bool is_only_a_name(string_view text) {
    const bool is_one_word = text.find_first_of(BLANKS) == string_view::npos;
    const std::size_t sign = text.find_first_of("./<");
    return is_one_word && sign != string_view::npos && sign + 1 < text.size();
}

bool is_banner(string_view paragraph) {
    return std::ranges::all_of(paragraph, [](char character) {
        const bool is_ascii = static_cast<unsigned char>(character) < 0x80;
        return is_ascii && character != '.' && BLANKS.find(character) == string_view::npos;
    });
}

}  // namespace host
