// Functions of Python.
#include "host/sources/python/python_reader.h"

#include <utility>

namespace host::sources {

using syntax::DeclarationId;
using syntax::ExpressionId;
using syntax::Kind;
using syntax::Operation;

namespace {

std::string_view last_name(std::string_view dotted) {
    const std::size_t dot = dotted.rfind('.');
    return dot == std::string_view::npos ? dotted : dotted.substr(dot + 1);
}

}  // namespace

ExpressionId PythonReader::read_decorated(const Node& node) {
    decorators_ = {};
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "decorator") {
            const Decorators others = decorators_;  // what stands in this one is decorated by none
            visit_children(child);
            decorators_ = others;
            read_decorator(child);
        } else {
            visit(child);
        }
    });
    return syntax::UNKNOWN;
}

void PythonReader::read_decorator(const Node& node) {
    Node expression = node.named_child(0);
    if (expression.exists() && expression.type() == "call") {
        expression = expression.child(fields().function);
    }
    const std::string_view name = last_name(text(expression));
    decorators_.is_static = decorators_.is_static || name == "staticmethod";
    decorators_.is_of_class = decorators_.is_of_class || name == "classmethod";
    decorators_.is_property = decorators_.is_property || name.ends_with("property");
    decorators_.is_accessor = decorators_.is_accessor || name == "setter" || name == "deleter" || name == "getter";
    decorators_.is_overload = decorators_.is_overload || name == "overload";
    decorators_.is_context = decorators_.is_context || name == "contextmanager" || name == "asynccontextmanager";
    decorators_.is_record = decorators_.is_record || name == "dataclass" || name == "define" || name == "attrs";
}

ExpressionId PythonReader::read_function(const Node& node) {
    const Decorators decorators = std::exchange(decorators_, {});
    const bool is_async = text(node).starts_with("async");
    const Node name = node.child(fields().name);
    const Node type_parameters = node.child(fields().type_parameters);
    open_type_parameters(type_parameters);
    const std::vector<Parameter> parameters = read_parameters(node.child(fields().parameters));
    const ExpressionId stated = visit(node.child(fields().return_type));
    const DeclarationId id = declare_function(name, decorators, type_parameters.exists() ? 1 : 0);
    Scope function{.kind = Scope::Kind::FUNCTION};
    set_self(function, text(name), parameters, decorators);
    const Scope body = read_body(node.child(fields().body), std::move(function), parameters, nullptr);
    close_type_parameters(type_parameters);
    if (id == syntax::NO_DECLARATION) {
        return syntax::UNKNOWN;
    }
    ExpressionId result = result_of(body, stated, is_async);
    if (decorators.is_context) {
        result = context_of(result, is_async);
    }
    out_.declaration(id).type = decorators.is_property ? out_.instance(result) : result;
    return syntax::UNKNOWN;
}

// Returns NO_DECLARATION for a function that belongs to the one before it: an accessor, an overload. `type_scopes` of
// its own type parameters are open.
DeclarationId PythonReader::declare_function(const Node& name, const Decorators& decorators, std::size_t type_scopes) {
    Scope& around = scopes_.back();
    const bool is_local = around.kind == Scope::Kind::FUNCTION;
    Binding* const binding = is_local ? nullptr : &around.bindings[text(name)];
    const bool is_first = binding == nullptr || binding->declaration == syntax::NO_DECLARATION;
    if (!is_first && (decorators.is_accessor || binding->is_overload)) {
        binding->is_overload = decorators.is_overload;
        return syntax::NO_DECLARATION;
    }
    const DeclarationId id = out_.declare({.name = out_.name(text(name)),
                                           .kind = decorators.is_property ? Kind::PROPERTY : Kind::FUNCTION,
                                           .parent = around.declaration,
                                           .offset = name.begin(),
                                           .is_static = decorators.is_static || decorators.is_of_class,
                                           .is_hidden = functions_ > 0,
                                           .is_local = is_local});
    if (is_local) {
        out_.bind_in(type_scopes, text(name), out_.add(Operation::DECLARATION, id));
    } else if (is_first) {
        binding->declaration = id;
        binding->is_overload = decorators.is_overload;
    }
    return id;
}

// The first parameter of a method is an instance of the class, or the class.
void PythonReader::set_self(Scope& function, std::string_view name, const std::vector<Parameter>& parameters,
                            const Decorators& decorators) {
    if (scopes_.back().kind != Scope::Kind::CLASS || parameters.empty() || decorators.is_static) {
        return;
    }
    const bool is_of_class =
        decorators.is_of_class || name == "__new__" || name == "__init_subclass__" || name == "__class_getitem__";
    function.self = parameters.front().name;
    function.class_of_self = scopes_.size() - 1;
    function.self_value = out_.add(is_of_class ? Operation::SELF_TYPE : Operation::SELF, scopes_.back().declaration);
}

