#include "host/rules/path_rules.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

namespace host {
namespace {

TEST(PathRules, MatchAPathFromTheRootOrANameAnywhereAndAllBelow) {
    const std::vector<std::pair<std::string, std::vector<std::string>>> cases{
        {"*.min.js", {"a.min.js", "src/b.min.js"}},
        {"gen", {"gen", "gen/a.ts", "src/gen/b/c.ts"}},
        {"src/gen", {"src/gen/a.ts"}},
        {"gen/", {"src/gen/a.ts"}},
        {"/gen", {"gen/a.ts"}},
        {"src/**/x", {"src/x", "src/a/b/x/c.ts"}},
    };
    for (const auto& [pattern, paths] : cases) {
        for (const std::string& path : paths) {
            EXPECT_EQ(PathRules({{pattern, true}}).decide(path), true) << pattern << " " << path;
        }
    }
    for (const auto& [pattern, path] : std::vector<std::pair<std::string, std::string>>{
             {"src/gen", "a/src/gen/b.ts"}, {"/gen", "src/gen/a.ts"}, {"gen", "generated/a.ts"}, {"", "a.ts"}}) {
        EXPECT_EQ(PathRules({{pattern, true}}).decide(path), std::nullopt) << pattern << " " << path;
    }
}

TEST(PathRules, TheFirstMatchDecidesAndNegativeRulesComeFirst) {
    const PathRules rules(rules_of({"src"}, {"src/a.ts"}));
    EXPECT_EQ(rules.decide("src/a.ts"), false);
    EXPECT_EQ(rules.decide("src/b.ts"), true);
}

TEST(PathRules, SurviveTheRoundTripThroughJson) {
    const std::vector<PathRule> rules = read_rules(to_json({{"a \"b\"\n", true}, {"\xC3\xA9", false}}));
    ASSERT_EQ(rules.size(), 2U);
    EXPECT_EQ(rules.front().pattern, "a \"b\"\n");
    EXPECT_FALSE(rules.back().holds);
    EXPECT_TRUE(read_rules(to_json({})).empty());
    for (const char* const damaged : {"[", "[1]", "{}{}", R"([{"pattern": "a"}])"}) {
        EXPECT_THROW(read_rules(damaged), std::runtime_error) << damaged;
    }
}

}  // namespace
}  // namespace host
