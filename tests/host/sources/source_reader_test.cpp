// The threads on which sources are read.

#include "fixtures/temporary_folder.h"
#include "host/sources/source_reader.h"
#include "tests/host/without_threads.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace host::sources {
namespace {

class Reader : public testing::Test {
  protected:
    Reader() {
        folder.write("a.ts", "export const a = 1\n");
        folder.write("b.ts", "export const b = 1\n");
        std::filesystem::permissions(folder / "", std::filesystem::perms::all);
    }

    // How many declarations the sources have.
    [[nodiscard]] std::string declarations() const {
        const Checkout checkout(folder / "");
        TextSpool spool(folder / "texts");
        SourceReader reader(checkout, spool);
        reader.request("a.ts", "");
        reader.request("b.ts", "");
        std::size_t count = 0;
        for (const auto& [path, source] : reader.finish([] {})) {
            count += source.outline.value().declarations.size();
        }
        return std::to_string(count);
    }

    TemporaryFolder folder;
};

TEST_F(Reader, HasAThreadForEachCore) {
    const auto threads = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {}); };
    std::promise<void> end;
    std::thread first([&] { end.get_future().wait(); });  // with which a sanitizer starts one of its own
    const auto before = threads();
    const Checkout checkout(folder / "");
    TextSpool spool(folder / "texts");
    const SourceReader reader(checkout, spool);
    EXPECT_EQ(threads() - before, std::max(1U, std::thread::hardware_concurrency()));
    end.set_value();
    first.join();
}

TEST_F(Reader, ReadsOnFewerThreadsThanThereAreCoresAndOnNone) {
    for (const rlim_t most : {0U, 2U}) {
        EXPECT_EQ(with_most_threads(most, [&] { return declarations(); }), "2") << most;
    }
}

}  // namespace
}  // namespace host::sources
