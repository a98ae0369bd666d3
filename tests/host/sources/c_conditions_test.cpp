// What of a C text is compiled, by the conditions around it.
#include "host/sources/c/c_conditions.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace host::sources {
namespace {

// For each line that is an "x": A when it is always compiled, M maybe, N never.
std::string compiled_lines(const std::string& text) {
    const std::vector<syntax::Region> regions = compiled_c(text, scan_c(text)).regions;
    std::string found;
    for (std::size_t at = 0, line = 1; at < text.size(); at = text.find('\n', at) + 1, ++line) {
        syntax::Built built = syntax::Built::ALWAYS;
        for (const syntax::Region& region : regions) {
            EXPECT_EQ(region.begin <= at, region.first_line <= line) << text;
            built = region.begin <= at ? region.built : built;
        }
        found += text[at] == 'x' ? std::string(1, "AMN"[static_cast<std::size_t>(built)]) : "";
    }
    return found;
}

TEST(CConditions, HoldAsFarAsTheyAreCertain) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"0", "N"},
        {"1 /* a */ // b", "A"},
        {"defined(_WIN32)", "N"},
        {"defined(WIN32) || defined(WINDOWS)", "M"},
        {"defined(WIN32)", "N"},
        {"!defined _WIN32 && defined(__linux__)", "A"},
        {"defined(HAVE_X) || \\\n defined(__linux__)", "A"},
        {"defined(HAVE_X) && defined(__APPLE__)", "N"},
        {"defined(HAVE_X) && !defined(__APPLE__)", "M"},
        {"HAVE_X", "M"},
        {"_MSC_VER >= 1400", "N"},
        {"_MSC_VER", "N"},
        {"__GNUC__ >= 3", "A"},
        {"(__GNUC__ * 100 + __GNUC_MINOR__) >= 302", "M"},
        {"(__GNUC__*100 + 0x2) > 302u", "A"},
        {"__GNUC__ < 2 || __GNUC__ == 3", "N"},
        {"__GNUC__ > 4", "M"},
        {"__has_include(<a.h>) || 0", "M"},
        {"__CHAR_BIT__ == 8 ? 0 : HAVE_X", "N"},
        {"1 + 1 == 2", "A"},
        {"~0", "M"},
        {"1 1", "M"},
        {"defined(", "M"},
        {std::string(1'000, '(') + "1", "M"},
        {"9223372036854775807 * 2 > 1", "M"},
    };
    for (const auto& [condition, compiled] : cases) {
        EXPECT_EQ(compiled_lines("#if " + condition + "\nx\n#endif\n"), compiled) << condition;
    }
}

TEST(CConditions, OneBranchOfEachIsCompiled) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"#ifdef _WIN32\nx\n#else\nx\n#endif\nx\n", "NAA"},
        {"#ifndef _WIN32\nx\n#elif 1\nx\n#else\nx\n#endif\n", "ANN"},
        {"#if A\nx\n#elif defined(__APPLE__)\nx\n#elif 1\nx\n#else\nx\n#endif\n", "MNMN"},
        {"#ifdef __sun\nx\n#elifdef __linux__\nx\n#elifndef A\nx\n#endif\n", "NAN"},
        {"#if A\n#if 0\nx\n#else\nx\n#endif\nx\n#endif\n", "NMM"},
        {"#if 0\n#if A\nx\n#else\nx\n#endif\n#endif\nx\n", "NNA"},
        {"#endif\nx\n#else\nx\n#if 0\nx\n", "AAN"},
        {"/*\n#if 0\n*/\nx\n#if 0 /*\n#endif */\nx\n#endif\nx\n", "ANA"},
        {"#define A \"/*\"\n#if 0\nx\n#endif\n", "N"},
    };
    for (const auto& [text, compiled] : cases) {
        EXPECT_EQ(compiled_lines(text), compiled) << text;
    }
}

TEST(CConditions, FollowWhatTheFileDefinesAbove) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"#define A\n#ifdef A\nx\n#endif\n#undef A\n#ifdef A\nx\n#endif\n", "AN"},
        {"#define A 3\n#if A > 2\nx\n#endif\n", "A"},
        {"#define A (3)\n#if A\nx\n#endif\n#define B(a) 1\n#if B(0)\nx\n#endif\n", "MM"},
        {"#if B\n#define A\n#ifdef A\nx\n#endif\n#endif\n#ifdef A\nx\n#endif\n", "MM"},
        {"#if 0\n#define A\n#endif\n#undef A\n#if 0\n#define A\n#endif\n#ifdef A\nx\n#endif\n", "N"},
        {"#undef A\n#include \"a.h\"\n#ifdef A\nx\n#endif\n", "M"},
        {"#undef __linux__\n#ifdef __linux__\nx\n#endif\n", "N"},
    };
    for (const auto& [text, compiled] : cases) {
        EXPECT_EQ(compiled_lines(text), compiled) << text;
    }
}

TEST(CConditions, AGuardIsNone) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"// a\n#ifndef A\n#define A 1\nx\n#endif\n", "A"},
        {"#if !defined(A)\n#define A\n#include <a.h>\nx\n#endif\n", "A"},
        {"x\n#ifndef A\n#define A\nx\n#endif\n", "AA"},
        {"x\n#ifndef A\n#define A 1\nx\n#endif\n", "AM"},
        {"#ifndef A\nx\n#define A\nx\n#endif\n", "MM"},
        {"#ifndef A\n#define A\n#else\nx\n#endif\n", "M"},
        {"#ifndef A\n#define B\nx\n#endif\n", "M"},
    };
    for (const auto& [text, compiled] : cases) {
        EXPECT_EQ(compiled_lines(text), compiled) << text;
    }
}

}  // namespace
}  // namespace host::sources
