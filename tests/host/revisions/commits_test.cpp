// Revisions are those that Git itself finds, and hold the files that it would check out.

#include "host/revisions/commits.h"

#include "fixtures/temporary_folder.h"
#include "host/files/checkout.h"
#include "host/git/checkout_files.h"
#include "host/git/revision_name.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>

namespace host::revisions {
namespace {

namespace fs = std::filesystem;

class CommitsOfGit : public testing::Test {
  protected:
    void SetUp() override {
        if (std::system("git --version >/dev/null 2>&1") != 0) {  // NOLINT(cert-env33-c,concurrency-mt-unsafe)
            GTEST_SKIP() << "there is no Git here";
        }
        fs::create_directory(root);
        git("init -q -b main");
        commit("one", {{"a.ts", "1"}, {"b/c.ts", "2"}, {".gitignore", "*.log\n"}});
        folder.write("root/kept.log", "is tracked");
        git("add -f kept.log");
        commit("two", {{"a.ts", "3"}});
        git("tag v1");
        git("tag -a -m about v1.0");
        git("checkout -q -b side");
        commit("three", {{"side.ts", "4"}});
        git("checkout -q main");
        git("branch both v1.0~1");
        git("tag both");
        git("merge -q --no-ff -m four side");
    }

    // Runs Git without anybody's configuration; returns what it says without the last line end.
    std::string git(const std::string& arguments, bool may_fail = false) const {
        const std::string line = "cd '" + root +
                                 "' && env -i PATH=\"$PATH\" HOME=/nowhere GIT_CONFIG_NOSYSTEM=1 git -c user.name=n "
                                 "-c user.email=e " +
                                 arguments + " >../said 2>../complaint";
        const int status = std::system(line.c_str());  // NOLINT(cert-env33-c,concurrency-mt-unsafe)
        EXPECT_TRUE(may_fail || status == 0) << arguments << ": " << folder.read("complaint");
        std::string said = folder.read("said");
        said.erase(said.find_last_not_of('\n') + 1);
        return said;
    }

    void commit(const std::string& message, const std::map<std::string, std::string>& files) const {
        for (const auto& [path, text] : files) {
            folder.write("root/" + path, text);
        }
        git("add -A");
        git("commit -q -m " + message);
    }

    TemporaryFolder folder;
    const std::string root = folder / "root";
};

TEST_F(CommitsOfGit, AreFoundByTheNamesThatGitUnderstands) {
    const std::string hash = git("rev-parse main");
    for (const bool is_packed : {false, true}) {
        if (is_packed) {
            git("pack-refs --all");
            git("gc -q");
        }
        const Commits commits(root);
        for (const std::string& name : {std::string("HEAD"),
                                        std::string("@"),
                                        std::string("main"),
                                        std::string("side"),
                                        std::string("both"),
                                        std::string("heads/both"),
                                        std::string("refs/heads/both"),
                                        std::string("refs/tags/v1"),
                                        std::string("v1.0"),
                                        std::string("v1.0^{}"),
                                        std::string("v1.0^{commit}"),
                                        std::string("HEAD~"),
                                        std::string("HEAD^"),
                                        std::string("HEAD^2"),
                                        std::string("HEAD^2~1"),
                                        std::string("HEAD^^"),
                                        std::string("HEAD~2"),
                                        std::string("HEAD^0"),
                                        std::string("HEAD~0"),
                                        std::string("HEAD^3"),
                                        std::string("HEAD~9"),
                                        std::string("HEAD~999999999999999999999"),
                                        std::string("nothing"),
                                        std::string("v1/x"),
                                        std::string("main~x"),
                                        std::string("main:a.ts"),
                                        std::string("HEAD^{tree}"),
                                        std::string("../root"),
                                        std::string("config"),
                                        std::string("objects"),
                                        hash,
                                        hash.substr(0, 7),
                                        hash.substr(0, 4) + "~1",
                                        hash.substr(0, 3),
                                        std::string(40, 'f'),
                                        hash + "0",
                                        git("rev-parse HEAD:a.ts"),
                                        git("rev-parse v1.0")}) {
            const std::string expected = name.find(':') != std::string::npos || name.ends_with("{tree}")
                                             ? ""
                                             : git("rev-parse -q --verify '" + name + "^{commit}'", true);
            EXPECT_EQ(commits.find(name).value_or(""), expected) << name;
        }
    }
}

TEST_F(CommitsOfGit, AreFoundFromASecondWorkTree) {
    git("worktree add -q ../second side~1");
    const Commits commits(folder / "second");
    EXPECT_EQ(commits.find("HEAD"), git("rev-parse side~1"));
    EXPECT_EQ(commits.find("main"), git("rev-parse main"));
}

TEST_F(CommitsOfGit, AreCheckedOutAsGitListsThem) {
    fs::create_symlink("a.ts", root + "/link.ts");
    commit("five", {{"x y.ts", "5"}});
    const Commits commits(root);
    for (const std::string name : {"HEAD", "HEAD~1", "v1"}) {
        fs::create_directory(folder / name);
        commits.check_out(commits.find(name).value(), folder / name, [] {});
        std::string listed;
        for (const git::CheckoutFile& file : git::checkout_files(Checkout(folder / name), [] {})) {
            listed += file.path + "\n";
            EXPECT_EQ(folder.read(name + "/" + file.path),
                      git("show '" + name + ":" + file.path + "'") + (file.path == ".gitignore" ? "\n" : ""));
        }
        const std::string expected =
            git("-c core.quotePath=false ls-tree -r -z --name-only " + name + " | grep -zv link | tr '\\0' '\\n'");
        EXPECT_EQ(listed, expected + "\n") << name;
    }
}

TEST_F(CommitsOfGit, AreReadWithoutWhatConfiguresTheRepository) {
    const std::string trap = folder / "trap";
    git("config core.fsmonitor 'touch " + trap + "'");
    git("config core.worktree /");
    git("config include.path " + folder / "pipe");
    git("config extensions.objectFormat sha256");
    EXPECT_TRUE(Commits(root).find("main"));
    EXPECT_FALSE(fs::exists(trap));
    EXPECT_THROW(Commits(folder / ""), std::runtime_error);
}

TEST_F(CommitsOfGit, AreNotThoseOfAnotherRepositoryThatThisOneNames) {
    git("init -q ../other");
    git("-C ../other commit -q --allow-empty -m secret");
    const std::string secret = git("-C ../other rev-parse HEAD");
    folder.write("root/.git/objects/info/alternates", folder / "other/.git/objects\n");
    EXPECT_EQ(git("cat-file -t " + secret), "commit");
    EXPECT_FALSE(Commits(root).find(secret));
    fs::rename(root + "/.git/objects", folder / "moved");
    fs::create_directory_symlink(folder / "moved", root + "/.git/objects");
    EXPECT_THROW(Commits{root}, std::runtime_error);
    fs::remove(root + "/.git/objects");
    fs::rename(folder / "moved", root + "/.git/objects");
    ASSERT_EQ(mkfifo((root + "/.git/objects/pack/a.pack").c_str(), S_IRUSR | S_IWUSR), 0);
    EXPECT_THROW(Commits{root}, std::runtime_error);
}

}  // namespace
}  // namespace host::revisions
