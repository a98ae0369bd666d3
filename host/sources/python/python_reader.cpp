#include "host/sources/python/python_reader.h"

#include "host/sources/syntax_readers.h"

extern "C" {
const TSLanguage* tree_sitter_python();
}

namespace host::sources {

const PythonReader::Fields& PythonReader::fields() {
    static const auto id = [](std::string_view name) { return field(tree_sitter_python(), name); };
    static const Fields FIELDS{.alias = id("alias"),
                               .arguments = id("arguments"),
                               .attribute = id("attribute"),
                               .body = id("body"),
                               .function = id("function"),
                               .key = id("key"),
                               .left = id("left"),
                               .module_name = id("module_name"),
                               .name = id("name"),
                               .object = id("object"),
                               .operator_ = id("operator"),
                               .parameters = id("parameters"),
                               .return_type = id("return_type"),
                               .right = id("right"),
                               .subscript = id("subscript"),
                               .superclasses = id("superclasses"),
                               .type = id("type"),
                               .type_parameters = id("type_parameters"),
                               .value = id("value")};
    return FIELDS;
}

const NodeRules<PythonReader>& PythonReader::rules() {
    using Reader = PythonReader;
    static const NodeRules<PythonReader> RULES(tree_sitter_python(),
                                               {
                                                   {"decorated_definition", &Reader::read_decorated},
                                                   {"function_definition", &Reader::read_function},
                                                   {"lambda", &Reader::read_lambda},
                                                   {"return_statement", &Reader::read_return},
                                                   {"yield", &Reader::read_yield},
                                                   {"class_definition", &Reader::read_class},

                                                   {"assignment", &Reader::read_assignment},
                                                   {"named_expression", &Reader::read_walrus},
                                                   {"for_statement", &Reader::read_for},
                                                   {"with_statement", &Reader::read_with},
                                                   {"as_pattern", &Reader::read_as_pattern},
                                                   {"global_statement", &Reader::read_global},
                                                   {"nonlocal_statement", &Reader::read_global},

                                                   {"dotted_name", &Reader::read_dotted_pattern},
                                                   {"class_pattern", &Reader::read_class_pattern},
                                                   {"keyword_pattern", &Reader::read_keyword_pattern},
                                                   {"splat_pattern", &Reader::read_splat_pattern},
                                                   {"case_pattern", &Reader::read_inner},

                                                   {"type", &Reader::read_type},
                                                   {"type_alias_statement", &Reader::read_type_alias},

                                                   {"import_statement", &Reader::read_import},
                                                   {"import_from_statement", &Reader::read_import_from},
                                                   {"future_import_statement", &Reader::read_nothing},

                                                   {"identifier", &Reader::read_name},
                                                   {"attribute", &Reader::read_attribute},
                                                   {"call", &Reader::read_call},
                                                   {"subscript", &Reader::read_subscript},
                                                   {"await", &Reader::read_await},
                                                   {"parenthesized_expression", &Reader::read_inner},
                                                   {"boolean_operator", &Reader::read_boolean},
                                                   {"conditional_expression", &Reader::read_conditional},
                                                   {"list", &Reader::read_list},
                                                   {"set", &Reader::read_list},
                                                   {"tuple", &Reader::read_tuple},
                                                   {"expression_list", &Reader::read_tuple},
                                                   {"dictionary", &Reader::read_dictionary},
                                                   {"list_comprehension", &Reader::read_comprehension},
                                                   {"set_comprehension", &Reader::read_comprehension},
                                                   {"generator_expression", &Reader::read_comprehension},
                                                   {"dictionary_comprehension", &Reader::read_comprehension},
                                                   {"string", &Reader::read_literal},
                                                   {"concatenated_string", &Reader::read_literal},
                                                   {"integer", &Reader::read_literal},
                                                   {"float", &Reader::read_literal},
                                                   {"true", &Reader::read_literal},
                                                   {"false", &Reader::read_literal},
                                                   {"none", &Reader::read_literal},
                                                   {"comparison_operator", &Reader::read_literal},
                                                   {"not_operator", &Reader::read_literal},
                                               });
    return RULES;
}

syntax::Syntax read_python(std::string_view text, TSNode root) {
    return PythonReader(text).read(Node(root));
}

}  // namespace host::sources
