// Shortens a page to a number of bytes.
#pragma once

#include "host/page/passage.h"

#include <cstddef>
#include <stdexcept>
#include <string>
#include <vector>

namespace host {

/// As many bytes of a page count as one token.
inline constexpr std::size_t BYTES_OF_A_TOKEN = 4;

/// A budget into which nothing fits.
class TooFewBytes : public std::runtime_error {
  public:
    using runtime_error::runtime_error;
};

/// The text of as much of a page as fits into `most` bytes. The sentences that explain give way first; then the items
/// are shortened, in as few steps as will do; then the tails of all lists, in equal shares, but of those that name each
/// file half as much; at last whatever there is room for is taken in again. Throws `TooFewBytes` with one line
/// when what is left without any list does not fit either: it names the least number that would do.
std::string fitted(std::vector<Passage> passages, std::size_t most);

}  // namespace host
