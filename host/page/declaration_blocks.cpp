#include "host/page/declaration_blocks.h"

#include "host/page/citation.h"
#include "host/page/doc_comment.h"
#include "host/text/counted.h"
#include "host/text/markdown_text.h"
#include "host/text/split_lines.h"

#include <algorithm>
#include <optional>
#include <span>

namespace host {

namespace {

using storage::ScopeSymbol;

// What a block says above the doc comment.
std::string introduction(const SelectedDeclaration& selected, const wiki::scope::FanIn& fan_in,
                         const SourceLinks* links) {
    const ScopeSymbol& symbol = *selected.symbol;
    return "\n### " + code_span(selected.name) + "\n\n" + plain_text(symbol.kind) + ", " +
           cited(symbol.path, cited_lines(symbol), links) + ", " + counted(fan_in.outside.get(symbol.id, 0), "use") +
           " outside, " + std::to_string(fan_in.inside.get(symbol.id, 0)) + " inside\n";
}

// The files that use it most, each with its first use.
std::string used_at(const models::Excerpt<UseSite>& uses, const SourceLinks* links) {
    std::string text;
    for (const UseSite& site : uses.shown) {
        text.append(text.empty() ? "\nUsed at " : ", ").append(cited(site.path, site.line, links));
    }
    if (uses.left_out() > 0) {
        text += " and in " + counted(static_cast<std::int64_t>(uses.left_out()), "other file");
    }
    return text.empty() ? "" : text + ".\n";
}

// The lines as a block of their own; empty where there are none.
std::string block_of(std::span<const std::string> lines, std::string_view language) {
    return lines.empty() ? "" : "\n" + fenced_block(lines, language);
}

}  // namespace

DeclarationBlocks::DeclarationBlocks(const Page& page, storage::Database& db, bool with_source,
                                     const SourceLinks* links)
    : DeclarationBlocks(selected_declarations(page, db, with_source), page, db, with_source, links) {}

DeclarationBlocks::DeclarationBlocks(std::span<const SelectedDeclaration> declarations, const Page& page,
                                     const storage::Database& db, bool with_source, const SourceLinks* links)
    : db_(db), nesting_(declarations), sources_(with_source ? declarations.size() : 0) {
    for (const SelectedDeclaration& selected : declarations) {
        db.check_interrupt();
        const std::string lead = lead_of(selected.documentation);
        const std::vector<std::string_view> lines = split_lines(selected.signature);
        declarations_.push_back(
            {.introduction = introduction(selected, page.fan_in, links),
             .uses = used_at(selected.uses, links),
             .cited_uses = selected.uses.shown.size(),
             .comment = lead.empty() ? "" : "\n" + lead + "\n",
             .signature = block_of(std::vector<std::string>(lines.begin(), lines.end()), selected.language),
             .source = block_of(selected.source, selected.language),
             .reference = "\nIts source is part of that of " + code_span(selected.name) + ".\n"});
    }
}

std::vector<DeclarationBlocks::Block> DeclarationBlocks::blocks(std::size_t steps) const {
    const auto left_of = [&steps](std::size_t parts) {
        const std::size_t taken = std::min(steps, parts);
        steps -= taken;
        return parts - taken;
    };
    const std::size_t sources = left_of(sources_);
    const std::size_t uses = left_of(declarations_.size());
    const std::size_t comments = left_of(declarations_.size());
    const std::vector<std::optional<std::size_t>> around = nesting_.printed_around(sources);
    std::vector<Block> blocks;
    blocks.reserve(declarations_.size());
    for (std::size_t at = 0; at < declarations_.size(); ++at) {
        db_.check_interrupt();
        const Declaration& declaration = declarations_[at];
        Block& block = blocks.emplace_back();
        block.introduction = declaration.introduction;
        block.lacking_uses = at >= uses ? declaration.cited_uses : 0;
        block.uses = at >= uses ? std::string_view() : declaration.uses;
        block.lacks_comment = at >= comments && !declaration.comment.empty();
        block.comment = block.lacks_comment ? std::string_view() : declaration.comment;
        if (around[at]) {
            block.source = declarations_[*around[at]].reference;
        } else {
            block.lacks_source = at >= sources && !declaration.source.empty();
            block.source = block.lacks_source || sources_ == 0 ? declaration.signature : declaration.source;
        }
    }
    return blocks;
}

std::vector<ItemSize> DeclarationBlocks::sizes(std::size_t steps) const {
    std::vector<ItemSize> sizes;
    sizes.reserve(declarations_.size());
    for (const Block& block : blocks(steps)) {
        sizes.push_back(
            {.bytes = block.introduction.size() + block.uses.size() + block.comment.size() + block.source.size(),
             .lacks_source = block.lacks_source,
             .lacks_comment = block.lacks_comment,
             .lacking_uses = block.lacking_uses});
    }
    return sizes;
}

void DeclarationBlocks::print(std::string& text, std::size_t count, std::size_t steps) const {
    const std::vector<Block> all = blocks(steps);
    for (const Block& block : std::span(all).first(count)) {
        text.append(block.introduction).append(block.uses).append(block.comment).append(block.source);
    }
}

}  // namespace host
