#include "host/resolve/spellings.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace host::resolve {
namespace {

constexpr Name MISSING = 7'777;

TEST(Spellings, NumberEachOnceHoweverManyThereAre) {
    std::vector<std::string> texts;
    for (std::size_t at = 0; at < 1'000; ++at) {
        texts.push_back("name" + std::to_string(at));
    }
    Spellings spellings;
    for (const std::string& text : texts) {
        EXPECT_EQ(spellings.find(text, MISSING), MISSING);
        spellings.add(text);
    }
    for (Name name = 0; name < texts.size(); ++name) {
        EXPECT_EQ(spellings.add(std::string(texts[name])), name);
        EXPECT_EQ(spellings.find(texts[name], MISSING), name);
        EXPECT_EQ(spellings[name], texts[name]);
    }
}

}  // namespace
}  // namespace host::resolve
