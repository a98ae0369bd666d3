// What an expression means: declarations of the repository, their values, and types that the text puts together.
#pragma once

#include "host/resolve/catalog.h"

#include <compare>
#include <cstdint>
#include <vector>

namespace host::resolve {

/// An expression of a file.
struct Place {
    FileId file = NONE;
    syntax::ExpressionId expression = syntax::UNKNOWN;

    friend auto operator<=>(const Place&, const Place&) = default;
};

/// One thing that an expression may mean.
struct Entity {
    enum class What : std::uint8_t {
        FOREIGN,     ///< something of another package or of the language
        SYMBOL,      ///< declaration `id` itself
        INSTANCE,    ///< a value of the type that declaration `id` is
        MODULE,      ///< module `id`
        STRUCTURE,   ///< the type that expression `at` puts together
        STRUCTURED,  ///< a value of that type
        PARAMETER,   ///< the type parameter that expression `at` is
        PARAMETRIC,  ///< a value of that type parameter
    };

    What what = What::FOREIGN;
    std::uint32_t id = NONE;
    /// Of STRUCTURE to PARAMETRIC; of SYMBOL and INSTANCE the GENERIC that gives its type, or that of the value it is a
    /// member of, arguments.
    Place at = {};

    friend auto operator<=>(const Entity&, const Entity&) = default;
};

/// Returns whether it is something of another package or of the language.
inline bool is_foreign(const Entity& entity) {
    return entity.what == Entity::What::FOREIGN;
}

/// All that an expression may mean, each once, in the order in which it was found. Empty when nothing is known.
using Meaning = std::vector<Entity>;

}  // namespace host::resolve
