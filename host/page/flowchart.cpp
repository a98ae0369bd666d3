#include "host/page/flowchart.h"

#include "host/page/citation.h"
#include "host/text/ascii.h"
#include "host/text/markdown_text.h"
#include "host/text/printable.h"
#include "host/text/utf8.h"
#include "workers/wiki/scope/uses.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace host {

namespace {

using models::Counter;
using models::OrderedMap;
using models::Text;
using models::TextSet;
using storage::SymbolId;

constexpr std::size_t MOST_NODES = 30;
constexpr std::size_t MOST_BESIDE = 9;  // consumers, and dependencies; the files of the page get the other places

// Whether the first character of a text means nothing but itself to Mermaid; "1. a" is a list in its Markdown.
bool is_plain(std::string_view text) {
    constexpr std::string_view PLAIN = "/-_ ";
    constexpr std::string_view PLAIN_INSIDE = ".:";  // of a word
    const char first = text.front();
    const auto is_word = [](char character) { return is_letter(character) || ('0' <= character && character <= '9'); };
    return is_word(first) || PLAIN.find(first) != std::string_view::npos ||
           (PLAIN_INSIDE.find(first) != std::string_view::npos && text.size() > 1 && is_word(text[1]));
}

// A text as the label of a node. What is not plain is written as the number of the character.
std::string label(std::string_view text) {
    const std::string shown = printable(text);
    std::string written;
    for (std::string_view rest = shown; !rest.empty();) {
        const std::size_t bytes = code_point_bytes(rest);
        if (bytes == 0) {
            written += "\uFFFD";
        } else if (bytes > 1 || (is_plain(rest) && !is_markup(shown, shown.size() - rest.size()))) {
            written += rest.substr(0, bytes);
        } else {
            written += "#" + std::to_string(static_cast<int>(rest.front())) + ";";
        }
        rest.remove_prefix(std::max<std::size_t>(bytes, 1));
    }
    return "\"" + written + "\"";
}

class Drawing {
  public:
    explicit Drawing(const Page& page) : page_(page), users_(wiki::scope::file_users(page.facts)) { choose_nodes(); }

    Flowchart draw() {
        draw_nodes();
        draw_uses();
        draw_dependencies();
        return {.source = has_arrows_ ? "flowchart LR\n" + lines_ : "",
                .has_every_file = files_.size() == page_.facts.paths().size()};
    }

  private:
    void choose_nodes() {
        const TextSet of_page = page_.facts.paths();
        Counter<Text> consumers;
        Counter<Text> files;
        for (const Text& file : of_page) {
            files.add(file, 0);
        }
        for (const auto& [target, sources] : users_) {
            for (const auto& [source, references] : sources) {
                files.add(target, references);
                if (!of_page.contains(source)) {
                    consumers.add(source, references);
                }
            }
        }
        for (const auto& [path, references] : consumers.most_common(MOST_BESIDE)) {
            consumers_.insert(path);
        }
        neighbours_ = std::span(page_.neighbours).first(std::min(MOST_BESIDE, page_.neighbours.size()));
        TextSet drawn;
        for (const auto& [path, references] : files.most_common(MOST_NODES - consumers_.size() - neighbours_.size())) {
            drawn.insert(path);
        }
        for (const Text& file : of_page) {  // in the order of the page
            if (drawn.contains(file)) {
                files_.insert(file);
            }
        }
    }

    void draw_nodes() {
        for (const Text& path : consumers_) {
            draw_file(path, "  ");
        }
        lines_ += "  subgraph page [\"This page\"]\n";
        for (const Text& path : files_) {
            draw_file(path, "    ");
        }
        lines_ += "  end\n";
        for (const auto& [target, references] : neighbours_) {
            const std::string text = std::string(target->name) + " in " + citation(target->path, cited_lines(*target));
            lines_ += "  " + id_of(target->id) + "(" + label(text) + ")\n";
        }
    }

    void draw_file(const Text& path, const std::string& indent) {
        const std::string id = "file" + std::to_string(ids_.size() + 1);
        ids_[path] = id;
        lines_ += indent + id + "[" + label(path) + "]\n";
    }

    void draw_uses() {
        for (const auto& [target, sources] : users_) {
            for (const auto& [source, references] : sources) {
                if (files_.contains(target) && (consumers_.contains(source) || files_.contains(source))) {
                    draw_arrow(ids_.get(source, ""), ids_.get(target, ""), references);
                }
            }
        }
    }

    // Counts the references that `wiki::scope::neighbours` counts, file by file.
    void draw_dependencies() {
        OrderedMap<Text, Counter<SymbolId>> by_source;
        for (const storage::OutboundReference& reference : page_.facts.outbound) {
            const wiki::scope::TargetKinds counted = wiki::scope::use_rules(reference.resolution).neighbour;
            if (files_.contains(reference.source_path) && includes(counted, reference.target.kind)) {
                by_source[reference.source_path].add(reference.target.id, reference.refs);
            }
        }
        for (const auto& [source, targets] : by_source) {
            for (const auto& [target, all] : neighbours_) {
                if (const std::int64_t* const references = targets.find(target->id)) {
                    draw_arrow(ids_.get(source, ""), id_of(target->id), *references);
                }
            }
        }
    }

    void draw_arrow(const std::string& from, const std::string& to, std::int64_t references) {
        lines_ += "  " + from + " -->|" + std::to_string(references) + "| " + to + "\n";
        has_arrows_ = true;
    }

    [[nodiscard]] std::string id_of(SymbolId target) const {
        const auto place = std::ranges::find(neighbours_, target, [](const auto& drawn) { return drawn.target->id; });
        return "used" + std::to_string(place - neighbours_.begin() + 1);
    }

    const Page& page_;
    wiki::scope::FileUsers users_;
    TextSet consumers_;  // the one that uses the page most first
    TextSet files_;
    std::span<const wiki::scope::Neighbour> neighbours_;
    OrderedMap<Text, std::string> ids_;
    std::string lines_;
    bool has_arrows_ = false;
};

}  // namespace

Flowchart flowchart(const Page& page) {
    return Drawing(page).draw();
}

}  // namespace host
