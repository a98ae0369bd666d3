#include "host/page/doc_comment.h"

#include "host/page/inline_markdown.h"
#include "host/page/lead_blocks.h"
#include "host/text/blanks.h"
#include "host/text/markdown_text.h"
#include "host/text/split_lines.h"

#include <cstddef>
#include <vector>

namespace host {

namespace {

using std::string_view;

// Prose on one line, or code between fences; empty when nothing of it is left to print.
std::vector<std::string> lines_of(const LeadBlock& block) {
    if (!block.code.empty()) {
        const std::string code =
            fenced_block(block.code, block.language.substr(0, block.language.find_first_of(BLANKS)));
        const std::vector<string_view> lines = split_lines(code);
        return {lines.begin(), lines.end()};
    }
    const std::string prose = inline_markdown(block.text);
    return prose.empty() ? std::vector<std::string>() : std::vector{prose};
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

}  // namespace host
