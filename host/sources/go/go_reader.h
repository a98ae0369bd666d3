// Reads what a Go file states about names.
//
// Go looks every name up at the top of its package, so a declaration opens no scope of names. Pointers are left out:
// Go selects, indexes and ranges over what a pointer leads to, and a `*` stands only where the compiler wants one.
#pragma once

#include "host/sources/syntax_reader.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host::sources {

class GoReader : public SyntaxReader<GoReader> {
  public:
    explicit GoReader(std::string_view text) : SyntaxReader(text, syntax::Visibility::FROM_DECLARATION) {}

    static const NodeRules<GoReader>& rules();

  private:
    using ExpressionId = syntax::ExpressionId;

    struct Fields;
    static const Fields& fields();

    // What a function takes and gives.
    struct Signature {
        ExpressionId result = syntax::UNKNOWN;                          // its type: of several a TUPLE
        std::vector<std::pair<std::string_view, ExpressionId>> locals;  // the parameters and results with names
    };

    // Build constraints (go_constraints.cpp).
    ExpressionId read_comment(const Node& node);

    // Declarations (go_declarations.cpp).
    ExpressionId read_package(const Node& node);
    ExpressionId read_import(const Node& node);
    ExpressionId read_function(const Node& node);
    ExpressionId read_receiver(const Node& receiver, Signature& signature);
    ExpressionId read_variables(const Node& node);
    ExpressionId read_constants(const Node& node);
    void declare_values(const std::vector<Node>& names, const std::vector<ExpressionId>& values);
    [[nodiscard]] static std::vector<Node> children(const Node& node, TSFieldId field);

    // Declarations of types (go_members.cpp).
    ExpressionId read_type(const Node& node);
    ExpressionId read_alias(const Node& node);
    ExpressionId read_type_with_members(const Node& node);
    void number_type_parameters(const Node& list);
    void read_members(const Node& type, syntax::DeclarationId owner);
    void read_field(const Node& node, syntax::DeclarationId owner, std::vector<ExpressionId>& bases);
    void read_interface_method(const Node& node, syntax::DeclarationId owner);
    [[nodiscard]] static Node name_of_embedded(const Node& type);

    // Types (go_types.cpp).
    ExpressionId read_named_type(const Node& node);
    ExpressionId read_qualified_type(const Node& node);
    ExpressionId read_qualified(const Node& node, syntax::Role role);
    ExpressionId read_generic_type(const Node& node);
    ExpressionId read_list_type(const Node& node);
    ExpressionId read_map_type(const Node& node);
    ExpressionId read_channel_type(const Node& node);
    ExpressionId read_function_type(const Node& node);
    std::vector<ExpressionId> read_all(const Node& list);
    Signature read_signature(const Node& function);
    std::vector<ExpressionId> read_parameters(const Node& list, Signature& signature);
    void bind_type_parameters(const Node& list, const std::function<ExpressionId(const Node& parameter)>& type_of);
    void bind(const Signature& signature);

    // Statements (go_statements.cpp).
    ExpressionId read_scope(const Node& node);
    void read_body(const Node& block);
    ExpressionId read_short_declaration(const Node& node);
    ExpressionId read_range(const Node& node);
    ExpressionId read_receive(const Node& node);
    ExpressionId read_type_switch(const Node& node);
    void read_type_case(const Node& node, std::string_view alias, ExpressionId switched);
    std::vector<ExpressionId> read_values(const Node& list, std::size_t wanted);
    void bind_new(const Node& list, const std::vector<ExpressionId>& values);

    // Expressions (go_expressions.cpp).
    ExpressionId read_literal(const Node& node);
    ExpressionId read_inner(const Node& node);
    ExpressionId read_name(const Node& node);
    ExpressionId read_selector(const Node& node);
    ExpressionId read_call(const Node& node);
    ExpressionId read_index(const Node& node);
    ExpressionId read_slice(const Node& node);
    ExpressionId read_unary(const Node& node);
    ExpressionId read_conversion(const Node& node);
    ExpressionId read_generic_call(const Node& node, const Node& type);
    ExpressionId read_instantiation(const Node& node);
    ExpressionId read_function_literal(const Node& node);
    ExpressionId read_called(const Node& function);
    ExpressionId read_selected(const Node& selector, syntax::Role role);
    ExpressionId read_first(const Node& arguments);
    [[nodiscard]] bool is_predeclared(std::string_view name);

    // Composite literals (go_literals.cpp).
    ExpressionId read_composite_literal(const Node& node);
    void read_elements(const Node& body, const Node& type, ExpressionId value);
    void read_element(const Node& node, const Node& type, ExpressionId value);

    // A name that binds nothing.
    static constexpr std::string_view BLANK = "_";

    std::size_t functions_around_ = 0;  // what stands in a function is declared for it alone
    bool is_before_package_ = true;     // where a comment may be a build constraint
    bool has_new_constraint_ = false;   // one of the form that replaces the others
    std::string constraint_;
};

// The fields of the grammar.
struct GoReader::Fields {
    TSFieldId alias;
    TSFieldId arguments;
    TSFieldId body;
    TSFieldId element;
    TSFieldId field;
    TSFieldId function;
    TSFieldId index;
    TSFieldId initializer;
    TSFieldId key;
    TSFieldId left;
    TSFieldId length;
    TSFieldId name;
    TSFieldId operand;
    TSFieldId operator_;
    TSFieldId package;
    TSFieldId parameters;
    TSFieldId path;
    TSFieldId receiver;
    TSFieldId result;
    TSFieldId right;
    TSFieldId type;
    TSFieldId type_arguments;
    TSFieldId type_parameters;
    TSFieldId value;
};

}  // namespace host::sources
