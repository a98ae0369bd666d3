#include "host/scip/description.h"

#include "host/scip/symbol.h"
#include "host/text/control_characters.h"

namespace host::scip {

namespace {

std::string_view type_kind_of(std::string_view keyword) {
    for (const std::string_view kind : {"class", "interface", "enum", "struct", "type"}) {
        if (keyword == kind) {
            return kind;
        }
    }
    return keyword == "trait" ? "interface" : "";
}

// Whether the symbol may be a declaration, by its last character: a type, a term, a method or a macro.
bool may_declare(std::string_view symbol) {
    return symbol.ends_with('#') || symbol.ends_with('.') || symbol.ends_with('!');
}

}  // namespace

void Description::add(const SymbolInformation& information, TextSpool& spool) {
    if (kind == SymbolKind::UNSPECIFIED) {
        kind = information.kind;
    }
    if (!may_declare(information.symbol)) {
        return;
    }
    if (display_name.empty() && information.display_name.size() <= LONGEST_SYMBOL &&
        !has_control_character(information.display_name)) {
        display_name = information.display_name;
    }
    const Explanation explanation = explanation_of(information);
    if (documentation.empty()) {
        documentation = spool.add(explanation.documentation);
    }
    if (signature.empty() && !explanation.signature.empty()) {
        signature = spool.add(explanation.signature);
        const SignatureWords words = words_of(explanation.signature);
        type_kind = type_kind_of(words.keyword);
        is_enum_member = words.is_enum_member;
        is_constant = words.is_const;
        if (information.symbol.ends_with('.') && !information.symbol.ends_with(").")) {
            callable = callable_type_of(explanation.signature);
        }
        is_public = words.is_public;
        is_restricted = words.is_restricted;
    }
}

}  // namespace host::scip
