#include "host/resolve/meaning_memory.h"

#include "host/resolve/evaluator.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace host::resolve {
namespace {

// Questions that depend on others: each means itself, and what these mean.
class Questions {
  public:
    explicit Questions(std::vector<std::vector<std::uint32_t>> others) : others_(std::move(others)) {}

    Meaning meaning(std::uint32_t question) {
        return memory_.find({Question::Subject::EXPRESSION, 0, question}, [&] {
            ++computed;
            Meaning meaning{{.what = Entity::What::SYMBOL, .id = question}};
            for (const std::uint32_t other : others_[question]) {
                add_once(meaning, this->meaning(other));
            }
            return meaning;
        });
    }

    // In ascending order.
    std::vector<std::uint32_t> ids(std::uint32_t question) {
        std::vector<std::uint32_t> ids;
        for (const Entity& entity : meaning(question)) {
            ids.push_back(entity.id);
        }
        std::ranges::sort(ids);
        return ids;
    }

    void forget() { memory_.trim(0); }

    std::size_t computed = 0;

  private:
    std::vector<std::vector<std::uint32_t>> others_;
    MeaningMemory memory_;
};

using Ids = std::vector<std::uint32_t>;

TEST(MeaningMemory, ComputesEachMeaningOnceUntilItForgets) {
    Questions questions({{1, 2}, {2}, {}});
    for (std::size_t round = 1; round <= 2; ++round, questions.forget()) {
        EXPECT_EQ(questions.ids(0), (Ids{0, 1, 2}));
        EXPECT_EQ(questions.ids(1), (Ids{1, 2}));
        EXPECT_EQ(questions.computed, 3 * round);
    }
}

TEST(MeaningMemory, GivesCirclesTheSameMeaningsWhateverIsAskedFirst) {
    for (std::uint32_t first = 0; first < 6; ++first) {
        // 0 to 3 depend on one another by two circles, 4 on these, and they on 5, which depends on itself.
        Questions questions({{1, 3}, {2}, {0, 5}, {2}, {0}, {5}});
        questions.meaning(first);
        for (std::uint32_t in_circle = 0; in_circle < 4; ++in_circle) {
            EXPECT_EQ(questions.ids(in_circle), (Ids{0, 1, 2, 3, 5})) << first << ' ' << in_circle;
        }
        EXPECT_EQ(questions.ids(4), (Ids{0, 1, 2, 3, 4, 5})) << first;
        EXPECT_EQ(questions.ids(5), Ids{5}) << first;
    }
}

TEST(MeaningMemory, GivesCirclesWithinCirclesTheSameMeaningsWhateverIsAskedFirst) {
    for (std::uint32_t first = 0; first < 4; ++first) {
        // 1 and 2 are a circle, and so are all: 3 needs 2 when that is an answer for the time being.
        Questions questions({{1, 3}, {2, 0}, {1}, {2}});
        questions.meaning(first);
        for (std::uint32_t question = 0; question < 4; ++question) {
            EXPECT_EQ(questions.ids(question), (Ids{0, 1, 2, 3})) << first << ' ' << question;
        }
    }
}

TEST(MeaningMemory, FollowsNoPathThroughACircleTwice) {
    constexpr std::uint32_t COUNT = 100;
    Ids all(COUNT);
    for (std::uint32_t question = 0; question < COUNT; ++question) {
        all[question] = question;
    }
    Questions questions(std::vector<Ids>(COUNT, all));
    EXPECT_EQ(questions.ids(7), all);
    EXPECT_EQ(questions.ids(COUNT - 1), all);
    EXPECT_LE(questions.computed, COUNT * 4);
}

TEST(MeaningMemory, LeavesOffWhereAChainIsLongerThanAnybodyWrites) {
    constexpr std::uint32_t COUNT = 100'000;
    std::vector<Ids> chain(COUNT);
    for (std::uint32_t question = 0; question + 1 < COUNT; ++question) {
        chain[question] = {question + 1};
    }
    Questions questions(chain);
    const std::size_t found = questions.ids(0).size();
    EXPECT_GT(found, 100);
    EXPECT_LT(found, 1'000);
    EXPECT_EQ(questions.ids(COUNT - 2), (Ids{COUNT - 2, COUNT - 1}));
    EXPECT_EQ(questions.ids(100).size(), found);  // whatever was found from 0
}

}  // namespace
}  // namespace host::resolve
