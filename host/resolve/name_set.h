// A set of names.
#pragma once

#include "host/resolve/spellings.h"

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace host::resolve {

/// Names in the order in which they were added.
class NameSet {
  public:
    /// Adds a name, unless it is empty or there.
    void add(std::string_view name);

    [[nodiscard]] std::size_t size() const { return spellings_.size(); }

    /// Returns whether a name is one of these, not counting the `first` that were added.
    [[nodiscard]] bool contains(std::string_view name, std::size_t first = 0) const;

    /// Returns whether one of the names in a path is one of these: of `a` in `a`, `a.b`, `n::a`, `./a/b`.
    [[nodiscard]] bool is_in_path(std::string_view path, std::size_t first = 0) const;

  private:
    std::deque<std::string> spellings_;  // which stay in their places
    Spellings numbers_;                  // of them
};

}  // namespace host::resolve
