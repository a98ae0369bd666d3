#include "tests/scope/page_builder.h"
#include "workers/wiki/scope/fan_in.h"
#include "workers/wiki/scope/render.h"

#include <gtest/gtest.h>

namespace wiki::scope {
namespace {

TEST(FileCards, TellEverythingAboutEveryFile) {
    PageBuilder page;
    page.files = {{1, "src/a.ts", std::nullopt}, {2, "src/b|b.ts", std::nullopt}, {3, "c.ts", std::nullopt}};
    page.line_counts = {{"src/a.ts", 120}, {"src/b|b.ts", 0}};
    page.summaries = {{"src/a.ts", "Says a|b\nand more"}};
    page.symbols = {symbol(1, "one").in("src/a.ts").lines(10, 20),
                    symbol(2, "three").in("src/a.ts").lines(30, 31),
                    symbol(3, "five").in("src/a.ts").lines(40, 41),
                    symbol(4, "also_three").in("src/a.ts").lines(5, 6),
                    symbol(5, "one_more").in("src/a.ts"),
                    symbol(6, "in_page").in("src/a.ts"),
                    symbol(7, "Inner").in("src/b|b.ts").kind("class"),
                    symbol(8, "un|used").in("src/b|b.ts")};
    page.inbound = {from("p/q/x.ts").to(1, "src/a.ts"),
                    from("p/q/x.ts").to(2, "src/a.ts").times(3),
                    from("r//x.ts").to(3, "src/a.ts").times(5),
                    from("/z.ts").to(4, "src/a.ts").times(3),
                    from("w.ts").to(5, "src/a.ts"),
                    from("src/a.ts").to(6, "src/a.ts").times(9),
                    from("src/a.ts").to(8, "src/b|b.ts").times(2)};
    page.test_imports = {{"src/a.ts", {"test/4.ts", "test/3.ts", "test/1.ts", "test/2.ts"}}};
    const ScopeFacts facts = page.facts();
    const std::vector<std::string> missing{"src/gone.ts", "c.ts"};
    const std::string cards = render_file_cards(facts, production_fan_in(facts), "# Cards", missing);
    EXPECT_TRUE(cards.starts_with("# Cards\n\nEvery file of this page"));
    EXPECT_EQ(
        cards.substr(cards.find("---|\n") + 5),
        "| `src/a.ts` | 120 | 6 | Says a\\|b and more | `five` L40 (5), `three` L30 (3), `also_three` L5 (3) +2 | "
        "/x.ts, q/x.ts, /z.ts +1 | test/1.ts, test/2.ts, test/3.ts +1 |\n"
        "| `src/b|b.ts` | 0 | 2 |  | `un\\|used` L1 (in-page 2) | src/a.ts |  |\n"
        "| `c.ts` | ? | 0 |  |  |  |  |\n"
        "| `src/gone.ts` | ? | 0 | not in the index | | | |\n"
        "| `c.ts` | ? | 0 | not in the index | | | |\n");
}

TEST(FileCards, ListDeclarationsOfEqualUseInTheirOrder) {
    constexpr int MANY = 40;  // more than a sort leaves in order by chance
    PageBuilder page;
    page.files = {{1, "a.ts", std::nullopt}};
    for (int id = 0; id < MANY; ++id) {
        page.symbols.push_back(symbol(id, ("f" + std::to_string(id)).c_str()));
        page.inbound.push_back(from("x.ts").to(id));
    }
    const ScopeFacts facts = page.facts();
    const std::string cards = render_file_cards(facts, production_fan_in(facts), "#");
    EXPECT_NE(cards.find("`f0` L1 (1), `f1` L1 (1), `f2` L1 (1) +37 |"), std::string::npos) << cards;
}

}  // namespace
}  // namespace wiki::scope
