#include "host/scip/declarations.h"

#include "host/text/ascii.h"
#include "host/text/control_characters.h"

#include <algorithm>
#include <array>
#include <optional>

namespace host::scip {

namespace {

bool is_module(SymbolKind kind) {
    return kind == SymbolKind::MODULE || kind == SymbolKind::NAMESPACE || kind == SymbolKind::PACKAGE ||
           kind == SymbolKind::PACKAGE_OBJECT || kind == SymbolKind::LIBRARY;
}

bool is_parameter(SymbolKind kind) {
    return kind == SymbolKind::PARAMETER || kind == SymbolKind::SELF_PARAMETER || kind == SymbolKind::TYPE_PARAMETER;
}

// Whether what the symbol names declares nothing: a scope only, or a name of some signature.
bool declares_nothing(Suffix suffix, SymbolKind kind) {
    switch (suffix) {
    case Suffix::NAMESPACE:
    case Suffix::META:
    case Suffix::TYPE_PARAMETER:
    case Suffix::PARAMETER:
        return true;
    case Suffix::TYPE:
        return is_parameter(kind);
    case Suffix::TERM:
    case Suffix::METHOD:
    case Suffix::MACRO:
        return is_parameter(kind) || is_module(kind);
    }
    return true;
}

// The kind of row for a kind that the indexer states; none when the number says nothing.
std::optional<std::string_view> stated_kind(SymbolKind kind) {
    switch (kind) {
    case SymbolKind::CLASS:
    case SymbolKind::SINGLETON_CLASS:
    case SymbolKind::MIXIN:
    case SymbolKind::EXTENSION:
    case SymbolKind::CONTRACT:
    case SymbolKind::OBJECT:
    case SymbolKind::MESSAGE:
    case SymbolKind::MODULE:
    case SymbolKind::NAMESPACE:
    case SymbolKind::PACKAGE:
    case SymbolKind::PACKAGE_OBJECT:
    case SymbolKind::LIBRARY:
        return "class";
    case SymbolKind::STRUCT:
    case SymbolKind::UNION:
        return "struct";
    case SymbolKind::INTERFACE:
    case SymbolKind::PROTOCOL:
    case SymbolKind::TRAIT:
    case SymbolKind::TYPE_CLASS:
    case SymbolKind::CONCEPT:
        return "interface";
    case SymbolKind::ENUM:
        return "enum";
    case SymbolKind::TYPE:
    case SymbolKind::TYPE_ALIAS:
    case SymbolKind::DELEGATE:
        return "type";
    case SymbolKind::FUNCTION:
    case SymbolKind::MACRO:
    case SymbolKind::OPERATOR:
        return "function";
    case SymbolKind::METHOD:
    case SymbolKind::ABSTRACT_METHOD:
    case SymbolKind::METHOD_ALIAS:
    case SymbolKind::METHOD_SPEC:
    case SymbolKind::PROTOCOL_METHOD:
    case SymbolKind::PURE_VIRTUAL_METHOD:
    case SymbolKind::SINGLETON_METHOD:
    case SymbolKind::STATIC_METHOD:
    case SymbolKind::TRAIT_METHOD:
    case SymbolKind::TYPE_CLASS_METHOD:
    case SymbolKind::GETTER:
    case SymbolKind::SETTER:
    case SymbolKind::ACCESSOR:
        return "method";
    case SymbolKind::CONSTRUCTOR:
        return "constructor";
    case SymbolKind::FIELD:
    case SymbolKind::PROPERTY:
    case SymbolKind::STATIC_DATA_MEMBER:
    case SymbolKind::STATIC_FIELD:
    case SymbolKind::STATIC_PROPERTY:
        return "attribute";
    case SymbolKind::CONSTANT:
    case SymbolKind::ENUM_MEMBER:
        return "constant";
    case SymbolKind::VARIABLE:
    case SymbolKind::VALUE:
    case SymbolKind::STATIC_VARIABLE:
        return "variable";
    default:
        return std::nullopt;
    }
}

bool is_type_literal(const Descriptor& scope) {
    return scope.suffix == Suffix::META && scope.name.starts_with("typeLiteral");
}

// Whether the symbol is a member of what the descriptor before it names.
bool is_member(std::span<const Descriptor> descriptors) {
    if (descriptors.size() < 2) {
        return false;
    }
    const Descriptor& scope = descriptors[descriptors.size() - 2];
    return scope.suffix == Suffix::TYPE || is_type_literal(scope);
}

std::string_view kind_of_method(std::span<const Descriptor> descriptors) {
    if (!is_member(descriptors)) {
        return "function";
    }
    return is_constructor_name(descriptors.back().name) ? "constructor" : "method";
}

std::string_view kind_of_term(std::span<const Descriptor> descriptors, const Description& description,
                              const SourceHints& hints) {
    if (is_member(descriptors)) {
        return description.is_enum_member ? "constant" : "attribute";
    }
    if (description.callable.can_be_called || hints.is_callable) {
        return "function";
    }
    const bool is_loud = std::ranges::none_of(descriptors.back().name,
                                              [](char character) { return 'a' <= character && character <= 'z'; });
    return is_loud || description.is_constant || hints.is_constant ? "constant" : "variable";
}

std::string_view inferred_kind(std::span<const Descriptor> descriptors, const Description& description,
                               const SourceHints& hints) {
    switch (descriptors.back().suffix) {
    case Suffix::METHOD:
        return kind_of_method(descriptors);
    case Suffix::MACRO:
        return "function";
    case Suffix::TERM:
        return kind_of_term(descriptors, description, hints);
    default:
        return description.type_kind.empty() ? "class" : description.type_kind;
    }
}

bool is_body(const Descriptor& scope) {
    return scope.suffix == Suffix::METHOD || scope.suffix == Suffix::MACRO || scope.suffix == Suffix::TERM;
}

}  // namespace

bool is_declaration(const Descriptor& symbol, SymbolKind kind) {
    return !declares_nothing(symbol.suffix, kind);
}

std::string_view kind_of(std::span<const Descriptor> descriptors, const Description& description,
                         const SourceHints& hints) {
    const std::optional<std::string_view> stated = stated_kind(description.kind);
    const std::string_view in_source = stated ? *stated : hints.kind;
    return in_source.empty() ? inferred_kind(descriptors, description, hints) : in_source;
}

int rank_of_kind(std::string_view kind) {
    constexpr std::array<std::string_view, 11> ORDER{"class",     "struct",   "interface", "enum",
                                                     "type",      "function", "method",    "constructor",
                                                     "attribute", "constant", "variable"};
    return static_cast<int>(std::ranges::find(ORDER, kind) - ORDER.begin());
}

std::string name_of(std::span<const Descriptor> descriptors, const Description& description) {
    return written(description.display_name.empty() ? descriptors.back().name : description.display_name);
}

std::string fqn_of(std::span<const Descriptor> descriptors) {
    const bool is_parameter = descriptors.back().suffix == Suffix::PARAMETER;
    std::string fqn;
    for (std::size_t at = 0; at < descriptors.size(); ++at) {
        if (const bool is_constructor = is_parameter && at + 2 == descriptors.size(); !is_constructor) {
            fqn.append(fqn.empty() ? "" : ".").append(written(descriptors[at].name));
        }
    }
    // A parameter that is a pattern is called as it is written, over several lines.
    std::ranges::replace(fqn, '\n', ' ');
    return without_control_characters(fqn);
}

bool stands_outside(std::span<const Descriptor> descriptors) {
    const std::span<const Descriptor> scopes = descriptors.first(descriptors.size() - 1);
    const bool is_in_type =
        is_member(descriptors) || (!scopes.empty() && scopes.back().suffix == Suffix::TYPE_PARAMETER);
    return !is_in_type && std::ranges::none_of(scopes, is_body);
}

}  // namespace host::scip
