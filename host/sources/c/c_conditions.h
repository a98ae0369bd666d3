// What of a text of C or C++ this system compiles (c_known_macros.h says which), by the `#if` that stand around it.
//
// A condition is followed as far as it is certain: by macros that the compiler defines or only others do, and by what
// the file has defined above, up to its next `#include`. Every other macro may be defined outside, so that a condition
// which asks for it may hold or not. A guard against a second inclusion is no condition.
#pragma once

#include "host/sources/c/c_scanner.h"
#include "host/syntax/syntax_builder.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace host::sources {

/// A branch of an `#if`.
struct CBranch {
    std::optional<std::size_t> around;            ///< the branch around the `#if`, if any
    std::size_t condition = 0;                    ///< number of the `#if`
    syntax::Built built = syntax::Built::ALWAYS;  ///< where what is around it is compiled
    bool is_substitute = false;                   ///< only taken where a library lacks something: `#ifndef HAVE_F`
};

/// The branches of all conditions of a text.
struct CBranches {
    /// Where a branch begins, or goes on behind a condition in it.
    struct Part {
        std::size_t begin = 0;              ///< in bytes
        std::optional<std::size_t> branch;  ///< none outside of all conditions
    };

    std::vector<Part> parts;        ///< ascending
    std::vector<CBranch> branches;  ///< in the order of the text
    /// By `#if`: of how many branches a build takes one; 0 where it may take none.
    std::vector<std::size_t> alternatives;

    /// Returns the innermost branch around an offset.
    [[nodiscard]] std::optional<std::size_t> at(std::size_t offset) const;
};

/// What of a text is compiled.
struct CCompiled {
    /// Where it begins to be compiled always, maybe or never, in its order; empty where all of it always is.
    std::vector<syntax::Region> regions;
    CBranches branches;
};

/// Returns what of a text with these tokens is compiled by a build for this system.
CCompiled compiled_c(std::string_view text, const CTokens& scanned);

}  // namespace host::sources
