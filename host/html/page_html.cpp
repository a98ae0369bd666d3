#include "host/html/page_html.h"

#include "host/html/html_text.h"
#include "host/html/picture.h"
#include "host/html/render.h"
#include "host/html/sections.h"
#include "host/html/templates.h"

#include <cstdint>
#include <iterator>
#include <string>

namespace host::html {

namespace {

View section_view(Section section, const Page& page, storage::Database& db, const Links& links, bool with_source) {
    switch (section) {
    case Section::FILES:
        return files_view(page, links);
    case Section::CONSUMERS:
        return consumers_view(page, links);
    case Section::DECLARATIONS:
        return declarations_view(page, db, links, with_source);
    case Section::IN_DEPTH:
        return in_depth_view(page, links);
    case Section::DEPENDENCIES:
        return dependencies_view(page, links);
    case Section::GRAPH:
        return picture_view(page, links);
    case Section::SEEDS:
        return seeds_view(page, links);
    case Section::OUTLINE:
        return outline_view(page, db, links);
    }
    return false;
}

// What the page is about at a glance.
View extent_view(const Page& page) {
    std::int64_t lines = 0;
    for (const auto& [path, count] : page.facts.line_counts) {
        lines += count;
    }
    View extent(View::type::list);
    extent.push_back(number_view(std::ssize(page.facts.files), "file"));
    extent.push_back(number_view(lines, "line"));
    extent.push_back(number_view(std::ssize(page.facts.symbols), "declaration"));
    return extent;
}

View page_view(const Page& page, storage::Database& db, const HtmlOptions& options) {
    const Links links(page, options.only, options.links, options.others);
    View view = object_of({
        {"title", text_of(options.head.title)},
        {"stamp", text_if_any(options.head.stamp)},
        {"extent", extent_view(page)},
        {"has_doubts", !options.remarks.empty()},
        {"doubts", list_of(options.remarks, [](const std::string& remark) { return text_of(remark); })},
        {"indexer", text_if_any(options.origin.indexer)},
        {"commit", text_if_any(options.origin.commit)},
        {"made", text_if_any(options.origin.made)},
        {"program", text_if_any(options.origin.program)},
    });
    for (const Section section : SECTIONS) {
        view.set(std::string(name_of(section)), options.only.contains(section)
                                                    ? section_view(section, page, db, links, options.with_source)
                                                    : View(false));
    }
    return view;
}

}  // namespace

void write_html(std::ostream& out, const Page& page, storage::Database& db, const HtmlOptions& options) {
    render(out, templates::PAGE, page_view(page, db, options));
}

}  // namespace host::html
