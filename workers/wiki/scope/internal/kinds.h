// What the kind and the name of a declaration say of it.
#pragma once

#include "models/constant_set.h"
#include "models/symbol.h"

#include <string_view>

namespace wiki::scope {

inline constexpr models::ConstantSet TYPE_KINDS{"struct", "interface", "class", "type", "enum"};
inline constexpr const auto& CALLABLE_KINDS = models::CALLABLE_KINDS;

/// Whether declarations of this kind are callables or types: what a page's API consists of.
inline bool _is_callable_or_type(std::string_view kind) {
    return CALLABLE_KINDS.contains(kind) || TYPE_KINDS.contains(kind);
}

/// Whether a name is private by convention.
inline bool _is_private(std::string_view name) {
    return name.starts_with('_');
}

}  // namespace wiki::scope
