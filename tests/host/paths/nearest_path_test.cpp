#include "host/paths/nearest_path.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace host {
namespace {

TEST(NearestPath, HasTheSameNameOrFewEdits) {
    const std::string long_name(10'000, 'x');
    const std::vector<std::string> paths{"x/far/lib/set.ts",
                                         "x/far/bib/set.ts",
                                         "src/b/map.ts",
                                         "src/b",
                                         "src/a/map.ts",
                                         "src/a/Observable.ts",
                                         "\xE9",
                                         "ab",
                                         "ba",
                                         long_name};
    const std::vector<std::tuple<std::string, std::optional<std::string>>> cases{
        {"src/a/Observble.ts", "src/a/Observable.ts"},
        {"SRC/A/observable.TS", "src/a/Observable.ts"},
        {"Observable.ts", "src/a/Observable.ts"},
        {"lib/map.ts", "src/a/map.ts"},
        {"src/bb/map.ts", "src/b/map.ts"},
        {"/home/me/src/b/map.ts", "src/b/map.ts"},
        {"src/a/mpa.ts", "src/a/map.ts"},
        {"scr/b", "src/b"},
        {"src/a/tin.ts", std::nullopt},
        {"src/a/Obsrvabel.ts", "src/a/Observable.ts"},
        {"src/a/Obvbelly.ts", std::nullopt},
        {"aab", "ab"},
        {"", std::nullopt},
        {"x", std::nullopt},
        {"lib/set.ts", "x/far/lib/set.ts"},
        {"nowhere/at/all/bib/set.ts", "x/far/bib/set.ts"},
        {"et.ts", std::nullopt},
        {long_name + "12345678", long_name},
        {long_name + "123456789", std::nullopt},
    };
    for (const auto& [named, nearest] : cases) {
        EXPECT_EQ(nearest_path(named, paths), nearest) << named.substr(0, 40);
    }
}

}  // namespace
}  // namespace host