// Reads the body of a function, or the value of a lambda. Returns what was found out about it.
PythonReader::Scope PythonReader::read_body(const Node& body, Scope function, const std::vector<Parameter>& parameters,
                                            ExpressionId* value) {
    out_.open_local();
    ++functions_;
    for (const Parameter& parameter : parameters) {
        const bool is_self = function.class_of_self != 0 && parameter.name == function.self;
        out_.bind(parameter.name, is_self ? function.self_value : parameter.value);
        function.parameters.insert(parameter.name);
        if (parameter.is_annotated) {
            function.annotated.insert(parameter.name);
        }
    }
    scopes_.push_back(std::move(function));
    const ExpressionId read = visit(body);
    if (value != nullptr) {
        *value = read;
    }
    Scope found = std::move(scopes_.back());
    scopes_.pop_back();
    --functions_;
    out_.close();
    return found;
}

// The type of what calling gives. What a generator returns, its caller does not see.
ExpressionId PythonReader::result_of(const Scope& body, ExpressionId stated, bool is_async) {
    if (stated != syntax::UNKNOWN) {
        return is_async && !body.is_generator ? out_.add(Operation::AWAITABLE, stated) : stated;
    }
    if (body.is_generator) {
        return out_.add(Operation::LIST, type_of(joined(body.yielded)));
    }
    const ExpressionId result = body.returned.empty() ? out_.add(Operation::FOREIGN) : type_of(joined(body.returned));
    return is_async ? out_.add(Operation::AWAITABLE, result) : result;
}

// What a function gives that `contextmanager` has made of a generator: entering it gives what that yields.
ExpressionId PythonReader::context_of(ExpressionId generator, bool is_async) {
    const ExpressionId entered = type_of(out_.add(Operation::ITERATED, out_.instance(generator)));
    const DeclarationId context = out_.declare({.kind = Kind::TYPE, .is_hidden = true});
    out_.declare({.name = out_.name(is_async ? "__aenter__" : "__enter__"),
                  .kind = Kind::FUNCTION,
                  .parent = context,
                  .type = is_async ? out_.add(Operation::AWAITABLE, entered) : entered,
                  .is_hidden = true});
    return out_.add(Operation::DECLARATION, context);
}

std::vector<PythonReader::Parameter> PythonReader::read_parameters(const Node& list) {
    std::vector<Parameter> parameters;
    for_each_child(list, [&](const Node& child, TSFieldId) {
        if (const Parameter parameter = read_parameter(child); !parameter.name.empty()) {
            parameters.push_back(parameter);
        }
    });
    return parameters;
}

PythonReader::Parameter PythonReader::read_parameter(const Node& node) {
    if (node.type() == "identifier") {
        return {.name = text(node)};
    }
    Node name = node.child(fields().name);
    const Node stated = node.child(fields().type);
    const bool is_splat = node.type() == "list_splat_pattern" || node.type() == "dictionary_splat_pattern";
    visit(node.child(fields().value));
    const ExpressionId type = visit(stated);
    if (is_splat || (stated.exists() && !name.exists())) {  // `*name`, `name: type`
        name = node.named_child(0);
    }
    if (!name.exists()) {
        return {};
    }
    const std::string_view kind = name.type();
    const bool is_list = kind == "list_splat_pattern";
    const bool is_map = kind == "dictionary_splat_pattern";
    const ExpressionId whole = is_list  ? out_.add(Operation::LIST, type)
                               : is_map ? out_.add(Operation::MAP, out_.add(Operation::FOREIGN), type)
                                        : type;
    return {.name = text(is_list || is_map ? name.named_child(0) : name),
            .value = out_.instance(whole),
            .is_annotated = type != syntax::UNKNOWN};
}

ExpressionId PythonReader::read_lambda(const Node& node) {
    const std::vector<Parameter> parameters = read_parameters(node.child(fields().parameters));
    ExpressionId value = syntax::UNKNOWN;
    read_body(node.child(fields().body), {.kind = Scope::Kind::FUNCTION}, parameters, &value);
    return out_.instance(out_.add(Operation::FUNCTION, type_of(value)));
}

ExpressionId PythonReader::read_return(const Node& node) {
    const std::vector<ExpressionId> values = read_all(node);
    scopes_.back().returned.push_back(values.empty() ? out_.add(Operation::FOREIGN) : values.front());
    return syntax::UNKNOWN;
}

ExpressionId PythonReader::read_yield(const Node& node) {
    constexpr std::string_view FROM = "yield from";
    const std::vector<ExpressionId> values = read_all(node);
    const ExpressionId value = values.empty() ? out_.add(Operation::FOREIGN) : values.front();
    const bool is_from = text(node).starts_with(FROM);
    scopes_.back().is_generator = true;
    scopes_.back().yielded.push_back(is_from ? out_.add(Operation::ITERATED, value) : value);
    return syntax::UNKNOWN;
}

}  // namespace host::sources
