#include "workers/wiki/scope/internal/remembered.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace wiki::scope {
namespace {

TEST(Remembered, GivesTheVerdictsOfItsRuleWhateverItHasForgotten) {
    Remembered is_even([](const models::Text& text) { return text.view().size() % 2 == 0; });
    std::vector<models::Text> texts;  // more than it remembers, the first without a buffer
    for (std::size_t size = 0; size < 200; ++size) {
        texts.emplace_back(std::string(size, 'x'));
    }
    for (int round = 0; round < 2; ++round) {
        for (std::size_t size = 0; size < texts.size(); ++size) {
            EXPECT_EQ(is_even(texts[size]), size % 2 == 0) << size;
        }
    }
}

}  // namespace
}  // namespace wiki::scope
