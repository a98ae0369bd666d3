#include "host/serve/page_resource.h"

#include <charconv>
#include <cstddef>
#include <optional>
#include <string_view>

namespace host::serve {

namespace {

constexpr std::string_view PREFIX = "scope://page/";

RpcError no_such_page(const std::string& uri, const std::string& reason) {
    return {ErrorCode::RESOURCE_NOT_FOUND, reason, {{"uri", uri}}};
}

// Decodes the percent-encoded byte at the beginning of a text ("%2F"); none when there is no such byte.
std::optional<char> escaped_byte(std::string_view text) {
    unsigned value = 0;
    if (text.size() < 3 || text.front() != '%') {
        return std::nullopt;
    }
    const auto [end, error] = std::from_chars(text.data() + 1, text.data() + 3, value, 16);
    return end == text.data() + 3 ? std::optional(static_cast<char>(value)) : std::nullopt;
}

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
    std::string_view rest = uri;
    if (!rest.starts_with(PREFIX)) {
        throw no_such_page(uri, "no such resource; pages are at " + std::string(PREFIX) + "{+path}");
    }
    rest.remove_prefix(PREFIX.size());
    std::string path;
    while (!rest.empty()) {
        const std::optional<char> byte = escaped_byte(rest);
        if (!byte && rest.front() == '%') {
            throw no_such_page(uri, "% must be written as %25");
        }
        path += byte.value_or(rest.front());
        rest.remove_prefix(byte ? 3 : 1);
    }
    if (path.empty()) {
        throw no_such_page(uri, "no path given; " + std::string(PREFIX) + ". is the page of all files");
    }
    if (path.size() > LONGEST_PATH || path.find('\0') != std::string::npos) {
        throw no_such_page(uri, "a path may have at most " + std::to_string(LONGEST_PATH) + " bytes and no NUL");
    }
    return {.paths = {path}};
}

std::string read_page(const std::string& uri, const PageRequest& request, const ToolContext& context,
                      const Call& call) {
    try {
        const ToolAnswer page = grounded(request, context, call);
        context.warn(page.remarks);
        return text_of(
            {{"contents", Sent::array({{{"uri", uri}, {"mimeType", "text/markdown"}, {"text", page.text}}})}});
    } catch (const ToolFailure& failure) {
        throw no_such_page(uri, failure.what());
    }
}

}  // namespace host::serve
