// Arbitrary files: what one says it is for fits on one short line.

#include "fuzz/promise.h"
#include "host/text/blanks.h"
#include "host/text/split_lines.h"
#include "workers/wiki/file_summary.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

using fuzz::promise;

bool is_utf8(std::string_view text) {
    try {
        return !nlohmann::json(text).dump().empty();
    } catch (const nlohmann::json::type_error&) {
        return false;
    }
}

// How many code points a renderer of Markdown shows: of an escape not its backslash.
std::ptrdiff_t shown_code_points(std::string_view text) {
    std::ptrdiff_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        at += text[at] == '\\' ? 1U : 0U;
        count += at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) != 0x80U ? 1 : 0;
    }
    return count;
}

// Whether words are all that there is, with one space between them.
bool is_plain_line(std::string_view text) {
    return text == host::trimmed(text) && text.find("  ") == std::string_view::npos &&
           text.find_first_of("\t\r\n\v\f") == std::string_view::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::ptrdiff_t LIMIT = 160;
    const std::string content(data, data + size);
    const std::vector<std::string_view> views = host::split_lines(content);
    std::vector<std::string> lines(views.begin(), views.end());
    const std::string summary = wiki::file_summary(lines);
    promise(is_plain_line(summary), "a summary is one line of words");
    promise(shown_code_points(summary) <= LIMIT, "a summary is short");
    promise(!is_utf8(content) || is_utf8(summary), "no character is cut apart");

    lines.insert(lines.begin(), " ");
    promise(wiki::file_summary(lines) == summary, "a blank line above changes nothing");
    return 0;
}
