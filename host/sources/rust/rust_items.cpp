// Modules, types, functions and what else may stand in a module, an `impl` or a block.
#include "host/sources/rust/rust_reader.h"

#include <array>
#include <utility>

namespace host::sources {

namespace {

using syntax::DeclarationId;
using syntax::Kind;
using syntax::Operation;

// Whether an attribute has what stands below it be compiled for tests alone.
bool is_test_attribute(std::string_view text) {
    return text == "#[test]" || text.ends_with("::test]") || text.find("cfg(test)") != std::string_view::npos ||
           text.find("cfg(all(test") != std::string_view::npos;
}

}  // namespace

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): rules are members
RustReader::Id RustReader::read_nothing(const Node& /*node*/) {
    return syntax::UNKNOWN;
}

RustReader::Id RustReader::read_items(const Node& node) {
    const bool is_around_in_test = is_in_test_;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "attribute_item") {
            is_in_test_ = is_in_test_ || is_test_attribute(text(child));
        } else if (!is_rust_comment(child)) {
            visit(child);
            is_in_test_ = is_around_in_test;
        }
    });
    return syntax::UNKNOWN;
}

// A local item hides what has its name outside of the block.
DeclarationId RustReader::declare(const Node& name, Kind kind) {
    return declare(name, name_text(name), kind);
}

DeclarationId RustReader::declare(const Node& name, std::string_view as, Kind kind) {
    const bool is_member = surroundings_.parent != syntax::NO_DECLARATION;
    const bool is_bound = is_local() && surroundings_.owner == syntax::UNKNOWN && !is_member;
    const DeclarationId id = out_.declare({.name = out_.name(as),
                                           .written = out_.name(name_text(name)),
                                           .kind = kind,
                                           .parent = is_member ? surroundings_.parent : out_.around(),
                                           .owner = surroundings_.owner,
                                           .offset = is_local() ? 0 : name.begin(),
                                           .is_hidden = is_local(),
                                           .is_local = is_bound && kind != Kind::NAMESPACE,  // whose name is looked up
                                           .is_in_test = is_in_test_});
    if (is_bound) {
        out_.bind(name_text(name), out_.add(Operation::LOCAL, out_.add(Operation::DECLARATION, id)));
    }
    return id;
}

RustReader::Id RustReader::read_module(const Node& node) {
    const RustFields& at = RustFields::get();
    const DeclarationId id = declare(node.child(at.name), Kind::NAMESPACE);
    const Node body = node.child(at.body);
    out_.declaration(id).is_definition = body.exists();
    if (body.exists()) {
        out_.open(id);
        const Surroundings outer = std::exchange(surroundings_, {});
        visit(body);
        surroundings_ = outer;
        out_.close();
    }
    return syntax::UNKNOWN;
}

RustReader::Id RustReader::read_struct(const Node& node) {
    const RustFields& at = RustFields::get();
    const DeclarationId id = declare(node.child(at.name), Kind::TYPE);
    const Surroundings outer =
        std::exchange(surroundings_, {.parent = id, .self_type = out_.add(Operation::DECLARATION, id)});
    open_type_parameters(node);
    declare_fields(node.child(at.body), id);
    close_type_parameters();
    surroundings_ = outer;
    return syntax::UNKNOWN;
}

// The fields of a tuple have numbers for names, which are written nowhere.
void RustReader::declare_fields(const Node& body, DeclarationId type) {
    if (!body.exists()) {
        return;
    }
    const RustFields& at = RustFields::get();
    const Surroundings outer = surroundings_;
    surroundings_.parent = type;
    std::size_t number = 0;
    for_each_child(body, [&](const Node& child, TSFieldId field) {
        if (child.type() == "field_declaration") {
            const Id value = out_.instance(visit(child.child(at.type)));
            const Node name = child.child(at.name);
            out_.declaration(declare(name, rust_field_name(name_text(name)), Kind::VALUE)).type = value;
        } else if (field == at.type) {
            const Id value = out_.instance(visit(child));
            out_.declare({.name = out_.name(rust_field_name(std::to_string(number))),
                          .written = out_.name(std::to_string(number++)),
                          .kind = Kind::VALUE,
                          .parent = type,
                          .type = value,
                          .is_hidden = true});
        }
    });
    surroundings_ = outer;
}

RustReader::Id RustReader::read_enum(const Node& node) {
    const RustFields& at = RustFields::get();
    const DeclarationId id = declare(node.child(at.name), Kind::TYPE);
    const Surroundings outer =
        std::exchange(surroundings_, {.parent = id, .self_type = out_.add(Operation::DECLARATION, id)});
    open_type_parameters(node);
    for_each_child(node.child(at.body), [&](const Node& child, TSFieldId) {
        if (child.type() == "enum_variant") {
            declare_variant(child, id);
        }
    });
    close_type_parameters();
    surroundings_ = outer;
    return syntax::UNKNOWN;
}

