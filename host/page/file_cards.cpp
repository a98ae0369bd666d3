#include "host/page/file_cards.h"

#include "host/text/blanks.h"
#include "host/text/control_characters.h"
#include "host/text/markdown_text.h"
#include "host/text/short_path.h"
#include "workers/wiki/scope/render.h"

namespace host {

namespace {

using models::Text;
using wiki::scope::FileCard;
using wiki::scope::FileUser;
using wiki::scope::UsedDeclaration;

// What is shown of a list, separated by commas, and how many others there are.
template <class Element, class TextOf>
std::string listed(const models::Excerpt<Element>& excerpt, TextOf text_of) {
    std::string text;
    for (const Element& element : excerpt.shown) {
        text.append(text.empty() ? "" : ", ").append(text_of(element));
    }
    return excerpt.left_out() > 0 ? text + " +" + std::to_string(excerpt.left_out()) : text;
}

std::string most_used(const FileCard& card) {
    const std::string label = card.is_used_inside_only ? "in-page " : "";
    return listed(card.most_used, [&](const UsedDeclaration& used) {
        return code_cell(used.declaration->name) + " L" + std::to_string(used.declaration->start_line) + " (" + label +
               std::to_string(used.references) + ")";
    });
}

std::string users(const FileCard& card) {
    return plain_cell(trimmed(listed(card.users, [](const FileUser& user) { return short_path(user.path); })));
}

std::string tests(const FileCard& card) {
    return plain_cell(trimmed(listed(card.tests, [](const Text& test) { return test.view(); })));
}

}  // namespace

std::string file_row(const FileCard& card) {
    if (!card.is_indexed) {
        return "| " + code_cell(without_control_characters(card.path)) + " | ? | 0 | not in the index | | | |\n";
    }
    std::string row = "|";
    for (const std::string& cell :
         {code_cell(card.path), card.lines ? std::to_string(*card.lines) : "?", std::to_string(card.declarations),
          markdown_cell(card.summary), most_used(card), users(card), tests(card)}) {
        row.append(" ").append(cell).append(" |");
    }
    return row + "\n";
}

std::string file_table(std::span<const FileCard> cards) {
    std::string table = wiki::scope::render_file_cards(std::span<const FileCard>(), "## Files");
    for (const FileCard& card : cards) {
        table += file_row(card);
    }
    return table;
}

}  // namespace host
