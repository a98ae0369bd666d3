// The symbol strings of SCIP, by which an index names what it declares and refers to.
//
// A symbol is `local ID`, which means something in its own document only, or it is global:
//
//     scheme ' ' manager ' ' package ' ' version ' ' descriptor+
//
//     scip-typescript npm rxjs 7.8.2 src/`Observable.ts`/Observable#subscribe().
//
// The descriptors lead from the outermost scope to the symbol itself. A character behind each name says what it
// names: here two namespaces, a type and a method.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::scip {

enum class Suffix {
    NAMESPACE,       ///< name/
    TYPE,            ///< name#
    TERM,            ///< name.
    METHOD,          ///< name(disambiguator).
    MACRO,           ///< name!
    META,            ///< name:
    TYPE_PARAMETER,  ///< [name]
    PARAMETER,       ///< (name)
};

/// One step of a global symbol. The name is never empty and stands as in the source: no backticks around it, none
/// doubled inside.
struct Descriptor {
    std::string name;
    Suffix suffix;

    friend bool operator==(const Descriptor&, const Descriptor&) = default;
};

/// Whether the symbol is local to its document.
bool is_local(std::string_view symbol);

/// The descriptors of a global symbol, at least one, outermost first; none when the string does not parse. Every byte
/// of a character beyond ASCII is taken for a letter.
std::optional<std::vector<Descriptor>> parse_symbol(std::string_view symbol);

}  // namespace embedded::scip