// A variant with fields has these as members, and those of the enum.
void RustReader::declare_variant(const Node& node, DeclarationId type) {
    const RustFields& at = RustFields::get();
    const Id of = out_.add(Operation::DECLARATION, type);
    if (const Node body = node.child(at.body); body.exists()) {
        const DeclarationId id = declare(node.child(at.name), Kind::TYPE);
        out_.declaration(id).bases = out_.list(std::array{of});
        declare_fields(body, id);
    } else {
        out_.declaration(declare(node.child(at.name), Kind::VALUE)).type = out_.instance(of);
    }
    visit(node.child(at.value));
}

RustReader::Id RustReader::read_trait(const Node& node) {
    const RustFields& at = RustFields::get();
    const DeclarationId id = declare(node.child(at.name), Kind::TYPE);
    const Surroundings outer =
        std::exchange(surroundings_, {.parent = id, .self_type = out_.add(Operation::DECLARATION, id)});
    open_type_parameters(node);
    std::vector<Id> bases;
    add_bounds(node.child(at.bounds), bases);
    out_.declaration(id).bases = out_.list(bases);
    visit(node.child(at.body));
    close_type_parameters();
    surroundings_ = outer;
    return syntax::UNKNOWN;
}

// What implements a trait has that for a base. Its own functions are reached through the trait alone: they stand in
// what has no name.
RustReader::Id RustReader::read_impl(const Node& node) {
    const RustFields& at = RustFields::get();
    const Surroundings outer = std::exchange(surroundings_, {});
    open_type_parameters(node, node.child(at.type));
    const Id trait = visit(node.child(at.trait));
    const Id type = visit(node.child(at.type));
    surroundings_ = {.owner = type, .self_type = type, .self_result = type};
    if (node.child(at.trait).exists()) {
        out_.declare({.kind = Kind::TYPE,
                      .parent = out_.around(),
                      .owner = type,
                      .bases = out_.list(std::array{trait}),
                      .is_hidden = true});
        surroundings_.owner = syntax::UNKNOWN;
        surroundings_.parent = out_.declare({.kind = Kind::TYPE, .parent = out_.around(), .is_hidden = true});
    }
    visit(node.child(at.body));
    close_type_parameters();
    surroundings_ = outer;
    return syntax::UNKNOWN;
}

// Who calls a function may not say which type parameters it has, so a result of such a type is not known.
RustReader::Id RustReader::read_function(const Node& node) {
    const RustFields& at = RustFields::get();
    const DeclarationId id = declare(node.child(at.name), Kind::FUNCTION);
    out_.open_local();
    const std::vector<TypeParameter> parameters = read_type_parameters(node);
    const Id self_type = std::exchange(surroundings_.self_type, surroundings_.self_result);
    Id result = visit(node.child(at.return_type));
    surroundings_.self_type = self_type;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "function_modifiers" && text(child).starts_with("async") && result != syntax::UNKNOWN) {
            result = out_.add(Operation::AWAITABLE, result);
        }
    });
    out_.declaration(id).type = result;
    for (const TypeParameter& parameter : parameters) {
        out_.bind(parameter.name, out_.add(Operation::LOCAL, out_.one_of(parameter.bounds)));
    }
    bind_parameters(node.child(at.parameters));
    const Surroundings outer = surroundings_;
    surroundings_.parent = syntax::NO_DECLARATION;
    surroundings_.owner = syntax::UNKNOWN;
    visit(node.child(at.body));
    surroundings_ = outer;
    out_.close();
    return syntax::UNKNOWN;
}

void RustReader::bind_parameters(const Node& parameters) {
    if (!parameters.exists()) {
        return;
    }
    const RustFields& at = RustFields::get();
    for_each_child(parameters, [&](const Node& child, TSFieldId) {
        if (child.type() == "parameter") {
            const Id value = out_.instance(visit(child.child(at.type)));
            bind(child.child(at.pattern), value);
        } else if (child.type() != "self_parameter" && child.type() != "attribute_item") {
            bind(child, syntax::UNKNOWN);
        }
    });
}

RustReader::Id RustReader::read_constant(const Node& node) {
    const RustFields& at = RustFields::get();
    const Id value = out_.instance(visit(node.child(at.type)));
    out_.declaration(declare(node.child(at.name), Kind::VALUE)).type = value;
    visit(node.child(at.value));
    return syntax::UNKNOWN;
}

RustReader::Id RustReader::read_alias(const Node& node) {
    const RustFields& at = RustFields::get();
    const DeclarationId id = declare(node.child(at.name), Kind::ALIAS);
    open_type_parameters(node);
    const Id type = visit(node.child(at.type));
    out_.declaration(id).type = type;
    close_type_parameters();
    return syntax::UNKNOWN;
}

// Which type it is depends on who implements the trait.
RustReader::Id RustReader::read_associated_type(const Node& node) {
    const RustFields& at = RustFields::get();
    declare(node.child(at.name), Kind::ALIAS);
    open_type_parameters(node);
    std::vector<Id> bounds;
    add_bounds(node.child(at.bounds), bounds);
    close_type_parameters();
    return syntax::UNKNOWN;
}

RustReader::Id RustReader::read_macro_definition(const Node& node) {
    declare(node.child(RustFields::get().name), Kind::MACRO);
    return syntax::UNKNOWN;
}

}  // namespace host::sources
