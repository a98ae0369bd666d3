// Imports of Python.
#include "host/sources/python/python_reader.h"

namespace host::sources {

using syntax::ExpressionId;
using syntax::Import;
using syntax::Operation;
using syntax::Role;

ExpressionId PythonReader::read_import(const Node& node) {
    for_each_child(node, [&](const Node& child, TSFieldId) {
        const Node aliased = child.child(fields().name);  // `a.b as c`
        bind_module(aliased.exists() ? aliased : child, child.child(fields().alias));
    });
    return syntax::UNKNOWN;
}

// `import a.b` binds `a`, `import a.b as c` what `a.b` is.
void PythonReader::bind_module(const Node& module, const Node& alias) {
    if (module.type() != "dotted_name") {
        return;
    }
    const std::string_view name = text(module);
    if (has_typing_forms(name)) {
        typing_modules_.insert(alias.exists() ? text(alias) : name);
    }
    if (alias.exists()) {
        const ExpressionId import = bind_import({.module = out_.name(name)}, text(alias));
        out_.mention(import, token(module, Role::IMPORT));
        return;
    }
    const std::string_view first = name.substr(0, name.find('.'));
    ExpressionId value = syntax::UNKNOWN;
    for_each_child(module, [&](const Node& part, TSFieldId) {
        if (value == syntax::UNKNOWN) {
            value = bind_import({.module = out_.name(first), .further = first == name ? 0 : out_.name(name)}, first);
            out_.mention(value, token(part, Role::IMPORT));
        } else {
            value = out_.use_member(value, token(part, Role::IMPORT));
        }
    });
}

ExpressionId PythonReader::read_import_from(const Node& node) {
    const Node from = node.child(fields().module_name);
    const std::string_view module = text(from);
    if (module.find_first_not_of('.') != std::string_view::npos) {
        const std::uint32_t import = out_.import({.module = out_.name(module), .is_in_function = functions_ > 0});
        out_.mention(out_.add(Operation::IMPORT, import), token(from, Role::IMPORT));
    }
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (child.type() == "wildcard_import") {
            out_.import({.module = out_.name(module), .is_star = true});
        } else if (field == fields().name) {
            const Node aliased = child.child(fields().name);
            bind_imported(module, aliased.exists() ? aliased : child, child.child(fields().alias));
        }
    });
    return syntax::UNKNOWN;
}

void PythonReader::bind_imported(std::string_view module, const Node& original, const Node& alias) {
    const std::string_view name = text(alias.exists() ? alias : original);
    if (has_typing_forms(module)) {
        typing_names_[name] = text(original);
    }
    const ExpressionId import = bind_import({.module = out_.name(module), .original = out_.name(text(original))}, name);
    out_.mention(import, token(original, Role::IMPORT));
}

ExpressionId PythonReader::bind_import(Import import, std::string_view name) {
    const Scope& scope = scopes_.back();
    import.name = out_.name(name);
    import.around = scope.kind == Scope::Kind::CLASS ? scope.declaration : syntax::NO_DECLARATION;
    import.is_in_function = scope.kind == Scope::Kind::FUNCTION;
    const ExpressionId value = out_.add(Operation::IMPORT, out_.import(import));
    if (import.is_in_function) {
        out_.bind(name, value);
    }
    return value;
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): rules are members
ExpressionId PythonReader::read_nothing(const Node& /*node*/) {
    return syntax::UNKNOWN;
}

}  // namespace host::sources
