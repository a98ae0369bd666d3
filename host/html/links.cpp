#include "host/html/links.h"

namespace host::html {

Links::Links(const Page& page, const SectionChoice& sections)
    : anchors_(page.facts), has_outline_(sections.contains(Section::OUTLINE)) {
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

std::string Links::declaration(const storage::ScopeSymbol& symbol) const {
    return has_outline_ || has_block(symbol) ? anchors_.of(symbol) : "";
}

}  // namespace host::html
