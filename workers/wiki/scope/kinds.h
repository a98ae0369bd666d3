// What the kind of a declaration says of it.
#pragma once

#include "models/constant_set.h"
#include "models/symbol.h"

#include <string_view>

namespace wiki::scope {

/// The kinds of declarations that are types.
inline constexpr models::ConstantSet TYPE_KINDS{"struct", "interface", "class", "type", "enum"};

/// The kinds of declarations that can be called.
inline constexpr const auto& CALLABLE_KINDS = models::CALLABLE_KINDS;

/// Whether declarations of this kind are callables or types: what a page's API consists of, and what goes in depth.
inline bool is_callable_or_type(std::string_view kind) {
    return CALLABLE_KINDS.contains(kind) || TYPE_KINDS.contains(kind);
}

}  // namespace wiki::scope
