// Members that assignments declare, as before the language had classes: `A.prototype.b = function () {}`,
// `a.b = function () {}`.
#include "host/sources/ecmascript/ecmascript_reader.h"

namespace host::sources {

namespace {

using std::string_view;
using syntax::DeclarationId;
using syntax::ExpressionId;
using syntax::Kind;
using syntax::Operation;
using syntax::UNKNOWN;

bool is_function_value(const Node& node) {
    return node.exists() && (node.type() == "function_expression" || node.type() == "arrow_function" ||
                             node.type() == "generator_function");
}

}  // namespace

// What a chain of assignments assigns: `a = b = value`.
Node EcmascriptReader::assigned_value(Node node) const {
    while (node.exists() && node.type() == "assignment_expression") {
        node = node.child(fields_.right);
    }
    return node;
}

// Notes the name to whose members, or to those of whose prototype, a statement at the top assigns.
void EcmascriptReader::collect_assigned(const Node& assignment) {
    const bool is_assignment = !has_types() && assignment.exists() && assignment.type() == "assignment_expression";
    Node left = is_assignment ? assignment.child(fields_.left) : Node();
    const bool is_function = is_assignment && is_function_value(assigned_value(assignment));
    while (left.exists() && left.type() == "member_expression") {
        const Node object = left.child(fields_.object);
        if (object.exists() && object.type() == "identifier" &&
            (is_function || text(left.child(fields_.property)) == "prototype")) {
            constructors_.insert(text(object));
        }
        left = object;
    }
}

// Reads what is assigned to a member of something that the file declares at its top, if it is a function, or the member
// one of the instances of a type.
std::optional<ExpressionId> EcmascriptReader::assigned_member(const Node& left, const Node& right) {
    const Node property = left.child(fields_.property);
    const Node object = left.child(fields_.object);
    if (!property.exists() || property.type() != "property_identifier" || !object.exists()) {
        return std::nullopt;
    }
    const bool is_of_prototype =
        object.type() == "member_expression" && text(object.child(fields_.property)) == "prototype";
    const Node owner = is_of_prototype ? object.child(fields_.object) : object;
    const bool is_noted = owner.exists() && owner.type() == "identifier" && constructors_.contains(text(owner));
    if (!is_noted || !own_names_.contains(text(owner)) || imports_.contains(text(owner))) {
        return std::nullopt;
    }
    const auto top = top_.find(text(owner));
    const bool is_type = top != top_.end() && out_.declaration(top->second.front()).kind == Kind::TYPE;
    const bool is_new_value =
        is_of_prototype && is_type && !declared_members_.contains({top->second.front(), text(property)});
    if (!is_function_value(assigned_value(right)) && !is_new_value) {
        return std::nullopt;
    }
    const ExpressionId value = visit(owner);
    const bool is_static = !is_of_prototype && is_type;
    const DeclarationId declared = declare_assigned(
        {.name = out_.name(text(property)), .owner = value, .offset = property.begin(), .is_static = is_static},
        text(left));
    ExpressionId self = value;
    if (is_type) {
        self = is_static ? out_.add(Operation::SELF_TYPE, top->second.front()) : self_of(top->second.front());
    }
    return read_assigned(right, declared, self);
}

// Declares what an assignment to `member` does. Of several to one the first is the declaration.
DeclarationId EcmascriptReader::declare_assigned(const syntax::Declaration& declaration, string_view member) {
    const DeclarationId declared = out_.declare(declaration);
    const auto [first, is_first] = assigned_.try_emplace(std::string(member), declared);
    if (!is_first) {
        out_.declaration(declared).alternative_of = first->second;
    }
    return declared;
}

// Reads the value of what is declared so, of which a function has `self` as `this`. Returns what the value is.
ExpressionId EcmascriptReader::read_assigned(const Node& value, DeclarationId declared, ExpressionId self) {
    const ExpressionId meaning = out_.add(Operation::DECLARATION, declared);
    if (value.type() == "class") {
        out_.declaration(declared).kind = Kind::TYPE;
        read_class(value, declared);
        return meaning;
    }
    if (is_function_value(value)) {
        out_.declaration(declared).kind = Kind::FUNCTION;
        read_declared(value, declared, self);
        return meaning;
    }
    const ExpressionId type = visit(value);
    out_.declaration(declared).type = type;
    return type;
}

// A function to which members are assigned is a type.
void EcmascriptReader::read_constructor(const Node& node, const Node& name) {
    read_function(node, {.self = self_of(declare(name, Kind::TYPE))});
}

// What `this` is in the methods of a type.
ExpressionId EcmascriptReader::self_of(DeclarationId type) {
    const ExpressionId self = out_.add(Operation::SELF, type);
    types_by_self_.emplace(self, type);
    return self;
}

// Notes what a method assigns to a member of its own: `this.a = value`.
void EcmascriptReader::note_own_member(const Node& left, const Node& right, ExpressionId value, ExpressionId stated) {
    const bool is_member = left.exists() && left.type() == "member_expression";
    const bool is_own = is_member && left.child(fields_.object).exists() && left.child(fields_.object).type() == "this";
    const auto type = types_by_self_.find(context_.self);
    const bool is_nothing = !right.exists() || (right.type() == "null" && stated == UNKNOWN);
    if (has_types() || !is_own || type == types_by_self_.end() || is_nothing) {
        return;
    }
    const Node property = left.child(fields_.property);
    OwnMember& member =
        own_members_.try_emplace({type->second, text(property)}, OwnMember{.offset = property.begin(), .values = {}})
            .first->second;
    member.values.push_back(value);
    member.stated = member.stated == UNKNOWN ? stated : member.stated;
}

// Declares the members that a type has only by such assignments: any of their values.
void EcmascriptReader::settle_own_members() {
    for (const auto& [key, member] : own_members_) {
        const auto& [type, name] = key;
        if (declared_members_.contains(key)) {
            continue;
        }
        out_.declare({.name = out_.name(name),
                      .kind = Kind::VALUE,
                      .parent = type,
                      .type = member.stated == UNKNOWN ? out_.one_of(member.values) : member.stated,
                      .offset = member.offset,
                      .is_hidden = true,
                      .is_implicit = true});
    }
}

}  // namespace host::sources
