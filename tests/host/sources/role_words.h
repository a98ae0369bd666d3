// Texts whose words say what a reader must find in them: `type_a` is a mention in the role of a type, on its line,
// once.
//
//     value_ call_ type_ import_ key_   exactly one mention in that role, on that line, with a token there
//     own_                              a declaration, of the outline and of the Syntax; never a mention
//     local_ none_                      neither: a local, a word in a string or a comment
//
// Capitals count as small letters. Other words, such as those of libraries, are not looked at.
#pragma once

#include "tests/host/sources/outlined.h"
#include "tests/host/syntax/syntax_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host::sources {

inline bool is_letter_of_word(char letter) {
    return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '_';
}

/// Returns the part before the first "_", in small letters, if it is one of those above; else nothing.
inline std::string role_of_word(std::string_view word) {
    constexpr std::array<std::string_view, 8> ROLES{"value", "call", "type", "import", "key", "own", "local", "none"};
    std::string role(word.substr(0, word.find('_')));
    std::ranges::transform(role, role.begin(), [](unsigned char letter) { return std::tolower(letter); });
    const bool is_role = role.size() < word.size() && std::ranges::find(ROLES, role) != ROLES.end();
    return is_role ? role : std::string();
}

struct Word {
    std::string text;
    std::uint32_t offset = 0;
    std::uint32_t line = 1;
};

/// Returns all words of a text.
inline std::vector<Word> words_of(const std::string& text) {
    std::vector<Word> words;
    std::uint32_t line = 1;
    for (std::size_t at = 0; at < text.size(); ++at) {
        line += text[at] == '\n' ? 1 : 0;
        if (is_letter_of_word(text[at])) {
            const std::size_t begin = at;
            for (; at + 1 < text.size() && is_letter_of_word(text[at + 1]); ++at) {
            }
            words.push_back({text.substr(begin, at + 1 - begin), static_cast<std::uint32_t>(begin),
                             static_cast<std::uint32_t>(line)});
        }
    }
    return words;
}

/// Returns a name as it is written: without the marks by which a language tells names of one spelling apart, and
/// without what stands before the last dot.
inline std::string word_of_name(std::string_view name) {
    std::size_t end = name.size();
    while (end > 0 && !is_letter_of_word(name[end - 1])) {
        --end;
    }
    std::size_t begin = end;
    while (begin > 0 && is_letter_of_word(name[begin - 1])) {
        --begin;
    }
    return std::string(name.substr(begin, end - begin));
}

/// Returns the word that is mentioned as an expression.
inline std::string mentioned_word(const syntax::Syntax& syntax, syntax::ExpressionId id) {
    const syntax::Expression& expression = syntax.expressions[id];
    switch (expression.operation) {
    case syntax::Operation::CALL:
        return mentioned_word(syntax, expression.a);
    case syntax::Operation::DECLARATION:
        return word_of_name(syntax.name(syntax.declarations[expression.a].name));
    case syntax::Operation::IMPORT: {
        const syntax::Import& import = syntax.imports[expression.a];
        return word_of_name(syntax.name(import.original == 0 ? import.module : import.original));
    }
    default:
        return word_of_name(syntax.name(expression.name));
    }
}

