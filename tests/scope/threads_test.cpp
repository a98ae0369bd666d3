// One page in many threads. A race shows under the sanitizer of threads (`make sanitize`).

#include "fixtures/grounding.h"
#include "tests/scope/page_builder.h"

#include <gtest/gtest.h>

#include <array>
#include <latch>
#include <thread>

namespace wiki::scope {
namespace {

constexpr int THREADS = 8;

// Some of everything: types in types, sources of every sort, resolutions and kinds in all combinations.
ScopeFacts varied_page() {
    constexpr std::array KINDS{"class", "function", "constant", "method", "attribute"};
    constexpr std::array RESOLUTIONS{"import", "local", "unique", "legacy"};
    constexpr std::array FILES{"src/a.ts", "src/b.ts", "c.lua"};
    constexpr std::array SOURCES{"src/a.ts", "test/a.ts", "x.ts", "y/y.ts", "c.lua", "z.ts", "w.ts"};
    PageBuilder page;
    page.files = {{1, FILES[0], "typescript"}, {2, FILES[1], "typescript"}, {3, FILES[2], "lua"}};
    page.import_resolved_paths = {FILES[0], FILES[1]};
    page.test_sources = {SOURCES[1]};
    page.line_counts = {{FILES[0], 100}};
    page.summaries = {{FILES[0], "a | b"}};
    page.test_imports = {{FILES[0], {SOURCES[1]}}};
    for (int id = 0; id < 420; ++id) {
        const auto i = static_cast<std::size_t>(id);
        const char* const kind = KINDS[i % KINDS.size()];
        const char* const file = FILES[i % FILES.size()];
        const char* const resolution = RESOLUTIONS[i % RESOLUTIONS.size()];
        page.symbols.push_back(symbol(id, kind).in(file).kind(kind).lines(id, 60));
        page.inbound.push_back(from(SOURCES[i % SOURCES.size()]).to(id, file, kind).by(resolution).kind(kind));
        page.outbound.push_back({file, symbol(id, kind).in("v.ts").kind(kind), resolution, 2});
    }
    return page.facts();
}

TEST(Threads, AllGetOfOnePageWhatASingleOneGets) {
    const ScopeFacts facts = varied_page();
    std::array<Grounding, THREADS> groundings;
    {
        std::latch start(THREADS);
        std::vector<std::jthread> threads;
        for (Grounding& grounding : groundings) {
            threads.emplace_back([&] {
                start.arrive_and_wait();
                for (int round = 0; round < 10; ++round) {
                    grounding = grounding_of(facts);  // and lets go of the one before
                }
            });
        }
    }
    const Grounding alone = grounding_of(facts);  // not before: nothing is computed yet when the threads begin
    for (const Grounding& grounding : groundings) {
        EXPECT_TRUE(grounding == alone);
    }
}

TEST(Threads, AnyMayBeTheLastToHoldAText) {
    Text text("shared");
    std::latch start(THREADS + 1);
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < THREADS; ++thread) {
        threads.emplace_back([&start, text] {
            start.arrive_and_wait();
            EXPECT_EQ(text, "shared");
        });
    }
    text = Text();
    start.arrive_and_wait();
}

}  // namespace
}  // namespace wiki::scope
