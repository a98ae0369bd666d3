// Modules of CommonJS: what a file requires from others, and what it exports.
#include "host/sources/ecmascript/ecmascript_reader.h"

namespace host::sources {

namespace {

using std::string_view;
using syntax::DeclarationId;
using syntax::ExpressionId;
using syntax::Role;
using syntax::UNKNOWN;

}  // namespace

// `const a = require("m")`, `const a = require("m").b`, `const {a, b: c} = require("m")` are imports. Returns whether it
// was one.
bool EcmascriptReader::read_required(const Node& name, const Node& initial) {
    const bool is_member = initial.exists() && initial.type() == "member_expression";
    const Node call = is_member ? initial.child(fields_.object) : initial;
    const bool is_call = call.exists() && call.type() == "call_expression";
    const string_view module = is_call ? module_of_call(call) : string_view();
    if (module.empty() || call.child(fields_.function).type() == "import") {
        return false;
    }
    if (is_member) {
        const Node property = initial.child(fields_.property);
        if (name.type() != "identifier" || !property.exists()) {
            return false;
        }
        out_.mention(import(text(name), module, text(property)), token(property, Role::IMPORT));
        return true;
    }
    if (name.type() == "identifier") {
        import(text(name), module, "");
        return true;
    }
    bool is_plain = name.type() == "object_pattern";
    for_each_child(name, [&](const Node& child, TSFieldId) {
        const Node value = child.child(fields_.value);
        is_plain = is_plain && (child.type() == "shorthand_property_identifier_pattern" ||
                                (child.type() == "pair_pattern" && value.exists() && value.type() == "identifier"));
    });
    if (is_plain) {
        bind_required(name, module);
    }
    return is_plain;
}

// `{a, b: c}`
void EcmascriptReader::bind_required(const Node& pattern, string_view module) {
    for_each_child(pattern, [&](const Node& child, TSFieldId) {
        const Node key = child.child(fields_.key);
        const Node bound = key.exists() ? child.child(fields_.value) : child;
        const Node original = key.exists() ? key : child;
        out_.mention(import(text(bound), module, name_text(original)), token(original, Role::IMPORT));
    });
}

// `module.exports = ...`, `exports.a = ...`, `module.exports.a = ...`. Returns what is exported, if it is one of these.
std::optional<ExpressionId> EcmascriptReader::common_js_export(const Node& left, const Node& right) {
    if (is_own_exports(left)) {
        if (right.type() != "object") {
            return export_whole(right);
        }
        export_members(right);
        return UNKNOWN;
    }
    const Node property = left.child(fields_.property);
    return is_own_exports(left.child(fields_.object)) && property.exists()
               ? std::optional(export_property(property, right))
               : std::nullopt;
}

// `const a = exports.b = module.exports = value` exports `a` under other names. Returns the node of the value.
Node EcmascriptReader::exported_as(Node value, string_view name) {
    while (value.exists() && value.type() == "assignment_expression") {
        const Node left = value.child(fields_.left);
        const Node property =
            left.exists() && left.type() == "member_expression" ? left.child(fields_.property) : Node();
        if (text(left) == "module.exports" && is_own_exports(left)) {
            exports_.push_back({name, WHOLE_MODULE});
            pass_on_whole();
        } else if (property.exists() && is_own_exports(left.child(fields_.object))) {
            exports_.push_back({name, text(property)});
        } else if (!is_own_exports(left)) {
            break;
        }
        value = value.child(fields_.right);
    }
    return value;
}

// Whether a node is what the file exports as a module of CommonJS.
bool EcmascriptReader::is_own_exports(const Node& node) const {
    return node.exists() && (text(node) == "exports" || text(node) == "module.exports") &&
           !own_names_.contains("exports") && !own_names_.contains("module");
}

// `exports.a`: what the file exports is no name in it, so that it is looked up under one that no name can be.
std::optional<ExpressionId> EcmascriptReader::own_export(const Node& node, Role role, std::uint8_t arguments) {
    const Node property = node.child(fields_.property);
    if (!property.exists() || !is_own_exports(node.child(fields_.object))) {
        return std::nullopt;
    }
    const std::string name = name_of_export(text(property));
    syntax::Token token = this->token(property, role);
    token.name = name;
    token.arguments = arguments;
    return out_.use(token);
}

std::string EcmascriptReader::name_of_export(string_view name) {
    return "exports." + std::string(name);
}

// `module.exports = ...`: a function or class that has a name is a declaration.
ExpressionId EcmascriptReader::export_whole(const Node& value) {
    const Node name = value.child(fields_.name);
    if (!name.exists() || (value.type() != "function_expression" && value.type() != "class")) {
        return export_value(value, WHOLE_MODULE);
    }
    pass_on_whole();
    const DeclarationId declared =
        out_.declare({.name = out_.name(WHOLE_MODULE), .written = out_.name(text(name)), .offset = name.begin()});
    return read_assigned(value, declared, UNKNOWN);
}

// `exports.a = ...`: another name of what has one, else a declaration.
ExpressionId EcmascriptReader::export_property(const Node& property, const Node& value) {
    const string_view type = value.type();
    const bool is_required = type == "call_expression" && !module_of_call(value).empty();
    if (type == "identifier" || type == "member_expression" || is_required) {
        return export_as(value, text(property));
    }
    if (type == "unary_expression") {  // `exports.a = void 0` announces what follows
        return visit(value);
    }
    const std::string name = name_of_export(text(property));
    pass_on(text(property), name);
    const DeclarationId declared = declare_assigned(
        {.name = out_.name(name), .written = out_.name(text(property)), .offset = property.begin()}, name);
    return read_assigned(value, declared, UNKNOWN);
}

// Exports what has a declaration elsewhere, or none.
ExpressionId EcmascriptReader::export_as(const Node& value, string_view name) {
    if (value.type() == "identifier") {
        return export_value(value, name);
    }
    const std::string own_name = name_of_export(name);
    pass_on(name, own_name);
    return export_value(value, own_name);
}

// `module.exports = {a, b: c, d() {}}`
void EcmascriptReader::export_members(const Node& object) {
    for_each_child(object, [&](const Node& child, TSFieldId) {
        const Node key = child.child(fields_.key);
        pass_doc(child, child.child(fields_.value));
        if (child.type() == "shorthand_property_identifier") {
            visit(child);
            exports_.push_back({text(child), text(child)});
        } else if (child.type() == "pair" && key.exists() && key.type() == "property_identifier") {
            export_property(key, child.child(fields_.value));
        } else if (child.type() == "pair" && key.exists() && key.type() != "computed_property_name") {
            export_as(child.child(fields_.value), name_text(key));
        } else {
            visit(child);  // a method is declared at the top
        }
    });
}

}  // namespace host::sources
