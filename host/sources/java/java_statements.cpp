// Statements and patterns: the locals that they bind.
#include "host/sources/java/java_reader.h"

#include <array>

namespace host::sources {

namespace {

using syntax::Operation;
using syntax::Role;

}  // namespace

JavaReader::Id JavaReader::read_block(const Node& node) {
    out_.open_local();
    visit_children(node);
    out_.close();
    return syntax::UNKNOWN;
}

JavaReader::Id JavaReader::read_locals(const Node& node) {
    const JavaFields& at = JavaFields::get();
    read_modifiers(node);
    const Id type = declared_type(node.child(at.type));
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "variable_declarator") {
            const Id value = visit(child.child(at.value));
            const Id declared = lists_of(type, child.child(at.dimensions));
            out_.bind(text(child.child(at.name)), type == syntax::UNKNOWN ? value : out_.instance(declared));
        }
    });
    return syntax::UNKNOWN;
}

JavaReader::Id JavaReader::read_for_each(const Node& node) {
    const JavaFields& at = JavaFields::get();
    out_.open_local();
    read_modifiers(node);
    const Id all = visit(node.child(at.value));
    const Id type = lists_of(declared_type(node.child(at.type)), node.child(at.dimensions));
    const Id element = all == syntax::UNKNOWN ? syntax::UNKNOWN : out_.add(Operation::ELEMENT, all);
    out_.bind(text(node.child(at.name)), type == syntax::UNKNOWN ? element : out_.instance(type));
    visit(node.child(at.body));
    out_.close();
    return syntax::UNKNOWN;
}

JavaReader::Id JavaReader::read_caught(const Node& node) {
    const JavaFields& at = JavaFields::get();
    read_modifiers(node);
    std::vector<Id> types;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "catch_type") {
            for_each_child(child, [&](const Node& type, TSFieldId) {
                if (!is_java_comment(type)) {
                    types.push_back(out_.instance(visit(type)));
                }
            });
        }
    });
    out_.bind(text(node.child(at.name)), out_.one_of(types));
    return syntax::UNKNOWN;
}

JavaReader::Id JavaReader::read_resource(const Node& node) {
    const JavaFields& at = JavaFields::get();
    const Node name = node.child(at.name);
    if (!name.exists()) {
        visit_children(node);  // a variable that is there already
        return syntax::UNKNOWN;
    }
    read_modifiers(node);
    const Id value = visit(node.child(at.value));
    const Id type = declared_type(node.child(at.type));
    out_.bind(text(name), type == syntax::UNKNOWN ? value : out_.instance(type));
    return syntax::UNKNOWN;
}

JavaReader::Id JavaReader::read_switch(const Node& node) {
    const JavaFields& at = JavaFields::get();
    const Id outer = selector_;
    selector_ = visit(node.child(at.condition));
    visit(node.child(at.body));
    selector_ = outer;
    return syntax::UNKNOWN;
}

// A name is a constant of the selector's type where that is an enum, and else one in scope.
JavaReader::Id JavaReader::read_switch_label(const Node& node) {
    const bool is_primitive = primitive_.contains(selector_);
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "identifier" && !is_primitive) {
            out_.use_member(selector_, token(child));
        } else {
            visit(child);
        }
    });
    return syntax::UNKNOWN;
}

// Labels are no names of anything else.
JavaReader::Id JavaReader::read_labeled(const Node& node) {
    bool is_label = true;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (!is_label) {
            visit(child);
        }
        is_label = is_label && is_java_comment(child);
    });
    return syntax::UNKNOWN;
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): rules are members
JavaReader::Id JavaReader::read_jump(const Node& /*node*/) {
    return syntax::UNKNOWN;
}

JavaReader::Id JavaReader::read_type_pattern(const Node& node) {
    Id type = syntax::UNKNOWN;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "identifier") {
            out_.bind(text(child), out_.instance(type));
        } else if (!is_java_comment(child)) {
            type = declared_type(child);
        }
    });
    return syntax::UNKNOWN;
}

JavaReader::Id JavaReader::read_record_pattern(const Node& node) {
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "identifier") {
            named_type(child, Role::TYPE);
        } else {
            visit(child);
        }
    });
    return syntax::UNKNOWN;
}

}  // namespace host::sources
