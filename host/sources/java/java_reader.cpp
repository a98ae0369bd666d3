#include "host/sources/java/java_reader.h"

#include "host/sources/syntax_readers.h"

#include <algorithm>

extern "C" const TSLanguage* tree_sitter_java();

namespace host::sources {

const JavaFields& JavaFields::get() {
    static const auto of = [](std::string_view written) { return sources::field(tree_sitter_java(), written); };
    static const JavaFields fields{
        .alternative = of("alternative"),
        .arguments = of("arguments"),
        .array = of("array"),
        .body = of("body"),
        .condition = of("condition"),
        .consequence = of("consequence"),
        .constructor = of("constructor"),
        .declarator = of("declarator"),
        .dimensions = of("dimensions"),
        .element = of("element"),
        .field = of("field"),
        .index = of("index"),
        .key = of("key"),
        .left = of("left"),
        .name = of("name"),
        .object = of("object"),
        .operand = of("operand"),
        .operation = of("operator"),
        .parameters = of("parameters"),
        .pattern = of("pattern"),
        .right = of("right"),
        .scope = of("scope"),
        .type = of("type"),
        .type_parameters = of("type_parameters"),
        .value = of("value"),
    };
    return fields;
}

const NodeRules<JavaReader>& JavaReader::rules() {
    using R = JavaReader;
    static const NodeRules<JavaReader> rules(tree_sitter_java(),
                                             {
                                                 // Packages and imports.
                                                 {"package_declaration", &R::read_package},
                                                 {"import_declaration", &R::read_import},
                                                 {"exports_module_directive", &R::read_jump},
                                                 {"opens_module_directive", &R::read_jump},
                                                 {"requires_module_directive", &R::read_jump},
                                                 {"provides_module_directive", &R::read_service},
                                                 {"uses_module_directive", &R::read_service},
                                                 // Declarations.
                                                 {"class_declaration", &R::read_class},
                                                 {"interface_declaration", &R::read_class},
                                                 {"enum_declaration", &R::read_class},
                                                 {"record_declaration", &R::read_class},
                                                 {"annotation_type_declaration", &R::read_class},
                                                 {"method_declaration", &R::read_method},
                                                 {"constructor_declaration", &R::read_constructor},
                                                 {"compact_constructor_declaration", &R::read_compact_constructor},
                                                 {"annotation_type_element_declaration", &R::read_annotation_element},
                                                 {"field_declaration", &R::read_field},
                                                 {"constant_declaration", &R::read_field},
                                                 {"enum_constant", &R::read_enum_constant},
                                                 {"annotation", &R::read_annotation},
                                                 {"marker_annotation", &R::read_annotation},
                                                 // Types.
                                                 {"type_identifier", &R::read_type_name},
                                                 {"scoped_type_identifier", &R::read_type_name},
                                                 {"generic_type", &R::read_generic_type},
                                                 {"array_type", &R::read_array_type},
                                                 {"integral_type", &R::read_primitive_type},
                                                 {"floating_point_type", &R::read_primitive_type},
                                                 {"boolean_type", &R::read_primitive_type},
                                                 {"void_type", &R::read_primitive_type},
                                                 {"annotated_type", &R::read_annotated_type},
                                                 {"wildcard", &R::read_wildcard},
                                                 // Expressions.
                                                 {"identifier", &R::read_identifier},
                                                 {"this", &R::read_this},
                                                 {"super", &R::read_super},
                                                 {"binary_integer_literal", &R::read_literal},
                                                 {"decimal_integer_literal", &R::read_literal},
                                                 {"hex_integer_literal", &R::read_literal},
                                                 {"octal_integer_literal", &R::read_literal},
                                                 {"decimal_floating_point_literal", &R::read_literal},
                                                 {"hex_floating_point_literal", &R::read_literal},
                                                 {"character_literal", &R::read_literal},
                                                 {"string_literal", &R::read_literal},
                                                 {"true", &R::read_literal},
                                                 {"false", &R::read_literal},
                                                 {"null_literal", &R::read_literal},
                                                 {"class_literal", &R::read_class_literal},
                                                 {"binary_expression", &R::read_binary},
                                                 {"unary_expression", &R::read_unary},
                                                 {"update_expression", &R::read_parenthesized},
                                                 {"parenthesized_expression", &R::read_parenthesized},
                                                 {"field_access", &R::read_field_access},
                                                 {"method_invocation", &R::read_call},
                                                 {"object_creation_expression", &R::read_creation},
                                                 {"explicit_constructor_invocation", &R::read_constructor_call},
                                                 {"array_creation_expression", &R::read_array_creation},
                                                 {"array_access", &R::read_array_access},
                                                 {"cast_expression", &R::read_cast},
                                                 {"instanceof_expression", &R::read_instanceof},
                                                 {"ternary_expression", &R::read_conditional},
                                                 {"assignment_expression", &R::read_assignment},
                                                 {"lambda_expression", &R::read_lambda},
                                                 {"method_reference", &R::read_method_reference},
                                                 // Statements and patterns.
                                                 {"block", &R::read_block},
                                                 {"constructor_body", &R::read_block},
                                                 {"for_statement", &R::read_block},
                                                 {"try_with_resources_statement", &R::read_block},
                                                 {"catch_clause", &R::read_block},
                                                 {"switch_block", &R::read_block},
                                                 {"switch_rule", &R::read_block},
                                                 {"local_variable_declaration", &R::read_locals},
                                                 {"enhanced_for_statement", &R::read_for_each},
                                                 {"catch_formal_parameter", &R::read_caught},
                                                 {"resource", &R::read_resource},
                                                 {"switch_expression", &R::read_switch},
                                                 {"switch_label", &R::read_switch_label},
                                                 {"labeled_statement", &R::read_labeled},
                                                 {"break_statement", &R::read_jump},
                                                 {"continue_statement", &R::read_jump},
                                                 {"type_pattern", &R::read_type_pattern},
                                                 {"record_pattern_component", &R::read_type_pattern},
                                                 {"record_pattern", &R::read_record_pattern},
                                             });
    return rules;
}

std::string method_name(std::string_view written) {
    return std::string(written) + "()";
}

std::string constructor_name(std::string_view type) {
    return "new " + method_name(type);
}

std::uint8_t java_count(std::size_t count) {
    return static_cast<std::uint8_t>(std::min<std::size_t>(count, syntax::Declaration::ANY_NUMBER));
}

bool is_java_comment(const Node& node) {
    return node.type() == "line_comment" || node.type() == "block_comment";
}

syntax::Syntax read_java(std::string_view text, TSNode root) {
    return JavaReader(text).read(Node(root));
}

}  // namespace host::sources
