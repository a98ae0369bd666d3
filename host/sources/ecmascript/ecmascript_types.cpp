// Types: those that the text names, and those that it puts together.
#include "host/sources/ecmascript/ecmascript_reader.h"

#include <algorithm>
#include <array>

namespace host::sources {

namespace {

using std::string_view;
using syntax::ExpressionId;
using syntax::Operation;
using syntax::Role;
using syntax::Space;
using syntax::UNKNOWN;

constexpr std::array<string_view, 11> LISTS{
    "Array",    "AsyncGenerator", "AsyncIterable", "Generator", "Iterable", "IterableIterator",
    "Iterator", "ReadonlyArray",  "ReadonlySet",   "Set",       "WeakSet"};
constexpr std::array<string_view, 4> MAPS{"Map", "ReadonlyMap", "Record", "WeakMap"};
constexpr std::array<string_view, 2> AWAITABLES{"Promise", "PromiseLike"};
// Types that have the members of their first argument, or some of them.
constexpr std::array<string_view, 10> SAME{"Exclude", "Extract",  "NonNullable", "Omit",     "Partial",
                                           "Pick",    "Readonly", "Required",    "ThisType", "NoInfer"};
constexpr string_view RETURN_TYPE = "ReturnType";

}  // namespace

// Whether a name is one of the types of the language that are understood, in this file.
bool EcmascriptReader::is_built_in(string_view name) const {
    return !own_names_.contains(name) && (is_one_of(name, LISTS) || is_one_of(name, MAPS) ||
                                          is_one_of(name, AWAITABLES) || is_one_of(name, SAME) || name == RETURN_TYPE);
}

ExpressionId EcmascriptReader::built_in(string_view name, const std::vector<ExpressionId>& arguments) {
    const auto argument = [&](std::size_t at) { return at < arguments.size() ? arguments[at] : UNKNOWN; };
    if (is_one_of(name, LISTS)) {
        return out_.add(Operation::LIST, argument(0));
    }
    if (is_one_of(name, MAPS)) {
        return out_.add(Operation::MAP, argument(0), argument(1));
    }
    if (is_one_of(name, AWAITABLES)) {
        return out_.add(Operation::AWAITABLE, argument(0));
    }
    if (name == RETURN_TYPE) {
        return argument(0) == UNKNOWN ? UNKNOWN : out_.add(Operation::CALL, out_.instance(argument(0)));
    }
    return argument(0);
}

// A value of what an annotation, which may be none, states.
ExpressionId EcmascriptReader::value_of_type(const Node& annotation) {
    return out_.instance(visit(annotation));
}

std::vector<ExpressionId> EcmascriptReader::types_in(const Node& node) {
    std::vector<ExpressionId> types;
    if (node.exists()) {
        for_each_child(node, [&](const Node& child, TSFieldId) {
            if (child.type() != "comment") {
                types.push_back(visit(child));
            }
        });
    }
    return types;
}

ExpressionId EcmascriptReader::type_name(const Node& node) {
    if (is_built_in(text(node))) {
        const ExpressionId type = built_in(text(node), {});
        return type == UNKNOWN ? out_.add(Operation::FOREIGN) : type;
    }
    return out_.use(token(node, Role::TYPE, Space::TYPE));
}

// `a.b.T`
ExpressionId EcmascriptReader::nested_type_name(const Node& node) {
    const Node module = node.child(fields_.module);
    return out_.use_member(qualifier(module), token(node.child(fields_.name), Role::TYPE, Space::TYPE));
}

// Names before the last of a dotted name.
ExpressionId EcmascriptReader::qualifier(const Node& node) {
    if (!node.exists()) {
        return UNKNOWN;
    }
    if (node.type() == "identifier") {
        return out_.use(token(node, Role::VALUE, Space::QUALIFIER));
    }
    const Node object = node.child(fields_.object);
    const Node property = node.child(fields_.property);
    return property.exists() ? out_.use_member(qualifier(object), token(property, Role::VALUE, Space::QUALIFIER))
                             : visit(node);
}

ExpressionId EcmascriptReader::generic_type(const Node& node) {
    const Node name = node.child(fields_.name);
    const Node list = node.child(fields_.type_arguments);
    if (name.exists() && name.type() == "type_identifier" && is_built_in(text(name))) {
        return built_in(text(name), types_in(list));
    }
    const ExpressionId type = visit(name);
    const std::vector<ExpressionId> arguments = types_in(list);
    return out_.add(Operation::GENERIC, type, out_.list(arguments));
}

ExpressionId EcmascriptReader::array_type(const Node& node) {
    return out_.add(Operation::LIST, inner(node));
}

ExpressionId EcmascriptReader::tuple_type(const Node& node) {
    std::vector<ExpressionId> types;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        const Node stated = child.child(fields_.type);
        types.push_back(stated.exists() ? visit(stated) : visit(child));  // `[name: T]`
    });
    return out_.add(Operation::TUPLE, out_.list(types));
}

