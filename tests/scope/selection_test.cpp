#include "workers/wiki/scope/selection.h"

#include "fixtures/plain_selection.h"
#include "tests/scope/page_builder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace wiki::scope {
namespace {

using Ids = std::vector<SymbolId>;
using IdsByFile = std::vector<std::pair<const char*, std::vector<int>>>;

// A page whose declarations rank in the order of their ids: each starts on the line of its id.
ScopeFacts page_of(const IdsByFile& ids_by_file) {
    PageBuilder page;
    for (const auto& [path, ids] : ids_by_file) {
        for (const int id : ids) {
            page.symbols.push_back(symbol(id, "s").in(path).lines(id, id));
        }
    }
    return page.facts();
}

Ids selected(const ScopeFacts& page, std::int64_t total, std::int64_t floor, double max_share) {
    const FanIn unused{{}};
    Ids ids;
    for (const ScopeSymbol* symbol : select_with_quota(ranked_by_file(page, unused), unused, total, floor, max_share)) {
        ids.push_back(symbol->id);
    }
    return ids;
}

TEST(Selection, RepresentsEveryFileAndBoundsEach) {
    const ScopeFacts page = page_of({{"A", {1, 3, 4, 5, 8}}, {"B", {2, 7}}, {"C", {6}}});
    EXPECT_EQ(selected(page, 6, 1, 0.5), (Ids{1, 2, 6, 3, 7, 4}));
    EXPECT_EQ(selected(page, 6, 1, 1.0), (Ids{1, 2, 6, 3, 4, 5}));          // no bound
    EXPECT_EQ(selected(page, 6, 2, 0.0), (Ids{1, 2, 6, 3, 7, 4}));          // two each, then what was held back
    EXPECT_EQ(selected(page, 2, 9, 0.4), (Ids{1, 2}));                      // more files than blocks
    EXPECT_EQ(selected(page, 100, 0, 0.1), (Ids{1, 2, 6, 3, 7, 4, 5, 8}));  // everything
    EXPECT_EQ(selected(page, 0, 1, 0.5), Ids{});
    EXPECT_EQ(selected(page, -5, 1, 0.5), Ids{});
    EXPECT_EQ(selected(page_of({}), 5, 1, 0.5), Ids{});
}

TEST(Selection, TakesEveryNumber) {
    const ScopeFacts page = page_of({{"A", {1, 3, 4}}, {"B", {2}}});
    constexpr std::int64_t HUGE_TOTAL = std::int64_t{1} << 62U;
    constexpr double INF = std::numeric_limits<double>::infinity();
    constexpr auto MIN = std::numeric_limits<std::int64_t>::min();
    for (const double share : {8.0, -1.0, INF, -INF, std::nan(""), 1e308}) {
        EXPECT_EQ(selected(page, HUGE_TOTAL, MIN, share), (Ids{1, 2, 3, 4})) << share;
        EXPECT_EQ(selected(page, 3, HUGE_TOTAL, share), (Ids{1, 2, 3})) << share;
    }
}

TEST(Selection, IsThatOfThePlainRulesOnRandomPages) {
    std::mt19937 random(7);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    const FanIn unused{{}};
    for (int round = 0; round < 3000; ++round) {
        IdsByFile files{{"d", {}}, {"a", {}}, {"c", {}}, {"b", {}}};
        for (int count = below(25); count > 0; --count) {
            files[random() % files.size()].second.push_back(1 + below(12));
        }
        const ScopeFacts page = page_of(files);
        const RankedFiles ranked = ranked_by_file(page, unused);
        const auto [total, floor, share] = std::tuple(below(20), below(5), below(12) / 10.0);
        ASSERT_EQ(select_with_quota(ranked, unused, total, floor, share),
                  plain_selection(ranked, unused, total, floor, share))
            << "round " << round;
    }
}

TEST(PickSpread, TakesTheFirstNamesButFewOfEachFile) {
    const std::vector<NamedPath> scored{{"f", "a"}, {"g", "a"}, {"h", "b"}, {"i", "c"}, {"j", "d"}, {"f", "a"}};
    using Names = std::vector<Text>;
    constexpr auto MAX = std::numeric_limits<std::int64_t>::max();
    constexpr auto MIN = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(pick_spread(scored, 3, 1), (Names{"f", "h", "i"}));
    EXPECT_EQ(pick_spread(scored, MAX, MAX), (Names{"f", "g", "h", "i", "j", "f"}));
    for (const std::int64_t none : {std::int64_t{0}, MIN}) {
        EXPECT_EQ(pick_spread(scored, none, 2), Names{});
        EXPECT_EQ(pick_spread(scored, 2, none), Names{});
    }
}

}  // namespace
}  // namespace wiki::scope
