// A page that fits into a number of bytes.
#pragma once

#include "embedded/page/passage.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace embedded {

/// The passages of a page in which the first `sources` declarations are shown with their source.
using PassagesWithSources = std::function<std::vector<Passage>(std::size_t sources)>;

/// The text of as much of a page as fits into `most` bytes. What gives way first is the source of declarations, from the
/// last one on; then the tails of all lists but those that name each file of the page, in equal shares; then the tails
/// of these; at last whatever there is room for is taken in again. None when what is left without any list does not fit either.
std::optional<std::string> fitted(const PassagesWithSources& passages, std::size_t sources, std::size_t most);

}  // namespace embedded
