// The names of a file, each once, in one block of memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host::syntax {

/// Index of a name in `Names`. 0 is the empty name.
using NameId = std::uint32_t;

/// Numbered names, the empty one first.
class Names {
  public:
    /// Adds a name, whether or not it is there already. Returns its number.
    NameId add(std::string_view name) {
        text_ += name;
        ends_.push_back(static_cast<std::uint32_t>(text_.size()));
        return static_cast<NameId>(ends_.size() - 1);
    }

    [[nodiscard]] std::size_t size() const { return ends_.size(); }

    /// Valid until a name is added.
    [[nodiscard]] std::string_view operator[](NameId id) const {
        const std::uint32_t begin = id == 0 ? 0 : ends_[id - 1];
        return std::string_view(text_).substr(begin, ends_[id] - begin);
    }

    /// Gives memory back that further names would have needed.
    void shrink_to_fit() {
        text_.shrink_to_fit();
        ends_.shrink_to_fit();
    }

    friend bool operator==(const Names&, const Names&) = default;

  private:
    std::string text_;
    std::vector<std::uint32_t> ends_{0};
};

}  // namespace host::syntax
