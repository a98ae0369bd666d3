#include "embedded/comment_line.h"

#include "embedded/ascii.h"
#include "embedded/blanks.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace embedded {

namespace {

using std::string_view;

// Addressed to a tool, in its own spelling.
constexpr auto DIRECTIVES = std::to_array<string_view>(
    {// JavaScript, TypeScript, style sheets
     "eslint ", "eslint-", "jshint ", "jshint:", "jslint ", "jscs:", "tslint:", "prettier-", "stylelint-", "global ",
     "globals ", "exported ", "istanbul ", "c8 ", "v8 ignore", "biome-", "deno-", "oxlint-", "use strict",
     "<reference ", "<amd-",
     // editors and encodings
     "vim:", "vi:", "ex:", "coding:", "coding=", "encoding:", "encoding=",
     // Python, Ruby, shell
     "noqa", "pylint:", "flake8:", "mypy:", "ruff:", "isort:", "yapf:", "fmt:", "type:", "pyright:", "pragma:",
     "cython:", "distutils:", "frozen_string_literal:", "rubocop:", "shellcheck ",
     // C++, Go
     "clang-format ", "NOLINT", "IWYU pragma", "go:", "+build "});

// Known of the file, but not what it is for. Lower case, like all lists below.
constexpr auto FIELDS = std::to_array<string_view>(
    {// who
     "author:", "authors:", "author(s):", "maintainer:", "maintainers:", "email:", "contact:", "created by ",
     "written by ", "contributed by ",
     // when
     "date:", "created:", "created on ", "last modified", "version:", "id:", "@(#)", "$",
     // which file
     "file:", "filename:", "keywords:", "spdx-"});

// Tags whose argument says what the file is for.
constexpr std::array<string_view, 8> DESCRIBING_TAGS{"file",    "fileoverview", "overview", "brief",
                                                     "summary", "description",  "desc",     "details"};

// How the first line of a licence begins, even right below a description.
constexpr auto NOTICES = std::to_array<string_view>({// whose
                                                     "copyright", "portions copyright", "<copyright", "(c) ", "©",
                                                     // on which terms
                                                     "licensed ", "license:", "licence:", "license ", "begin license",
                                                     "released under ", "distributed under ", "this file is part of "});

constexpr auto LICENCE_PHRASES = std::to_array<string_view>(
    {// whose
     "copyright: ", "copyright (c)", "copyright ©", "copyright 19", "copyright 20", "(c) 19", "(c) 20",
     "all rights reserved",
     // which
     "mit license", "apache license", "bsd license", "bsd-style", "public license", "public domain", "free software",
     // on which terms
     "licensed under", "under the terms of", "license agreement", "license information", "permission is hereby",
     "permission to use", "redistribution and use", "warranty"});

constexpr std::array<string_view, 13> LICENCE_HINTS{
    "licen",    "warrant",   "redistribut", "permission",  "original code", "permitted", "liab",
    "software", "copyright", "gnu",         "contributor", "endorse",       "notice"};

struct Tag {
    string_view name;
    string_view argument;
};

bool contains_any(string_view text, const auto& parts) {
    return std::ranges::any_of(parts, [text](string_view part) { return text.find(part) != string_view::npos; });
}

bool is_letter(char character) {
    return 'a' <= lower(character) && lower(character) <= 'z';
}

// Dashes, signs and box drawings (U+2000 to U+2FFF, which begin with the byte E2) are no words.
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

CommentLine read_tag(const Tag& tag) {
    if (tag.argument.empty()) {
        return {Role::BREAK, {}};
    }
    const std::string name = lowered(tag.name);
    const bool describes = std::ranges::find(DESCRIBING_TAGS, name) != DESCRIBING_TAGS.end();
    return {describes ? Role::INTRODUCTION : Role::ASIDE, tag.argument};
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
    if (text.starts_with(".. ")) {  // a directive of reStructuredText
        return {Role::ASIDE, text};
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

}  // namespace embedded
