// What the reader of JavaScript, TypeScript and TSX asks of their grammars.
#pragma once

#include <tree_sitter/api.h>

#include <algorithm>
#include <string_view>

namespace host::sources {

/// The fields of a grammar; 0 for one that it does not have.
struct EcmascriptFields {
    explicit EcmascriptFields(const TSLanguage* grammar);

    TSFieldId alias, alternative, arguments, body, condition, consequence, constraint, declaration, function, index,
        index_type, key, kind, left, module, name, object, parameter, parameters, pattern, property, return_type, right,
        source, type, type_arguments, type_parameters, value;
    /// What `new` is called on; its name is a keyword here.
    TSFieldId constructor_;
};

bool is_one_of(std::string_view name, const auto& names) {
    return std::ranges::find(names, name) != std::ranges::end(names);
}

}  // namespace host::sources
