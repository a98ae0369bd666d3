#include "embedded/serve/schema.h"

#include <gtest/gtest.h>

namespace embedded::serve {
namespace {

TEST(Schema, ATextIsAsLongAsItMustBe) {
    const Sent schema{{"type", "string"}, {"minLength", 2}};
    EXPECT_EQ(checked("ab", schema), "ab");
    EXPECT_ANY_THROW(checked("a", schema));
}

}  // namespace
}  // namespace embedded::serve
