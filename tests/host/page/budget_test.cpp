#include "host/page/budget.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace host {
namespace {

// Many items, of which each loses a byte with each step. It counts how often it is asked for their text.
class CountingItems : public Items {
  public:
    explicit CountingItems(int& prints) : prints_(prints) {}

    [[nodiscard]] std::size_t steps() const override { return LONGEST - 1; }
    [[nodiscard]] std::vector<ItemSize> sizes(std::size_t steps) const override {
        return std::vector<ItemSize>(COUNT, ItemSize{.bytes = LONGEST - steps});
    }
    void print(std::string& text, std::size_t count, std::size_t steps) const override {
        ++prints_;
        text.append(count * (LONGEST - steps), '-');
    }

    static constexpr std::size_t COUNT = 1000;
    static constexpr std::size_t LONGEST = 100;

  private:
    int& prints_;
};

TEST(Fitted, PrintsWhatItHasChosenAndNothingElse) {
    const std::string cut(461, '-');
    for (const auto& [most, text] : {std::pair(200'000U, "#\n" + std::string(100'000, '-')),  // whole
                                     std::pair(50'000U, "#\n" + std::string(49'000, '-')),    // shortened
                                     std::pair(500U, "#\n" + cut + "\n_...539 more items left out to fit_\n")}) {
        int prints = 0;
        const Passage passage{.heading = "#\n", .items = std::make_shared<CountingItems>(prints), .item_name = "item"};
        EXPECT_EQ(fitted({passage}, most), text);
        EXPECT_EQ(prints, 1) << most;
    }
}

}  // namespace
}  // namespace host
