// The rules by which a symbol becomes a declaration of a certain kind.
//
// An indexer that states a symbol's kind is believed. For one that does not, the source says the kind; where it is not
// there or leaves that open, the kind follows from the last two descriptors, from the signature and from what the
// source says of a variable:
//
//     Observable#subscribe().     a method, for it stands directly in a type
//     identity().                 a function
//     Color#RED.                  a constant if its signature says "(enum member)", else an attribute
//     noop.                       a function if what it holds can be called
//     EMPTY.  config.             a constant; a variable, unless the signature or the source says "const"
//     Observer#                   what its signature says: "interface Observer<T>";
//                                 a class if it says nothing
#pragma once

#include "host/scip/description.h"
#include "host/scip/symbol.h"

#include <span>
#include <string>
#include <string_view>

namespace host::scip {

/// Whether a symbol is a declaration: namespaces, modules, parameters and the like are none.
bool is_declaration(const Descriptor& symbol, SymbolKind kind);

/// What the source says of a declaration.
struct SourceHints {
    std::string_view kind;     ///< empty where it leaves that open, as of most variables
    bool is_callable = false;  ///< also where a type says so that is declared elsewhere in the index
    bool is_constant = false;
};

/// The kind of a declaration: class, struct, interface, enum, type, function, method, constructor, attribute, constant
/// or variable.
std::string_view kind_of(std::span<const Descriptor> descriptors, const Description& description,
                         const SourceHints& hints);

/// Of several declarations with as many lines that are one row, that of the kind with the smallest rank is the row.
int rank_of_kind(std::string_view kind);

/// The name of a declaration: what the indexer would show, else the last descriptor's; as people write it.
std::string name_of(std::span<const Descriptor> descriptors, const Description& description);

/// The names of all descriptors as people write them, joined by ".". A parameter that is a property of its class has
/// the name of one: C.x for C#`<constructor>`().(x). Line feeds become blanks, other control characters U+FFFD.
std::string fqn_of(std::span<const Descriptor> descriptors);

/// Whether a file could make the declaration public by itself: one inside of a body cannot be reached, and a member is
/// reached through its type.
bool stands_outside(std::span<const Descriptor> descriptors);

}  // namespace host::scip
