// Which files a checkout has, and that nothing in it is run, followed out of it or waited for.

#include "host/git/checkout_files.h"

#include "fixtures/temporary_folder.h"
#include "host/git/tracked_files.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>

namespace host::git {
namespace {

// An index of Git, of version 2, with hashes of this size.
std::string git_index(const std::vector<std::string>& paths, std::size_t hash_size = 20) {
    std::string bytes("DIRC\0\0\0\2\0\0\0", 11);
    bytes += static_cast<char>(paths.size());
    for (const std::string& path : paths) {
        std::string entry = std::string(40 + hash_size, '\1') + std::string("\0\1", 2) + path;
        entry.append(8 - entry.size() % 8, '\0');
        bytes += entry;
    }
    return bytes + std::string("TREE\0\0\0\2xy", 10) + std::string(hash_size, '\1');
}

class CheckoutFiles : public testing::Test {
  protected:
    void write_all(const std::vector<std::string>& paths) const {
        for (const std::string& path : paths) {
            folder.write("checkout/" + path, "");
        }
    }

    [[nodiscard]] std::string listed() const {
        std::string list;
        for (const CheckoutFile& file : checkout_files(Checkout(folder / "checkout"), [] {})) {
            list += (list.empty() ? "" : " ") + file.path;
            list += file.origin.is_generated.value_or(false) ? "(generated)" : "";
            list += file.origin.is_vendored.value_or(false) ? "(vendored)" : "";
        }
        return list;
    }

