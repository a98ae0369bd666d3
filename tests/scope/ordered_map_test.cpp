#include "workers/wiki/scope/ordered_map.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace wiki::scope {
namespace {

using models::Text;

TEST(Text, IsSharedByItsCopiesAndComparedByItsBytes) {
    const Text text = "caf\xC3\xA9";
    const Text copy = text;
    const Text made_apart = std::string("caf\xC3\xA9");
    EXPECT_TRUE(copy.same_buffer(text));
    EXPECT_FALSE(made_apart.same_buffer(text));
    EXPECT_EQ(made_apart, text);
    EXPECT_EQ(made_apart.hash(), text.hash());
    EXPECT_LT(Text("caf"), text);
    EXPECT_LT(Text("cafz"), text);  // bytes compare unsigned
    EXPECT_EQ(Text(""), Text());
    EXPECT_EQ(Text("a\0b"), "a");
    EXPECT_NE(Text(std::string_view("a\0b", 3)), "a");
}

TEST(Text, OutlivesTheTextItWasCopiedFrom) {
    Text copy;
    {
        Text original = "a text that is too long for any small buffer of the library";
        copy = original;
        const Text taken = std::move(original);
        EXPECT_TRUE(original.empty());  // NOLINT(bugprone-use-after-move): promised
        original = copy;
        EXPECT_EQ(original, taken);
    }
    EXPECT_EQ(copy, "a text that is too long for any small buffer of the library");
}

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
}  // namespace wiki::scope
