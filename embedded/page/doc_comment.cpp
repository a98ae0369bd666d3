#include "embedded/page/doc_comment.h"

#include "embedded/page/lead_blocks.h"
#include "embedded/text/ascii.h"
#include "embedded/text/blanks.h"
#include "embedded/text/markdown_text.h"
#include "embedded/text/split_lines.h"

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
            markdown.append(character != '&' && is_markup(text, place) ? "\\" : "") += character;
            ++place;
        }
    }
    return markdown;
}

// Block by block ----------------------------------------------------------------------------------------------------

// Prose on one line, or code between fences; empty when nothing of it is left to print.
std::vector<std::string> lines_of(const LeadBlock& block) {
    if (!block.code.empty()) {
        const std::string code =
            fenced_block(block.code, block.language.substr(0, block.language.find_first_of(BLANKS)));
        const std::vector<string_view> lines = split_lines(code);
        return {lines.begin(), lines.end()};
    }
    const std::string prose = markdown_of(block.text);
    return trimmed(prose).empty() ? std::vector<std::string>() : std::vector{std::string(trimmed(prose))};
}

// Puts blocks below one another, each in the item that it belongs to.
class Lead {
  public:
    void add(const LeadBlock& block) {
        const std::vector<std::string> lines = lines_of(block);
        columns_.resize(block.depth + 1);
        const std::size_t column = columns_.back();
        const std::string mark = block.mark.empty() || lines.empty() ? "" : std::string(block.mark) + " ";
        columns_.push_back(column + mark.size());
        if (lines.empty()) {
            return;
        }
        markdown_ += markdown_.empty() ? "" : follows_at_once(block) ? "\n" : "\n\n";
        markdown_.append(column, ' ').append(mark).append(lines.front());
        for (std::size_t at = 1; at < lines.size(); ++at) {
            markdown_.append("\n").append(lines[at].empty() ? 0 : columns_.back(), ' ').append(lines[at]);
        }
        is_below_item_ = !mark.empty();
        depth_ = block.depth;
    }

    [[nodiscard]] const std::string& markdown() const { return markdown_; }

  private:
    // Whether a block is an item right below what belongs to its list. A numbered list that does not begin with 1 takes
    // an empty line above it.
    [[nodiscard]] bool follows_at_once(const LeadBlock& block) const {
        const bool goes_on = depth_ > block.depth || (is_below_item_ && depth_ == block.depth);
        const bool is_in_list = is_below_item_ || depth_ > 0;
        const bool may_begin = block.mark.size() == 1 || block.mark.substr(0, block.mark.size() - 1) == "1";
        return !block.mark.empty() && is_in_list && (goes_on || may_begin);
    }

    std::string markdown_;
    std::vector<std::size_t> columns_{0};  // where the blocks of each depth begin
    bool is_below_item_ = false;
    std::size_t depth_ = 0;  // of the block above
};

}  // namespace

std::string lead_of(string_view documentation) {
    // No lead is longer, and a text that was made to keep a reader busy ends here.
    constexpr std::size_t LONGEST = 65'536;
    documentation = documentation.substr(0, LONGEST);
    Lead lead;
    for (const LeadBlock& block : blocks_of_lead(documentation)) {
        lead.add(block);
    }
    return lead.markdown();
}

}  // namespace embedded
