// Blocks, and the locals that patterns bind in them.
#include "host/sources/rust/rust_reader.h"

#include <algorithm>
#include <array>

namespace host::sources {

namespace {

using syntax::Kind;
using syntax::Operation;
using syntax::Role;
using syntax::Space;

bool is_rust_item(const Node& node) {
    constexpr auto ITEMS =
        std::to_array<std::string_view>({"const_item", "enum_item", "function_item", "macro_definition", "mod_item",
                                         "static_item", "struct_item", "trait_item", "type_item", "union_item"});
    return std::ranges::find(ITEMS, node.type()) != ITEMS.end();
}

}  // namespace

// The items of a block are known in all of it. The value is that of its last expression.
RustReader::Id RustReader::read_block(const Node& node) {
    bool has_use = false;
    std::vector<std::string_view> items;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        has_use = has_use || child.type() == "use_declaration";
        if (is_rust_item(child)) {
            items.push_back(name_text(child.child(RustFields::get().name)));
        }
    });
    if (has_use) {
        const std::string place = "{" + std::to_string(node.begin()) + "}";  // no other's name
        out_.open(out_.declare(
            {.name = out_.name(place), .kind = Kind::NAMESPACE, .parent = out_.around(), .is_hidden = true}));
    }
    out_.open_local();
    for (const std::string_view item : items) {
        out_.bind(item, syntax::UNKNOWN);
    }
    Id value = syntax::UNKNOWN;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (!is_rust_comment(child)) {
            value = visit(child);
        }
    });
    out_.close();
    if (has_use) {
        out_.close();
    }
    return value;
}

RustReader::Id RustReader::read_let(const Node& node) {
    const RustFields& at = RustFields::get();
    const Id type = visit(node.child(at.type));
    const Id value = visit(node.child(at.value));
    visit(node.child(at.alternative));
    bind(node.child(at.pattern), type == syntax::UNKNOWN ? value : out_.instance(type));
    return syntax::UNKNOWN;
}

RustReader::Id RustReader::read_let_condition(const Node& node) {
    const RustFields& at = RustFields::get();
    const Id value = visit(node.child(at.value));
    bind(node.child(at.pattern), value);
    return syntax::UNKNOWN;
}

RustReader::Id RustReader::read_if(const Node& node) {
    const RustFields& at = RustFields::get();
    out_.open_local();
    visit(node.child(at.condition));
    const Id one = visit(node.child(at.consequence));
    out_.close();
    const Id other = visit(node.child(at.alternative));
    const bool is_known = one != syntax::UNKNOWN && other != syntax::UNKNOWN;
    return is_known ? out_.one_of(std::array{one, other}) : syntax::UNKNOWN;
}

RustReader::Id RustReader::read_while(const Node& node) {
    const RustFields& at = RustFields::get();
    out_.open_local();
    visit(node.child(at.condition));
    visit(node.child(at.body));
    out_.close();
    return syntax::UNKNOWN;
}

RustReader::Id RustReader::read_for(const Node& node) {
    const RustFields& at = RustFields::get();
    const Id all = visit(node.child(at.value));
    out_.open_local();
    bind(node.child(at.pattern), all == syntax::UNKNOWN ? all : out_.add(Operation::ELEMENT, all));
    visit(node.child(at.body));
    out_.close();
    return syntax::UNKNOWN;
}

RustReader::Id RustReader::read_match(const Node& node) {
    const RustFields& at = RustFields::get();
    const Id matched = visit(node.child(at.value));
    std::vector<Id> values;
    for_each_child(node.child(at.body), [&](const Node& arm, TSFieldId) {
        if (arm.type() != "match_arm") {
            return;
        }
        out_.open_local();
        const Node pattern = arm.child(at.pattern);
        for_each_child(pattern, [&](const Node& child, TSFieldId field) {
            if (field != at.condition) {
                bind(child, matched);
            }
        });
        visit(pattern.child(at.condition));
        values.push_back(visit(arm.child(at.value)));
        out_.close();
    });
    const bool is_known = std::ranges::find(values, syntax::UNKNOWN) == values.end();
    return is_known ? out_.one_of(values) : syntax::UNKNOWN;
}

// Binds the names of a pattern that is matched with a value. What looks like a constant or a type is used.
void RustReader::bind(const Node& pattern, Id value) {
    if (!pattern.exists()) {
        return;
    }
    const std::string_view kind = pattern.type();
    if (kind == "identifier" && !is_rust_item_name(text(pattern))) {
        out_.bind(name_text(pattern), value);
    } else if (kind == "mut_pattern" || kind == "ref_pattern" || kind == "reference_pattern" || kind == "or_pattern" ||
               kind == "captured_pattern") {
        bind_all(pattern, value);
    } else if (kind == "slice_pattern") {
        bind_all(pattern, value == syntax::UNKNOWN ? value : out_.add(Operation::ELEMENT, value));
    } else if (kind == "tuple_pattern") {
        bind_tuple(pattern, value);
    } else if (kind == "tuple_struct_pattern") {
        bind_tuple_struct(pattern, value);
    } else if (kind == "struct_pattern") {
        bind_struct(pattern);
    } else {
        visit(pattern);
    }
}

void RustReader::bind_all(const Node& pattern, Id value) {
    for_each_child(pattern, [&](const Node& child, TSFieldId) { bind(child, value); });
}

// Behind `..` the places are not known.
void RustReader::bind_tuple(const Node& pattern, Id value) {
    std::uint32_t number = 0;
    for_each_child(pattern, [&](const Node& child, TSFieldId) {
        if (child.type() == "remaining_field_pattern") {
            value = syntax::UNKNOWN;
        } else if (!is_rust_comment(child)) {
            bind(child, component(value, number++));
        }
    });
}

// `Some(x)`, `Ok(x)` lead to what the value holds, others to the fields of the type.
void RustReader::bind_tuple_struct(const Node& pattern, Id value) {
    const RustFields& at = RustFields::get();
    const Node type = pattern.child(at.type);
    const std::string_view name = text(type);
    const bool is_of_library = name == "Some" || name == "Ok" || name == "Err";
    Id of = syntax::UNKNOWN;
    if (!is_of_library) {
        of = out_.instance(path(type, Role::VALUE, Space::VALUE));
    } else if (name != "Err" && value != syntax::UNKNOWN) {
        of = out_.add(Operation::AWAITED, value);
    }
    std::uint32_t number = 0;
    for_each_child(pattern, [&](const Node& child, TSFieldId field) {
        if (field == at.type || is_rust_comment(child)) {
            return;
        }
        if (child.type() == "remaining_field_pattern") {
            of = syntax::UNKNOWN;
        }
        bind(child, is_of_library ? of : component(of, number++));
    });
}

void RustReader::bind_struct(const Node& pattern) {
    const RustFields& at = RustFields::get();
    const Id value = out_.instance(path(pattern.child(at.type), Role::TYPE, Space::TYPE));
    for_each_child(pattern, [&](const Node& child, TSFieldId) {
        if (child.type() != "field_pattern") {
            return;
        }
        const Node name = child.child(at.name);
        const bool is_number = text(name).find_first_not_of("0123456789") == std::string_view::npos;
        const Id field = is_number ? syntax::UNKNOWN : use_field(value, name, Role::KEY);
        if (const Node inner = child.child(at.pattern); inner.exists()) {
            bind(inner, field);
        } else {
            out_.bind(name_text(name), field);
        }
    });
}

}  // namespace host::sources
