// The blocks of a page's outline.
#pragma once

#include "host/index/database.h"
#include "host/page/outline.h"
#include "host/page/passage.h"

#include <cstddef>
#include <string>
#include <vector>

namespace host {

/// The outline of each file under a heading of its own, with a line for each declaration; then the missing paths. Each
/// step of shortening takes the declaration that matters least from the files that have most of them, and a line says
/// how many are left out.
class OutlineBlocks : public Items {
  public:
    /// Both arguments must outlive this object. Throws `IndexError`; as the functions that follow, what
    /// `db.check_interrupt` throws.
    OutlineBlocks(const Page& page, storage::Database& db);

    [[nodiscard]] std::size_t steps() const override { return most_; }
    [[nodiscard]] std::vector<ItemSize> sizes(std::size_t steps) const override;
    void print(std::string& text, std::size_t count, std::size_t steps) const override;

  private:
    const storage::Database& db_;
    std::vector<FileOutline> files_;
    std::vector<std::vector<std::size_t>> bytes_;  // of the lines of each file's first declarations, by their number
    std::vector<std::string> missing_;             // blocks
    std::size_t most_ = 0;                         // declarations of one file
};

}  // namespace host
