#include "workers/wiki/scope/internal/table_text.h"
#include "workers/wiki/scope/render.h"

#include <array>

namespace wiki::scope {

namespace {

std::string most_used_cell(const FileCard& card) {
    const std::string_view label = card.is_used_inside_only ? "in-page " : "";
    return _cell(_listed(card.most_used, [&](const UsedDeclaration& used) {
        return _concatenated({"`", used.declaration->name, "` L", std::to_string(used.declaration->start_line), " (",
                              label, std::to_string(used.references), ")"});
    }));
}

std::string row_of(const FileCard& card) {
    if (!card.is_indexed) {
        return _concatenated({"| `", card.path, "` | ? | 0 | not in the index | | | |\n"});
    }
    const std::array cells{
        _concatenated({"`", card.path, "`"}),
        card.lines ? std::to_string(*card.lines) : "?",
        std::to_string(card.declarations),
        _cell(card.summary),
        most_used_cell(card),
        _cell(_listed(card.users, [](const FileUser& user) { return _short_path(user.path); })),
        _cell(_listed(card.tests, [](const Text& test) { return std::string(test); })),
    };
    std::string row = "|";
    for (const std::string& cell : cells) {
        row.append(" ").append(cell).append(" |");
    }
    return row + "\n";
}

}  // namespace

std::string render_file_cards(std::span<const FileCard> cards, std::string_view heading) {
    std::string block(heading);
    block.append("\n\n").append(FILE_CARDS_EXPLANATION).append("\n").append(FILE_CARDS_HEAD);
    for (const FileCard& card : cards) {
        block += row_of(card);
    }
    return block;
}

std::string render_file_cards(const ScopeFacts& facts, const FanIn& fan_in, std::string_view heading,
                              std::span<const std::string> missing) {
    return render_file_cards(file_cards(facts, fan_in, missing), heading);
}

}  // namespace wiki::scope
