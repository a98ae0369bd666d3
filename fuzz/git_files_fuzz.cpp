// Arbitrary bytes as the files of Git that a checkout brings along.

#include "fuzz/promise.h"
#include "host/git/attributes.h"
#include "host/git/ignore_rules.h"
#include "host/git/tracked_files.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

using namespace host::git;
using fuzz::promise;

void check_rules(std::string_view text) {
    const IgnoreRules last_ignores(std::string(text) + "\n*\n");
    const IgnoreRules last_keeps(std::string(text) + "\n!*\n");
    const AttributeMacros macros = attribute_macros(text);
    const AttributeRules nearest("* linguist-generated -linguist-vendored\n", macros);
    const AttributeRules attributes(text, macros);
    for (const std::string_view path : {"a", "a/b.log", "build/x/y.ts"}) {
        promise(last_ignores.decide(path, false) == true && last_keeps.decide(path, false) == false,
                "the last rule that matches decides");
        FileAttributes file(macros);
        nearest.complete(path, file);
        attributes.complete(path, file);
        promise(!macros.empty() || (file.origin().is_generated == true && file.origin().is_vendored == false),
                "what is said nearer to a file stays");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(data, data + size);
    if (const auto paths = read_git_index(bytes)) {
        promise(std::ranges::is_sorted(*paths), "an index of Git is sorted");
    }
    check_rules(bytes);
    return 0;
}
