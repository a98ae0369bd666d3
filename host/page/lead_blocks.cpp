#include "host/page/lead_blocks.h"

#include "host/text/ascii.h"
#include "host/text/blanks.h"
#include "host/text/markdown_text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace host {

namespace {

using std::string_view;

constexpr std::size_t CODE_INDENT = 4;  // columns
constexpr std::size_t TAB = 4;          // columns

struct Line {
    std::size_t column = 0;  // of the text
    string_view text;        // without the blanks around it
};

Line next_line(string_view& rest) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    const string_view line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    Line read{.column = 0, .text = trimmed(line)};
    for (const char blank : line.substr(0, std::min(line.find_first_not_of(" \t"), line.size()))) {
        read.column += blank == '\t' ? TAB - read.column % TAB : 1;
    }
    return read;
}

// "-", "*", "+", "1.", "1)" before a blank: the mark of a list's item; empty for any other line.
string_view item_mark(string_view line) {
    constexpr std::size_t MOST_DIGITS = 9;
    const std::size_t digits = std::min(line.find_first_not_of("0123456789"), line.size());
    const string_view sign = line.substr(digits, 1);
    const bool is_mark =
        !sign.empty() && (digits == 0 ? string_view("-*+") : string_view(".)")).find(sign) != string_view::npos;
    const bool stands_apart =
        line.size() > digits + 1 && string_view(" \t").find(line[digits + 1]) != string_view::npos;
    return is_mark && stands_apart && digits <= MOST_DIGITS ? line.substr(0, digits + 1) : string_view();
}

bool is_underline(string_view line) {
    return line.size() >= 3 && string_view("=-").find(line.front()) != string_view::npos &&
           line.find_first_not_of(line.front()) == string_view::npos;
}

// ":param x: the first"; not ":class:`Foo` ..."
bool is_field(string_view line) {
    const std::size_t end = line.find(':', 1);
    return line.starts_with(':') && end != string_view::npos && end > 1 && is_letter(line[1]) &&
           (end + 1 == line.size() || line[end + 1] == ' ');
}

// "Args:", above lines that are indented
bool is_title(const Line& line, const Line& next) {
    return line.text.size() > 1 && line.text.ends_with(':') && next.column > line.column && !next.text.empty() &&
           std::ranges::all_of(line.text.substr(0, line.text.size() - 1), is_letter);
}

// Whether a line above the line `next` is none of prose.
bool ends_lead(const Line& line, const Line& next) {
    constexpr std::array<string_view, 10> BEGINNINGS{"```", "~~~", "![",   "|",      "+--",
                                                     "..",  ">>>", "<pre", "<table", "<img"};
    return starts_with_any(line.text, BEGINNINGS) || is_heading(line.text) || is_underline(line.text) ||
           is_underline(next.text) || is_field(line.text) || is_title(line, next);
}

// The sentences before the last one.
string_view without_last_sentence(string_view text) {
    const std::size_t end = text.rfind(". ");
    return text.substr(0, end == string_view::npos ? 0 : end + 1);
}

class LeadReader {
  public:
    explicit LeadReader(string_view documentation) : rest_(documentation) {}

    std::vector<LeadBlock> read() {
        while (!rest_.empty()) {
            const Line line = next_line(rest_);
            if (line.text.empty()) {
                is_apart_ = true;
            } else if (!take(line)) {
                leave_off_the_announcement();
                break;
            }
        }
        return std::move(blocks_);
    }

  private:
    // Whether the line belongs to the lead.
    bool take(const Line& line) {
        const string_view mark = item_mark(line.text);
        const bool is_fence = !fence_of(line.text).empty();
        if (begins_paragraph(line.text) || !mark.empty() || is_fence) {
            leave_items(line.column);
        }
        const bool is_code = is_apart_ && line.column >= content() + CODE_INDENT;
        if (!contents_.empty() && is_code) {
            take_indented_code(line);
        } else if (!contents_.empty() && is_fence) {
            read_fenced_code(line.text, add_block());
        } else if (is_code || ends_lead(line, following())) {
            return false;
        } else if (!mark.empty()) {
            take_item(line, mark);
        } else {
            take_prose(line.text);
        }
        return true;
    }

    // Whether a line of prose does; else it goes on with the one above, however far it is indented.
    [[nodiscard]] bool begins_paragraph(string_view text) const { return is_apart_ || text.starts_with("<p>"); }

    void take_item(const Line& line, string_view mark) {
        const string_view text = trimmed(line.text.substr(mark.size()));
        const std::size_t gap = line.text.size() - mark.size() - text.size();
        LeadBlock& item = add_block();
        item.mark = mark;
        contents_.push_back(line.column + mark.size() + (gap > CODE_INDENT ? 1 : gap));
        if (!fence_of(text).empty()) {
            read_fenced_code(text, item);
        } else {
            item.text = text;
        }
    }

    void take_prose(string_view text) {
        if (begins_paragraph(text)) {
            add_block().text = text;
        } else {
            blocks_.back().text.append(" ").append(text);
        }
    }

    void take_indented_code(const Line& first) {
        LeadBlock& block = add_block();
        const std::size_t indent = content() + CODE_INDENT;
        block.code.push_back(dedented(first, indent));
        while (!rest_.empty() && (following().text.empty() || following().column >= indent)) {
            block.code.push_back(dedented(next_line(rest_), indent));
        }
        end_code(block);
    }

    // Reads code up to the fence that closes it, or the line that leaves its item.
    void read_fenced_code(string_view opening, LeadBlock& block) {
        const string_view fence = fence_of(opening);
        block.language = trimmed(opening.substr(fence.size()));
        while (!rest_.empty() && (following().text.empty() || following().column >= content())) {
            const Line line = next_line(rest_);
            if (line.text.starts_with(fence) && line.text.find_first_not_of(fence.front()) == string_view::npos) {
                break;
            }
            block.code.push_back(dedented(line, content()));
        }
        end_code(block);
    }

    // What follows code does not go on with a paragraph.
    void end_code(LeadBlock& block) {
        while (!block.code.empty() && block.code.back().empty()) {
            block.code.pop_back();
        }
        is_apart_ = true;
    }

    static std::string dedented(const Line& line, std::size_t indent) {
        return line.text.empty() ? "" : std::string(line.column - std::min(line.column, indent), ' ').append(line.text);
    }

    LeadBlock& add_block() {
        is_apart_ = false;
        LeadBlock& block = blocks_.emplace_back();
        block.depth = contents_.size();
        return block;
    }

    void leave_items(std::size_t column) {
        while (!contents_.empty() && column < contents_.back()) {
            contents_.pop_back();
        }
    }

    // A sentence that ends with a colon announces what the lead leaves out.
    void leave_off_the_announcement() {
        if (!blocks_.empty() && blocks_.back().text.ends_with(':')) {
            blocks_.back().text = without_last_sentence(blocks_.back().text);
        }
    }

    // Where the text of the innermost item begins.
    [[nodiscard]] std::size_t content() const { return contents_.empty() ? 0 : contents_.back(); }

    [[nodiscard]] Line following() const {
        string_view rest = rest_;
        return next_line(rest);
    }

    string_view rest_;
    std::vector<std::size_t> contents_;  // the columns at which the texts of the items around begin
    bool is_apart_ = true;
    std::vector<LeadBlock> blocks_;
};

}  // namespace

std::vector<LeadBlock> blocks_of_lead(string_view documentation) {
    return LeadReader(documentation).read();
}

}  // namespace host
