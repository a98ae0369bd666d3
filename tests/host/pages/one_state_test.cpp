#include "host/pages/one_state.h"

#include "tests/host/indexed_folder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace host::pages {
namespace {

class OneStateOfAnIndex : public IndexedFolder {};

// An index that gets another file each time that it is connected to.
class ChangingIndex : public Index {
  public:
    explicit ChangingIndex(std::string path) : index_(std::move(path)) {}
    [[nodiscard]] std::string name() const override { return index_.name(); }
    [[nodiscard]] std::unique_ptr<IndexConnection> connect() const override {
        SqliteConnection(index_.name(), SqliteConnection::Mode::CREATE)
            .execute("INSERT INTO files(path) VALUES('f' || (SELECT count(*) FROM files))");
        return index_.connect();
    }
    [[nodiscard]] std::string options() const override { return index_.options(); }
    [[nodiscard]] std::unique_ptr<NewIndex> replace(CheckInterrupt check) const override {
        return index_.replace(std::move(check));
    }

  private:
    SqliteIndex index_;
};

TEST_F(OneStateOfAnIndex, IsReadThroughAllConnectionsToItAndNoOther) {
    constexpr std::size_t CALLS = 100;
    const OneState state(ChangingIndex(index), CALLS, [] {});
    std::vector<std::atomic<int>> calls(CALLS);
    std::atomic<bool> is_one = true;
    std::size_t last = 0;
    state.for_each(
        CALLS,
        [&](std::size_t at, storage::Database& db) {
            ++calls[at];
            is_one = is_one && db.origin().state == state.database().origin().state;
        },
        [&](std::size_t done) {
            EXPECT_GE(done, last);
            last = done;
        });
    for (const std::atomic<int>& each : calls) {
        EXPECT_EQ(each, 1);
    }
    EXPECT_EQ(last, CALLS);
    EXPECT_TRUE(is_one);
}

TEST_F(OneStateOfAnIndex, EndsWithWhatTheWorkThrows) {
    const OneState state(SqliteIndex(index), 9, [] {});
    const auto fail = [](std::size_t at, storage::Database& /*db*/) {
        if (at == 5) {
            throw std::out_of_range("the fifth");
        }
    };
    EXPECT_THROW(state.for_each(1'000, fail, [](std::size_t /*done*/) {}), std::out_of_range);
}

}  // namespace
}  // namespace host::pages