/// Expects what the words of a text say, and nothing else.
inline void expect_roles(const std::string& path, const std::string& text) {
    constexpr std::array<std::string_view, 5> ROLES{"value", "call", "type", "import", "key"};
    constexpr std::size_t LONGEST_BEFORE_WORD = 15;  // bytes
    const Outline outline = names_in(path, text);
    EXPECT_FALSE(outline.is_damaged) << text;
    const syntax::Syntax& syntax = outline.syntax.value();

    std::multiset<std::string> found;
    auto place = syntax.places.begin();
    for (const syntax::Mention& mention : syntax.mentions) {
        const std::span<const syntax::TokenPlace> places(place, place + mention.count);
        place += mention.count;
        const syntax::Expression& expression = syntax.expressions[mention.expression];
        if (expression.operation == syntax::Operation::DECLARATION && syntax.declarations[expression.a].is_hidden) {
            continue;  // a local class or function
        }
        const std::string word = mentioned_word(syntax, mention.expression);
        for (const auto& [offset, line] : role_of_word(word).empty() ? std::span<const syntax::TokenPlace>() : places) {
            // A token may begin before its word: "none_a.import_b", "#value_a", `none_a from "./import_b"`.
            const std::size_t at = text.substr(0, offset + word.size() + LONGEST_BEFORE_WORD).find(word, offset);
            found.insert(word + " " + std::to_string(mention.line) + " at " + std::to_string(at) + " " +
                         std::string(ROLES.at(static_cast<std::size_t>(mention.role))));
        }
    }
    EXPECT_EQ(place, syntax.places.end());
    std::set<std::string> declared;  // a component of a record twice: as a field, and as the method that reads it
    for (const syntax::Declaration& declaration : syntax.declarations) {
        const std::string word = word_of_name(syntax.name(declaration.name));
        if (!role_of_word(word).empty() && !declaration.is_hidden) {
            declared.insert(word + " declared at " + std::to_string(declaration.offset));
        }
    }
    found.insert(declared.begin(), declared.end());
    for (const SourceDeclaration& declaration : outline.declarations) {
        if (role_of_word(declaration.name) == "own") {
            found.insert(declaration.name + " outlined at " + std::to_string(declaration.offset));
        }
    }

    std::multiset<std::string> expected;
    for (const Word& word : words_of(text)) {
        const std::string role = role_of_word(word.text);
        if (role == "own") {
            expected.insert(word.text + " declared at " + std::to_string(word.offset));
            expected.insert(word.text + " outlined at " + std::to_string(word.offset));
        } else if (!role.empty() && role != "local" && role != "none") {
            expected.insert(word.text + " " + std::to_string(word.line) + " at " + std::to_string(word.offset) + " " +
                            role);
        }
    }

    std::string difference;
    const auto note = [&](const std::multiset<std::string>& all, const std::multiset<std::string>& but, char mark) {
        std::multiset<std::string> rest;
        std::ranges::set_difference(all, but, std::inserter(rest, rest.end()));
        for (const std::string& each : rest) {
            difference.append(1, mark).append(each).append("\n");
        }
    };
    note(expected, found, '-');
    note(found, expected, '+');
    EXPECT_EQ(difference, "") << text;
}

/// Returns the value whose member `probe` is mentioned in a text, as text; of several mentions, of the first.
inline std::string probed_value(const std::string& path, const std::string& text) {
    const syntax::Syntax syntax = names_in(path, text).syntax.value();
    for (const syntax::Mention& mention : syntax.mentions) {
        syntax::Expression expression = syntax.expressions[mention.expression];
        if (expression.operation == syntax::Operation::CALL) {
            expression = syntax.expressions[expression.a];
        }
        if (expression.operation == syntax::Operation::MEMBER &&
            word_of_name(syntax.name(expression.name)) == "probe") {
            return text_of(syntax, expression.a);
        }
    }
    return "no probe";
}

/// Expects of every beginning of a text, however damaged that is, that each mention stands on the line that it says,
/// and each declaration where it says.
inline void expect_true_places_in_damage(const std::string& path, const std::string& text) {
    constexpr std::size_t STEP = 41;  // bytes; ends in the midst of most constructs
    for (std::size_t end = STEP; end < text.size(); end += STEP) {
        const std::string part = text.substr(0, end);
        std::set<std::string> written;
        for (const Word& word : words_of(part)) {
            written.insert(word.text + " " + std::to_string(word.line));
            written.insert(word.text + " at " + std::to_string(word.offset));
        }
        const syntax::Syntax syntax = names_in(path, part).syntax.value();
        for (const syntax::Mention& mention : syntax.mentions) {
            const std::string word = mentioned_word(syntax, mention.expression);
            EXPECT_TRUE(role_of_word(word).empty() || written.contains(word + " " + std::to_string(mention.line)))
                << word << " on line " << mention.line << " of\n"
                << part;
        }
        for (const syntax::Declaration& declaration : syntax.declarations) {
            const std::string word = word_of_name(syntax.name(declaration.name));
            EXPECT_TRUE(role_of_word(word).empty() || declaration.is_hidden ||
                        written.contains(word + " at " + std::to_string(declaration.offset)))
                << word << " declared at " << declaration.offset << " of\n"
                << path << part;
        }
    }
}

}  // namespace host::sources
