// Arbitrary bytes as the file of a wiki, as what a run has recorded, and as the file of a page.

#include "fixtures/temporary_folder.h"
#include "fuzz/promise.h"
#include "host/pages/page_name.h"
#include "host/pages/record.h"
#include "host/pages/stamp.h"
#include "host/pages/wiki.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

using fuzz::promise;
using namespace host::pages;

bool is_one_line_about(std::string_view message, std::string_view file) {
    return message.starts_with(file) && message.find('\n') == std::string_view::npos;
}

void check_wiki(const std::string& path) {
    try {
        const Wiki wiki = read_wiki(path);
        promise(!wiki.pages.empty(), "a wiki has pages");
        std::set<std::string> names;
        for (const WikiPage& page : wiki.pages) {
            promise(is_page_name(page.name) && names.insert(page.name).second, "each page has a file of its own");
            promise(!page.title.empty() && !page.request.paths.empty(), "each page has a title and paths");
        }
    } catch (const std::runtime_error& error) {
        promise(is_one_line_about(error.what(), path), "what is wrong with a wiki is told in one line");
    }
}

void check_record(const host::TemporaryFolder& folder) {
    try {
        for (const auto& [file, recorded] : read_record(WikiFolder(folder / "", WikiFolder::Access::READ))) {
            promise(is_page_name(file), "a record names files of its folder");
            promise(read_facts(to_json(recorded.facts)) == recorded.facts, "facts are what their JSON says");
        }
    } catch (const std::runtime_error& error) {
        promise(is_one_line_about(error.what(), folder / ""), "what is wrong with a record is told in one line");
    }
}

void check_stamp(const std::string& text) {
    const std::string page = sealed(open_stamp("0123456789abcdef") + text);
    promise(is_as_sealed(page), "a text that was sealed is as it was");
    promise(!is_as_sealed(page + "."), "a text that has changed since is not");
    static_cast<void>(is_as_sealed(text));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const host::TemporaryFolder folder;
    const std::string text(data, data + size);
    check_wiki(folder.write("wiki.toml", text));
    folder.write(".wiki-scope-pages.json", text);
    check_record(folder);
    check_stamp(text);
    return 0;
}
