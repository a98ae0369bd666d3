#include "host/html/links.h"

namespace host::html {

Links::Links(const Page& page, const SectionChoice& sections, const SourceLinks* sources, const OtherPages* others)
    : anchors_(page.facts.symbols), has_outline_(sections.contains(Section::OUTLINE)), sources_(sources),
      others_(others) {
    if (sections.contains(Section::FILES)) {
        files_ = page.facts.paths();
    }
    if (sections.contains(Section::DECLARATIONS)) {
        for (const storage::ScopeSymbol* const symbol : page.selection) {
            blocks_.insert(symbol->id);
        }
    }
}

std::string Links::file(const models::Text& path) const {
    return files_.contains(path) ? file_anchor(path) : "";
}

std::string Links::address(const models::Text& path) const {
    if (files_.contains(path)) {
        return "#" + file_anchor(path);
    }
    return others_ == nullptr ? "" : others_->file(path);
}

std::string Links::address(const storage::ScopeSymbol& symbol) const {
    return others_ == nullptr ? "" : others_->declaration(symbol);
}

std::string Links::declaration(const storage::ScopeSymbol& symbol) const {
    return has_outline_ || has_block(symbol) ? anchors_.of(symbol) : "";
}

std::string Links::source(std::string_view path, const std::optional<wiki::scope::LineRange>& lines) const {
    return sources_ == nullptr || !lines ? "" : sources_->url.of(sources_->commit, path, lines->first, lines->last);
}

}  // namespace host::html
