// The checkout: its lines, and that nothing outside of it is read.

#include "fixtures/temporary_folder.h"
#include "host/files/checkout.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>

namespace host {
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
        std::optional<FileLines> file = Checkout(folder / "repo").read_lines(path);
        return file ? std::optional(file->lines) : std::nullopt;
    }

    TemporaryFolder folder;
};

TEST_F(CheckoutOfRepo, OnlyLfAndCrlfEndALine) {
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
    };
    for (const auto& [content, lines] : cases) {
        folder.write("repo/file", content);
        EXPECT_TRUE(read("file") == lines) << testing::PrintToString(content);
    }
}

TEST_F(CheckoutOfRepo, ReturnsNoneForAPathThatLeavesTheRoot) {
    fs::create_symlink("../repo-private/key", folder / "repo/link");
    fs::create_directory_symlink(folder / "repo-private", folder / "repo/folder");
    for (const std::string& path : std::vector<std::string>{folder / "repo/src/a.c", "../repo-private/key",
                                                            "src/../src/a.c", "link", "folder/key"}) {
        EXPECT_EQ(read(path), std::nullopt) << path;
    }
}

TEST_F(CheckoutOfRepo, ReturnsNoneAtOnceForWhatIsNotAReadableFile) {
    ASSERT_EQ(mkfifo((folder / "repo/pipe").c_str(), 0600), 0);
    fs::create_symlink("loop", folder / "repo/loop");
    for (const std::string& path :
         std::vector<std::string>{"", ".", "src", "src/", "src/a.c/", std::string("src/a.c\0x", 9), "missing", "pipe",
                                  "loop", std::string(5000, 'x')}) {
        EXPECT_EQ(read(path), std::nullopt) << path;
    }
}

TEST_F(CheckoutOfRepo, FollowsLinksThatStayBelowTheRoot) {
    fs::create_symlink("src/a.c", folder / "repo/link");
    fs::create_directory_symlink("repo", folder / "root");
    EXPECT_EQ(read("link"), Lines{"int a;"});
    EXPECT_EQ(Checkout(folder / "root").read_lines("src/a.c")->lines, Lines{"int a;"});
}

}  // namespace
}  // namespace host
