// The spellings of all names of a repository, numbered.
#pragma once

#include "host/syntax/number_table.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace host::resolve {

/// A name of the repository: equal spellings have one number.
using Name = std::uint32_t;

/// Numbers spellings from 0.
class Spellings {
  public:
    /// Returns the number of a spelling, a new one where it has none. The text must outlive the object.
    Name add(std::string_view spelling);

    /// Returns the number of a spelling; `missing` where it has none.
    [[nodiscard]] Name find(std::string_view spelling, Name missing) const;

    /// The name must have been added.
    [[nodiscard]] std::string_view operator[](Name name) const { return spellings_[name]; }

  private:
    std::vector<std::string_view> spellings_;  // by number
    syntax::NumberTable numbers_;
};

}  // namespace host::resolve
