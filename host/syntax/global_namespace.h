// What a file declares for all files, as in `declare global { ... }`.
#pragma once

#include <string_view>

namespace host::syntax {

/// The name of a hidden namespace at the top of a file whose members all files see.
inline constexpr std::string_view GLOBAL_NAMESPACE = "global";

}  // namespace host::syntax
