#include "workers/wiki/scope/uses.h"

#include <gtest/gtest.h>

namespace wiki::scope {
namespace {

using enum TargetKinds;

TEST(UseRules, AreTheColumnsOfTheirTable) {
    const UseRules evidence{
        .is_evidence = true, .likely_use = ALL, .neighbour = ALL, .name_match = NONE, .reaches_target = true};
    EXPECT_EQ(use_rules("local"), evidence);
    EXPECT_EQ(use_rules("import"), evidence);
    EXPECT_EQ(use_rules("unique"),
              (UseRules{.likely_use = OTHER, .neighbour = OTHER, .name_match = NAME_MATCH, .reaches_target = true}));
    EXPECT_EQ(use_rules("legacy"), UseRules{.neighbour = OTHER});
    for (const char* any_other : {"ambiguous", "Import", ""}) {
        EXPECT_EQ(use_rules(any_other), (UseRules{.neighbour = OTHER, .reaches_target = true})) << any_other;
    }
}

TEST(TargetKinds, TellAttributesAndConstantsFromAllOthers) {
    for (const char* name_match : {"attribute", "constant"}) {
        EXPECT_TRUE(includes(NAME_MATCH, name_match) && includes(ALL, name_match)) << name_match;
        EXPECT_FALSE(includes(OTHER, name_match) || includes(NONE, name_match)) << name_match;
    }
    for (const char* other : {"function", "class", "Constant", ""}) {
        EXPECT_TRUE(includes(OTHER, other) && includes(ALL, other)) << other;
        EXPECT_FALSE(includes(NAME_MATCH, other) || includes(NONE, other)) << other;
    }
}

TEST(IsUse, NeedsEvidenceOrAUniqueNameWhereImportsAreNotResolved) {
    for (const bool import_resolved : {true, false}) {
        EXPECT_TRUE(is_use("import", "constant", import_resolved));
        EXPECT_FALSE(is_use("ambiguous", "function", import_resolved));
        EXPECT_FALSE(is_use("unique", "constant", import_resolved));
        EXPECT_EQ(is_use("unique", "function", import_resolved), !import_resolved);
    }
}

}  // namespace
}  // namespace wiki::scope
