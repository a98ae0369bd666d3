// The rules by which what SCIP says of a symbol becomes a row of the index.
//
// A declaration is a global symbol that a file defines. Its row is made of its descriptors, of what the file's
// documents know of it, and of the lines that its definition spans. An indexer that states a symbol's kind is
// believed; for one that does not, the kind follows from the last two descriptors and from the signature:
//
//     Observable#subscribe().     a method, for it stands directly in a type
//     identity().                 a function
//     EMPTY.  config.             a constant; a variable, unless its signature starts with "const"
//     Observer#                   what its signature says: "interface Observer<T>";
//                                 a class if it says nothing
#pragma once

#include "embedded/scip/reader.h"
#include "embedded/scip/symbol.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::scip {

/// What a file's documents know of one symbol.
struct Description {
    SymbolKind kind = SymbolKind::UNSPECIFIED;
    std::string display_name;
    /// The first word of the signature, or else of the first fenced block of the documentation; empty when that starts
    /// with no word, none when there is neither.
    std::optional<std::string> keyword;

    /// Fills in what is still missing: of each field the first that says something counts.
    void add(const SymbolInformation& information);
};

struct Declaration {
    std::string name;
    std::string fqn;  ///< the names of all descriptors, joined by "."
    /// One of class, struct, interface, enum, type, function, method, constructor, attribute, constant, variable.
    std::string_view kind;
    bool is_export = false;  ///< whether it stands outside of every body
};

/// The declaration that a symbol stands for; none for what is no declaration: namespaces, modules, parameters and the
/// like. There is at least one descriptor.
std::optional<Declaration> declaration_of(const std::vector<Descriptor>& descriptors, const Description& description);

/// Lines of a file, 1-based, both inclusive; `last` is never before `first`.
struct Lines {
    std::int32_t first = 1;
    std::int32_t last = 1;

    friend bool operator==(const Lines&, const Lines&) = default;
};

/// The lines that a definition spans, with its body if the indexer says where that is; none when it has no range.
/// Whatever the range says, the result lies between 1 and the greatest line that there can be.
std::optional<Lines> lines_of(const Occurrence& definition);

/// How many lines these are; 0 for none.
std::int32_t count_of(const std::optional<Lines>& lines);

/// The language of a file in lower case: what the document states, else by the path's extension; empty when neither
/// says. A name with a NUL in it says nothing: no query could ask for it.
std::string language_of(std::string_view stated, std::string_view path);

}  // namespace embedded::scip
