#include "workers/wiki/scope/neighbours.h"

#include "tests/scope/page_builder.h"

#include <gtest/gtest.h>

#include <limits>

namespace wiki::scope {
namespace {

TEST(Neighbours, AreTheProductionDeclarationsThatThePageUsesMost) {
    PageBuilder page;
    page.files = {{1, "a.ts", {}}, {2, "b.ts", {}}};
    const ScopeSymbol y = symbol(2, "y").in("y.ts").fqn("m.y");
    const ScopeSymbol x = symbol(3, "x").in("x.ts").fqn("m.x");
    const ScopeSymbol twin = symbol(4, "x2").in("x.ts").fqn("m.x");
    const ScopeSymbol constant = symbol(5, "C").in("c.ts").kind("constant");
    page.outbound = {{"a.ts", y, "import", 2},
                     {"a.ts", twin, "unique", 3},
                     {"b.ts", y, "ambiguous", 1},
                     {"b.ts", x, "import", 3},
                     {"a.ts", constant, "unique", 100},
                     {"b.ts", constant, "local", 0},
                     {"a.ts", symbol(6, "t").in("test/t.ts"), "import", 100},
                     {"a.ts", symbol(7, "own").in("b.ts"), "import", 100}};
    const ScopeFacts facts = page.facts();
    const auto target = [&](std::size_t place) { return &facts.outbound[place].target; };
    constexpr auto MAX = std::numeric_limits<std::int64_t>::max();
    using Found = std::vector<Neighbour>;  // each as its last counted reference has it
    EXPECT_EQ(neighbours(facts, MAX), (Found{{target(1), 3}, {target(3), 3}, {target(2), 3}, {target(5), 0}}));
    EXPECT_EQ(neighbours(facts, 2), (Found{{target(1), 3}, {target(3), 3}}));
    EXPECT_EQ(neighbours(facts, 0), Found{});
    EXPECT_EQ(neighbours(facts, -MAX - 1), Found{});
}

TEST(NameMatches, AreCountedByFilesInboundFirst) {
    PageBuilder page;
    page.inbound = {from("x.ts").to(1).by("unique").kind("attribute").times(2), from("x.ts").to(1).by("unique"),
                    from("test/t.ts").to(1).by("unique").kind("constant"),
                    from("x.ts").to(2).by("unique").kind("constant").times(0), from("x.ts").to(1).kind("constant")};
    const ScopeSymbol constant = symbol(5, "C").in("c.ts").kind("constant");
    page.outbound = {{"a.ts", constant, "unique", 4}, {"a.ts", constant, "import", 4}};
    EXPECT_EQ(
        name_match_counts(page.facts()),
        (OrderedMap<FilePair, std::int64_t>{{{"x.ts", "a.ts"}, 2}, {{"test/t.ts", "a.ts"}, 1}, {{"a.ts", "c.ts"}, 4}}));
}

}  // namespace
}  // namespace wiki::scope
