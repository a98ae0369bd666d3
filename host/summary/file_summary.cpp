#include "workers/wiki/file_summary.h"

#include "host/summary/comment_line.h"
#include "host/summary/generator_mark.h"
#include "host/summary/leading_comments.h"
#include "host/summary/shared_summaries.h"
#include "host/summary/text_summary.h"
#include "host/text/blanks.h"
#include "host/text/control_characters.h"
#include "host/text/markdown_text.h"
#include "host/text/split_lines.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {
namespace {

constexpr std::size_t LIMIT = 160;  // code points
constexpr std::string_view ELLIPSIS = "...";

// Enough of a paragraph to fill the limit and to recognize a licence.
constexpr std::size_t PARAGRAPH_BYTES = 1024;

void append_words(std::string& paragraph, std::string_view text) {
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find_first_of(BLANKS));
        paragraph += paragraph.empty() ? "" : " ";
        paragraph += word;
        text = trimmed(text.substr(word.size()));
    }
}

// Returns the first paragraph of a block that describes the file; empty when there is none.
std::string description(LeadingComments& block) {
    std::string paragraph;
    bool in_aside = false;
    bool in_licence = false;
    bool in_mark = false;  // of a generator: the rest of its block says how to generate the file
    // A licence that begins with its terms instead of a notice is recognized by its whole paragraph only.
    const auto describes = [&in_licence, &in_mark](const std::string& text) {
        in_licence = in_licence || speaks_of_licence(text, false);
        in_mark = in_mark || is_generator_mark(text);
        return !text.empty() && !in_mark && !is_banner(text) && !speaks_of_licence(text, in_licence);
    };
    while (const std::optional<std::string_view> line = block.next_line()) {
        const auto [role, text] = read_comment_line(*line, block.delimited());
        const bool is_full = paragraph.size() >= PARAGRAPH_BYTES;
        if (role != Role::PROSE || is_full) {
            if (describes(paragraph)) {
                return paragraph;
            }
            paragraph.clear();
            in_licence = in_licence || role == Role::NOTICE;
            // Prose reaches this line only in a licence whose paragraph is full; the licence continues.
            in_aside = role != Role::BREAK && role != Role::INTRODUCTION;
        }
        const bool says_nothing = paragraph.empty() && is_only_a_name(text);
        if (!in_aside && !says_nothing) {
            append_words(paragraph, text);
        }
    }
    return describes(paragraph) ? paragraph : std::string();
}

// Returns the first `count` code points of `text`, or all if there are fewer.
std::string_view first_code_points(std::string_view text, std::size_t count) {
    std::size_t end = 0;
    for (; count > 0 && end < text.size(); --count) {
        end += std::max<std::size_t>(code_point_bytes(text.substr(end)),
                                     1);  // a byte that begins no code point counts as one
    }
    return text.substr(0, end);
}

std::string shortened(const std::string& text) {
    if (first_code_points(text, LIMIT).size() == text.size()) {
        return text;
    }
    const std::size_t room = first_code_points(text, LIMIT - ELLIPSIS.size()).size();
    // A word may end exactly at the limit.
    const std::size_t word_end = text.rfind(' ', room);
    return text.substr(0, word_end == std::string_view::npos ? room : word_end).append(ELLIPSIS);
}

std::string summary_of(LeadingComments comments) {
    while (comments.next_block()) {
        if (const std::string text = description(comments); !text.empty()) {
            std::string summary = plain_text(without_control_characters(shortened(text)));
            return is_shared_summary(summary) ? std::string() : summary;
        }
    }
    return {};
}

}  // namespace

std::string text_summary(std::string_view text) {
    text.remove_prefix(text.starts_with(BYTE_ORDER_MARK) ? BYTE_ORDER_MARK.size() : 0);
    return summary_of(LeadingComments([&]() -> std::optional<std::string_view> {
        return text.empty() ? std::nullopt : std::optional(cut_line(text));
    }));
}

}  // namespace host

namespace wiki {

std::string file_summary(std::span<const std::string> lines) {
    return host::summary_of(host::LeadingComments([&]() -> std::optional<std::string_view> {
        if (lines.empty()) {
            return std::nullopt;
        }
        const std::string_view line = lines.front();
        lines = lines.subspan(1);
        return line;
    }));
}

}  // namespace wiki
