// Statements of Go: the scopes that they open, and the locals that they declare.
#include "host/sources/go/go_reader.h"

#include <algorithm>

namespace host::sources {

using syntax::ExpressionId;
using syntax::Operation;

namespace {

// `a := b` and `for a := range b` declare; the same with `=` do not.
bool declares_locals(const Node& node) {
    bool declares = false;
    for_each_child(
        node, [&](const Node& child, TSFieldId) { declares = declares || child.type() == ":="; }, true);
    return declares;
}

}  // namespace

ExpressionId GoReader::read_scope(const Node& node) {
    out_.open_local();
    visit_children(node);
    out_.close();
    return syntax::UNKNOWN;
}

// The block of a function is the scope of its parameters.
void GoReader::read_body(const Node& block) {
    visit_children(block);
}

ExpressionId GoReader::read_short_declaration(const Node& node) {
    const Node left = node.child(fields().left);
    bind_new(left, read_values(node.child(fields().right), left.exists() ? left.named_children() : 0));
    return syntax::UNKNOWN;
}

ExpressionId GoReader::read_range(const Node& node) {
    const Node left = node.child(fields().left);
    const ExpressionId range = visit(node.child(fields().right));
    if (declares_locals(node)) {
        bind_new(left, {out_.add(Operation::KEY, range), out_.add(Operation::ELEMENT, range)});
    } else {
        visit(left);
    }
    return syntax::UNKNOWN;
}

ExpressionId GoReader::read_receive(const Node& node) {
    const Node left = node.child(fields().left);
    const ExpressionId received = visit(node.child(fields().right));
    if (declares_locals(node)) {
        bind_new(left, {received, out_.add(Operation::FOREIGN)});
    } else {
        visit(left);
    }
    return syntax::UNKNOWN;
}

// `switch a := b.(type)`: in each case, `a` has the type that is stated there.
ExpressionId GoReader::read_type_switch(const Node& node) {
    out_.open_local();
    visit(node.child(fields().initializer));
    const ExpressionId switched = visit(node.child(fields().value));
    const std::string_view alias = text(node.child(fields().alias));
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "type_case" || child.type() == "default_case") {
            read_type_case(child, alias, switched);
        }
    });
    out_.close();
    return syntax::UNKNOWN;
}

void GoReader::read_type_case(const Node& node, std::string_view alias, ExpressionId switched) {
    std::vector<ExpressionId> types;
    for (const Node& type : children(node, fields().type)) {
        types.push_back(visit(type));
    }
    out_.open_local();
    if (!alias.empty()) {
        out_.bind(alias, types.size() == 1 ? out_.instance(types.front()) : switched);
    }
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (field != fields().type) {
            visit(child);
        }
    });
    out_.close();
}

// Reads what is assigned to so many names. One expression may give the values of several: the results of a call, or
// an element and whether it was there.
std::vector<ExpressionId> GoReader::read_values(const Node& list, std::size_t wanted) {
    std::vector<ExpressionId> values;
    bool is_call = false;
    for_each_child(list, [&](const Node& expression, TSFieldId) {
        values.push_back(visit(expression));
        is_call = expression.type() == "call_expression";
    });
    if (values.size() == 1 && wanted > 1) {
        const ExpressionId whole = values.front();
        values.push_back(out_.add(Operation::FOREIGN));
        if (is_call) {
            values.clear();
            for (std::uint32_t at = 0; at < wanted; ++at) {
                values.push_back(out_.add(Operation::COMPONENT, whole, at));
            }
        }
    }
    return values;
}

// Binds the names of a list that are new in the scope; others keep the type that they have.
void GoReader::bind_new(const Node& list, const std::vector<ExpressionId>& values) {
    std::size_t at = 0;
    for_each_child(list, [&](const Node& name, TSFieldId) {
        if (!out_.is_bound(text(name))) {
            out_.bind(text(name), at < values.size() ? values[at] : syntax::UNKNOWN);
        }
        ++at;
    });
}

}  // namespace host::sources
