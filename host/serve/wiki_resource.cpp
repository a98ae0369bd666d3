#include "host/serve/wiki_resource.h"

#include "host/pages/page_file.h"
#include "host/serve/resource.h"
#include "host/text/percent_encoding.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace host::serve {

namespace {

constexpr std::string_view WIKI_PREFIX = "scope://wiki/";

std::string listed(const std::vector<std::string>& paths) {
    std::string text;
    for (const std::string& path : paths) {
        text.append(text.empty() ? "" : ", ").append(path);
    }
    return text;
}

}  // namespace

Sent resources_of(const pages::Wiki& wiki) {
    Sent list = Sent::array();
    for (const pages::WikiPage& page : wiki.pages) {
        list.push_back({{"uri", std::string(WIKI_PREFIX) + percent_encoded(page.name)},
                        {"name", page.name},
                        {"title", page.title},
                        {"description", "Facts about " + listed(page.request.paths)},
                        {"mimeType", "text/markdown"}});
    }
    return list;
}

const pages::WikiPage* wiki_page_at(const pages::Wiki& wiki, const std::string& uri) {
    if (!uri.starts_with(WIKI_PREFIX)) {
        return nullptr;
    }
    const std::optional<std::string> name = percent_decoded(std::string_view(uri).substr(WIKI_PREFIX.size()));
    const auto page = std::ranges::find(wiki.pages, name.value_or(""), &pages::WikiPage::name);
    if (page == wiki.pages.end()) {
        throw no_such_resource(uri, "the wiki has no such page; resources/list names its pages");
    }
    return &*page;
}

std::string read_wiki_page(const std::string& uri, const pages::WikiPage& page, const ToolContext& context,
                           const Call& call) {
    pages::WikiPage here = page;
    here.request.checkout = context.checkout;
    pages::PageFile file;
    context.index.borrow([&call] { call.check(); },
                         [&](storage::Database& db) {
                             file = pages::page_file(here, pages::markdown_format(), db,
                                                     [&](std::span<const std::string> files) {
                                                         if (is_long_page(db, files)) {
                                                             call.take_long();
                                                         }
                                                     });
                         });
    if (file.is_failure) {
        throw no_such_resource(uri, lines_of(file.remarks));
    }
    context.warn(file.remarks);
    return resource_contents(uri, file.text);
}

}  // namespace host::serve
