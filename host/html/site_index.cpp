#include "host/html/site_index.h"

#include "host/html/html_text.h"
#include "host/html/links.h"
#include "host/html/templates.h"
#include "host/html/view.h"
#include "host/text/percent_encoding.h"

#include <cstdint>
#include <ostream>
#include <stdexcept>
#include <utility>

namespace host::html {

void SiteIndex::add(const std::string& title, const Page& page, const SectionChoice& sections) {
    const Links links(page, sections);
    Contents contents;
    for (const storage::ScopeFile& file : page.facts.files) {
        contents.files.push_back({.name = std::string(file.path),
                                  .kind = {},
                                  .path = std::string(file.path),
                                  .anchor = links.file(file.path)});
        contents.lines += page.facts.line_counts.get(file.path, 0);
    }
    for (const storage::ScopeSymbol* const symbol : page.selection) {
        if (links.has_block(*symbol)) {
            contents.declarations.push_back({.name = page.names.of(*symbol),
                                             .kind = std::string(symbol->kind),
                                             .path = std::string(symbol->path),
                                             .anchor = links.declaration(*symbol)});
        }
    }
    const std::scoped_lock lock(mutex_);
    contents_[title] = std::move(contents);
}

void SiteIndex::write(std::ostream& out, std::span<const SitePage> pages, const std::string& stamp) const {
    const auto page_view = [&](const SitePage& page) {
        const std::string address = percent_encoded(page.file);
        const auto entry_view = [&](const Entry& entry) {
            return object_of({{"href", text_of(entry.anchor.empty() ? address : address + "#" + entry.anchor)},
                              {"name", text_of(entry.name)},
                              {"kind", text_if_any(entry.kind)},
                              {"path", text_of(path_html(entry.path))}});
        };
        const Contents& contents = contents_.at(page.title);
        return object_of({{"href", text_of(address)},
                          {"title", text_of(page.title)},
                          {"count", text_of(std::ssize(contents.files))},
                          {"lines", text_of(contents.lines)},
                          {"files", list_of(contents.files, entry_view)},
                          {"has_declarations", !contents.declarations.empty()},
                          {"declarations", list_of(contents.declarations, entry_view)}});
    };
    kainjow::mustache::mustache index_template{std::string(templates::INDEX)};
    index_template.set_custom_escape(html_text);
    index_template.render(object_of({{"stamp", text_of(stamp)},
                                     {"style", text_of(templates::STYLE)},
                                     {"style_hash", text_of(templates::STYLE_HASH)},
                                     {"script", text_of(templates::SCRIPT)},
                                     {"script_hash", text_of(templates::SCRIPT_HASH)},
                                     {"count", text_of(std::ssize(pages))},
                                     {"pages", list_of(pages, page_view)}}),
                          [&out](const std::string& text) { out << text; });
    if (!index_template.is_valid()) {
        throw std::logic_error("the template of the index: " + index_template.error_message());
    }
}

}  // namespace host::html
