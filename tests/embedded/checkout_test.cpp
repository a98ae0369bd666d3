// The checkout: its lines, and that nothing outside of it is read.

#include "embedded/checkout.h"
#include "tests/embedded/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>

namespace embedded {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

// A checkout `repo` with a neighbour `repo-private`.
class CheckoutOfRepo : public testing::Test {
  protected:
    void SetUp() override {
        folder.write("repo/src/a.c", "int a;\n");
        folder.write("repo-private/key", "secret\n");
    }

    [[nodiscard]] std::optional<Lines> read(std::string_view path) const {
        return Checkout(folder / "repo").read_lines(path);
    }

    TemporaryFolder folder;
};

TEST_F(CheckoutOfRepo, LfAndCrlfEndALineAndNothingElseDoes) {
    std::string long_line;
    long_line.resize(10'000'000, 'x');
    const std::vector<std::pair<std::string, Lines>> cases{
        {"", {}},
        {"\n", {""}},
        {"a\r\n\r\nb\n", {"a", "", "b"}},
        {"a\nb", {"a", "b"}},
        {"a\rb\r\r\nc\r", {"a\rb\r", "c\r"}},
        {"\xEF\xBB\xBF", {}},
        {"\xEF\xBB\xBF"
         "a\n\xEF\xBB\xBF",
         {"a", "\xEF\xBB\xBF"}},
        {"\xEF\xBB", {"\xEF\xBB"}},
        {long_line, {long_line}},
    };
    for (const auto& [content, lines] : cases) {
        folder.write("repo/file", content);
        EXPECT_TRUE(read("file") == lines) << testing::PrintToString(content.substr(0, 20));
    }
}

TEST_F(CheckoutOfRepo, APathThatLeavesTheCheckoutGivesNone) {
    fs::create_symlink("../repo-private/key", folder / "repo/link");
    fs::create_directory_symlink(folder / "repo-private", folder / "repo/folder");
    for (const std::string& path : {folder / "repo/src/a.c", std::string("../repo-private/key"),
                                    std::string("src/../src/a.c"), std::string("link"), std::string("folder/key")}) {
        EXPECT_EQ(read(path), std::nullopt) << path;
    }
}

TEST_F(CheckoutOfRepo, WhatIsNoReadableFileGivesNoneWithoutWaiting) {
    ASSERT_EQ(mkfifo((folder / "repo/pipe").c_str(), 0600), 0);
    fs::create_symlink("loop", folder / "repo/loop");
    for (const std::string& path : {std::string(), std::string("."), std::string("src"), std::string("src/"),
                                    std::string("src/a.c/"), std::string("src/a.c\0x", 9), std::string("missing"),
                                    std::string("pipe"), std::string("loop"), std::string(5000, 'x')}) {
        EXPECT_EQ(read(path), std::nullopt) << path;
    }
}

TEST_F(CheckoutOfRepo, LinksThatStayInsideAreFollowed) {
    fs::create_symlink("src/a.c", folder / "repo/link");
    fs::create_directory_symlink("repo", folder / "root");
    EXPECT_EQ(read("link"), Lines{"int a;"});
    EXPECT_EQ(Checkout(folder / "root").read_lines("src/a.c"), Lines{"int a;"});
}

TEST_F(CheckoutOfRepo, ARootThatCannotBeReadIsNamedWithItsFault) {
    fs::create_symlink("loop", folder / "loop");
    for (const auto& [root, fault] : {std::pair("missing", "no such folder"), std::pair("repo/src/a.c", "not a folder"),
                                      std::pair("loop", "cannot be read (Too many levels of symbolic links)")}) {
        try {
            const Checkout checkout(folder / root);
            FAIL() << root;
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(error.what(),
                      folder / root + ": " + fault + "; name the folder that holds the checked-out repository");
        }
    }
}

}  // namespace
}  // namespace embedded
