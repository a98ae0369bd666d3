#include "embedded/page/doc_comment.h"

#include "embedded/text/ascii.h"
#include "embedded/text/blanks.h"
#include "embedded/text/markdown_text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

namespace embedded {

namespace {

using std::string_view;

constexpr string_view DIGITS = "0123456789";

bool is_word_character(char character) {
    return is_letter(character) || DIGITS.find(character) != string_view::npos || character == '_';
}

// Inside of one line ------------------------------------------------------------------------------------------------

// What stands at the beginning of a text: how long it is there, and what it becomes.
struct Markup {
    std::size_t length;
    std::string markdown;
};

// "Foo <module.Foo>" -> "Foo", "~module.Foo" and "!module.Foo" -> "module.Foo"
string_view without_target(string_view text) {
    if (const std::size_t target = text.rfind(" <"); target != string_view::npos && text.ends_with('>')) {
        return text.substr(0, target);
    }
    return text.substr(text.starts_with('~') || text.starts_with('!') ? 1 : 0);
}

// "`x`", "``x``", and "`text <url>`_", which is a link.
std::optional<Markup> code(string_view text) {
    const std::size_t fence = std::min(text.find_first_not_of('`'), text.size());
    if (fence == 0) {
        return std::nullopt;
    }
    std::size_t end = fence;
    for (std::size_t run = 0; run != fence; end += run) {
        end = text.find('`', end);
        if (end == string_view::npos) {
            return std::nullopt;
        }
        run = std::min(text.find_first_not_of('`', end), text.size()) - end;
    }
    const string_view content = trimmed(text.substr(fence, end - 2 * fence));
    if (content.empty()) {
        return std::nullopt;
    }
    const bool is_link = text.substr(end).starts_with('_');
    const std::size_t length = std::min(is_link ? text.find_first_not_of('_', end) : end, text.size());
    return Markup{length, code_span(is_link ? without_target(content) : content)};
}

// ":class:`Foo`"
std::optional<Markup> role(string_view text) {
    const std::size_t tick = text.starts_with(':') ? text.find('`') : string_view::npos;
    if (tick == string_view::npos || tick < 3 || text[tick - 1] != ':' ||
        !std::ranges::all_of(text.substr(1, tick - 2), [](char c) { return is_word_character(c) || c == ':'; })) {
        return std::nullopt;
    }
    const std::size_t end = text.find('`', tick + 1);
    if (end == string_view::npos || end == tick + 1) {
        return std::nullopt;
    }
    return Markup{end + 1, code_span(without_target(text.substr(tick + 1, end - tick - 1)))};
}

std::string markdown_of(string_view text);

// "{@link Foo}", "{@link Foo|text}", "{@link Foo text}", "{@code x}"
std::optional<Markup> inline_tag(string_view text) {
    const std::size_t end = text.starts_with("{@") ? text.find('}') : string_view::npos;
    const std::size_t name_end = text.substr(0, end).find(' ');
    if (end == string_view::npos || name_end == string_view::npos) {
        return std::nullopt;
    }
    const string_view name = text.substr(2, name_end - 2);
    const string_view content = trimmed(text.substr(name_end, end - name_end));
    const std::size_t target_end = content.find_first_of("| ");
    if (name.starts_with("link") && target_end != string_view::npos) {
        return Markup{end + 1, markdown_of(trimmed(content.substr(target_end + 1)))};
    }
    return content.empty() ? std::nullopt : std::optional(Markup{end + 1, code_span(content)});
}

// "[text](url)"
std::optional<Markup> link(string_view text) {
    const std::size_t end = text.starts_with('[') ? text.find("](") : string_view::npos;
    const std::size_t close = text.find(')', end);
    if (close == string_view::npos || text.substr(1, end - 1).find_first_of("[]") != string_view::npos) {
        return std::nullopt;
    }
    return Markup{close + 1, markdown_of(text.substr(1, end - 1))};
}

// A tag of HTML that says nothing but how the text looks, and "<code>x</code>".
std::optional<Markup> tag(string_view text) {
    constexpr std::array<string_view, 14> NAMES{"a",  "b",  "br", "code", "div",    "em", "i",
                                                "li", "ol", "p",  "span", "strong", "tt", "ul"};
    const std::size_t end = text.starts_with('<') ? text.find('>') : string_view::npos;
    if (end == string_view::npos) {
        return std::nullopt;
    }
    const std::size_t begin = text.starts_with("</") ? 2 : 1;
    const string_view inner = text.substr(begin, end - begin);
    const string_view name = inner.substr(0, inner.find_first_of(" /"));
    if (std::ranges::find(NAMES, name) == NAMES.end()) {
        return std::nullopt;
    }
    if (const std::size_t close = text.find("</code>"); name == "code" && begin == 1 && close != string_view::npos) {
        const string_view content = trimmed(text.substr(end + 1, close - end - 1));
        return content.empty() ? std::nullopt : std::optional(Markup{close + 7, code_span(content)});
    }
    return Markup{end + 1, ""};
}

// The markup that begins at `place`, if one does. A role or an opening tag begins no sooner than a word ends:
// "Array<string>" has no tag.
std::optional<Markup> markup_at(string_view text, std::size_t place) {
    const bool is_in_word = place > 0 && is_word_character(text[place - 1]);
    const string_view rest = text.substr(place);
    for (const auto& reader : {code, role, inline_tag, link, tag}) {
        const bool opens = reader == role || (reader == tag && !rest.starts_with("</"));
        if (is_in_word && opens) {
            continue;
        }
        if (std::optional<Markup> markup = reader(rest)) {
            return markup;
        }
    }
    return std::nullopt;
}

// A text on one line. Character references stay: doc comments are HTML where they hold some.
std::string markdown_of(string_view text) {
    std::string markdown;
    for (std::size_t place = 0; place < text.size();) {
        if (const std::optional<Markup> markup = markup_at(text, place)) {
            markdown += markup->markdown;
            place += markup->length;
            continue;
        }
        // A run of backticks that nothing closes is no shorter fence either.
        const string_view rest = text.substr(place);
        const std::size_t backticks = std::min(rest.find_first_not_of('`'), rest.size());
        for (const char character : rest.substr(0, std::max<std::size_t>(backticks, 1))) {
            markdown.append(is_mark(text, place) ? "\\" : "") += character;
            ++place;
        }
    }
    return markdown;
}

// Line by line ------------------------------------------------------------------------------------------------------

// "- ", "* ", "+ ", "1. ", "1) ": the length of the mark of a list's item, 0 for any other line.
std::size_t item_mark(string_view line) {
    const std::size_t digits = std::min(line.find_first_not_of(DIGITS), line.size());
    const string_view mark = line.substr(digits, 1);
    const bool is_mark =
        !mark.empty() && (digits == 0 ? string_view("-*+") : string_view(".)")).find(mark.front()) != string_view::npos;
    return is_mark && line.substr(digits + 1).starts_with(' ') ? digits + 2 : 0;
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
bool is_title(string_view line, string_view next) {
    return line.size() > 1 && line.ends_with(':') && next.starts_with(' ') && !trimmed(next).empty() &&
           std::ranges::all_of(line.substr(0, line.size() - 1), is_letter);
}

// Whether a line, without the blanks around it and above the line `next`, is none of prose.
bool ends_lead(string_view line, string_view next) {
    constexpr std::array<string_view, 10> BEGINNINGS{"```", "~~~", "![",   "|",      "+--",
                                                     "..",  ">>>", "<pre", "<table", "<img"};
    return starts_with_any(line, BEGINNINGS) || is_heading(line) || is_underline(line) || is_underline(trimmed(next)) ||
           is_field(line) || is_title(line, next);
}

// A paragraph, or an item of a list.
struct Block {
    string_view mark;  // of the item
    std::string text;  // on one line
};

// The sentences before the last one.
string_view without_last_sentence(string_view text) {
    const std::size_t end = text.rfind(". ");
    return text.substr(0, end == string_view::npos ? 0 : end + 1);
}

bool is_indented(string_view line) {
    return line.starts_with("    ") || line.starts_with('\t');
}

string_view next_line(string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

std::vector<Block> blocks_of_lead(string_view documentation) {
    std::vector<Block> blocks;
    bool is_apart = true;
    while (!documentation.empty()) {
        const string_view line = next_line(documentation);
        const string_view text = trimmed(line);
        if (text.empty()) {
            is_apart = true;
            continue;
        }
        const bool is_code = is_apart && is_indented(line) && (blocks.empty() || blocks.back().mark.empty());
        if (is_code || ends_lead(text, documentation.substr(0, documentation.find('\n')))) {
            if (!blocks.empty() && blocks.back().text.ends_with(':')) {
                blocks.back().text = without_last_sentence(blocks.back().text);
            }
            return blocks;
        }
        if (const std::size_t mark = item_mark(text); mark > 0) {
            blocks.push_back({text.substr(0, mark), std::string(trimmed(text.substr(mark)))});
        } else if (is_apart || text.starts_with("<p>")) {
            blocks.push_back({{}, std::string(text)});
        } else {
            blocks.back().text.append(" ").append(text);
        }
        is_apart = false;
    }
    return blocks;
}

}  // namespace

std::string lead_of(string_view documentation) {
    // No lead is longer, and a text that was made to keep a reader busy ends here.
    constexpr std::size_t LONGEST = 65'536;
    documentation = documentation.substr(0, LONGEST);
    std::string lead;
    bool was_item = false;
    for (const auto& [mark, text] : blocks_of_lead(documentation)) {
        const std::string prose(markdown_of(text));
        if (trimmed(prose).empty()) {
            continue;
        }
        const bool is_item = !mark.empty();
        lead.append(lead.empty() ? "" : is_item && was_item ? "\n" : "\n\n").append(mark).append(trimmed(prose));
        was_item = is_item;
    }
    return lead;
}

}  // namespace embedded