// Of an intersection, too: what has members of several types.
ExpressionId EcmascriptReader::union_type(const Node& node) {
    return out_.one_of(types_in(node));
}

ExpressionId EcmascriptReader::function_type(const Node& node) {
    const LocalScope scope(*this, LocalScope::Of::FUNCTION);
    const std::vector<Parameter> parameters = type_parameters(node);
    const ExpressionId result = result_type(node, parameters);
    bind_type_parameters(parameters, true);
    const syntax::ListId types = read_parameters(node.child(fields_.parameters), {}, {});
    return out_.add(Operation::FUNCTION, result, types);
}

// The type of a class: what is called by `new`.
ExpressionId EcmascriptReader::constructor_type(const Node& node) {
    const LocalScope scope(*this, LocalScope::Of::FUNCTION);
    bind_type_parameters(type_parameters(node), true);
    read_parameters(node.child(fields_.parameters), {}, {});
    visit(node.child(fields_.type));
    return UNKNOWN;
}

ExpressionId EcmascriptReader::object_type(const Node& node) {
    const syntax::DeclarationId type = declare_hidden_type();
    read_members(node, type);
    return out_.add(Operation::DECLARATION, type);
}

// Of `undefined` and `null`, which a union has beside what matters, nothing.
ExpressionId EcmascriptReader::literal_type(const Node& node) {
    const Node literal = node.named_child(0);
    const bool is_nothing = literal.exists() && (literal.type() == "null" || literal.type() == "undefined");
    return is_nothing ? UNKNOWN : out_.add(Operation::FOREIGN);
}

ExpressionId EcmascriptReader::predefined_type(const Node& node) {
    constexpr std::array<string_view, 6> OPEN{"any", "unknown", "void", "never", "object", "undefined"};
    return is_one_of(text(node), OPEN) ? UNKNOWN : out_.add(Operation::FOREIGN);
}

// `typeof x`
ExpressionId EcmascriptReader::type_query(const Node& node) {
    const ExpressionId value = visit(node.named_child(0));
    return value == UNKNOWN ? UNKNOWN : out_.add(Operation::TYPE_OF, value);
}

// `T["key"]`, `T[number]`
ExpressionId EcmascriptReader::lookup_type(const Node& node) {
    const ExpressionId of = out_.instance(visit(node.named_child(0)));
    const Node index = node.named_child(1);
    visit(index);
    const Node literal = index.exists() && index.type() == "literal_type" ? index.named_child(0) : Node();
    if (of != UNKNOWN && literal.exists() && literal.type() == "string") {
        return out_.add(
            {Operation::MEMBER, of, static_cast<std::uint32_t>(Space::VALUE), out_.name(string_value(literal))});
    }
    return of != UNKNOWN && text(index) == "number" ? out_.add(Operation::ELEMENT, of) : UNKNOWN;
}

// What it comes to is not computed.
ExpressionId EcmascriptReader::conditional_type(const Node& node) {
    const LocalScope scope(*this, LocalScope::Of::BLOCK);
    visit_children(node);
    return UNKNOWN;
}

ExpressionId EcmascriptReader::infer_type(const Node& node) {
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "type_identifier") {
            out_.bind(text(child), UNKNOWN);
        } else {
            visit(child);
        }
    });
    return UNKNOWN;
}

ExpressionId EcmascriptReader::type_predicate(const Node& node) {
    visit(node.child(fields_.name));
    visit(node.child(fields_.type));
    return out_.add(Operation::FOREIGN);
}

ExpressionId EcmascriptReader::this_type(const Node& /*node*/) {
    return context_.type == syntax::NO_DECLARATION ? UNKNOWN : out_.add(Operation::SELF_TYPE, context_.type);
}

// `[key: string]: T` and `[K in keyof T]: U`: the members of the type around it that it does not name are of this type.
ExpressionId EcmascriptReader::index_signature(const Node& node) {
    const LocalScope scope(*this, LocalScope::Of::BLOCK);
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (field == fields_.name) {
            out_.bind(text(child), UNKNOWN);
        } else if (child.type() == "mapped_type_clause") {
            out_.bind(text(child.child(fields_.name)), UNKNOWN);
            visit(child.child(fields_.type));
            visit(child.child(fields_.alias));
        } else if (field != fields_.type) {
            visit(child);
        }
    });
    const ExpressionId element = visit(node.child(fields_.type));
    if (context_.type != syntax::NO_DECLARATION && out_.declaration(context_.type).type == UNKNOWN) {
        out_.declaration(context_.type).type = out_.add(Operation::MAP, out_.add(Operation::FOREIGN), element);
    }
    return UNKNOWN;
}

}  // namespace host::sources
