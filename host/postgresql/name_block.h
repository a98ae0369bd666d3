// Names of declarations in one row of a table.
#pragma once

#include "host/index/database.h"
#include "host/index/rows.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace host::postgresql {

/// Some names, stored together: to send a row for each takes a server longer than to look through all of them.
class NameBlock {
  public:
    void add(const NameRow& row);

    [[nodiscard]] bool is_empty() const { return rows_.empty(); }
    /// Whether another name might make the row too long to be stored in one piece.
    [[nodiscard]] bool is_full() const;

    /// That of the first name.
    [[nodiscard]] RowId declaration() const { return declaration_; }
    /// All names one behind the other, in small letters. Of a part of a name that is here it may be more than one that
    /// has it, where one ends and the next begins.
    [[nodiscard]] std::string_view lowered() const { return lowered_; }
    /// For `read_names`.
    [[nodiscard]] std::string_view rows() const { return rows_; }

  private:
    RowId declaration_ = 0;
    std::string lowered_;
    std::string rows_;
};

/// Reads the rows of a block. False when they are damaged: then only some are read.
[[nodiscard]] bool read_names(std::string_view rows, const OnRow<NameRow>& on_row);

}  // namespace host::postgresql
