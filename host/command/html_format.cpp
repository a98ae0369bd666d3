#include "host/command/html_format.h"

#include "host/html/page_html.h"
#include "host/html/site_index.h"
#include "host/html/site_map.h"
#include "host/index/notes.h"
#include "host/indexing/report_json.h"
#include "host/page/section.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host {

namespace {

// Where a page comes from, but for the time of the index.
html::Origin origin_of(storage::Database& index) {
    const std::string report = index.noted(notes::REPORT);
    return {.indexer = report.empty() ? "" : indexing::read_report(report).tool,
            .program = "wiki-scope " WIKI_SCOPE_VERSION};
}

void write_page(std::ostream& out, const RequestedPage& page, storage::Database& index, const PageHead& head,
                const html::Origin& origin, const html::OtherPages* others = nullptr) {
    html::write_html(out, page.page(), index,
                     {.head = head,
                      .only = page.request().only,
                      .with_source = page.request().with_source,
                      .remarks = page.remarks(),
                      .origin = origin,
                      .links = page.source_links(),
                      .others = others});
}

}  // namespace

void choose_all_sections(PageRequest& request) {
    if (request.only.is_empty()) {
        for (const Section section : SECTIONS) {
            request.only.add(section);
        }
    }
}

std::string title_of(std::span<const std::string> paths) {
    constexpr std::size_t NAMED = 3;
    std::string title;
    for (const std::string& path : paths.first(std::min(paths.size(), NAMED))) {
        title.append(title.empty() ? "" : ", ").append(path);
    }
    return paths.size() > NAMED ? title + " and " + std::to_string(paths.size() - NAMED) + " more" : title;
}

void write_html(std::ostream& out, const RequestedPage& page, storage::Database& index, const PageHead& head) {
    html::Origin origin = origin_of(index);
    origin.commit = page.request().commit.empty() ? index.noted(notes::COMMIT) : page.request().commit;
    origin.made = index.origin().made;
    write_page(out, page, index, head, origin);
}

pages::PageFormat html_format() {
    const std::string ending = ".html";
    const auto site = std::make_shared<html::SiteIndex>();
    const auto map = std::make_shared<html::SiteMap>();
    return {
        .ending = ending,
        .begin =
            [map, ending](const pages::Wiki& wiki, std::span<const std::vector<std::string>> files_of_pages) {
                for (std::size_t at = 0; at < wiki.pages.size(); ++at) {
                    const auto& [title, name, request] = wiki.pages[at];
                    map->add({title, name + ending}, files_of_pages[at], request.only);
                }
            },
        .write =
            [site, map](std::ostream& out, const RequestedPage& page, storage::Database& index, const PageHead& head) {
                site->add(head.title, page.page(), page.request().only);
                const html::OtherPages others(*map, head.title, index);
                write_page(out, page, index, head, origin_of(index), &others);
            },
        .write_index =
            [site](std::ostream& out, std::span<const pages::MadePage> made, const std::string& stamp) {
                std::vector<html::SitePage> listed;
                for (const auto& [title, file] : made) {
                    listed.push_back({title, file});
                }
                site->write(out, listed, stamp);
            }};
}

}  // namespace host
