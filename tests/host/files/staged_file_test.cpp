#include "host/files/staged_file.h"

#include "fixtures/temporary_folder.h"
#include "host/files/whole_file.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace host {
namespace {

std::ptrdiff_t files_in(const std::string& folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

std::string failure_of(const auto& action) {
    try {
        action();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "";
}

TEST(StagedFile, TakesThePlaceOfTheOldOneWholeOrLeavesIt) {
    const TemporaryFolder folder;
    const std::string path = folder.write("page.md", "old");
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    folder.write(".page.md.wiki-scope-partial", "of one that was killed, and longer");
    {
        const StagedFile dropped(path, "never seen");
        EXPECT_EQ(folder.read("page.md"), "old");
    }
    EXPECT_EQ(folder.read("page.md"), "old");
    EXPECT_EQ(files_in(folder / ""), 1);
    StagedFile staged(path, "new");
    StagedFile moved(std::move(staged));
    moved.commit();
    EXPECT_EQ(folder.read("page.md"), "new");
    EXPECT_EQ(files_in(folder / ""), 1);
    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0640U);
    EXPECT_EQ(failure_of([&] { StagedFile(folder / "none/page.md", ""); }),
              folder / "none/page.md" +
                  ": cannot be written (No such file or directory); create its folder or choose another place");
}

TEST(WholeFile, IsReadToItsEndAndNeverWaitedFor) {
    const TemporaryFolder folder;
    const std::string large(200'000, 'x');
    EXPECT_EQ(whole_file(folder.write("a", large), large.size()), large);
    EXPECT_EQ(whole_file(folder.write("empty", ""), 0), "");
    EXPECT_EQ(whole_file(folder / "none", 1), std::nullopt);
    EXPECT_EQ(failure_of([&] { whole_file(folder / "a", large.size() - 1); }),
              folder / "a" + ": cannot be read (it is larger than 199999 bytes)");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    for (const std::string name : {"pipe", ""}) {
        EXPECT_EQ(failure_of([&] { whole_file(folder / name, 9); }),
                  folder / name + ": cannot be read (it is no regular file)");
    }
}

}  // namespace
}  // namespace host
