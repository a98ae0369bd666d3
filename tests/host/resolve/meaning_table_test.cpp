#include "host/resolve/meaning_table.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace host::resolve {
namespace {

// The key and the meaning of the number `at`, which has none to three entities.
std::uint64_t table_key(std::uint32_t at) {
    return (std::uint64_t{at % 10} << 32U) | (at / 10);
}

Meaning table_meaning(std::uint32_t at) {
    return Meaning(at % 4, {.what = Entity::What::SYMBOL, .id = at});
}

TEST(MeaningTable, FindsEachMeaningHoweverManyThereAre) {
    constexpr std::uint32_t COUNT = 1'000;
    MeaningTable table;
    for (int round = 0; round < 2; ++round, table.clear()) {
        for (std::uint32_t at = 0; at < COUNT; ++at) {
            EXPECT_FALSE(table.find(table_key(at)));
            table.add(table_key(at), table_meaning(at));
            EXPECT_EQ(table.size(), at + 1);
        }
        for (std::uint32_t at = 0; at < COUNT; ++at) {
            const auto found = table.find(table_key(at));
            ASSERT_TRUE(found);
            EXPECT_EQ(Meaning(found->begin(), found->end()), table_meaning(at));
        }
    }
    EXPECT_FALSE(table.find(table_key(0)));
}

}  // namespace
}  // namespace host::resolve
