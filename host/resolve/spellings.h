// The spellings of all names of a repository, numbered.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace host::resolve {

/// A name of the repository: equal spellings have one number.
using Name = std::uint32_t;

/// Numbers spellings from 0. A hash table of the numbers alone, since a repository has millions of names: nodes of a
/// standard table would take five times its memory.
class Spellings {
  public:
    /// Returns the number of a spelling, a new one where it has none. The text must outlive the object.
    Name add(std::string_view spelling);

    /// Returns the number of a spelling; `missing` where it has none.
    [[nodiscard]] Name find(std::string_view spelling, Name missing) const;

    /// The name must have been added.
    [[nodiscard]] std::string_view operator[](Name name) const { return spellings_[name]; }

  private:
    [[nodiscard]] std::size_t slot_of(std::string_view spelling) const;
    void grow();

    static constexpr Name FREE = 0xFFFF'FFFF;
    std::vector<std::string_view> spellings_;                // by number
    std::vector<Name> slots_ = std::vector<Name>(64, FREE);  // a power of two, at most two thirds of them taken
};

}  // namespace host::resolve
