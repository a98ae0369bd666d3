// What is certain of macros that no file needs to define: those of the compiler and of other systems.
//
// This system is Linux on x86-64, with GNU C or what is compatible with it. It is the same on every machine, so that an
// index is.
#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

namespace host::sources {

/// A number of which the bounds are known, both inclusive.
struct CNumber {
    std::int64_t least = std::numeric_limits<std::int64_t>::min();
    std::int64_t most = std::numeric_limits<std::int64_t>::max();

    [[nodiscard]] constexpr bool is_true() const { return least > 0 || most < 0; }
    [[nodiscard]] constexpr bool is_false() const { return least == 0 && most == 0; }

    friend bool operator==(const CNumber&, const CNumber&) = default;
};

inline constexpr CNumber C_TRUE{.least = 1, .most = 1};
inline constexpr CNumber C_FALSE{.least = 0, .most = 0};
inline constexpr CNumber C_TRUE_OR_FALSE{.least = 0, .most = 1};
inline constexpr CNumber C_ANY;

struct CMacro {
    CNumber is_defined = C_TRUE_OR_FALSE;
    CNumber value = C_ANY;  ///< as a condition sees it, where the macro is defined
};

/// Returns what is certain of a macro before a file begins: nothing of most.
CMacro known_c_macro(std::string_view name);

}  // namespace host::sources
