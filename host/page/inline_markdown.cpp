#include "host/page/inline_markdown.h"

#include "host/text/ascii.h"
#include "host/text/blanks.h"
#include "host/text/markdown_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

namespace host {

namespace {

using std::string_view;

bool is_word_character(char character) {
    return is_letter(character) || ('0' <= character && character <= '9') || character == '_';
}

// What stands at the beginning of a text: how long it is there, and what of it is printed.
struct Markup {
    std::size_t length;
    string_view content;
    bool is_code;
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
    return Markup{length, is_link ? without_target(content) : content, true};
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
    return Markup{end + 1, without_target(text.substr(tick + 1, end - tick - 1)), true};
}

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
        return Markup{end + 1, trimmed(content.substr(target_end + 1)), false};
    }
    return content.empty() ? std::nullopt : std::optional(Markup{end + 1, content, true});
}

// "[text](url)"
std::optional<Markup> link(string_view text) {
    const std::size_t end = text.starts_with('[') ? text.find("](") : string_view::npos;
    const std::size_t close = text.find(')', end);
    if (close == string_view::npos || text.substr(1, end - 1).find_first_of("[]") != string_view::npos) {
        return std::nullopt;
    }
    return Markup{close + 1, text.substr(1, end - 1), false};
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
    constexpr std::size_t LONGEST_CODE = 1'000;
    const std::size_t close =
        name == "code" && begin == 1 ? text.substr(0, LONGEST_CODE).find("</code>") : string_view::npos;
    if (close != string_view::npos) {
        const string_view content = trimmed(text.substr(end + 1, close - end - 1));
        return content.empty() ? std::nullopt : std::optional(Markup{close + 7, content, true});
    }
    return Markup{end + 1, {}, false};
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

class InlineReader {
  public:
    void read(string_view prose) {
        for (std::size_t place = 0; place < prose.size();) {
            if (const std::optional<Markup> markup = markup_at(prose, place)) {
                markup->is_code ? add_code(markup->content) : read(markup->content);
                place += markup->length;
                continue;
            }
            // A run of backticks that nothing closes is no shorter fence either.
            const string_view rest = prose.substr(place);
            const std::size_t backticks = std::min(rest.find_first_not_of('`'), rest.size());
            const std::size_t length = std::max<std::size_t>(backticks, 1);
            add(rest.substr(0, length));
            place += length;
        }
    }

    std::vector<InlinePart> parts() { return std::move(parts_); }

  private:
    void add_code(string_view content) {
        if (!parts_.empty() && parts_.back().is_code) {
            add(" ");  // else they would be one
        }
        parts_.push_back({.text = std::string(content), .is_code = true});
    }

    void add(string_view text) {
        if (parts_.empty() || parts_.back().is_code) {
            parts_.emplace_back();
        }
        parts_.back().text += text;
    }

    std::vector<InlinePart> parts_;
};

}  // namespace

std::vector<InlinePart> inline_parts(string_view prose) {
    InlineReader reader;
    reader.read(prose);
    return reader.parts();
}

std::string inline_markdown(string_view prose) {
    // Put together before anything is escaped: without a tag between them, two characters may be markup.
    std::string text;
    std::vector<bool> is_code;  // by the byte of the text
    for (const InlinePart& part : inline_parts(prose)) {
        text += part.is_code ? code_span(part.text) : part.text;
        is_code.resize(text.size(), part.is_code);
    }
    const string_view line = trimmed(text);
    const auto begin = static_cast<std::size_t>(line.data() - text.data());
    std::string markdown;
    for (std::size_t place = 0; place < line.size(); ++place) {
        const bool is_escaped = !is_code[begin + place] && line[place] != '&' && is_markup(line, place);
        markdown.append(is_escaped ? "\\" : "") += line[place];
    }
    return markdown;
}

}  // namespace host
