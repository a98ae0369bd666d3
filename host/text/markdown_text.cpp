#include "host/text/markdown_text.h"

#include "host/text/ascii.h"
#include "host/text/blanks.h"
#include "host/text/control_characters.h"

#include <algorithm>

namespace host {

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

std::string with_escaped_bars(std::string_view text) {
    std::string safe;
    for (const char character : text) {
        safe.append(character == '|' ? "\\" : "") += character;
    }
    return safe;
}

bool is_word_character(char character) {
    return is_letter(character) || ('0' <= character && character <= '9');
}

constexpr std::size_t LONGEST_RUN = 4;  // on either side of a character; bounds the time for a long run

// The character beside a run of equal ones: a blank beyond the ends of the line, one of the run if that is longer.
char before_run(std::string_view line, std::size_t place) {
    const std::size_t begin = place - std::min(place, LONGEST_RUN);
    const std::string_view beside = line.substr(begin, place - begin);
    const std::size_t before = beside.find_last_not_of(line[place]);
    return before != std::string_view::npos ? beside[before] : begin > 0 ? line[place] : ' ';
}
char behind_run(std::string_view line, std::size_t place) {
    const std::string_view beside = line.substr(place + 1, LONGEST_RUN);
    const std::size_t behind = beside.find_first_not_of(line[place]);
    return behind != std::string_view::npos          ? beside[behind]
           : place + 1 + beside.size() < line.size() ? line[place]
                                                     : ' ';
}

// "&lt;", "&#60;"
bool is_character_reference(std::string_view text) {
    const std::size_t begin = text.starts_with("&#") ? 2 : 1;
    const auto* const end = std::find_if_not(text.begin() + begin, text.end(), is_word_character);
    return end != text.end() && *end == ';' && end != text.begin() + begin;
}

bool is_tag(std::string_view language) {
    return language.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-#_.") ==
           std::string_view::npos;
}

}  // namespace

bool is_markup(std::string_view line, std::size_t place) {
    constexpr std::string_view BLOCKS = "#>=+-*";
    const std::string_view rest = line.substr(place);
    if (place == 0 && BLOCKS.find(line.front()) != std::string_view::npos) {
        return true;
    }
    switch (rest.front()) {
    case '\\':
    case '`':
    case '[':
    case '~':
        return true;
    case '*':
        return BLANKS.find(before_run(line, place)) == std::string_view::npos ||
               BLANKS.find(behind_run(line, place)) == std::string_view::npos;
    case '_':
        return !is_word_character(before_run(line, place)) || !is_word_character(behind_run(line, place));
    case '<':
        return rest.size() > 1 &&
               (is_letter(rest[1]) || std::string_view("/!?").find(rest[1]) != std::string_view::npos);
    case '&':
        return is_character_reference(rest);
    default:
        return false;
    }
}

std::string plain_text(std::string_view text) {
    const std::string line = on_one_line(text);
    std::string safe;
    for (std::size_t place = 0; place < line.size(); ++place) {
        safe.append(is_markup(line, place) ? "\\" : "") += line[place];
    }
    return safe;
}

std::string plain_cell(std::string_view text) {
    return with_escaped_bars(plain_text(text));
}

std::string markdown_cell(std::string_view markdown) {
    return with_escaped_bars(on_one_line(markdown));
}

std::string code_span(std::string_view text) {
    const std::string span = on_one_line(text);
    const std::string fence(longest_run_of_backticks(span) + 1, '`');
    // A blank separates the fence from a backtick at either end; Markdown removes it again.
    const bool touches = span.empty() || span.front() == '`' || span.back() == '`';
    const std::string gap = touches ? " " : "";
    return fence + gap + span + gap + fence;
}

std::string code_cell(std::string_view text) {
    return with_escaped_bars(code_span(text));
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
        block.append(lines_without_control_characters(line)).append("\n");
    }
    return block + fence + "\n";
}

std::string_view fence_of(std::string_view line) {
    constexpr std::size_t SHORTEST = 3;
    if (!line.starts_with('`') && !line.starts_with('~')) {
        return {};
    }
    const std::string_view fence = line.substr(0, line.find_first_not_of(line.front()));
    const bool is_code_span = fence.front() == '`' && line.find('`', fence.size()) != std::string_view::npos;
    return fence.size() >= SHORTEST && !is_code_span ? fence : std::string_view();
}

bool is_heading(std::string_view line) {
    const std::size_t marks = line.find_first_not_of('#');
    return line.starts_with('#') && (marks == std::string_view::npos || line[marks] == ' ' || line[marks] == '\t');
}

}  // namespace host
