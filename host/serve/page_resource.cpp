#include "host/serve/page_resource.h"

#include "host/serve/resource.h"
#include "host/text/percent_encoding.h"

#include <optional>
#include <string_view>

namespace host::serve {

namespace {

constexpr std::string_view PREFIX = "scope://page/";

}  // namespace

Sent page_template() {
    return {{"uriTemplate", std::string(PREFIX) + "{+path}"},
            {"name", "page"},
            {"title", "Grounding of a wiki page"},
            {"description", "Facts about the files at a path: one file, the files below a folder, or those that a "
                            "pattern matches."},
            {"mimeType", "text/markdown"}};
}

PageRequest page_at(const std::string& uri) {
    if (!uri.starts_with(PREFIX)) {
        throw no_such_resource(uri, "no such resource; pages are at " + std::string(PREFIX) + "{+path}");
    }
    const std::optional<std::string> path = percent_decoded(std::string_view(uri).substr(PREFIX.size()));
    if (!path) {
        throw no_such_resource(uri, "% must be written as %25");
    }
    if (path->empty()) {
        throw no_such_resource(uri, "no path given; " + std::string(PREFIX) + ". is the page of all files");
    }
    if (path->size() > LONGEST_PATH || path->find('\0') != std::string::npos) {
        throw no_such_resource(uri, "a path may have at most " + std::to_string(LONGEST_PATH) + " bytes and no NUL");
    }
    return {.paths = {*path}};
}

std::string read_page(const std::string& uri, const PageRequest& request, const ToolContext& context,
                      const Call& call) {
    try {
        const ToolAnswer page = grounded(request, context, call);
        context.warn(page.remarks);
        return resource_contents(uri, page.text);
    } catch (const ToolFailure& failure) {
        throw no_such_resource(uri, failure.what());
    }
}

}  // namespace host::serve
