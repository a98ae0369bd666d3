#include "models/ordered_map.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace models {
namespace {

TEST(OrderedMap, FindsWhatAPlainMapFindsAndKeepsTheOrderOfInsertion) {
    std::mt19937_64 random(1);
    for (int round = 0; round < 200; ++round) {
        OrderedMap<std::int64_t, int> ordered;
        std::map<std::int64_t, int> plain;
        std::vector<std::int64_t> order;
        const std::uint64_t range = 1 + random() % 400;
        const std::uint64_t stride = random() % 2 == 0 ? 1 : std::uint64_t{1} << 40U;
        for (std::uint64_t i = 0; i < range; ++i) {
            const auto key = static_cast<std::int64_t>((random() % range) * stride) - 100;
            if (plain.emplace(key, 0).second) {
                order.push_back(key);
            }
            EXPECT_EQ(ordered.contains(key), plain[key] != 0);
            EXPECT_EQ(++ordered[key], ++plain[key]);
        }
        std::vector<std::int64_t> keys;
        for (const auto& [key, value] : ordered) {
            keys.push_back(key);
            EXPECT_EQ(value, plain[key]);
        }
        ASSERT_EQ(keys, order);
    }
}

TEST(OrderedMap, FindsTextsByPlainCharacters) {
    const OrderedMap<Text, int> map{{"a", 1}, {"", 2}, {"a", 3}};
    EXPECT_EQ(map.size(), 2U);
    EXPECT_EQ(map.get("a", 0), 3);
    EXPECT_EQ(map.get(std::string_view(), 0), 2);
    EXPECT_EQ(map.get(std::string("b"), 7), 7);
}

TEST(OrderedMap, DiffersFromOneInAnotherOrder) {
    EXPECT_NE((OrderedMap<Text, int>{{"a", 1}, {"b", 2}}), (OrderedMap<Text, int>{{"b", 2}, {"a", 1}}));
    EXPECT_NE((TextSet{"a", "b"}), (TextSet{"b", "a"}));
    EXPECT_EQ((TextSet{"a", "b", "a"}), (TextSet{"a", "b"}));
}

TEST(Counter, ListsTheMostCommonFirstAndEqualCountsInOrderOfInsertion) {
    Counter<Text> counter;
    for (const char* key : {"b", "a", "c", "a", "d", "c"}) {
        counter.add(key, 1);
    }
    using Entries = std::vector<Counter<Text>::Entry>;
    EXPECT_EQ(counter.most_common(), (Entries{{"a", 2}, {"c", 2}, {"b", 1}, {"d", 1}}));
    EXPECT_EQ(counter.most_common(1), (Entries{{"a", 2}}));
    EXPECT_EQ(counter["e"], 0);
    EXPECT_EQ(counter.size(), 4U);
}

}  // namespace
}  // namespace models
