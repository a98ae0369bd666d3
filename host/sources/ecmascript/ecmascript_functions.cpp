// Functions: their parameters, and what they give.
#include "host/sources/ecmascript/ecmascript_reader.h"

#include <algorithm>
#include <array>

namespace host::sources {

namespace {

using std::string_view;
using syntax::ExpressionId;
using syntax::Kind;
using syntax::Operation;
using syntax::UNKNOWN;

constexpr std::size_t MOST_RETURNED = 8;  // of which what a function gives is told

}  // namespace

// Whether a keyword or operator stands in a node, outside of its children.
bool EcmascriptReader::has_word(const Node& node, string_view word) {
    bool is_there = false;
    for_each_child(
        node, [&](const Node& child, TSFieldId) { is_there = is_there || child.type() == word; }, true);
    return is_there;
}

EcmascriptReader::LocalScope::LocalScope(EcmascriptReader& reader, Of of) : reader_(reader), before_(reader.context_) {
    reader.out_.open_local();
    ++reader.context_.locals;
    reader.context_.blocks = of == Of::FUNCTION ? 0 : reader.context_.blocks + 1;
}

EcmascriptReader::LocalScope::~LocalScope() {
    reader_.out_.close();
    reader_.context_ = before_;
}

std::vector<EcmascriptReader::Parameter> EcmascriptReader::type_parameters(const Node& node) {
    std::vector<Parameter> parameters;
    const Node list = node.child(fields_.type_parameters);
    if (list.exists()) {
        for_each_child(list, [&](const Node& child, TSFieldId) {
            if (child.type() == "type_parameter") {
                parameters.push_back({text(child.child(fields_.name)), child});
            }
        });
    }
    return parameters;
}

// Binds type parameters of a function to what bounds them. What a function gives is not known to be of that alone, so
// they are bound to nothing for its result.
void EcmascriptReader::bind_type_parameters(const std::vector<Parameter>& parameters, bool has_bounds) {
    for (const Parameter& parameter : parameters) {
        if (!has_bounds) {
            out_.bind(parameter.name, UNKNOWN);
            continue;
        }
        const ExpressionId bound = visit(parameter.node.child(fields_.constraint));
        visit(parameter.node.child(fields_.value));
        out_.bind(parameter.name, bound);
    }
}

ExpressionId EcmascriptReader::result_type(const Node& node, const std::vector<Parameter>& parameters) {
    const Node stated = node.child(fields_.return_type);
    if (!stated.exists()) {
        return UNKNOWN;
    }
    const LocalScope scope(*this, LocalScope::Of::BLOCK);
    bind_type_parameters(parameters, false);
    bind_names_in(node.child(fields_.parameters));  // of which `x is T` and `typeof x` name one
    return visit(stated);
}

// Binds the plain parameters of a list to nothing that is known.
void EcmascriptReader::bind_names_in(const Node& parameters) {
    if (parameters.exists()) {
        for_each_child(parameters, [&](const Node& child, TSFieldId) {
            const Node pattern = child.child(fields_.pattern);
            if (pattern.exists() && pattern.type() == "identifier") {
                out_.bind(text(pattern), UNKNOWN);
            }
        });
    }
}

// Returns the types of the parameters, without that of `this`; of one that takes all further arguments, nothing.
syntax::ListId EcmascriptReader::read_parameters(const Node& node, const Arguments& expected,
                                                 const Documented& documented) {
    std::vector<ExpressionId> types;
    if (node.exists()) {
        for_each_child(node, [&](const Node& child, TSFieldId) {
            const Node pattern = child.child(fields_.pattern);
            const bool is_typed = child.type() == "required_parameter" || child.type() == "optional_parameter";
            if (child.type() == "comment") {
                visit(child);
            } else if (pattern.exists() && pattern.type() == "this") {
                context_.self = value_of_type(child.child(fields_.type));
            } else {
                const ExpressionId value = argument(expected, types.size());
                types.push_back(is_typed ? read_parameter(child, value)
                                         : read_untyped_parameter(child, types.size(), value, documented));
            }
        });
    }
    return out_.list(types);
}

// The value of an argument that a function is called with; UNKNOWN where that is not known.
ExpressionId EcmascriptReader::argument(const Arguments& arguments, std::size_t at) {
    std::vector<ExpressionId> values;
    if (at < arguments.known.size()) {
        values.push_back(arguments.known[at]);
    }
    if (arguments.function != UNKNOWN) {
        values.push_back(out_.add(Operation::ARGUMENT, arguments.function, static_cast<std::uint32_t>(at)));
    }
    return out_.one_of(values);
}

// A parameter that is a pattern alone, with its number from 0. Returns the type that a comment states: of a name, or of
// what is taken apart and so comes at its place.
ExpressionId EcmascriptReader::read_untyped_parameter(const Node& node, std::size_t number, ExpressionId expected,
                                                      const Documented& documented) {
    const Node name = node.type() == "assignment_pattern" ? node.child(fields_.left) : node;
    const auto stated = documented.parameters.find(text(name));
    const bool is_taken_apart = name.exists() && name.type() != "identifier" && number < documented.in_order.size();
    const ExpressionId type = stated != documented.parameters.end() ? stated->second
                              : is_taken_apart                      ? documented.in_order[number]
                                                                    : documented_type(node);
    bind_pattern(node, type == UNKNOWN ? expected : out_.instance(type), false);
    return type;
}

// A parameter of TypeScript. Returns its type.
ExpressionId EcmascriptReader::read_parameter(const Node& node, ExpressionId expected) {
    visit_decorators(node);
    const Node annotation = node.child(fields_.type);
    const Node pattern = node.child(fields_.pattern);
    const ExpressionId type = visit(annotation);
    const ExpressionId stated = annotation.exists() ? out_.instance(type) : expected;
    const ExpressionId initial = visit_expecting(node.child(fields_.value), annotation.exists() ? stated : UNKNOWN);
    const ExpressionId value = stated == UNKNOWN && !annotation.exists() ? initial : stated;
    if (pattern.exists()) {
        bind_pattern(pattern, value, false);
        declare_parameter_property(node, pattern, value);
    }
    return pattern.exists() && pattern.type() == "rest_pattern" ? UNKNOWN : type;
}

// `constructor(private readonly a: A)` declares a field as well.
void EcmascriptReader::declare_parameter_property(const Node& node, const Node& name, ExpressionId value) {
    bool is_property = has_word(node, "readonly");
    for_each_child(node, [&](const Node& child, TSFieldId) {
        is_property = is_property || child.type() == "accessibility_modifier" || child.type() == "override_modifier";
    });
    if (is_property && context_.type != syntax::NO_DECLARATION && name.type() == "identifier") {
        const Saved saved(context_);
        context_.container = context_.type;
        context_.is_static = false;
        --context_.locals;  // it is a member of the class
        out_.declaration(declare_member(name, Kind::VALUE)).type = value;
    }
}

// Reads a function or method, which another type may be expected of.
EcmascriptReader::Signature EcmascriptReader::read_function(const Node& node, const Arguments& arguments) {
    const Documented documented = documented_function(node);
    const LocalScope scope(*this, LocalScope::Of::FUNCTION);
    const string_view kind = node.type();
    if (kind.starts_with("function") || kind.starts_with("generator")) {
        context_.self = documented.self == UNKNOWN ? arguments.self : documented.self;
        context_.type = syntax::NO_DECLARATION;
        if (const Node name = node.child(fields_.name); kind == "function_expression" && name.exists()) {
            out_.bind(text(name), UNKNOWN);
        }
    }
    const bool is_async = has_word(node, "async");
    const bool is_typed = node.child(fields_.return_type).exists();
    const std::vector<Parameter> parameters = type_parameters(node);
    const ExpressionId stated = is_typed ? result_type(node, parameters) : documented.result;
    const bool is_stated = is_typed || stated != UNKNOWN;
    bind_type_parameters(parameters, true);
    if (const Node parameter = node.child(fields_.parameter); parameter.exists()) {
        read_untyped_parameter(parameter, 0, argument(arguments, 0), documented);
    }
    const syntax::ListId types = read_parameters(node.child(fields_.parameters), arguments, documented);
    std::vector<ExpressionId> returned;
    context_.returned = &returned;
    context_.container = syntax::NO_DECLARATION;
    context_.result = result_of(is_stated ? out_.instance(stated) : UNKNOWN, arguments.function, is_async);
    read_body(node.child(fields_.body));
    if (is_stated) {
        return {stated, types};
    }
    const bool is_generator = kind.starts_with("generator") || (kind == "method_definition" && has_word(node, "*"));
    const bool is_known = std::ranges::find(returned, UNKNOWN) == returned.end() && returned.size() <= MOST_RETURNED;
    const ExpressionId value = is_known && !is_generator ? out_.one_of(returned) : UNKNOWN;
    const ExpressionId result = value == UNKNOWN ? UNKNOWN : out_.add(Operation::TYPE_OF, value);
    return {is_async && result != UNKNOWN ? out_.add(Operation::AWAITABLE, result) : result, types};
}

// What the body of a function is to return, by what is stated of the function itself, or of what it is given to.
ExpressionId EcmascriptReader::result_of(ExpressionId stated, ExpressionId expected, bool is_async) {
    ExpressionId result = stated;
    if (result == UNKNOWN && expected != UNKNOWN) {
        result = out_.add(Operation::CALL, expected);
    }
    return is_async && result != UNKNOWN ? out_.add(Operation::AWAITED, result) : result;
}

ExpressionId EcmascriptReader::function_value(const Node& node, const Arguments& arguments) {
    const Signature signature = read_function(node, arguments);
    return out_.instance(out_.add(Operation::FUNCTION, signature.result, signature.parameters));
}

// Reads what is declared as a function.
void EcmascriptReader::read_declared(const Node& node, syntax::DeclarationId declared, ExpressionId self) {
    const Signature signature = read_function(node, {.self = self});
    out_.declaration(declared).type = signature.result;
    out_.declaration(declared).parameters = signature.parameters;
}

void EcmascriptReader::read_body(const Node& node) {
    if (!node.exists()) {
        return;
    }
    if (node.type() == "statement_block") {
        visit_children(node);
    } else {
        context_.returned->push_back(visit_expecting(node, context_.result));
    }
}

ExpressionId EcmascriptReader::return_statement(const Node& node) {
    Node value;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "comment") {
            visit(child);
        } else {
            value = child;
        }
    });
    if (value.exists()) {
        const ExpressionId returned = visit_expecting(value, context_.result);
        if (context_.returned != nullptr) {
            context_.returned->push_back(returned);
        }
    }
    return UNKNOWN;
}

ExpressionId EcmascriptReader::function_expression(const Node& node) {
    return function_value(node, {});
}

// A local function is a value. Signatures announce the function with a body.
ExpressionId EcmascriptReader::function_declaration(const Node& node) {
    const Node name = node.child(fields_.name);
    if (!name.exists()) {
        return function_value(node, {});
    }
    const bool has_body = node.type() != "function_signature";
    if (context_.locals > 0) {
        const ExpressionId value = function_value(node, {});
        if (has_body) {
            out_.bind(text(name), value);
        }
        return UNKNOWN;
    }
    if (constructors_.contains(text(name))) {
        read_constructor(node, name);
        return UNKNOWN;
    }
    const syntax::DeclarationId declared = declare(name, Kind::FUNCTION);
    out_.declaration(declared).is_definition = has_body;
    read_declared(node, declared);
    return UNKNOWN;
}

}  // namespace host::sources
