// The command where memory runs out.

#include "tests/host/indexed_folder.h"

#include <cstddef>
#include <numeric>
#include <string>

namespace host {
namespace {

class LittleMemory : public IndexedFolder {
  protected:
    // Many declarations, so that the JSON of their page is longer than everything that it is made of, and takes more
    // than what libraries need to start, which fail in their own ways.
    LittleMemory() {
        constexpr int DECLARATIONS = 16'000;
        std::string source;
        for (int at = 0; at < DECLARATIONS; ++at) {
            source += "export function declared" + std::to_string(at) + "(): void {}\n";
        }
        folder.write("a.ts", source);
        EXPECT_EQ(run("import . --index index.db").exit_code, 0);
    }

    [[nodiscard]] Outcome page(const std::string& kilobytes) const {
        return shell("ulimit -v " + kilobytes +
                     " && exec wiki-scope page . --format json --index index.db --checkout .");
    }
    [[nodiscard]] Outcome page(std::size_t kilobytes) const { return page(std::to_string(kilobytes)); }
};

TEST_F(LittleMemory, PrintsAPageWholeOrNotAtAll) {
    constexpr std::size_t PLENTY = 8 << 20;
    constexpr std::size_t STEP = 128;
    constexpr std::size_t STEPS = 24;
    const std::string whole = page("unlimited").out;
    ASSERT_NE(whole, "");
    if (page(PLENTY).exit_code != 0) {
        GTEST_SKIP() << "a sanitizer takes more address space";
    }
    std::size_t too_little = 0;
    std::size_t enough = PLENTY;
    while (enough - too_little > STEP) {
        const std::size_t middle = std::midpoint(too_little, enough);
        (page(middle).exit_code == 0 ? enough : too_little) = middle;
    }
    for (std::size_t step = 0; step < STEPS; ++step) {
        const std::size_t kilobytes = enough - step * STEP;
        const Outcome outcome = page(kilobytes);
        EXPECT_TRUE(outcome.out == (outcome.exit_code == 0 ? whole : "")) << kilobytes;
        EXPECT_FALSE(outcome.err.empty()) << kilobytes;
    }
}

}  // namespace
}  // namespace host
