#include "host/summary/shared_summaries.h"

#include "workers/wiki/file_summary.h"

#include <gtest/gtest.h>

#include <vector>

namespace host {
namespace {

using Summaries = std::vector<std::string>;

TEST(SharedSummaries, AreTheTextsOfMoreThanThreeFiles) {
    EXPECT_EQ(shared_summaries(Summaries{"b", "c", "a", "", "a", "b", "", "b", "a", "c", "", "b", "c", "a", ""}),
              "a\nb\n");
}

TEST(SharedSummaries, AreAtMostTheFiveHundredOfTheMostFiles) {
    Summaries summaries(5, "z");
    for (int text = 1'000; text < 1'600; ++text) {
        summaries.insert(summaries.end(), 4, std::to_string(text));
    }
    const std::string shared = shared_summaries(summaries);
    EXPECT_TRUE(shared.starts_with("1000\n"));
    EXPECT_TRUE(shared.ends_with("1498\nz\n"));
}

TEST(SharedSummaries, AreLeftOutWhileTheyAreInForce) {
    const Summaries lines{"// Sorts rows.", "f();"};
    {
        const SharedSummariesInForce in_force("Adds.\nSorts rows.\n");
        EXPECT_EQ(wiki::file_summary(lines), "");
        const SharedSummariesInForce innermost("Sorts\n");
        EXPECT_EQ(wiki::file_summary(lines), "Sorts rows.");
    }
    EXPECT_EQ(wiki::file_summary(lines), "Sorts rows.");
}

}  // namespace
}  // namespace host
