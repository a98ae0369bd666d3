// Which names are private.
#pragma once

#include <string_view>

namespace wiki::scope {

/// Whether a name is private by convention.
inline bool _is_private(std::string_view name) {
    return name.starts_with('_');
}

}  // namespace wiki::scope
