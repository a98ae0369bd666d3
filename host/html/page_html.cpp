#include "host/html/page_html.h"

#include "host/html/html_text.h"
#include "host/html/picture.h"
#include "host/html/sections.h"
#include "host/html/templates.h"

#include <ostream>
#include <stdexcept>

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
    const auto noun = [](std::int64_t count, const char* thing) {
        return std::string(thing) + (count == 1 ? "" : "s");
    };
    const auto files = std::ssize(page.facts.files);
    const auto declarations = std::ssize(page.facts.symbols);
    return object_of({{"files", text_of(files)},
                      {"files_noun", noun(files, "file")},
                      {"lines", text_of(lines)},
                      {"lines_noun", noun(lines, "line")},
                      {"declarations", text_of(declarations)},
                      {"declarations_noun", noun(declarations, "declaration")}});
}

View page_view(const Page& page, storage::Database& db, const HtmlOptions& options) {
    const Links links(page, options.only, options.links, options.elsewhere);
    View view = object_of({
        {"title", text_of(options.head.title)},
        {"stamp", text_if_any(options.head.stamp)},
        {"style", text_of(templates::STYLE)},
        {"style_hash", text_of(templates::STYLE_HASH)},
        {"script", text_of(templates::SCRIPT)},
        {"script_hash", text_of(templates::SCRIPT_HASH)},
        {"extent", extent_view(page)},
        {"has_doubts", !options.remarks.empty()},
        {"doubts", list_of(options.remarks, [](const std::string& remark) { return text_of(remark); })},
        {"indexer", text_if_any(options.origin.indexer)},
        {"commit", text_if_any(options.origin.commit)},
        {"made", text_if_any(options.origin.made)},
        {"program", text_if_any(options.origin.program)},
    });
    for (const Section section : SECTIONS) {
        std::string name(name_of(section));
        name = name == "in-depth" ? "in_depth" : name;
        view.set(name, options.only.contains(section) ? section_view(section, page, db, links, options.with_source)
                                                      : View(false));
    }
    return view;
}

}  // namespace

void write_html(std::ostream& out, const Page& page, storage::Database& db, const HtmlOptions& options) {
    kainjow::mustache::mustache page_template{std::string(templates::PAGE)};
    page_template.set_custom_escape(html_text);
    page_template.render(page_view(page, db, options), [&out](const std::string& text) { out << text; });
    if (!page_template.is_valid()) {
        throw std::logic_error("the template of the page: " + page_template.error_message());
    }
}

}  // namespace host::html
