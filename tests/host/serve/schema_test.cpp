#include "host/serve/schema.h"

#include <gtest/gtest.h>

namespace host::serve {
namespace {

TEST(Schema, ChecksTheLengthOfStrings) {
    const Sent schema{{"type", "string"}, {"minLength", 2}};
    EXPECT_EQ(checked("ab", schema), "ab");
    EXPECT_ANY_THROW(checked("a", schema));
}

}  // namespace
}  // namespace host::serve
