// Arbitrary bytes as a source file of every language.

#include "fuzz/promise.h"
#include "host/sources/outline.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace {

using namespace host::sources;
using fuzz::promise;

void check_outline(const Outline& outline, std::string_view text) {
    promise(outline.line_count >= 1 && outline.line_count <= std::ranges::count(text, '\n') + 1,
            "a file has no more lines than line ends, but one");
    promise(std::ranges::is_sorted(outline.declarations, {}, &SourceDeclaration::position),
            "declarations stand by the positions of their names");
    for (const SourceDeclaration& declaration : outline.declarations) {
        promise(1 <= declaration.first_line && declaration.first_line <= declaration.position.line,
                "a declaration begins before its name");
        promise(declaration.position.line <= declaration.last_line && declaration.last_line <= outline.line_count + 1,
                "a declaration ends behind its name and in its file");
        promise(text.find(declaration.name) != std::string_view::npos, "a name is in the text");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string bytes(data + 1, data + size);
    const Language& language = languages()[data[0] % languages().size()];
    const std::atomic<bool> never = false;
    if (const std::optional<Outline> outline = outline_of(bytes, language, never)) {
        check_outline(*outline, bytes);
    }
    return 0;
}
