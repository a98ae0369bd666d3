#include "host/files/input_file.h"

#include "fixtures/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace host {
namespace {

TEST(InputFile, IgnoresBytesThatAreAppendedLater) {
    const TemporaryFolder folder;
    InputFile file(folder.write("in.scip", "abc"), folder / "copy", [] {});
    folder.write("in.scip", "abcdef");
    EXPECT_EQ(file.read(1, 9), "bc");
}

}  // namespace
}  // namespace host
