#include "fixtures/scip_builder.h"
#include "host/scip/symbol.h"

#include <gtest/gtest.h>

namespace host::scip {
namespace {

TEST(ScipSymbol, EveryDescriptorHasItsNameAndSuffix) {
    using S = Suffix;
    const std::vector<std::pair<std::string, std::vector<Descriptor>>> cases{
        {symbol("a/B#c().d."), {{"a", S::NAMESPACE}, {"B", S::TYPE}, {"c", S::METHOD}, {"d", S::TERM}}},
        {symbol("m!n:"), {{"m", S::MACRO}, {"n", S::META}}},
        {symbol("f(+1).(p)[T]"), {{"f", S::METHOD}, {"p", S::PARAMETER}, {"T", S::TYPE_PARAMETER}}},
        {symbol("`a/b.ts`/`x``y`#"), {{"a/b.ts", S::NAMESPACE}, {"x`y", S::TYPE}}},
        {symbol("[`T x`](`p q`)"), {{"T x", S::TYPE_PARAMETER}, {"p q", S::PARAMETER}}},
        {symbol("_+-$9\xC3\xA9#"), {{"_+-$9\xC3\xA9", S::TYPE}}},
        {"a  b . . c   d#", {{"d", S::TYPE}}},
    };
    for (const auto& [string, descriptors] : cases) {
        EXPECT_EQ(parse_symbol(string).value().descriptors, descriptors) << string;
    }
}

TEST(ScipSymbol, HasAHeadAPackageAndAScope) {
    const Symbol parts = parse_symbol("tool npm my  package 1.0 a/B#c().").value();
    EXPECT_EQ(parts.head, "tool npm my  package 1.0 ");
    EXPECT_EQ(parts.package, "my package");
    EXPECT_EQ(parts.scope, "tool npm my  package 1.0 a/B#");
}

TEST(ScipSymbol, HasAVariableOnceThatOneIndexerNamesTwice) {
    const Symbol python = parse_symbol("scip-python python p 1 `a.b`/x.x.").value();
    EXPECT_EQ(python.descriptors, (std::vector<Descriptor>{{"a.b", Suffix::NAMESPACE}, {"x", Suffix::TERM}}));
    EXPECT_TRUE(python.scope.ends_with("/"));
    EXPECT_EQ(parse_symbol("scip-typescript npm p 1 `a.ts`/x.x.").value().descriptors.size(), 3U);
}

TEST(ScipSymbol, ExtendsWhatStandsElsewhereInADeclaredModuleOrTheGlobalScopeOfItsFile) {
    const auto is_one = [](const std::string& descriptors) {
        return is_augmentation(parse_symbol(symbol(descriptors)).value().descriptors);
    };
    EXPECT_TRUE(is_one("src/`a.ts`/global/Error#"));
    EXPECT_TRUE(is_one("src/`a.ts`/`\"x\"`/A#"));
    EXPECT_TRUE(is_one("`a.ts`/`'x'`/"));
    EXPECT_FALSE(is_one("global/`a.ts`/Error#"));
    EXPECT_FALSE(is_one("`a.ts`/N/Error#"));
    EXPECT_FALSE(is_one("global/Error#"));
    EXPECT_FALSE(is_one("`a.ts`/global#"));
}

TEST(ScipSymbol, WhatDoesNotParseIsNoSymbol) {
    for (const char* string : {"", "tool", "tool npm pkg 1.0", " npm pkg 1.0 a#", "tool  npm pkg 1.0 a#"}) {
        EXPECT_FALSE(parse_symbol(string)) << string;
    }
    for (const std::string& descriptors : std::vector<std::string>{
             "", "a", "#", "a b#", "a.?/", "`a", "`a`", "``#", "f(", "f(1", "f()", "f()#", "f(a b).", "[T", "(p]",
             "a#?", "a\x7F#", std::string(100'000, '('), std::string(99'999, '`')}) {
        EXPECT_FALSE(parse_symbol(symbol(descriptors))) << descriptors.substr(0, 40);
    }
}

}  // namespace
}  // namespace host::scip
