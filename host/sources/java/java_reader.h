// Reads what a Java file states about names.
//
// Type parameters and all that stands in the body of a method are locals. A local or anonymous class is a hidden
// declaration: names in it are looked up in its bases, too, before they are looked up around it.
//
// A method and a variable of one name are two things. So the names of methods end in "()" here: `size()`. A constructor
// is a method that no other class has: `new List()`.
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
struct JavaFields {
    TSFieldId alternative, arguments, array, body, condition, consequence, constructor, declarator, dimensions, element,
        field, index, key, left, name, object, operand, operation, parameters, pattern, right, scope, type,
        type_parameters, value;

    static const JavaFields& get();
};

/// What the tokens of a modifiers node say.
struct JavaModifiers {
    bool is_private = false;
    bool is_static = false;
};

class JavaReader : public SyntaxReader<JavaReader> {
  public:
    explicit JavaReader(std::string_view text) : SyntaxReader(text, syntax::Visibility::FROM_DECLARATION) {}

    static const NodeRules<JavaReader>& rules();

  private:
    using Id = syntax::ExpressionId;

    struct TypeParameter {
        std::string_view name;
        Id bound = syntax::UNKNOWN;
    };

    struct Component {
        std::string_view name;
        Id type = syntax::UNKNOWN;
        Id value = syntax::UNKNOWN;
    };

    // What `this(...)` and `super(...)` construct.
    struct Construction {
        std::string own;   // the names of the constructors
        std::string base;  // empty where the text states no superclass
        Id base_type = syntax::UNKNOWN;
    };

    // Packages and imports (java_imports.cpp).
    Id read_package(const Node& node);
    Id read_import(const Node& node);
    Id read_service(const Node& node);
    Id named_type(const Node& node, syntax::Role role);
    Id type_named(const std::vector<Node>& segments, syntax::Role role);
    Id type_of_package(const std::string& package, const Node& name, syntax::Role role);
    [[nodiscard]] std::string_view simple_name(const Node& type) const;
    [[nodiscard]] bool is_name_of_package(const Node& node);
    [[nodiscard]] std::string joined(const std::vector<Node>& segments, std::size_t count) const;
    [[nodiscard]] bool is_of_library(std::string_view type) const;

    // Declarations (java_declarations.cpp).
    Id read_class(const Node& node);
    Id read_method(const Node& node);
    Id read_constructor(const Node& node);
    Id read_compact_constructor(const Node& node);
    Id read_annotation_element(const Node& node);
    Id read_field(const Node& node);
    Id read_enum_constant(const Node& node);
    Id read_annotation(const Node& node);
    JavaModifiers read_modifiers(const Node& declaration);
    syntax::DeclarationId declare(const Node& name, syntax::Kind kind, const JavaModifiers& modifiers);
    syntax::DeclarationId declare(const Node& name, std::string_view as, syntax::Kind kind,
                                  const JavaModifiers& modifiers);
    syntax::DeclarationId declare_method(const Node& node);
    syntax::DeclarationId declare_constructor(const Node& node);
    std::vector<TypeParameter> read_type_parameters(const Node& node);
    void add_bases(const Node& node, std::vector<Id>& bases);
    void read_anonymous_class(const Node& body, Id base);
    void declare_components(const Node& parameters);
    void read_function(const Node& node, syntax::DeclarationId id);
    Component read_parameter(const Node& node);
    std::vector<Id> bind_parameters(const Node& parameters, bool& has_more);
    void set_parameters(syntax::DeclarationId id, const std::vector<Id>& types, bool has_more);
    [[nodiscard]] bool is_local() const { return out_.local_depth() > class_scopes_; }

    // Types, which are read as expressions (java_types.cpp).
    Id read_type_name(const Node& node);
    Id read_generic_type(const Node& node);
    Id read_array_type(const Node& node);
    Id read_primitive_type(const Node& node);
    Id read_annotated_type(const Node& node);
    Id read_wildcard(const Node& node);
    Id lists_of(Id type, const Node& dimensions);
    Id array_of(Id type);
    Id foreign(std::string_view type);
    Id declared_type(const Node& type);

    // Expressions (java_expressions.cpp).
    Id read_identifier(const Node& node);
    Id read_this(const Node& node);
    Id read_super(const Node& node);
    Id read_literal(const Node& node);
    Id read_class_literal(const Node& node);
    Id read_binary(const Node& node);
    Id read_unary(const Node& node);
    Id read_parenthesized(const Node& node);
    Id read_field_access(const Node& node);
    Id read_call(const Node& node);
    Id read_creation(const Node& node);
    Id read_constructor_call(const Node& node);
    Id read_array_creation(const Node& node);
    Id read_array_access(const Node& node);
    Id read_cast(const Node& node);
    Id read_instanceof(const Node& node);
    Id read_conditional(const Node& node);
    Id read_assignment(const Node& node);
    Id read_lambda(const Node& node);
    Id read_method_reference(const Node& node);
    Id member_in(const Node& node, syntax::Space space);
    Id qualifier(const Node& node);
    Id super_of(const Node& type);
    std::vector<Id> read_arguments(const Node& arguments);

    // Statements and patterns (java_statements.cpp).
    Id read_block(const Node& node);
    Id read_locals(const Node& node);
    Id read_for_each(const Node& node);
    Id read_caught(const Node& node);
    Id read_resource(const Node& node);
    Id read_switch(const Node& node);
    Id read_switch_label(const Node& node);
    Id read_labeled(const Node& node);
    Id read_jump(const Node& node);
    Id read_type_pattern(const Node& node);
    Id read_record_pattern(const Node& node);

    std::unordered_map<std::string_view, std::string> imported_from_;      // by simple name: what stands before it
    std::vector<std::string> imported_packages_;                           // of imports of all names
    std::unordered_set<std::string_view> package_roots_{"java", "javax"};  // with which names of packages begin
    std::unordered_map<std::string, Id> types_of_packages_;                // by whole name
    std::size_t class_scopes_ = 0;       // how many of the open local scopes hold type parameters of classes
    Construction construction_;          // of the class around the reader
    std::vector<Component> components_;  // of the record around the reader
    std::unordered_set<Id> primitive_;   // types that no enum is, and their values
    Id selector_ = syntax::UNKNOWN;      // the value of the switch around the reader
};

/// Returns the name under which a method is declared and looked up.
std::string method_name(std::string_view written);

/// Returns the same of a constructor of the class.
std::string constructor_name(std::string_view type);

/// Returns a number of parameters or arguments; `ANY_NUMBER` for more than nobody writes.
std::uint8_t java_count(std::size_t count);

/// Whether a node is a comment, which may stand anywhere.
bool is_java_comment(const Node& node);

}  // namespace host::sources
