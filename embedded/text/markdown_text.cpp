#include "embedded/text/markdown_text.h"

#include <algorithm>

namespace embedded {

namespace {

std::size_t longest_run_of_backticks(std::string_view text) {
    std::size_t longest = 0;
    std::size_t run = 0;
    for (const char character : text) {
        run = character == '`' ? run + 1 : 0;
        longest = std::max(longest, run);
    }
    return longest;
}

std::string on_one_line(std::string_view text) {
    std::string line(text);
    std::replace(line.begin(), line.end(), '\n', ' ');
    std::replace(line.begin(), line.end(), '\r', ' ');
    return line;
}

std::string escaped(std::string_view text, std::string_view characters) {
    std::string safe;
    for (const char character : text) {
        if (characters.find(character) != std::string_view::npos) {
            safe += '\\';
        }
        safe += character;
    }
    return safe;
}

bool is_tag(std::string_view language) {
    return language.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-#_.") ==
           std::string_view::npos;
}

}  // namespace

std::string plain_text(std::string_view text) {
    return escaped(on_one_line(text), "\\`[<#|");
}

std::string code_span(std::string_view text) {
    const std::string span = on_one_line(text);
    const std::string fence(longest_run_of_backticks(span) + 1, '`');
    // A blank on either side keeps backticks at the ends apart from the fence; readers take it away again.
    const bool touches = span.empty() || span.front() == '`' || span.back() == '`';
    const std::string gap = touches ? " " : "";
    return fence + gap + span + gap + fence;
}

std::string code_cell(std::string_view text) {
    return escaped(code_span(text), "|");
}

std::string fenced_block(std::span<const std::string> lines, std::string_view language) {
    constexpr std::size_t SHORTEST = 3;
    std::size_t length = SHORTEST;
    for (const std::string& line : lines) {
        length = std::max(length, longest_run_of_backticks(line) + 1);
    }
    const std::string fence(length, '`');
    std::string block = fence + std::string(is_tag(language) ? language : "") + "\n";
    for (const std::string& line : lines) {
        block.append(line).append("\n");
    }
    return block + fence + "\n";
}

bool is_heading(std::string_view line) {
    const std::size_t marks = line.find_first_not_of('#');
    return line.starts_with('#') && (marks == std::string_view::npos || line[marks] == ' ' || line[marks] == '\t');
}

}  // namespace embedded
