#include "embedded/checkout.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

// A checkout `repo` with a neighbour `repo-private`, in a folder of their own.
class CheckoutTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string name = testing::TempDir() + "checkout-XXXXXX";
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder_ = name;
        write("repo/src/a.c", "int a;\n");
        write("repo-private/key", "secret\n");
    }
    void TearDown() override { fs::remove_all(folder_); }

    void write(const std::string& path, const std::string& content) const {
        fs::create_directories((folder_ / path).parent_path());
        std::ofstream(folder_ / path, std::ios::binary) << content;
    }
    [[nodiscard]] std::optional<Lines> read(std::string_view path) const {
        return embedded::Checkout(folder_ / "repo").read_lines(path);
    }

    fs::path folder_;
};

TEST_F(CheckoutTest, LfAndCrlfEndALineAndNothingElseDoes) {
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
        write("repo/file", content);
        EXPECT_TRUE(read("file") == lines) << testing::PrintToString(content.substr(0, 20));
    }
}

TEST_F(CheckoutTest, APathThatLeavesTheCheckoutGivesNone) {
    fs::create_symlink("../repo-private/key", folder_ / "repo/link");
    fs::create_directory_symlink(folder_ / "repo-private", folder_ / "repo/folder");
    for (const std::string& path : {(folder_ / "repo/src/a.c").string(), std::string("../repo-private/key"),
                                    std::string("src/../src/a.c"), std::string("link"), std::string("folder/key")}) {
        EXPECT_EQ(read(path), std::nullopt) << path;
    }
}

TEST_F(CheckoutTest, WhatIsNoReadableFileGivesNoneWithoutWaiting) {
    ASSERT_EQ(mkfifo((folder_ / "repo/pipe").c_str(), 0600), 0);
    fs::create_symlink("loop", folder_ / "repo/loop");
    for (const std::string& path : {std::string(), std::string("."), std::string("src"), std::string("src/"),
                                    std::string("src/a.c/"), std::string("src/a.c\0x", 9), std::string("missing"),
                                    std::string("pipe"), std::string("loop"), std::string(5000, 'x')}) {
        EXPECT_EQ(read(path), std::nullopt) << path;
    }
}

TEST_F(CheckoutTest, LinksThatStayInsideAreFollowed) {
    fs::create_symlink("src/a.c", folder_ / "repo/link");
    fs::create_directory_symlink("repo", folder_ / "root");
    EXPECT_EQ(read("link"), Lines{"int a;"});
    EXPECT_EQ(embedded::Checkout(folder_ / "root").read_lines("src/a.c"), Lines{"int a;"});
}

TEST_F(CheckoutTest, ARootThatIsNoFolderIsNamed) {
    for (const fs::path& root : {folder_ / "missing", folder_ / "repo/src/a.c"}) {
        try {
            const embedded::Checkout checkout(root);
            FAIL() << root;
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(error.what(), root.string() + ": not a folder; name the folder that holds the "
                                                    "checked-out repository");
        }
    }
}

}  // namespace
