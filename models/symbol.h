// The kinds of declarations.
#pragma once

#include "models/constant_set.h"

namespace models {

/// The kinds of declarations that can be called.
inline constexpr ConstantSet CALLABLE_KINDS{"function", "method", "constructor"};

}  // namespace models
