#include "host/rules/package_exports.h"

#include "fixtures/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace host {
namespace {

using Paths = std::vector<std::string>;

TEST(PackageExports, AreAllPathsOfAManifestUnderAnyCondition) {
    const TemporaryFolder folder;
    folder.write("package.json", R"({"name": "a", "main": "./index.js", "files": ["no"]})");
    folder.write("p/b/package.json", R"({"exports": {"./test": {"import": ["./src/test/*.js", null]}}, "types": "t"})");
    const Checkout checkout(folder / "");
    EXPECT_EQ(package_exports(checkout, ""), Paths{"index.js"});
    Paths exported = package_exports(checkout, "p/b");
    std::ranges::sort(exported);
    EXPECT_EQ(exported, (Paths{"p/b/src/test/*.js", "p/b/t"}));
    EXPECT_TRUE(package_exports(checkout, "p").empty());
}

TEST(PackageExports, AreEmptyWhenTheManifestCannotBeRead) {
    const TemporaryFolder folder;
    const Checkout checkout(folder / "");
    const std::string deep(200'000, '[');
    for (const std::string& text : {std::string("{"), std::string("[\"main\"]"), std::string("{\"main\": 1}"),
                                    "{\"exports\": " + deep + std::string(deep.size(), ']') + "}"}) {
        folder.write("package.json", text);
        EXPECT_TRUE(package_exports(checkout, "").empty()) << text.substr(0, 20);
    }
}

}  // namespace
}  // namespace host
