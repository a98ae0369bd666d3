// Type parameters with their bounds.
#include "host/sources/rust/rust_reader.h"

#include <algorithm>

namespace host::sources {

namespace {

using syntax::Operation;

// A number that no type argument has.
constexpr std::uint32_t NO_ARGUMENT = 0xFFFF;

}  // namespace

// Binds the type parameters of an item to nothing, because their bounds may name any of them. Returns them in order,
// with the bounds that `where` states.
std::vector<RustReader::TypeParameter> RustReader::read_type_parameters(const Node& item) {
    const RustFields& at = RustFields::get();
    std::vector<TypeParameter> parameters;
    std::vector<Node> bounds;
    const Node list = item.child(at.type_parameters);
    if (list.exists()) {
        for_each_child(list, [&](const Node& child, TSFieldId) {
            if (child.type() == "type_parameter" || child.type() == "const_parameter") {
                parameters.push_back({.name = text(child.child(at.name)), .bounds = {}});
                bounds.push_back(child.child(at.bounds));
                out_.bind(parameters.back().name, syntax::UNKNOWN);
            }
        });
        for (std::size_t number = 0; number < parameters.size(); ++number) {
            add_bounds(bounds[number], parameters[number].bounds);
        }
    }
    for_each_child(item, [&](const Node& child, TSFieldId) {
        if (child.type() != "where_clause") {
            return;
        }
        for_each_child(child, [&](const Node& predicate, TSFieldId) {
            const Node left = predicate.child(at.left);
            const auto found = std::ranges::find(parameters, text(left), &TypeParameter::name);
            std::vector<Id> more;
            visit(left);
            add_bounds(predicate.child(at.bounds), found == parameters.end() ? more : found->bounds);
        });
    });
    return parameters;
}

void RustReader::add_bounds(const Node& bounds, std::vector<Id>& types) {
    if (bounds.exists()) {
        for_each_child(bounds, [&](const Node& child, TSFieldId) {
            if (child.type() != "lifetime" && child.type() != "removed_trait_bound" && !is_rust_comment(child)) {
                types.push_back(visit(child));
            }
        });
    }
}

// A parameter of a type has the place of the argument that it stands for. In an `impl`, `implemented` is the type,
// whose arguments it names.
void RustReader::bind_type_parameters(const std::vector<TypeParameter>& parameters, const Node& implemented) {
    std::vector<std::string_view> arguments;
    if (!implemented.exists()) {
        for (const TypeParameter& parameter : parameters) {
            arguments.push_back(parameter.name);
        }
    } else if (const Node list = implemented.child(RustFields::get().type_arguments); list.exists()) {
        for_each_child(list, [&](const Node& child, TSFieldId) {
            if (child.type() != "lifetime" && !is_rust_comment(child)) {
                arguments.push_back(text(child));
            }
        });
    }
    for (const TypeParameter& parameter : parameters) {
        const auto found = std::ranges::find(arguments, parameter.name);
        const std::uint32_t number =
            found == arguments.end() ? NO_ARGUMENT : static_cast<std::uint32_t>(found - arguments.begin());
        out_.bind(parameter.name, out_.add(Operation::PARAMETER, out_.one_of(parameter.bounds), number));
    }
}

void RustReader::open_type_parameters(const Node& item, const Node& implemented) {
    out_.open_local();
    ++item_scopes_;
    bind_type_parameters(read_type_parameters(item), implemented);
}

void RustReader::close_type_parameters() {
    --item_scopes_;
    out_.close();
}

}  // namespace host::sources
