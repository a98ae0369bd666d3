// What a signature reveals about its declaration.
#pragma once

#include "host/scip/reader.h"

#include <string>
#include <string_view>
#include <vector>

namespace host::scip {

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

/// What the type behind the first colon of a variable's signature says of calling what it holds.
///
///     const f: (a: number) => string      it can be called
///     const f: <T>(a: T) => T             it can be called
///     const f: { (a: number): string }    it can be called
///     const f: new () => Error            it can be called
///     const f: (<T>(a: T) => T) & Named   it can be called
///     const f: core.Parse<T> & Named      if Parse or Named can
///     const a: (string | number)[]        it cannot be called
struct CallableType {
    bool can_be_called = false;
    std::vector<std::string> if_one_can;  ///< the names of types, each without its scope
};

CallableType callable_type_of(std::string_view signature);

}  // namespace host::scip
