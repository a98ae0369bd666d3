// The index of a checkout follows what happens there, and is made anew for nothing else.

#include "host/worktree/checkout_index.h"

#include "fixtures/temporary_folder.h"
#include "host/lookup/files.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <thread>

namespace host::worktree {
namespace {

class KeptIndex : public testing::Test {
  protected:
    KeptIndex() {
        setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);  // NOLINT(concurrency-mt-unsafe): no other thread runs
        folder.write("checkout/a.go", "package p\n\nfunc A() {}\n");
        folder.write("checkout/b.go", "package p\n\nfunc B() { A() }\n");
    }

    [[nodiscard]] CheckoutIndex index() const { return {folder / "checkout", {}}; }

    // The files and how many declarations they have.
    [[nodiscard]] std::string files() const {
        const CheckoutIndex opened(folder / "checkout", {});
        const std::unique_ptr<IndexConnection> connection = opened.connect();
        std::string list;
        for (const ListedFile& file : list_files(*connection->read(), {}, {}).files) {
            list += (list.empty() ? "" : " ") + file.path + ":" + std::to_string(file.declarations);
        }
        return list;
    }

    // Whether answering makes a new index.
    [[nodiscard]] bool is_remade() const {
        const CheckoutIndex opened(folder / "checkout", {});
        const auto number = [&] {
            struct stat status {};
            return stat(opened.name().c_str(), &status) == 0 ? status.st_ino : 0;
        };
        const ino_t before = number();
        EXPECT_NE(files(), "");
        return number() != before;
    }

    TemporaryFolder folder;
};

TEST_F(KeptIndex, IsMadeOnceAndFollowsEveryChange) {
    EXPECT_EQ(files(), "a.go:1 b.go:1");
    EXPECT_FALSE(is_remade());
    folder.write("checkout/a.go", "package p\n\nfunc Z() {}\n");  // as long, and at once
    EXPECT_TRUE(is_remade());
    const std::vector<std::pair<std::string, std::function<void()>>> changes{
        {"a.go:1 b.go:1 c.go:0", [&] { folder.write("checkout/c.go", "package p\n"); }},
        {"a.go:1 c.go:0", [&] { std::filesystem::remove(folder / "checkout/b.go"); }},
        {"c.go:0", [&] { folder.write("checkout/.wiki-scope.toml", "exclude = [\"a.go\"]"); }},
        {"a.go:1 c.go:0", [&] { folder.write("checkout/.wiki-scope.toml", ""); }},
        {"a.go:1", [&] { folder.write("checkout/.gitattributes", "c.go linguist-generated"); }},
    };
    for (const auto& [expected, change] : changes) {
        change();
        EXPECT_EQ(files(), expected);
        EXPECT_FALSE(is_remade()) << expected;
    }
    folder.write("checkout/go.mod", "module example.org/m\n");
    EXPECT_TRUE(is_remade());
    folder.write("checkout/pnpm-workspace.yaml", "packages:\n  - a\n");
    EXPECT_TRUE(is_remade());
    folder.write("checkout/README.md", "# No source, no manifest\n");
    EXPECT_FALSE(is_remade());
}

TEST_F(KeptIndex, IsNotRemadeForFilesThatOnlyLookChanged) {
    EXPECT_EQ(files(), "a.go:1 b.go:1");
    const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    std::filesystem::last_write_time(folder / "checkout/a.go", old);
    EXPECT_FALSE(is_remade());
}

TEST_F(KeptIndex, IsRemadeWhenItsMemoryIsGoneOrDamaged) {
    EXPECT_EQ(files(), "a.go:1 b.go:1");
    const std::filesystem::path kept = std::filesystem::path(index().name()).parent_path();
    for (const std::string& damage : {std::string(), std::string("\xFF\xFF\xFF\xFF\x0F", 5), std::string(100, '\1')}) {
        folder.write(std::filesystem::relative(kept / "files", folder / "").string(), damage);
        EXPECT_TRUE(is_remade());
    }
    folder.write(std::filesystem::relative(kept / "index.db", folder / "").string(), "no database");
    EXPECT_EQ(files(), "a.go:1 b.go:1");
}

TEST_F(KeptIndex, IsMadeByOneOfManyAndUsedByAll) {
    std::array<std::string, 4> found;
    {
        std::array<std::jthread, 4> threads;
        for (std::size_t at = 0; at < threads.size(); ++at) {
            threads[at] = std::jthread([&, at] { found[at] = files(); });
        }
    }
    EXPECT_EQ(found, (std::array<std::string, 4>{"a.go:1 b.go:1", "a.go:1 b.go:1", "a.go:1 b.go:1", "a.go:1 b.go:1"}));
}

TEST_F(KeptIndex, IsSeenToBeOldByAConnectionThatIsKept) {
    const CheckoutIndex opened = index();
    const std::unique_ptr<IndexConnection> connection = opened.connect();
    folder.write("checkout/c.go", "package p\n");
    std::this_thread::sleep_for(std::chrono::milliseconds(210));
    EXPECT_FALSE(connection->is_current());
}

TEST_F(KeptIndex, LiesWhereOnlyItsUserCanWrite) {
    EXPECT_EQ(files(), "a.go:1 b.go:1");
    const std::filesystem::path kept = std::filesystem::path(index().name()).parent_path();
    struct stat status {};
    ASSERT_EQ(stat(kept.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
    std::filesystem::permissions(kept, std::filesystem::perms::all);
    EXPECT_THROW(static_cast<void>(files()), std::runtime_error);
}

TEST_F(KeptIndex, IsThatOfTheNearestFolderWithAMark) {
    const std::filesystem::path root = std::filesystem::canonical(folder / "checkout");
    std::filesystem::create_directories(root / "b/c");
    folder.write("checkout/.git/HEAD", "");
    EXPECT_EQ(checkout_around(root / "b/c"), root);
    folder.write("checkout/b/.wiki-scope.toml", "");
    EXPECT_EQ(checkout_around(root / "b/c"), root / "b");
    std::filesystem::remove_all(root / "b/.wiki-scope.toml");
    std::filesystem::remove_all(root / ".git");
    EXPECT_EQ(checkout_around(root / "b/c"), root / "b/c");
}

}  // namespace
}  // namespace host::worktree
