// Arbitrary bytes as a source file of every language whose names are resolved, and as what was kept of one.

#include "fuzz/promise.h"
#include "host/resolve/resolver.h"
#include "host/worktree/bytes.h"
#include "host/worktree/facts_store.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace {

using namespace host::worktree;
using fuzz::promise;
namespace resolve = host::resolve;

constexpr std::array<std::string_view, 9> PATHS{"a.c",  "a.cpp", "a.go", "A.java", "a.js",
                                                "a.py", "a.rs",  "a.ts", "a.tsx"};

using ReferenceValues = std::tuple<resolve::Target, resolve::Evidence, std::int64_t, std::uint32_t>;

std::vector<ReferenceValues> references_in(const SourceFacts& facts, std::string_view path) {
    const resolve::Repository repository{.files = {{std::string(path), facts.dialect, &facts.syntax}}, .packages = {}};
    std::vector<ReferenceValues> values;
    for (const resolve::Reference& each : resolve::Resolver(repository).references_of(0).references) {
        promise(each.target.file == 0, "a file alone refers to itself");
        promise(each.count > 0 && each.evidence != resolve::Evidence::IMPORT, "and imports nothing");
        values.emplace_back(each.target, each.evidence, each.count, each.line);
    }
    return values;
}

void check_text(const std::string& text, std::string_view path) {
    const std::atomic<bool> never = false;
    const SourceFacts facts = facts_of(text, std::string(path), never);
    const std::string kept = to_bytes(facts);
    const SourceFacts again = facts_in(kept, path);
    promise(to_bytes(again) == kept, "what is kept is what was read");
    promise(references_in(again, path) == references_in(facts, path), "and means the same");
}

void check_kept(std::string_view bytes, std::string_view path) {
    try {
        references_in(facts_in(bytes, path), path);
    } catch (const Malformed&) {
        return;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string bytes(data + 1, data + size);
    const std::string_view path = PATHS.at(data[0] / 2 % PATHS.size());
    if (data[0] % 2 == 0) {
        check_text(bytes, path);
    } else {
        check_kept(bytes, path);
    }
    return 0;
}
