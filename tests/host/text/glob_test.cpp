#include "host/text/glob.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace host {
namespace {

TEST(Glob, MatchesWholePathsAsAShellDoes) {
    const std::vector<std::pair<std::string, std::vector<std::string>>> cases{
        {"src/*.ts", {"src/a.ts", "src/.ts"}},
        {"src/**/*.ts", {"src/a.ts", "src/b/c/a.ts"}},
        {"src/**", {"src", "src/a/b"}},
        {"**/a.ts", {"a.ts", "src/a.ts"}},
        {"**", {"a", "src/a.ts", ""}},
        {"**/b/**", {"b/a", "src/b/c/d", "b"}},
        {"a**b", {"ab", "axxb"}},
        {"?.ts", {"a.ts", "é.ts", "\xFF.ts"}},
        {"[a-cé][!x]", {"bé", "éa", "c]"}},
        {"[]x][^]]", {"]x", "xx"}},
        {"[a-]", {"a", "-"}},
        {"a[b", {"a[b"}},
        {"\\*\\{a,b}", {"*{a,b}"}},
        {"{src,test/{a,b}}/*.{ts,tsx}", {"src/x.ts", "test/b/x.tsx"}},
        {"{a}{,b}{c", {"{a}{c", "{a}b{c"}},
    };
    for (const auto& [pattern, paths] : cases) {
        for (const std::string& path : paths) {
            EXPECT_TRUE(Glob(pattern).matches(path)) << pattern << " " << path;
        }
    }
    for (const auto& [pattern, path] : std::vector<std::pair<std::string, std::string>>{{"src/*.ts", "src/b/a.ts"},
                                                                                        {"*.ts", "src/a.ts"},
                                                                                        {"src/**/*.ts", "src/a.js"},
                                                                                        {"**/b/**", "ab/c"},
                                                                                        {"?", "ab"},
                                                                                        {"?", ""},
                                                                                        {"[a-c]", "d"},
                                                                                        {"[!a]", "a"},
                                                                                        {"*", "a/b"},
                                                                                        {"src", "src/a"},
                                                                                        {"src/*", "src"},
                                                                                        {"{a,b}", "{a,b}"},
                                                                                        {"A", "a"},
                                                                                        {"a\\", "a"}}) {
        EXPECT_FALSE(Glob(pattern).matches(path)) << pattern << " " << path;
    }
}

TEST(Glob, EscapedTextMatchesItselfOnly) {
    const std::string path = "app/[id]/{a,b}/*?\\.ts";
    EXPECT_TRUE(Glob(escaped(path)).matches(path));
    EXPECT_FALSE(Glob(escaped(path)).matches("app/i/a/xx\\.ts"));
}

TEST(Glob, StaysFastForHostilePatterns) {
    std::string stars;
    std::string segments;
    for (int i = 0; i < 500; ++i) {
        stars += "*a";
        segments += "**/a/";
    }
    EXPECT_FALSE(Glob(stars + "b").matches(std::string(4'000, 'a')));
    std::string path;
    for (int i = 0; i < 2'000; ++i) {
        path += "a/";
    }
    EXPECT_FALSE(Glob(segments + "b").matches(path));
    EXPECT_THROW(Glob("{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}"), std::invalid_argument);
    EXPECT_THROW(Glob(std::string(4'097, 'a')), std::invalid_argument);
    EXPECT_TRUE(Glob(std::string(4'000, '{')).matches(std::string(4'000, '{')));
}

}  // namespace
}  // namespace host
