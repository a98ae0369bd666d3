#include "tests/scope/page_builder.h"
#include "workers/wiki/scope/render.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace wiki::scope {
namespace {

OutboundReference outbound(const char* source, const ScopeSymbol& target, const char* resolution, std::int64_t refs) {
    return {source, target, resolution, refs};
}

TEST(Neighbours, AreTheProductionDeclarationsThatThePageUsesMost) {
    PageBuilder page;
    page.files = {{1, "a.ts", {}}, {2, "b.ts", {}}};
    const ScopeSymbol y = symbol(2, "y").in("y.ts").fqn("m.y");
    const ScopeSymbol x = symbol(3, "x").in("x.ts").fqn("m.x");
    const ScopeSymbol twin = symbol(4, "x2").in("x.ts").fqn("m.x");
    const ScopeSymbol constant = symbol(5, "C").in("c.ts").kind("constant");
    page.outbound = {outbound("a.ts", y, "import", 2),
                     outbound("a.ts", twin, "unique", 3),
                     outbound("b.ts", y, "ambiguous", 1),
                     outbound("b.ts", x, "import", 3),
                     outbound("a.ts", constant, "unique", 100),
                     outbound("b.ts", constant, "local", 0),
                     outbound("a.ts", symbol(6, "t").in("test/t.ts"), "import", 100),
                     outbound("a.ts", symbol(7, "own").in("b.ts"), "import", 100)};
    const ScopeFacts facts = page.facts();
    const auto ids = [&](std::int64_t limit) {
        std::vector<std::pair<SymbolId, std::int64_t>> found;
        for (const Neighbour& neighbour : neighbours(facts, limit)) {
            found.emplace_back(neighbour.target->id, neighbour.refs);
        }
        return found;
    };
    using Found = std::vector<std::pair<SymbolId, std::int64_t>>;
    constexpr auto MAX = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(ids(MAX), (Found{{4, 3}, {3, 3}, {2, 3}, {5, 0}}));
    EXPECT_EQ(ids(2), (Found{{4, 3}, {3, 3}}));
    EXPECT_EQ(ids(0), Found{});
    EXPECT_EQ(ids(-MAX - 1), Found{});
    EXPECT_EQ(neighbours(facts, 3)[2].target, &facts.outbound[2].target);  // of its last counted reference
}

TEST(NameMatches, AreCountedByFilesInboundFirst) {
    PageBuilder page;
    page.inbound = {from("x.ts").to(1).by("unique").kind("attribute").times(2), from("x.ts").to(1).by("unique"),
                    from("test/t.ts").to(1).by("unique").kind("constant"),
                    from("x.ts").to(2).by("unique").kind("constant").times(0), from("x.ts").to(1).kind("constant")};
    const ScopeSymbol constant = symbol(5, "C").in("c.ts").kind("constant");
    page.outbound = {outbound("a.ts", constant, "unique", 4), outbound("a.ts", constant, "import", 4)};
    EXPECT_EQ(
        name_match_counts(page.facts()),
        (OrderedMap<FilePair, std::int64_t>{{{"x.ts", "a.ts"}, 2}, {{"test/t.ts", "a.ts"}, 1}, {{"a.ts", "c.ts"}, 4}}));
}

}  // namespace
}  // namespace wiki::scope
