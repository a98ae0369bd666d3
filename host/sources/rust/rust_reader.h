// Reads what a Rust file states about names.
//
// Names are looked up around the innermost module: neither types nor functions have names that what stands in them
// sees. `Self` and `self` are what the block around them is for. What stands in a function is local: its items are
// bound where its block begins; a block with `use` in it is a hidden namespace.
//
// A field and a method of one name are two things. So the names of fields begin with "." here: `.len`.
//
// `Option` and `Result` count as what must be waited for: `?`, `Some(x)` and `Ok(x)` lead to what they hold. Boxes,
// counted pointers and cells count as pointers.
#pragma once

#include "host/sources/syntax_reader.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace host::sources {

/// The fields of the grammar's nodes.
struct RustFields {
    TSFieldId alias, alternative, argument, arguments, body, bounds, condition, consequence, element, field, function,
        left, length, list, macro, name, parameters, path, pattern, return_type, right, trait, type, type_arguments,
        type_parameters, value;

    static const RustFields& get();
};

class RustReader : public SyntaxReader<RustReader> {
  public:
    explicit RustReader(std::string_view text) : SyntaxReader(text, syntax::Visibility::FROM_DECLARATION) {}

    static const NodeRules<RustReader>& rules();

  private:
    using Id = syntax::ExpressionId;

    struct TypeParameter {
        std::string_view name;
        std::vector<Id> bounds;
    };

    // What the items around the reader are members of.
    struct Surroundings {
        syntax::DeclarationId parent = syntax::NO_DECLARATION;  // a trait, or what cannot be named
        Id owner = syntax::UNKNOWN;                             // the type of an `impl`
        Id self_type = syntax::UNKNOWN;
        Id self_result = syntax::UNKNOWN;  // `Self` as a result: of a trait any type that implements it
    };

    // Items (rust_items.cpp).
    Id read_items(const Node& node);
    Id read_module(const Node& node);
    Id read_struct(const Node& node);
    Id read_enum(const Node& node);
    Id read_trait(const Node& node);
    Id read_impl(const Node& node);
    Id read_function(const Node& node);
    Id read_constant(const Node& node);
    Id read_alias(const Node& node);
    Id read_associated_type(const Node& node);
    Id read_macro_definition(const Node& node);
    Id read_nothing(const Node& node);
    syntax::DeclarationId declare(const Node& name, syntax::Kind kind);
    syntax::DeclarationId declare(const Node& name, std::string_view as, syntax::Kind kind);
    void declare_fields(const Node& body, syntax::DeclarationId type);
    void declare_variant(const Node& node, syntax::DeclarationId type);
    void bind_parameters(const Node& parameters);
    [[nodiscard]] bool is_local() const { return out_.local_depth() > item_scopes_; }

    // Type parameters (rust_generics.cpp).
    std::vector<TypeParameter> read_type_parameters(const Node& item);
    void add_bounds(const Node& bounds, std::vector<Id>& types);
    void bind_type_parameters(const std::vector<TypeParameter>& parameters, const Node& implemented);
    void open_type_parameters(const Node& item, const Node& implemented = Node());
    void close_type_parameters();

    // Paths, `use` and `extern crate` (rust_paths.cpp).
    Id read_use(const Node& node);
    Id read_extern_crate(const Node& node);
    Id read_path(const Node& node);
    Id path(const Node& node, syntax::Role role, syntax::Space space);
    Id qualifier(const Node& node);
    void read_use_tree(const Node& node, std::vector<Node>& before, bool is_exported);
    void import_name(const std::vector<Node>& segments, std::string_view name, bool is_exported);
    void mention_modules(const std::vector<Node>& segments);
    Id imported(const std::string& module, const std::string& name);
    [[nodiscard]] std::string joined(const std::vector<Node>& segments, std::size_t count) const;
    [[nodiscard]] std::string_view name_text(const Node& node) const;
    [[nodiscard]] syntax::Token name_token(const Node& node, syntax::Role role, syntax::Space space) const;

    // Types, which are read as expressions (rust_types.cpp).
    Id read_type_name(const Node& node);
    Id read_generic_type(const Node& node);
    Id read_reference_type(const Node& node);
    Id read_array_type(const Node& node);
    Id read_tuple_type(const Node& node);
    Id read_function_type(const Node& node);
    Id read_trait_type(const Node& node);
    Id read_bounded_type(const Node& node);
    Id read_primitive_type(const Node& node);
    Id read_qualified_type(const Node& node);
    Id generic_of(const Node& named, Id type, const Node& arguments);
    [[nodiscard]] bool may_be_of_library(std::string_view type) const;

    // Expressions (rust_expressions.cpp).
    Id read_identifier(const Node& node);
    Id read_self(const Node& node);
    Id read_literal(const Node& node);
    Id read_field(const Node& node);
    Id read_call(const Node& node);
    Id read_generic_function(const Node& node);
    Id read_inner(const Node& node);
    Id read_unwrapping(const Node& node);
    Id read_unary(const Node& node);
    Id read_index(const Node& node);
    Id read_tuple(const Node& node);
    Id read_array(const Node& node);
    Id read_cast(const Node& node);
    Id read_struct_literal(const Node& node);
    Id read_macro_call(const Node& node);
    Id read_closure(const Node& node);
    Id callee(const Node& function);
    void read_macro_arguments(const Node& arguments);
    Id constructed(const Node& function, Id argument);
    Id component(Id value, std::uint32_t number);
    Id use_field(Id value, const Node& name, syntax::Role role);

    // Statements and patterns (rust_patterns.cpp).
    Id read_block(const Node& node);
    Id read_let(const Node& node);
    Id read_let_condition(const Node& node);
    Id read_if(const Node& node);
    Id read_while(const Node& node);
    Id read_for(const Node& node);
    Id read_match(const Node& node);
    void bind(const Node& pattern, Id value);
    void bind_all(const Node& pattern, Id value);
    void bind_tuple(const Node& pattern, Id value);
    void bind_tuple_struct(const Node& pattern, Id value);
    void bind_struct(const Node& pattern);

    Surroundings surroundings_;
    bool is_in_test_ = false;
    std::unordered_set<std::uint32_t> mentioned_;   // where the segments of `use` begin that were mentioned
    std::size_t item_scopes_ = 0;                   // how many of the open local scopes hold type parameters of items
    std::unordered_map<std::string, Id> imported_;  // by the whole path, and where it stands
    std::unordered_map<std::string_view, bool> is_imported_from_own_;  // by name: whether it comes from this crate
};

/// Returns the name under which a field is declared and looked up.
std::string rust_field_name(std::string_view written);

/// Whether a node is a comment, which may stand anywhere.
bool is_rust_comment(const Node& node);

/// Whether names of this form are types or constants: a pattern binds no such name.
bool is_rust_item_name(std::string_view name);

}  // namespace host::sources
