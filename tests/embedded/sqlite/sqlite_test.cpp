#include "embedded/sqlite/connection.h"
#include "tests/embedded/temporary_folder.h"

#include <gtest/gtest.h>

namespace embedded {
namespace {

TEST(ConnectionWatch, EndsALongStatementWithWhatItThrows) {
    const TemporaryFolder folder;
    Connection connection(folder / "a.db", Connection::Mode::CREATE);
    connection.watch([] { throw std::out_of_range("enough"); });
    const std::string endless =
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n";
    EXPECT_THROW(connection.execute(endless), std::out_of_range);
    EXPECT_THROW(Statement(connection, endless).step(), std::out_of_range);
    EXPECT_THROW(connection.execute("SELECT * FROM nothing"), SqliteError);
}

}  // namespace
}  // namespace embedded