    TemporaryFolder folder;
};

TEST_F(CheckoutFiles, AreThoseThatAreNotHiddenWhereThereIsNoRepository) {
    write_all({"a.c", "b/c.c", ".d.c", ".e/f.c", "b/g\n.c", "b/\xFF.c"});
    folder.write("checkout/.gitignore", "*.o");
    folder.write("outside/a.c", "");
    std::filesystem::create_symlink(folder / "outside", folder / "checkout/link");
    std::filesystem::create_symlink(folder / "outside/a.c", folder / "checkout/link.c");
    EXPECT_EQ(listed(), "a.c b/c.c");
}

TEST_F(CheckoutFiles, AreThoseThatGitTracksOrDoesNotIgnore) {
    write_all({".git/HEAD", "a.o", "kept.o", "out/b.c", "out/deep/c.c", "src/out/d.c", "src/e.c", "src/e.log", "f.tmp",
               ".g.c", "{x}.c", "sub/.git", "sub/h.c", "k/only/i.c", "gone/j.c"});
    folder.write("checkout/.gitignore", "*.o\n!kept.o\n/out/\n# f\n{x}.c \n/gone/**\n");
    folder.write("checkout/src/.gitignore", "*.log\n");
    folder.write("checkout/k/.gitignore", "only\n");
    folder.write("checkout/.git/info/exclude", "*.tmp\n");
    EXPECT_EQ(listed(), ".g.c .gitignore k/.gitignore kept.o src/.gitignore src/e.c src/out/d.c");
    for (const std::size_t hash_size : {std::size_t{20}, std::size_t{32}}) {
        folder.write("checkout/.git/index", git_index({"a.o", "missing.c", "out/deep/c.c"}, hash_size));
        EXPECT_EQ(listed(), ".g.c .gitignore a.o k/.gitignore kept.o out/deep/c.c src/.gitignore src/e.c src/out/d.c");
    }
}

TEST_F(CheckoutFiles, HaveTheOriginThatTheNearestAttributesSay) {
    write_all({"a.pb.go", "b/c.pb.go", "b/d.c", "lib/e.c", "f.c"});
    folder.write("checkout/.gitattributes",
                 "[attr]made linguist-generated -diff\n*.pb.go made\nlib/** linguist-vendored=true\n*.c text\n");
    folder.write("checkout/b/.gitattributes", "*.c linguist-generated\nc.* -linguist-generated\n");
    EXPECT_EQ(listed(), "a.pb.go(generated) b/c.pb.go b/d.c(generated) f.c lib/e.c(vendored)");
}

TEST_F(CheckoutFiles, HaveNoOriginThatAnotherRuleTakesBack) {
    write_all({"a.pb.go", "b.pb.go", "c.pb.go", "d.pb.go", "sub/e.c", "!f.c", "g h.c", "#i.c"});
    folder.write("checkout/.gitattributes",
                 "*.pb.go made\n[attr]made linguist-generated\nb.* !linguist-generated\nc.* -made\nd.* !made\n"
                 "!f.c linguist-vendored\n#i.c linguist-vendored\ng[[:space:]]*.c linguist-vendored\n");
    folder.write("checkout/sub/.gitattributes", "[attr]own linguist-generated\n*.c own\n");
    EXPECT_EQ(listed(), "!f.c #i.c a.pb.go(generated) b.pb.go c.pb.go d.pb.go g h.c(vendored) sub/e.c");
}

// Whoever made the checkout wrote these files. They are data: none has a program run, or another folder read.
TEST_F(CheckoutFiles, AreFoundInAHostileCheckout) {
    const std::string trap = folder / "trap";
    const std::string elsewhere = folder / "elsewhere";
    folder.write("elsewhere/secret.c", "");
    folder.write("elsewhere/ignore", "*.c");
    write_all({"a.c"});
    folder.write("checkout/.git/config", "[core]\nfsmonitor = \"touch " + trap + "\"\nworktree = " + elsewhere +
                                             "\nexcludesFile = " + elsewhere + "/ignore\n[include]\npath = " + trap +
                                             "\n[filter \"x\"]\nclean = touch " + trap);
    folder.write("checkout/.git/hooks/post-index-change", "#!/bin/sh\ntouch " + trap);
    folder.write("checkout/.gitattributes", "*.c filter=x\n");
    ASSERT_EQ(mkfifo((folder / "checkout/.gitignore").c_str(), 0600), 0);
    ASSERT_EQ(mkfifo((folder / "checkout/.git/index").c_str(), 0600), 0);
    EXPECT_EQ(listed(), ".gitattributes a.c");
    EXPECT_FALSE(std::filesystem::exists(trap));
}

TEST_F(CheckoutFiles, AreFoundThroughTheFileOfALinkedWorktree) {
    write_all({"a.c", "b.c"});
    folder.write("checkout/.gitignore", "*.c");
    const std::string index = folder.write("repository/worktrees/x/index", git_index({"a.c"}));
    folder.write("checkout/.git", "gitdir: " + index.substr(0, index.rfind('/')) + "\n");
    EXPECT_EQ(listed(), ".gitignore a.c");
    folder.write("checkout/.git", "gitdir: /nowhere\n");
    EXPECT_EQ(listed(), ".gitignore");
}

TEST(GitIndex, IsReadWholeOrNotAtAll) {
    const std::string index = git_index({"a", "b/c"});
    const std::vector<std::string> paths{"a", "b/c"};
    EXPECT_EQ(read_git_index(index), paths);
    for (std::size_t size = 0; size < index.size(); ++size) {
        EXPECT_EQ(read_git_index(std::string_view(index).substr(0, size)).value_or(paths), paths) << size;
    }
    EXPECT_EQ(read_git_index(std::string_view(index).substr(0, 100)), std::nullopt);
    std::string split = index;
    split.replace(split.find("TREE"), 4, "link");
    EXPECT_EQ(read_git_index(split), std::nullopt);
}

TEST(GitIndex, DoesNotRepeatAPathThatNoSystemOpens) {
    for (const auto& [length, is_read] : {std::pair(4'000, true), std::pair(5'000, false)}) {
        const std::string path(static_cast<std::size_t>(length), 'a');
        std::string bytes("DIRC\0\0\0\4\0\0\0\x64", 12);  // a hundred entries
        for (int entry = 0; entry < 100; ++entry) {       // nothing is left out of the path before, and nothing added
            bytes += std::string(60, '\1') + std::string("\0\1\0", 3) + (entry == 0 ? path : "") + '\0';
        }
        const auto paths = read_git_index(bytes + std::string(20, '\1'));
        EXPECT_EQ(paths.has_value() && paths->size() == 100 && paths->back() == path, is_read) << length;
    }
}

}  // namespace
}  // namespace host::git
