#include "host/sources/go/go_reader.h"

#include "host/sources/syntax_readers.h"

extern "C" {
const TSLanguage* tree_sitter_go();
}

namespace host::sources {

const GoReader::Fields& GoReader::fields() {
    static const auto id = [](std::string_view name) { return field(tree_sitter_go(), name); };
    static const Fields FIELDS{.alias = id("alias"),
                               .arguments = id("arguments"),
                               .body = id("body"),
                               .element = id("element"),
                               .field = id("field"),
                               .function = id("function"),
                               .index = id("index"),
                               .initializer = id("initializer"),
                               .key = id("key"),
                               .left = id("left"),
                               .length = id("length"),
                               .name = id("name"),
                               .operand = id("operand"),
                               .operator_ = id("operator"),
                               .package = id("package"),
                               .parameters = id("parameters"),
                               .path = id("path"),
                               .receiver = id("receiver"),
                               .result = id("result"),
                               .right = id("right"),
                               .type = id("type"),
                               .type_arguments = id("type_arguments"),
                               .type_parameters = id("type_parameters"),
                               .value = id("value")};
    return FIELDS;
}

const NodeRules<GoReader>& GoReader::rules() {
    using Reader = GoReader;
    static const NodeRules<GoReader> RULES(tree_sitter_go(),
                                           {
                                               {"comment", &Reader::read_comment},
                                               {"package_clause", &Reader::read_package},
                                               {"import_spec", &Reader::read_import},
                                               {"function_declaration", &Reader::read_function},
                                               {"method_declaration", &Reader::read_function},
                                               {"type_spec", &Reader::read_type},
                                               {"type_alias", &Reader::read_alias},
                                               {"var_spec", &Reader::read_variables},
                                               {"const_declaration", &Reader::read_constants},

                                               {"type_identifier", &Reader::read_named_type},
                                               {"qualified_type", &Reader::read_qualified_type},
                                               {"generic_type", &Reader::read_generic_type},
                                               {"slice_type", &Reader::read_list_type},
                                               {"array_type", &Reader::read_list_type},
                                               {"implicit_length_array_type", &Reader::read_list_type},
                                               {"map_type", &Reader::read_map_type},
                                               {"channel_type", &Reader::read_channel_type},
                                               {"function_type", &Reader::read_function_type},
                                               {"struct_type", &Reader::read_type_with_members},
                                               {"interface_type", &Reader::read_type_with_members},
                                               {"pointer_type", &Reader::read_inner},
                                               {"parenthesized_type", &Reader::read_inner},
                                               {"type_elem", &Reader::read_inner},
                                               {"type_constraint", &Reader::read_inner},

                                               {"block", &Reader::read_scope},
                                               {"if_statement", &Reader::read_scope},
                                               {"for_statement", &Reader::read_scope},
                                               {"expression_switch_statement", &Reader::read_scope},
                                               {"expression_case", &Reader::read_scope},
                                               {"default_case", &Reader::read_scope},
                                               {"communication_case", &Reader::read_scope},
                                               {"type_switch_statement", &Reader::read_type_switch},
                                               {"short_var_declaration", &Reader::read_short_declaration},
                                               {"range_clause", &Reader::read_range},
                                               {"receive_statement", &Reader::read_receive},

                                               {"identifier", &Reader::read_name},
                                               {"selector_expression", &Reader::read_selector},
                                               {"call_expression", &Reader::read_call},
                                               {"index_expression", &Reader::read_index},
                                               {"slice_expression", &Reader::read_slice},
                                               {"unary_expression", &Reader::read_unary},
                                               {"parenthesized_expression", &Reader::read_inner},
                                               {"type_assertion_expression", &Reader::read_conversion},
                                               {"type_conversion_expression", &Reader::read_conversion},
                                               {"type_instantiation_expression", &Reader::read_instantiation},
                                               {"func_literal", &Reader::read_function_literal},
                                               {"composite_literal", &Reader::read_composite_literal},
                                               {"int_literal", &Reader::read_literal},
                                               {"float_literal", &Reader::read_literal},
                                               {"imaginary_literal", &Reader::read_literal},
                                               {"rune_literal", &Reader::read_literal},
                                               {"interpreted_string_literal", &Reader::read_literal},
                                               {"raw_string_literal", &Reader::read_literal},
                                               {"true", &Reader::read_literal},
                                               {"false", &Reader::read_literal},
                                               {"nil", &Reader::read_literal},
                                               {"iota", &Reader::read_literal},
                                           });
    return RULES;
}

syntax::Syntax read_go(std::string_view text, TSNode root) {
    return GoReader(text).read(Node(root));
}

}  // namespace host::sources
