// Pages made by one seeded generator, shaped like real code.
#pragma once

#include "workers/wiki/scope/facts.h"

#include <cstdint>
#include <vector>

namespace bench {

/// How large a generated page is, and how its references are spread.
struct Shape {
    int files = 0;
    int declarations = 0;
    int inbound = 0;
    int outbound = 0;
    int sources = 0;                    ///< distinct files that the inbound references come from
    bool one_file = false;              ///< all declarations stand in the first file
    bool one_source = false;            ///< all inbound references come from one file
    bool nested_types = false;          ///< every declaration is a type inside the one before it
    bool distinct_resolutions = false;  ///< no two references have the same resolution

    /// The same page, `factor` times as large.
    [[nodiscard]] Shape times(int factor) const;
};

/// Twelve files: a page as it is usually written.
inline constexpr Shape TYPICAL{12, 600, 4'000, 3'000, 800};

/// The page of a core header: a million references.
inline constexpr Shape LARGE{2'000, 100'000, 1'000'000, 500'000, 40'000};

/// The facts of a page of this shape, always the same: paths of 30 to 90 characters, a tenth of the sources tests,
/// few declarations with most of the references, one text for each distinct path, name, kind and resolution, and
/// references in the order in which an index gives them.
wiki::scope::ScopeFacts generated_page(const Shape& shape);

}  // namespace bench
