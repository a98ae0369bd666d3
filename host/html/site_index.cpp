#include "host/html/site_index.h"

#include "host/html/html_text.h"
#include "host/html/links.h"
#include "host/html/render.h"
#include "host/html/templates.h"
#include "host/html/view.h"
#include "host/text/percent_encoding.h"

#include <cstdint>
#include <iterator>
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
                          {"declarations", list_of(contents.declarations, entry_view)}});
    };
    View extent(View::type::list);
    extent.push_back(number_view(std::ssize(pages), "page"));
    render(out, templates::INDEX,
           object_of({{"title", text_of("All pages")},
                      {"stamp", text_of(stamp)},
                      {"extent", extent},
                      {"pages", list_of(pages, page_view)}}));
}

}  // namespace host::html
