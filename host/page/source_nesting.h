// Which of the sources that a page shows are parts of one another.
#pragma once

#include "host/page/selected_declarations.h"
#include "workers/wiki/scope/ranking.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace host {

class SourceNesting {
  public:
    explicit SourceNesting(std::span<const SelectedDeclaration> declarations);

    /// For each declaration, when the first `printed` of them have their sources: the place of the one that is printed
    /// whole with the source of it in it; none for those that stand in no other.
    [[nodiscard]] std::vector<std::optional<std::size_t>> printed_around(std::size_t printed) const;

  private:
    struct PlacedSource {
        wiki::scope::LineRange lines;
        std::size_t place = 0;  // of the declaration
    };
    std::size_t declarations_;
    // Those that have a source, file by file: what begins first, and of that what ends last, comes first.
    std::vector<std::vector<PlacedSource>> by_file_;
};

}  // namespace host
