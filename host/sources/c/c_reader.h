// Reads what a C or C++ file states about names.
//
// Both branches of an `#if` are read. A macro is a declaration; the names in its replacement are looked up where it is
// defined. Parameters, template parameters and all that stands in the body of a function are locals.
//
// The name of an anonymous namespace or of an inline one is never needed: what stands in it is a member of what is
// around it. So are the members of an anonymous struct or union.
#pragma once

#include "host/sources/c/c_bodies.h"
#include "host/sources/c/c_splits.h"
#include "host/sources/syntax_reader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace host::sources {

/// What the reader needs of one of the two grammars. A field that the grammar of C lacks is 0 there, and has no child.
struct CGrammar {
    explicit CGrammar(const TSLanguage* language);

    TSFieldId alternative, argument, arguments, base, body, captures, condition, consequence, declarator, default_type,
        default_value, designator, field_name, function, index, indices, initializer, left, member, name, operator_name,
        parameters, path, placement, right, scope, size, template_parameters, type, value;
};

class CReader;

/// Returns the first named child that is no comment.
Node first_child(const Node& node);

/// Returns whether one of the children is this word or mark.
bool has_token(const Node& node, std::string_view token);

bool is_among(const auto& names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

/// A grammar with what is done at its nodes.
// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): there is no other way to make one than with its fields
struct CDialect {
    CGrammar fields;
    NodeRules<CReader> rules;
    bool is_cpp = false;

    static const CDialect& c();
    static const CDialect& cpp();

  private:
    static NodeRules<CReader> shared_rules(const TSLanguage* language);
};

class CReader : public SyntaxReader<CReader> {
  public:
    CReader(std::string_view text, const CDialect& dialect)
        : SyntaxReader(text, syntax::Visibility::FROM_DECLARATION), text_(text), dialect_(dialect),
          fields_(dialect.fields) {}

    syntax::Syntax read_file(TSNode root);

    [[nodiscard]] const NodeRules<CReader>& rules() const { return dialect_.rules; }

  private:
    friend struct CDialect;
    using Id = syntax::ExpressionId;

    /// Where declarations that are read belong.
    struct Place {
        syntax::DeclarationId parent = syntax::NO_DECLARATION;
        syntax::DeclarationId outside = syntax::NO_DECLARATION;  // of the classes around
        std::string_view class_name = {};                        // of the class around, if any
        bool is_class = false;                                   // whether the parent is a class
        bool is_anonymous = false;                               // whether an anonymous namespace is around
        bool is_local = false;                                   // whether a function is around
        bool is_friend = false;                                  // whether they are friends of a class
    };

    /// What a declaration says in front of its declarators.
    struct Specifiers {
        Id type = syntax::UNKNOWN;
        Node type_node;
        bool is_static = false;
        bool is_extern = false;
        bool is_constant = false;  // constexpr, inline: defined where it is declared
        bool is_deduced = false;   // auto: the type of the value
    };

    /// What a declarator declares.
    struct Declarator {
        Node name;                  // none of an abstract one
        Id type = syntax::UNKNOWN;  // of a function, that of its result
        bool is_function = false;
        Node function;  // its function_declarator
        Node value;
    };

    /// A name with what stands before it.
    struct QualifiedName {
        Id owner = syntax::UNKNOWN;            // the class or namespace
        Node name = {};                        // behind the last ::
        std::string_view last_qualifier = {};  // before that
        bool is_qualified = false;
        bool is_global = false;  // whether it begins with ::
        bool is_of_library = false;
    };

    /// Where the enumerators that are read belong.
    struct Enumeration {
        syntax::DeclarationId parent = syntax::NO_DECLARATION;
        Id value = syntax::UNKNOWN;
    };

    // Bodies whose functions the tree does not know (c_damage.cpp).
    Id read_level(const Node& node);
    void read_at_level(const Node& node);
    void close_body();

    void read_calls_in(const std::vector<CSplit>& splits, const CTokens& scanned);
    void read_conditions_in(const std::vector<CSplit>& splits, const CTokens& scanned);

    // Directives (c_preprocessor.cpp).
    Id read_include(const Node& node);
    Id read_macro(const Node& node);
    Id read_condition(const Node& node);
    Id ignore(const Node& node);
    void read_replacement(const Node& macro);

    // Declarations (c_declarations.cpp).
    Id read_declaration(const Node& node);
    Id read_type_definition(const Node& node);
    Specifiers specifiers(const Node& node);
    Declarator declarator(const Node& node, Id type);
    Node declared_name(const Node& name);
    Node name_behind_macro(const Node& function, Id& type);
    Id read_trailing_type(const Node& function, Id type);
    void declare(const Specifiers& stated, const Declarator& declarator);
    void declare_variable(const Specifiers& stated, const Declarator& declarator);
    void declare_structure(const Specifiers& stated, const Declarator& declarator);
    void declare_alias(const Node& name, Id type, bool is_repeated);
    void bind_variable(const Specifiers& stated, const Declarator& declarator);
    void bind_structure(const Node& pattern, Id value);
    Id read_initializer(const Node& value, Id initialized);
    [[nodiscard]] bool is_private(const Specifiers& stated) const;
    [[nodiscard]] bool is_variable_after_all(const Declarator& declarator) const;

    // Functions (c_functions.cpp).
    syntax::DeclarationId declare_function(const Specifiers& stated, const Declarator& declarator, bool is_definition);
    void read_parameters_alone(const Node& function);
    Id read_parameter(const Node& node);
    void count_arguments(const Node& function, syntax::Declaration& declaration) const;
    [[nodiscard]] bool is_macro_call(const Node& function, const Declarator& declarator) const;
    [[nodiscard]] bool is_behind_damage(const Declarator& declarator) const;
    Id read_function(const Node& node);
    void read_body(const Node& function, const Declarator& declarator, syntax::DeclarationId id);

    // Types (c_types.cpp).
    Id type_of(const Node& node);
    Id read_type_name(const Node& node);
    Id read_described_type(const Node& node);
    Id read_builtin_type(const Node& node);
    Id read_deduced_type(const Node& node);
    Id read_type_of_value(const Node& node);
    Id read_macro_type(const Node& node);
    Id read_free_specifier(const Node& node);
    Id specifier(const Node& node, bool is_type, const Node& alias);
    Id read_class(const Node& node, const Node& alias, bool is_type);
    Id read_local_class(const Node& node);
    Id read_enum(const Node& node, const Node& alias);
    Id read_enumerator(const Node& node);
    void read_members(const Node& node, syntax::DeclarationId id, std::string_view name);
    Id announced_type(const Node& tag);
    syntax::DeclarationId announce(const Node& tag);
    [[nodiscard]] bool is_tag(std::string_view name) const { return tags_.contains(name); }
    void bind_local_tag(const Node& name);
    syntax::ListId bases(const Node& node);
    [[nodiscard]] syntax::DeclarationId parent_of_tags() const;

    // Expressions (c_expressions.cpp).
    Id read_identifier(const Node& node);
    Id read_literal(const Node& node);
    Id read_this(const Node& node);
    Id read_field(const Node& node);
    Id read_call(const Node& node);
    Id read_assignment(const Node& node);
    Id read_cast(const Node& node);
    Id read_pointer_operation(const Node& node);
    Id read_element(const Node& node);
    Id read_inner(const Node& node);
    Id read_conditional(const Node& node);
    Id read_binary(const Node& node);
    Id read_compound_literal(const Node& node);
    Id read_initializer_list(const Node& node);
    Id read_offset(const Node& node);
    Id read_new(const Node& node);
    Id read_lambda(const Node& node);
    Id owner_of_field(const Node& node);
    Id member(Id of, const Node& name, syntax::Role role, std::uint8_t arguments);
    Id result_of_method(Id of, std::string_view name, Id called);
    std::uint8_t read_arguments(const Node& list);
    void read_elements(const Node& list, Id initialized);

    // Statements (c_statements.cpp).
    Id read_block(const Node& node);
    Id read_range_loop(const Node& node);

    // What C++ adds to names (cpp_names.cpp).
    Id read_namespace(const Node& node);
    Id read_namespace_alias(const Node& node);
    Id read_using(const Node& node);
    Id read_alias(const Node& node);
    Id read_template(const Node& node);
    Id read_friend(const Node& node);
    Id read_qualified(const Node& node);
    Id read_template_type(const Node& node);
    Id read_template_function(const Node& node);
    Id read_field_initializer(const Node& node);
    Id read_concept(const Node& node);
    Id named(const Node& node, syntax::Role role, syntax::Space space, std::uint8_t arguments);
    Id qualified(const Node& node, syntax::Role role, syntax::Space space, std::uint8_t arguments);
    QualifiedName qualified_name(const Node& node);
    Id step(const QualifiedName& before, const Node& node, syntax::Role role, syntax::Space space,
            std::uint8_t arguments);
    Id library_name(std::string_view name, const std::vector<Id>& arguments);
    std::vector<Id> template_arguments(const Node& arguments);
    void bind_template_parameters(const Node& parameters, bool is_of_class);
    void import_name(std::string_view name, std::string_view module, std::string_view original);
    [[nodiscard]] bool names_a_member(const Node& declarator) const;
    [[nodiscard]] Node last_name(Node node) const;

    Id pointer_to(Id value) { return out_.instance(out_.add(syntax::Operation::POINTER, value)); }
    Id foreign() { return out_.add(syntax::Operation::FOREIGN); }

    std::string_view text_;
    const CDialect& dialect_;
    const CGrammar& fields_;
    Place place_;
    Enumeration enumeration_;
    std::span<const CBody> bodies_;                    // those that are not behind what is read, of a damaged tree
    bool is_in_loose_body_ = false;                    // whether statements of the first of them are read
    std::size_t local_classes_ = 0;                    // that are open
    bool is_in_template_ = false;                      // whether what is read is the template of a template
    std::unordered_set<std::string_view> tags_;        // of the file, up to here
    std::unordered_set<std::string_view> local_tags_;  // of the function that is read
};

}  // namespace host::sources
