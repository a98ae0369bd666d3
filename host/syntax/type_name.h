// The name of the type that an expression means.
#pragma once

#include "host/syntax/syntax.h"

#include <string_view>

namespace host::syntax {

/// Returns "T" of `impl<A> m::T<A>` and of `func (t *T)`; empty where the expression names none. Valid as long as
/// `syntax`.
std::string_view type_name(const Syntax& syntax, ExpressionId id);

}  // namespace host::syntax
