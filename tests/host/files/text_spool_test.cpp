#include "host/files/text_spool.h"

#include "fixtures/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace host {
namespace {

TEST(TextSpool, ReadsTextsOfAnySizeInAnyOrder) {
    constexpr std::size_t LARGE = 100'000;  // more than is read at once
    const TemporaryFolder folder;
    TextSpool spool(folder / "texts");
    std::vector<std::string> texts;
    std::vector<SpooledText> spooled;
    for (const std::size_t size : {std::size_t{3}, LARGE, std::size_t{0}, LARGE / 2, LARGE / 2, std::size_t{1}}) {
        texts.emplace_back(size, static_cast<char>('a' + texts.size()));
        spooled.push_back(spool.add(texts.back()));
    }
    for (const std::size_t at : {0U, 1U, 2U, 3U, 4U, 5U, 1U, 3U, 0U, 4U}) {
        EXPECT_EQ(spool.read(spooled[at]), texts[at]) << at;
    }
    EXPECT_EQ(spool.read(spool.add("more")), "more");
}

}  // namespace
}  // namespace host
