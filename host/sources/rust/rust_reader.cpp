#include "host/sources/rust/rust_reader.h"

#include "host/sources/syntax_readers.h"

extern "C" const TSLanguage* tree_sitter_rust();

namespace host::sources {

const RustFields& RustFields::get() {
    static const auto of = [](std::string_view written) { return sources::field(tree_sitter_rust(), written); };
    static const RustFields fields{
        .alias = of("alias"),
        .alternative = of("alternative"),
        .argument = of("argument"),
        .arguments = of("arguments"),
        .body = of("body"),
        .bounds = of("bounds"),
        .condition = of("condition"),
        .consequence = of("consequence"),
        .element = of("element"),
        .field = of("field"),
        .function = of("function"),
        .left = of("left"),
        .length = of("length"),
        .list = of("list"),
        .macro = of("macro"),
        .name = of("name"),
        .parameters = of("parameters"),
        .path = of("path"),
        .pattern = of("pattern"),
        .return_type = of("return_type"),
        .right = of("right"),
        .trait = of("trait"),
        .type = of("type"),
        .type_arguments = of("type_arguments"),
        .type_parameters = of("type_parameters"),
        .value = of("value"),
    };
    return fields;
}

const NodeRules<RustReader>& RustReader::rules() {
    using R = RustReader;
    static const NodeRules<RustReader> rules(tree_sitter_rust(),
                                             {
                                                 // Items.
                                                 {"source_file", &R::read_items},
                                                 {"declaration_list", &R::read_items},
                                                 {"mod_item", &R::read_module},
                                                 {"struct_item", &R::read_struct},
                                                 {"union_item", &R::read_struct},
                                                 {"enum_item", &R::read_enum},
                                                 {"trait_item", &R::read_trait},
                                                 {"impl_item", &R::read_impl},
                                                 {"function_item", &R::read_function},
                                                 {"function_signature_item", &R::read_function},
                                                 {"const_item", &R::read_constant},
                                                 {"static_item", &R::read_constant},
                                                 {"type_item", &R::read_alias},
                                                 {"associated_type", &R::read_associated_type},
                                                 {"macro_definition", &R::read_macro_definition},
                                                 {"attribute_item", &R::read_nothing},
                                                 {"inner_attribute_item", &R::read_nothing},
                                                 {"visibility_modifier", &R::read_nothing},
                                                 {"use_declaration", &R::read_use},
                                                 {"extern_crate_declaration", &R::read_extern_crate},
                                                 // Types.
                                                 {"type_identifier", &R::read_type_name},
                                                 {"scoped_type_identifier", &R::read_type_name},
                                                 {"generic_type", &R::read_generic_type},
                                                 {"generic_type_with_turbofish", &R::read_generic_type},
                                                 {"reference_type", &R::read_reference_type},
                                                 {"pointer_type", &R::read_reference_type},
                                                 {"array_type", &R::read_array_type},
                                                 {"tuple_type", &R::read_tuple_type},
                                                 {"function_type", &R::read_function_type},
                                                 {"dynamic_type", &R::read_trait_type},
                                                 {"abstract_type", &R::read_trait_type},
                                                 {"bounded_type", &R::read_bounded_type},
                                                 {"primitive_type", &R::read_primitive_type},
                                                 {"unit_type", &R::read_primitive_type},
                                                 {"never_type", &R::read_primitive_type},
                                                 {"bracketed_type", &R::read_inner},
                                                 {"qualified_type", &R::read_qualified_type},
                                                 {"lifetime", &R::read_nothing},
                                                 {"label", &R::read_nothing},
                                                 // Expressions.
                                                 {"identifier", &R::read_identifier},
                                                 {"scoped_identifier", &R::read_path},
                                                 {"self", &R::read_self},
                                                 {"integer_literal", &R::read_literal},
                                                 {"float_literal", &R::read_literal},
                                                 {"string_literal", &R::read_literal},
                                                 {"raw_string_literal", &R::read_literal},
                                                 {"char_literal", &R::read_literal},
                                                 {"boolean_literal", &R::read_literal},
                                                 {"field_expression", &R::read_field},
                                                 {"call_expression", &R::read_call},
                                                 {"generic_function", &R::read_generic_function},
                                                 {"parenthesized_expression", &R::read_inner},
                                                 {"reference_expression", &R::read_inner},
                                                 {"unsafe_block", &R::read_inner},
                                                 {"else_clause", &R::read_inner},
                                                 {"try_expression", &R::read_unwrapping},
                                                 {"await_expression", &R::read_unwrapping},
                                                 {"unary_expression", &R::read_unary},
                                                 {"index_expression", &R::read_index},
                                                 {"tuple_expression", &R::read_tuple},
                                                 {"array_expression", &R::read_array},
                                                 {"type_cast_expression", &R::read_cast},
                                                 {"struct_expression", &R::read_struct_literal},
                                                 {"macro_invocation", &R::read_macro_call},
                                                 {"closure_expression", &R::read_closure},
                                                 // Statements and patterns.
                                                 {"block", &R::read_block},
                                                 {"let_declaration", &R::read_let},
                                                 {"let_condition", &R::read_let_condition},
                                                 {"if_expression", &R::read_if},
                                                 {"while_expression", &R::read_while},
                                                 {"for_expression", &R::read_for},
                                                 {"match_expression", &R::read_match},
                                             });
    return rules;
}

std::string rust_field_name(std::string_view written) {
    return "." + std::string(written);
}

bool is_rust_comment(const Node& node) {
    return node.type() == "line_comment" || node.type() == "block_comment";
}

bool is_rust_item_name(std::string_view name) {
    return !name.empty() && name.front() >= 'A' && name.front() <= 'Z';
}

syntax::Syntax read_rust(std::string_view text, TSNode root) {
    return RustReader(text).read(Node(root));
}

}  // namespace host::sources
