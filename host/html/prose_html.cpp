#include "host/html/prose_html.h"

#include "host/html/html_text.h"
#include "host/page/inline_markdown.h"
#include "host/page/lead_blocks.h"
#include "host/text/blanks.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace host::html {

namespace {

// Prose with the characters that its references stand for: "&lt;" is "<".
std::string without_references(std::string_view prose) {
    constexpr std::array<std::pair<std::string_view, char>, 6> REFERENCES{
        {{"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&quot;", '"'}, {"&#39;", '\''}, {"&nbsp;", ' '}}};
    std::string text;
    while (!prose.empty()) {
        std::size_t length = 1;
        char character = prose.front();
        for (const auto& [reference, meaning] : REFERENCES) {
            if (prose.starts_with(reference)) {
                length = reference.size();
                character = meaning;
            }
        }
        text += character;
        prose.remove_prefix(length);
    }
    return text;
}

// Prose on one line: code spans as such, everything else as text.
std::string inline_html(std::string_view prose) {
    std::string html;
    for (const InlinePart& part : inline_parts(prose)) {
        html += part.is_code ? "<code>" + html_text(part.text) + "</code>" : html_text(without_references(part.text));
    }
    return std::string(trimmed(html));
}

std::string code_block(const std::vector<std::string>& lines) {
    std::string html = "<pre><code>";
    for (const std::string& line : lines) {
        html += html_text(line) + "\n";
    }
    return html + "</code></pre>";
}

// Puts blocks below one another, each in the list's item that it belongs to.
class LeadWriter {
  public:
    void add(const LeadBlock& block) {
        const bool is_item = !block.mark.empty();
        close_lists(block.depth + (is_item ? 1 : 0));
        if (is_item) {
            open_item(block);
        }
        if (!block.code.empty()) {
            html_ += code_block(block.code);
        } else if (is_item) {
            html_ += inline_html(block.text);
        } else if (const std::string prose = inline_html(block.text); !prose.empty()) {
            html_ += "<p>" + prose + "</p>";
        }
    }

    std::string html() {
        close_lists(0);
        return std::move(html_);
    }

  private:
    void open_item(const LeadBlock& block) {
        const std::string_view list = block.mark.size() == 1 ? "ul" : "ol";
        if (lists_.size() > block.depth && lists_.back() != list) {
            close_lists(block.depth);
        }
        if (lists_.size() > block.depth) {
            html_ += "</li>";
        } else {
            html_.append("<").append(list);
            if (list == "ol") {
                html_.append(" start=\"").append(block.mark.substr(0, block.mark.size() - 1)).append("\"");
            }
            html_ += ">";
            lists_.push_back(list);
        }
        html_ += "<li>";
    }

    void close_lists(std::size_t kept) {
        while (lists_.size() > kept) {
            html_.append("</li></").append(lists_.back()).append(">");
            lists_.pop_back();
        }
    }

    std::string html_;
    std::vector<std::string_view> lists_;  // that are open, each with an item
};

}  // namespace

std::string html_of_markdown(std::string_view line) {
    std::string html;
    std::string text;
    const auto end_text = [&] {
        html += html_text(without_references(text));
        text.clear();
    };
    while (!line.empty()) {
        const std::size_t fence = std::min(line.find_first_not_of('`'), line.size());
        const std::size_t close = fence == 0 ? std::string_view::npos : line.find(line.substr(0, fence), fence);
        if (line.front() == '\\' && line.size() > 1) {
            text += line[1];
            line.remove_prefix(2);
        } else if (close != std::string_view::npos) {
            end_text();
            html += "<code>" + html_text(trimmed(line.substr(fence, close - fence))) + "</code>";
            line.remove_prefix(close + fence);
        } else {
            const std::size_t length = std::max<std::size_t>(fence, 1);
            text += line.substr(0, length);
            line.remove_prefix(length);
        }
    }
    end_text();
    return html;
}

std::string lead_html(std::string_view documentation) {
    // No lead is longer, and a text that was made to keep a reader busy ends here.
    constexpr std::size_t LONGEST = 65'536;
    LeadWriter writer;
    for (const LeadBlock& block : blocks_of_lead(documentation.substr(0, LONGEST))) {
        writer.add(block);
    }
    return writer.html();
}

}  // namespace host::html
