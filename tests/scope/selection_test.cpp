#include "tests/scope/page_builder.h"
#include "tests/scope/selection_promises.h"
#include "workers/wiki/scope/ranking.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <random>

namespace wiki::scope {
namespace {

// A page whose declarations rank in the order of their ids: each starts on the line of its id.
class Page {
  public:
    explicit Page(const std::vector<std::pair<const char*, std::vector<int>>>& ids_by_file) {
        PageBuilder page;
        for (const auto& [path, ids] : ids_by_file) {
            for (const int id : ids) {
                page.symbols.push_back(symbol(id, "s").in(path).lines(id, id));
            }
        }
        facts_.emplace(page.facts());
        ranked_ = ranked_by_file(*facts_, fan_in);
    }

    [[nodiscard]] const RankedFiles& ranked() const { return ranked_; }

    [[nodiscard]] std::vector<SymbolId> select(std::int64_t total, std::int64_t floor, double max_share) const {
        std::vector<SymbolId> ids;
        for (const ScopeSymbol* symbol : select_with_quota(ranked_, fan_in, total, floor, max_share)) {
            ids.push_back(symbol->id);
        }
        return ids;
    }

  private:
    FanIn fan_in{{}};
    std::optional<ScopeFacts> facts_;
    RankedFiles ranked_;
};

using Ids = std::vector<SymbolId>;

TEST(Selection, RepresentsEveryFileAndBoundsEach) {
    const Page page({{"A", {1, 3, 4, 5, 8}}, {"B", {2, 7}}, {"C", {6}}});
    EXPECT_EQ(page.select(6, 1, 0.5), (Ids{1, 2, 6, 3, 7, 4}));
    EXPECT_EQ(page.select(6, 1, 1.0), (Ids{1, 2, 6, 3, 4, 5}));          // no bound
    EXPECT_EQ(page.select(6, 2, 0.0), (Ids{1, 2, 6, 3, 7, 4}));          // two each, then what was held back
    EXPECT_EQ(page.select(2, 9, 0.4), (Ids{1, 2}));                      // more files than blocks
    EXPECT_EQ(page.select(100, 0, 0.1), (Ids{1, 2, 6, 3, 7, 4, 5, 8}));  // everything
    EXPECT_EQ(page.select(0, 1, 0.5), Ids{});
    EXPECT_EQ(page.select(-5, 1, 0.5), Ids{});
    EXPECT_EQ(Page({}).select(5, 1, 0.5), Ids{});
}

TEST(Selection, BreaksTiesOfRankByPath) {
    const Page page({{"b", {1, 2}}, {"a", {1, 2}}, {"c", {1}}});
    const auto selected = select_with_quota(page.ranked(), FanIn{{}}, 4, 1, 1.0);
    std::vector<std::string> paths;
    for (const ScopeSymbol* symbol : selected) {
        paths.emplace_back(symbol->path);
    }
    EXPECT_EQ(paths, (std::vector<std::string>{"a", "b", "c", "a"}));
}

TEST(Selection, RoundsTheShareAsTheFloatingPointProductHasIt) {
    std::vector<int> large(30);
    std::vector<int> small(30);
    for (int i = 0; i < 30; ++i) {
        large[static_cast<std::size_t>(i)] = 1 + i;
        small[static_cast<std::size_t>(i)] = 100 + i;
    }
    const Ids ids = Page({{"large", large}, {"small", small}}).select(25, 1, 0.28);
    // Both reach the share of 8 (25 * 0.28 = 7.000000000000001) before the better file gets the rest.
    EXPECT_EQ(std::count_if(ids.begin(), ids.end(), [](SymbolId id) { return id >= 100; }), 8);
}

TEST(Selection, TakesEveryNumber) {
    const Page page({{"A", {1, 3, 4}}, {"B", {2}}});
    constexpr std::int64_t HUGE_TOTAL = std::int64_t{1} << 62U;
    constexpr double INF = std::numeric_limits<double>::infinity();
    constexpr auto MIN = std::numeric_limits<std::int64_t>::min();
    for (const double share : {8.0, -1.0, INF, -INF, std::nan(""), 1e308}) {
        EXPECT_EQ(page.select(HUGE_TOTAL, MIN, share), (Ids{1, 2, 3, 4})) << share;
        EXPECT_EQ(page.select(3, HUGE_TOTAL, share), (Ids{1, 2, 3})) << share;
    }
}

// The promises of the selection, whatever the page and the numbers.
TEST(Selection, KeepsItsPromisesOnRandomPages) {
    std::mt19937 random(7);
    const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    for (int round = 0; round < 3000; ++round) {
        std::vector<std::pair<const char*, std::vector<int>>> files;
        for (const char* path : {"d", "a", "c", "b"}) {
            files.emplace_back(path, std::vector<int>(static_cast<std::size_t>(below(7))));
            for (int& id : files.back().second) {
                id = 1 + below(12);
            }
        }
        const Page page(files);
        const std::int64_t total = below(20);
        const std::int64_t floor = below(5);
        const double share = below(12) / 10.0;
        const FanIn fan_in{{}};
        const auto selected = select_with_quota(page.ranked(), fan_in, total, floor, share);
        CheckedSelection checked(page.ranked(), fan_in, total, floor, share);
        ASSERT_EQ(checked.broken_promise(selected), "") << "round " << round;
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
