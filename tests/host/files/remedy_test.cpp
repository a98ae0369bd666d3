// What is advised where something cannot be written.

#include "host/files/remedy.h"

#include <gtest/gtest.h>

#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace host {
namespace {

TEST(RemedyFor, AdvisesToMakeRoomOrToGetThePermission) {
    for (const auto& [failure, remedy] : std::vector<std::pair<std::errc, std::string>>{
             {std::errc::no_space_on_device, "make room on its disk or choose another place"},
             {std::errc::permission_denied, "get the permission to write there or choose another place"},
             {std::errc::operation_not_permitted, "get the permission to write there or choose another place"},
             {std::errc::read_only_file_system, "get the permission to write there or choose another place"},
             {std::errc::no_such_file_or_directory, "create its folder or choose another place"},
             {std::errc::too_many_symbolic_link_levels, "choose another place"},
         }) {
        EXPECT_EQ(remedy_for(std::make_error_code(failure)), remedy);
    }
}

}  // namespace
}  // namespace host
