// What the signature of a declaration says of it.
#pragma once

#include "embedded/scip/reader.h"

#include <string>
#include <string_view>

namespace embedded::scip {

/// What an indexer writes of a symbol for people to read.
struct Explanation {
    std::string_view signature;  ///< its signature, else the first fenced block of its documentation; may be empty
    std::string documentation;   ///< the rest of the documentation, paragraphs apart by an empty line
};

Explanation explanation_of(const SymbolInformation& information);

/// What the first words of a signature say, whatever the language.
struct SignatureWords {
    std::string_view keyword;     ///< the first word that is no modifier, as it stands; may be empty
    bool is_const = false;        ///< whether a word before the name is "const"
    bool is_public = false;       ///< whether a modifier is "public"
    bool is_restricted = false;   ///< whether a modifier is "private", "protected" or "internal"
    bool is_enum_member = false;  ///< whether it begins with "(enum member)"
};

SignatureWords words_of(std::string_view signature);

/// Whether what a variable holds can be called, by the type behind the first colon of its signature:
///
///     const f: (a: number) => string     yes
///     const f: <T>(a: T) => T            yes
///     const f: { (a: number): string }   yes
///     const f: new () => Error           yes
///     const a: (string | number)[]       no
bool holds_callable(std::string_view signature);

}  // namespace embedded::scip
