// Random files under random rules are those that Git itself lists, with the attributes that it gives to them.

#include "fixtures/temporary_folder.h"
#include "host/git/checkout_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <random>
#include <span>

namespace host::git {
namespace {

using Words = std::vector<std::string>;

class GitReferee : public testing::TestWithParam<unsigned> {
  protected:
    void SetUp() override {
        if (std::system("git --version >/dev/null 2>&1") != 0) {  // NOLINT(cert-env33-c,concurrency-mt-unsafe)
            GTEST_SKIP() << "there is no Git here";
        }
        std::filesystem::create_directory(folder / "checkout");
    }

    // Runs Git without anybody's configuration; returns what it says, by zero bytes.
    [[nodiscard]] Words git(const std::string& arguments) const {
        const std::string line = "cd '" + folder / "checkout" +
                                 "' && env -i PATH=\"$PATH\" HOME=/nowhere GIT_CONFIG_NOSYSTEM=1 git " + arguments +
                                 " >../said 2>../complaint";
        EXPECT_EQ(std::system(line.c_str()), 0)  // NOLINT(cert-env33-c,concurrency-mt-unsafe)
            << folder.read("complaint");
        const std::string said = folder.read("said");
        Words words;
        for (auto at = said.begin(); at != said.end();) {
            const auto end = std::find(at, said.end(), '\0');
            words.emplace_back(at, end);
            at = end == said.end() ? end : std::next(end);
        }
        return words;
    }

    std::size_t below(std::size_t end) { return random() % end; }
    const std::string& one_of(std::span<const std::string> words) { return words[below(words.size())]; }

    // A pattern that may match some of the names, or be none at all.
    std::string pattern() {
        static const Words PARTS{"a",  "a",     "b",   "b.c",  ".c",  "*",   "*",     "*.c",          "?",
                                 "x",  "[ab]",  "{a}", "[]x]", "\\a", "\\*", "x\\ y", "[[:space:]x]", "[!a]",
                                 ".d", "[a-c]", "*.d", "[^b]", "!",   "#"};
        std::string pattern;
        for (std::size_t segments = 1 + below(3); segments > 0; --segments) {
            const bool is_any = below(4) == 0;
            const std::string& first = one_of(PARTS);
            const std::string& second = below(2) == 0 || first.ends_with('*') ? "" : one_of(PARTS);
            pattern += (is_any ? "**" : first + second) + (segments == 1 ? "" : "/");
        }
        return pattern;
    }

    std::string ignore_file() {
        static const Words BEGINNINGS{"", "", "", "", "!", "!", "/", "#", "\\!", "\\#", " "};
        static const Words ENDS{"", "", "", "/", " ", "\\ ", "\t", "\\", "[", "[a"};
        std::string file;
        for (std::size_t lines = 1 + below(3); lines > 0; --lines) {
            file += one_of(BEGINNINGS) + pattern() + one_of(ENDS) + (below(3) == 0 ? "\r\n" : "\n");
        }
        return file;
    }

    std::string attributes_file() {
        static const Words STATES{"linguist-generated",
                                  "-linguist-generated",
                                  "!linguist-generated",
                                  "linguist-generated=false",
                                  "linguist-vendored",
                                  "-linguist-vendored",
                                  "linguist-vendored=true",
                                  "text",
                                  "made",
                                  "-made",
                                  "!made"};
        std::string file;
        for (std::size_t lines = 1 + below(3); lines > 0; --lines) {
            file += pattern() + " " + one_of(STATES) + "\t" + one_of(STATES) + (below(3) == 0 ? "\r\n" : "\n");
        }
        return file;
    }

    // Many folders, each with rules of its own, so that one run of Git judges many cases.
    Words make_files() {
        static const Words NAMES{"a", "b", "b.c", ".c", "x y", "{a}", "[a]", "x", "#a", "!a", "ab", "*", "]", "a "};
        Words paths;
        for (int number = 0; number < 60; ++number) {
            const std::string top = "t" + std::to_string(number) + "/";
            for (int count = 0; count < 12; ++count) {
                std::string path = top;
                for (std::size_t depth = below(3); depth > 0; --depth) {
                    path += one_of(NAMES) + ".d/";
                }
                if (below(6) == 0) {
                    folder.write("checkout/" + path + ".gitignore", ignore_file());
                }
                path += one_of(NAMES);
                folder.write("checkout/" + path, "");
                paths.push_back(path);
            }
            folder.write("checkout/" + top + ".gitignore", ignore_file());
            folder.write("checkout/" + top + ".gitattributes", attributes_file());
        }
        return paths;
    }

    // The files of a name in the folders around a path.
    [[nodiscard]] std::string rules_around(const std::string& path, const std::string& name) const {
        std::string rules;
        for (std::size_t slash = path.find('/'); slash != std::string::npos; slash = path.find('/', slash + 1)) {
            rules += folder.read("checkout/" + path.substr(0, slash + 1) + name) + "--\n";
        }
        return rules;
    }

    TemporaryFolder folder;
    std::mt19937 random{GetParam()};
};

TEST_P(GitReferee, FindsTheSameFilesWithTheSameAttributes) {
    static_cast<void>(git("init -q --object-format=" + std::string(GetParam() % 2 == 0 ? "sha1" : "sha256")));
    folder.write("checkout/.gitattributes", "[attr]made linguist-generated -diff\n");
    folder.write("checkout/.gitignore", "ab\n!/t1*/ab\n");
    folder.write("checkout/.git/info/exclude", "*.c\n");
    std::string some;
    for (const std::string& path : make_files()) {
        some += below(5) == 0 ? path + '\0' : "";
    }
    folder.write("some", some);
    static_cast<void>(git("add --force --pathspec-from-file=../some --pathspec-file-nul"));
    static_cast<void>(git("update-index --index-version " + std::to_string(2 + GetParam() % 3)));
    Words expected = git("ls-files -co --exclude-standard -z");
    std::ranges::sort(expected);

    std::vector<CheckoutFile> files = checkout_files(Checkout(folder / "checkout"), [] {});
    Words found;
    std::string all;
    for (const CheckoutFile& file : files) {
        found.push_back(file.path);
        all += file.path + '\0';
    }
    Words disputed;
    std::ranges::set_symmetric_difference(expected, found, std::back_inserter(disputed));
    for (const std::string& path : disputed) {
        ADD_FAILURE() << path << (std::ranges::binary_search(found, path) ? " is ignored by\n" : " is not ignored by\n")
                      << rules_around(path, ".gitignore");
    }

    folder.write("all", all);
    const Words said = git("check-attr -z --stdin linguist-generated linguist-vendored <../all");
    ASSERT_EQ(said.size(), files.size() * 6);
    for (std::size_t at = 0; at < files.size(); ++at) {
        const auto is_set = [&](std::size_t attribute) {
            const std::string& value = said[at * 6 + attribute * 3 + 2];
            return value == "set" || value == "true";
        };
        EXPECT_EQ(files[at].origin.is_generated.value_or(false), is_set(0))
            << files[at].path << "\n"
            << rules_around(files[at].path, ".gitattributes");
        EXPECT_EQ(files[at].origin.is_vendored.value_or(false), is_set(1))
            << files[at].path << "\n"
            << rules_around(files[at].path, ".gitattributes");
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, GitReferee, testing::Range(1U, 4U));

}  // namespace
}  // namespace host::git
