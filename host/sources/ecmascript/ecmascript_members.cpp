// Members of classes, interfaces and object literals.
#include "host/sources/ecmascript/ecmascript_reader.h"

namespace host::sources {

namespace {

using syntax::DeclarationId;
using syntax::ExpressionId;
using syntax::Kind;
using syntax::Operation;
using syntax::UNKNOWN;

}  // namespace

// A method or accessor. Of several of one name, the one with a body is the definition, or the first; of accessors the
// one that reads.
ExpressionId EcmascriptReader::method(const Node& node) {
    const Node name = node.child(fields_.name);
    if (!name.exists()) {
        return UNKNOWN;
    }
    visit_computed(name);
    visit_decorators(node);
    const Saved saved(context_);
    read_modifiers(node);
    const bool is_getter = has_word(node, "get");
    const bool is_setter = has_word(node, "set");
    const bool is_constructor = context_.type != syntax::NO_DECLARATION && text(name) == "constructor";
    const Kind kind = is_getter || is_setter ? Kind::PROPERTY : is_constructor ? Kind::CONSTRUCTOR : Kind::FUNCTION;
    const DeclarationId declared = declare_member(name, kind);
    const bool is_first = members_.insert(text(name)).second;
    const bool has_body = node.type() == "method_definition";
    const bool is_announced = context_.is_class && !is_ambient_ && node.type() == "method_signature";
    out_.declaration(declared).is_definition = has_body ? !is_setter : is_first && !is_announced;
    read_declared(node, declared);
    if (is_getter) {
        out_.declaration(declared).type = out_.instance(out_.declaration(declared).type);
    }
    return UNKNOWN;
}

// A name in brackets is an expression.
void EcmascriptReader::visit_computed(const Node& name) {
    if (name.type() == "computed_property_name") {
        visit(name);
    }
}

void EcmascriptReader::visit_decorators(const Node& node) {
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "decorator") {
            visit(child);
        }
    });
}

// What belongs to a class itself has that as `this`.
void EcmascriptReader::read_modifiers(const Node& node) {
    context_.is_static = has_word(node, "static");
    if (context_.is_static && context_.type != syntax::NO_DECLARATION) {
        context_.self = out_.add(Operation::SELF_TYPE, context_.type);
    }
}

ExpressionId EcmascriptReader::field_definition(const Node& node) {
    const Node own = node.child(fields_.name);
    const Node name = own.exists() ? own : node.child(fields_.property);
    if (!name.exists()) {
        return UNKNOWN;
    }
    visit_computed(name);
    visit_decorators(node);
    const Saved saved(context_);
    read_modifiers(node);
    const DeclarationId declared = declare_member(name, Kind::VALUE);
    const Node type = node.child(fields_.type);
    const ExpressionId stated = type.exists() ? value_of_type(type) : documented_value(node);
    const Node initial = node.child(fields_.value);
    pass_doc(node, initial);
    const ExpressionId value = visit_expecting(initial, stated);
    out_.declaration(declared).type = type.exists() || stated != UNKNOWN ? stated : value;
    return UNKNOWN;
}

ExpressionId EcmascriptReader::property_signature(const Node& node) {
    const Node name = node.child(fields_.name);
    if (!name.exists()) {
        return UNKNOWN;
    }
    visit_computed(name);
    const DeclarationId declared = declare_member(name, Kind::VALUE);
    const ExpressionId value = value_of_type(node.child(fields_.type));
    out_.declaration(declared).type = value;
    return UNKNOWN;
}

// `(a: A): B` in a type: what is of the type can be called.
ExpressionId EcmascriptReader::call_signature(const Node& node) {
    const ExpressionId type = function_type(node);
    if (context_.type != syntax::NO_DECLARATION) {
        syntax::Declaration& declaration = out_.declaration(context_.type);
        declaration.type = declaration.type == UNKNOWN ? type : declaration.type;
    }
    return UNKNOWN;
}

ExpressionId EcmascriptReader::static_block(const Node& node) {
    const LocalScope scope(*this, LocalScope::Of::FUNCTION);
    if (context_.type != syntax::NO_DECLARATION) {
        context_.self = out_.add(Operation::SELF_TYPE, context_.type);
    }
    visit_children(node);
    return UNKNOWN;
}

}  // namespace host::sources
