#include "host/sources/prose.h"

#include "host/text/ascii.h"
#include "host/text/blanks.h"
#include "host/text/block_tags.h"
#include "host/text/markdown_text.h"
#include "host/text/split_lines.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <vector>

namespace host::sources {

namespace {

using std::string_view;

std::size_t indent_of(string_view line) {
    return std::min(line.find_first_not_of(" \t"), line.size());
}

std::string joined(const std::vector<string_view>& lines) {
    std::string text;
    bool is_apart = false;
    for (const string_view line : lines) {
        if (line.empty()) {
            is_apart = !text.empty();
            continue;
        }
        text.append(text.empty() ? "" : is_apart ? "\n\n" : "\n").append(line);
        is_apart = false;
    }
    return text;
}

// "/** Adds. */" -> "Adds. ", "/// Adds." -> "Adds."; none of a line without a mark. The blank behind one is no indent.
std::optional<string_view> behind_mark(string_view line) {
    const auto without_first_blank = [](string_view text) { return text.substr(text.starts_with(' ') ? 1 : 0); };
    constexpr std::array<string_view, 7> MARKS{"/**", "/*!", "/*", "///", "//!", "//", "*/"};
    const string_view text = line.substr(indent_of(line));
    for (const string_view mark : MARKS) {
        if (text.starts_with(mark) && !(mark == "/**" && text.starts_with("/**/"))) {
            return without_first_blank(text.substr(mark.size()));
        }
    }
    return text.starts_with('*') ? std::optional(without_first_blank(text.substr(1))) : std::nullopt;
}

string_view without_closing_mark(string_view line) {
    const string_view text = trimmed_end(line);
    return text.ends_with("*/") ? trimmed_end(text.substr(0, text.find_last_not_of("*/") + 1)) : line;
}

// A line that opens a block tag: "@param x the first" -> "param"; empty for any other line.
string_view tag_of(string_view line) {
    const string_view text = trimmed(line);
    if (text.size() < 2 || (text.front() != '@' && text.front() != '\\') || !is_letter(text[1])) {
        return {};
    }
    return text.substr(1, text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ", 1) - 1);
}

// The lines without block tags and what belongs to these. In a block of code "@Override" is none.
std::vector<string_view> without_tags(const std::vector<string_view>& lines) {
    std::vector<string_view> kept;
    bool is_described = true;
    bool is_code = false;
    for (const string_view line : lines) {
        is_code = is_code != !fence_of(trimmed(line)).empty();
        const string_view tag = is_code ? string_view() : tag_of(line);
        if (tag.empty()) {
            if (is_described) {
                kept.push_back(line);
            }
            continue;
        }
        is_described = describes_declaration(tag);
        if (is_described) {
            kept.push_back(line.substr(static_cast<std::size_t>(tag.data() + tag.size() - line.data())));
        }
    }
    return kept;
}

}  // namespace

std::string dedented(string_view text, std::size_t first_indent) {
    std::vector<string_view> lines = split_lines(text);
    std::size_t common = std::numeric_limits<std::size_t>::max();
    for (string_view& line : lines) {
        line = trimmed_end(line);
        const bool is_first = &line == &lines.front();
        if (!line.empty()) {
            common = std::min(common, indent_of(line) + (is_first ? first_indent : 0));
        }
    }
    for (string_view& line : lines) {
        const std::size_t missing = &line == &lines.front() ? std::min(common, first_indent) : 0;
        line.remove_prefix(std::min(common - missing, indent_of(line)));
    }
    return joined(lines);
}

std::string prose_of_comments(string_view comments) {
    std::vector<string_view> lines = split_lines(comments);
    std::size_t indent = std::numeric_limits<std::size_t>::max();  // of the lines that have no mark
    for (string_view& line : lines) {
        line = without_closing_mark(line);
        if (!behind_mark(line) && !trimmed(line).empty()) {
            indent = std::min(indent, indent_of(line));
        }
    }
    for (string_view& line : lines) {
        line = behind_mark(line).value_or(line.substr(std::min(indent, indent_of(line))));
    }
    std::string text;
    for (const string_view line : without_tags(lines)) {
        text.append(line).append("\n");
    }
    return dedented(text, 0);
}

std::string prose_of_docstring(string_view literal) {
    literal.remove_prefix(std::min(literal.find_first_of("\"'"), literal.size()));
    const bool is_long = literal.starts_with(R"(""")") || literal.starts_with("'''");
    const std::size_t quotes = is_long ? 3 : 1;
    if (literal.size() < 2 * quotes) {
        return {};
    }
    literal = literal.substr(quotes, literal.size() - 2 * quotes);
    // The first line stands behind the quotes: the others tell how far the text is indented.
    const std::size_t end = std::min(literal.find('\n'), literal.size());
    const std::string first(trimmed(literal.substr(0, end)));
    const string_view below = literal.substr(std::min(end + 1, literal.size()));
    const std::string rest = dedented(below, 0);
    const bool is_apart = trimmed(below.substr(0, below.find('\n'))).empty();
    return first + (first.empty() || rest.empty() ? "" : is_apart ? "\n\n" : "\n") + rest;
}

}  // namespace host::sources
