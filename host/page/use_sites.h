// Where production code outside of a page uses it.
#pragma once

#include "host/page/page.h"
#include "models/excerpt.h"
#include "models/text.h"
#include "workers/wiki/scope/consumers.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace host {

/// A file that uses a declaration, and where it first does. Only evidence counts: references that match nothing but a
/// name are no use.
struct UseSite {
    models::Text path;
    std::int64_t references = 0;       ///< all that the file makes to the declaration
    std::optional<std::int32_t> line;  ///< of the first of them, 1-based; none when the index does not know it

    friend bool operator==(const UseSite&, const UseSite&) = default;
};

/// Returns the uses of each selected declaration by production files outside of the page, in the order of the
/// selection: three files at most of each; most references first, equal counts in path order.
std::vector<models::Excerpt<UseSite>> uses_of_selection(const Page& page);

/// Returns the line on which each of these consumers first uses the page, in their order; none for one that is known by
/// name only, or whose lines the index does not know.
std::vector<std::optional<std::int32_t>> first_uses(const Page& page,
                                                    const std::vector<wiki::scope::Consumer>& consumers);

}  // namespace host
