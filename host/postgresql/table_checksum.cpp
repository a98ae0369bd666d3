#include "host/postgresql/table_checksum.h"

#include <xxhash.h>

#include <string>

namespace host::postgresql {

void TableChecksum::add(std::string_view row) {
    sum_ += XXH3_64bits(row.data(), row.size());
}

std::int64_t stored_checksum(Connection& connection, const SnapshotTable& table, const Parameters& key) {
    Rows rows(connection,
              "SELECT " + std::string(table.columns) + " FROM wiki_scope." + std::string(table.name) +
                  " WHERE repository = $1 AND snapshot = $2",
              key);
    TableChecksum checksum;
    std::string row;
    while (rows.step()) {
        row.clear();
        for (int column = 0; column < rows.columns(); ++column) {
            const std::string_view value = rows.bytes(column);
            append_integer(row, rows.is_null(column) ? std::int32_t{-1} : static_cast<std::int32_t>(value.size()));
            row += value;
        }
        checksum.add(row);
    }
    return checksum.value();
}

}  // namespace host::postgresql
