#include "host/page/descriptions.h"
#include "tests/host/indexed_folder.h"

namespace host {
namespace {

class Descriptions : public IndexedFolder {};

TEST_F(Descriptions, AreReadForEachOfManyDeclarationsInTheirOrder) {
    constexpr RowId COUNT = 1001;
    change("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
           "INSERT INTO descriptions SELECT i, i, '' FROM n "
           "LIMIT " +
           std::to_string(COUNT));
    std::vector<storage::SymbolId> ids;
    std::string expected;
    for (RowId id = COUNT; id > 0; --id) {
        expected += std::to_string(ids.size()) + ":" + std::to_string(id) + " ";
        ids.push_back(id);
    }
    std::string read;
    read_descriptions(*SqliteIndex(index).connect()->read(), ids, [&](std::size_t place, const DescriptionRow& row) {
        read += std::to_string(place) + ":" + std::string(row.signature) + " ";
    });
    EXPECT_EQ(read, expected);
}

}  // namespace
}  // namespace host
