#include "models/text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace models {
namespace {

TEST(Text, IsSharedByItsCopiesAndComparedByItsBytes) {
    const Text text = "caf\xC3\xA9";
    const Text copy = text;
    const Text made_apart = std::string("caf\xC3\xA9");
    EXPECT_TRUE(copy.same_buffer(text));
    EXPECT_FALSE(made_apart.same_buffer(text));
    EXPECT_EQ(made_apart, text);
    EXPECT_EQ(made_apart.hash(), text.hash());
    EXPECT_LT(Text("caf"), text);
    EXPECT_LT(Text("cafz"), text);  // bytes compare unsigned
    EXPECT_EQ(Text(""), Text());
    EXPECT_EQ(Text("a\0b"), "a");
    EXPECT_NE(Text(std::string_view("a\0b", 3)), "a");
}

TEST(Text, OutlivesTheTextItWasCopiedFrom) {
    Text copy;
    {
        Text original = "a text that is too long for any small buffer of the library";
        copy = original;
        const Text taken = std::move(original);
        EXPECT_TRUE(original.empty());  // NOLINT(bugprone-use-after-move): promised
        original = copy;
        EXPECT_EQ(original, taken);
    }
    EXPECT_EQ(copy, "a text that is too long for any small buffer of the library");
}

}  // namespace
}  // namespace models
