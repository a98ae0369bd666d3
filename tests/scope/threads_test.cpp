// One page in many threads. A race shows under the sanitizer of threads (`make sanitize`).

#include "tests/scope/grounding.h"
#include "tests/scope/page_builder.h"

#include <gtest/gtest.h>

#include <array>
#include <latch>
#include <optional>
#include <thread>

namespace wiki::scope {
namespace {

constexpr int THREADS = 8;

// Some of everything: types in types, sources of every sort, resolutions and kinds in all combinations.
ScopeFacts varied_page() {
    constexpr std::array KINDS{"class", "function", "constant", "method", "attribute"};
    constexpr std::array RESOLUTIONS{"import", "local", "unique", "legacy"};
    constexpr std::array FILES{"src/a.ts", "src/b.ts", "c.lua", "empty.ts"};
    constexpr std::array SOURCES{"src/a.ts", "test/a.ts", "x.ts", "y/y.ts", "c.lua"};
    PageBuilder page;
    page.import_resolved_paths = {FILES[0], FILES[1]};
    page.test_sources = {SOURCES[1]};
    for (std::size_t i = 0; i < FILES.size(); ++i) {
        page.files.push_back({static_cast<storage::FileId>(i), FILES[i], i == 2 ? "lua" : "typescript"});
        page.line_counts[FILES[i]] = 100;
        page.summaries[FILES[i]] = "a | b";
        page.test_imports[FILES[i]] = {SOURCES[1]};
    }
    for (std::size_t i = 0; i < 600; ++i) {
        const auto id = static_cast<SymbolId>(i % 90);
        const char* const kind = KINDS[i % KINDS.size()];
        const char* const file = FILES[i % 3];
        const ScopeSymbol declaration =
            symbol(id, i % 7 == 0 ? "_own" : kind).in(file).kind(kind).lines(static_cast<int>(id), 60);
        if (i < 90) {
            page.symbols.push_back(declaration);
        }
        page.inbound.push_back(from(SOURCES[i % 11 % SOURCES.size()])
                                   .to(id, file, kind)
                                   .by(RESOLUTIONS[i % RESOLUTIONS.size()])
                                   .kind(kind));
        const ScopeSymbol elsewhere = symbol(id, kind).in("z.ts").kind(kind).fqn(kind);
        page.outbound.push_back({file, elsewhere, RESOLUTIONS[i % RESOLUTIONS.size()], 2});
    }
    return page.facts();
}

TEST(Threads, AllGetOfOnePageWhatASingleOneGets) {
    const ScopeFacts facts = varied_page();
    std::array<std::optional<Grounding>, THREADS> groundings;
    {
        std::latch start(THREADS);
        std::vector<std::jthread> threads;
        for (std::optional<Grounding>& grounding : groundings) {
            threads.emplace_back([&] {
                start.arrive_and_wait();
                for (int round = 0; round < 10; ++round) {
                    grounding = grounding_of(facts);  // and lets go of the one before
                }
            });
        }
    }
    const Grounding alone = grounding_of(facts);
    for (const std::optional<Grounding>& grounding : groundings) {
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
