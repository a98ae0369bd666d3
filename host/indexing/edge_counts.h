// Counts the edges of an index, and the uses of its declarations that they prove.
#pragma once

#include "host/index/rows.h"
#include "host/indexing/import_report.h"
#include "host/indexing/references.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace host::indexing {

inline constexpr std::array RESOLUTIONS{Resolution::AMBIGUOUS, Resolution::IMPORT, Resolution::LOCAL,
                                        Resolution::UNIQUE};

/// The id of the row of a resolution.
constexpr RowId id_of(Resolution resolution) {
    return static_cast<RowId>(resolution) + 1;
}

class EdgeCounts {
  public:
    /// `declarations` is the highest id of one.
    explicit EdgeCounts(RowId declarations);

    void add(const EdgeRow& edge, bool is_from_test) { count(edge, is_from_test, 1); }
    void remove(const EdgeRow& edge, bool is_from_test) { count(edge, is_from_test, -1); }

    /// Returns the references to a declaration from production code that prove a use.
    [[nodiscard]] std::int64_t uses(RowId declaration) const { return uses_[static_cast<std::size_t>(declaration)]; }

    /// Returns the numbers by the name of the resolution.
    [[nodiscard]] std::map<std::string, EdgeCount> by_resolution() const;

  private:
    void count(const EdgeRow& edge, bool is_from_test, std::int64_t sign);

    std::vector<std::int64_t> uses_;                               // by the id of a declaration
    std::array<EdgeCount, RESOLUTIONS.size() + 1> resolutions_{};  // by the id of a resolution
    std::array<bool, RESOLUTIONS.size() + 1> is_evidence_{};       // likewise
};

}  // namespace host::indexing
