// What the documents of a file state about one symbol.
#pragma once

#include "host/files/text_spool.h"
#include "host/scip/kind.h"
#include "host/scip/reader.h"
#include "host/scip/signature.h"

#include <string>
#include <string_view>

namespace host::scip {

struct Description {
    SymbolKind kind = SymbolKind::UNSPECIFIED;
    std::string display_name;
    SpooledText signature;
    SpooledText documentation;

    // What the signature says; nothing when there is none.
    std::string_view type_kind;  ///< class, interface, enum, struct or type; empty when it says none of these
    bool is_enum_member = false;
    bool is_constant = false;
    CallableType callable;       ///< of a variable
    bool is_public = false;      ///< by a modifier
    bool is_restricted = false;  ///< by a modifier

    /// Fills in what is still missing: of each field the first information that says something counts.
    void add(const SymbolInformation& information, TextSpool& spool);
};

}  // namespace host::scip
