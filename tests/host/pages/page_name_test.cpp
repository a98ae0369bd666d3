#include "host/pages/page_name.h"

#include <gtest/gtest.h>

#include <string>

namespace host::pages {
namespace {

TEST(PageName, OfATitleKeepsItsLettersAndDigits) {
    EXPECT_EQ(name_for_title("The server"), "the-server");
    EXPECT_EQ(name_for_title("  src/util: _a_, B2! "), "src-util-a-b2");
    EXPECT_EQ(name_for_title("Über Größe"), "Über-größe");
    EXPECT_EQ(name_for_title("<>?"), "");
}

TEST(PageName, StaysInTheFolderAndShowsThere) {
    for (const std::string name : {"a", "a/b.c", "Größe", "a b"}) {
        EXPECT_TRUE(is_page_name(name)) << name;
    }
    for (const std::string name :
         {"", "...", "/a", "a/", "a//b", ".", "..", "a/../b", ".a", "a/.b", "a\\b", "a\nb", "a\u202Eb"}) {
        EXPECT_FALSE(is_page_name(name)) << name;
    }
    EXPECT_TRUE(is_page_name(std::string(200, 'a')));
    EXPECT_FALSE(is_page_name(std::string(201, 'a')));
}

}  // namespace
}  // namespace host::pages
