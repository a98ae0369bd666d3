#include "host/sources/ecmascript/ecmascript_reader.h"

#include "host/sources/syntax_readers.h"

#include <map>
#include <mutex>

namespace host::sources {

namespace {

using Reader = EcmascriptReader;

NodeRules<Reader> common_rules(const TSLanguage* grammar) {
    return {grammar,
            {
                {"identifier", &Reader::identifier},
                {"shorthand_property_identifier", &Reader::identifier},
                {"shorthand_property_identifier_pattern", &Reader::identifier},
                {"this", &Reader::this_value},
                {"super", &Reader::super_value},
                {"string", &Reader::literal},
                {"number", &Reader::literal},
                {"regex", &Reader::literal},
                {"true", &Reader::literal},
                {"false", &Reader::literal},
                {"null", &Reader::literal},
                {"undefined", &Reader::literal},
                {"meta_property", &Reader::literal},
                {"member_expression", &Reader::member},
                {"subscript_expression", &Reader::subscript},
                {"parenthesized_expression", &Reader::parenthesized},
                {"await_expression", &Reader::awaited},
                {"assignment_expression", &Reader::assignment},
                {"binary_expression", &Reader::binary},
                {"ternary_expression", &Reader::ternary},
                {"sequence_expression", &Reader::sequence},
                {"unary_expression", &Reader::operation},
                {"update_expression", &Reader::operation},
                {"template_string", &Reader::operation},
                {"array", &Reader::array},
                {"object", &Reader::object},
                {"call_expression", &Reader::call},
                {"new_expression", &Reader::creation},
                {"function_declaration", &Reader::function_declaration},
                {"generator_function_declaration", &Reader::function_declaration},
                {"function_expression", &Reader::function_expression},
                {"generator_function", &Reader::function_expression},
                {"arrow_function", &Reader::function_expression},
                {"statement_block", &Reader::block},
                {"for_statement", &Reader::block},
                {"switch_body", &Reader::block},
                {"for_in_statement", &Reader::for_in},
                {"catch_clause", &Reader::catch_clause},
                {"return_statement", &Reader::return_statement},
                {"lexical_declaration", &Reader::variables},
                {"variable_declaration", &Reader::variables},
                {"class_declaration", &Reader::class_declaration},
                {"class", &Reader::class_expression},
                {"method_definition", &Reader::method},
                {"class_static_block", &Reader::static_block},
                {"import_statement", &Reader::import_statement},
                {"export_statement", &Reader::export_statement},
            }};
}

void add_jsx(NodeRules<Reader>& rules) {
    rules.add({{"jsx_opening_element", &Reader::element},
               {"jsx_closing_element", &Reader::element},
               {"jsx_self_closing_element", &Reader::element}});
}

void add_types(NodeRules<Reader>& rules) {
    rules.add({
        {"non_null_expression", &Reader::inner},
        {"as_expression", &Reader::cast},
        {"satisfies_expression", &Reader::satisfies},
        {"instantiation_expression", &Reader::instantiation},
        {"type_identifier", &Reader::type_name},
        {"nested_type_identifier", &Reader::nested_type_name},
        {"generic_type", &Reader::generic_type},
        {"type_annotation", &Reader::inner},
        {"parenthesized_type", &Reader::inner},
        {"readonly_type", &Reader::inner},
        {"optional_type", &Reader::inner},
        {"rest_type", &Reader::inner},
        {"constraint", &Reader::inner},
        {"default_type", &Reader::inner},
        {"omitting_type_annotation", &Reader::inner},
        {"opting_type_annotation", &Reader::inner},
        {"adding_type_annotation", &Reader::inner},
        {"array_type", &Reader::array_type},
        {"tuple_type", &Reader::tuple_type},
        {"union_type", &Reader::union_type},
        {"intersection_type", &Reader::union_type},
        {"function_type", &Reader::function_type},
        {"constructor_type", &Reader::constructor_type},
        {"object_type", &Reader::object_type},
        {"literal_type", &Reader::literal_type},
        {"template_literal_type", &Reader::operation},
        {"index_type_query", &Reader::operation},
        {"predefined_type", &Reader::predefined_type},
        {"type_query", &Reader::type_query},
        {"lookup_type", &Reader::lookup_type},
        {"conditional_type", &Reader::conditional_type},
        {"infer_type", &Reader::infer_type},
        {"type_predicate", &Reader::type_predicate},
        {"type_predicate_annotation", &Reader::inner},
        {"asserts_annotation", &Reader::operation},
        {"this_type", &Reader::this_type},
        {"index_signature", &Reader::index_signature},
        {"function_signature", &Reader::function_declaration},
        {"abstract_class_declaration", &Reader::class_declaration},
        {"interface_declaration", &Reader::interface_declaration},
        {"enum_declaration", &Reader::enum_declaration},
        {"type_alias_declaration", &Reader::type_alias},
        {"internal_module", &Reader::namespace_declaration},
        {"module", &Reader::namespace_declaration},
        {"ambient_declaration", &Reader::ambient_declaration},
        {"method_signature", &Reader::method},
        {"abstract_method_signature", &Reader::method},
        {"public_field_definition", &Reader::field_definition},
        {"property_signature", &Reader::property_signature},
        {"call_signature", &Reader::call_signature},
        {"construct_signature", &Reader::constructor_type},
        {"import_alias", &Reader::import_alias},
    });
}

NodeRules<Reader> rules_for(const TSLanguage* grammar) {
    const auto has = [&](std::string_view type) {
        return ts_language_symbol_for_name(grammar, type.data(), static_cast<std::uint32_t>(type.size()), true) != 0;
    };
    NodeRules<Reader> rules = common_rules(grammar);
    if (has("jsx_element")) {
        add_jsx(rules);
    } else {
        rules.add({{"type_assertion", &Reader::assertion}});  // `<T>x`, which TSX has not
    }
    if (has("type_annotation")) {
        add_types(rules);
    } else {
        rules.add({{"field_definition", &Reader::field_definition}, {"comment", &Reader::comment}});
    }
    return rules;
}

}  // namespace

EcmascriptFields::EcmascriptFields(const TSLanguage* grammar) {
    const auto id = [&](std::string_view field) {
        return ts_language_field_id_for_name(grammar, field.data(), static_cast<std::uint32_t>(field.size()));
    };
    alias = id("alias");
    alternative = id("alternative");
    arguments = id("arguments");
    body = id("body");
    condition = id("condition");
    consequence = id("consequence");
    constraint = id("constraint");
    constructor_ = id("constructor");
    declaration = id("declaration");
    function = id("function");
    index = id("index");
    index_type = id("index_type");
    key = id("key");
    kind = id("kind");
    left = id("left");
    module = id("module");
    name = id("name");
    object = id("object");
    parameter = id("parameter");
    parameters = id("parameters");
    pattern = id("pattern");
    property = id("property");
    return_type = id("return_type");
    right = id("right");
    source = id("source");
    type = id("type");
    type_arguments = id("type_arguments");
    type_parameters = id("type_parameters");
    value = id("value");
}

EcmascriptReader::EcmascriptReader(std::string_view text, const TSLanguage* grammar,
                                   const NodeRules<EcmascriptReader>& rules)
    : SyntaxReader(text, syntax::Visibility::WHOLE_SCOPE), rules_(rules), fields_(grammar) {}

syntax::Syntax EcmascriptReader::read(const Node& root) {
    collect_names(root);
    declare_aliases();
    visit(root);
    settle_exports();
    settle_own_members();
    return out_.finish();
}

syntax::Syntax read_ecmascript(std::string_view text, TSNode root, const TSLanguage* grammar) {
    static std::mutex mutex;
    static std::map<const TSLanguage*, NodeRules<EcmascriptReader>> rules;
    const NodeRules<EcmascriptReader>* own = nullptr;
    {
        const std::scoped_lock lock(mutex);
        const auto found = rules.find(grammar);
        own = found != rules.end() ? &found->second : &rules.emplace(grammar, rules_for(grammar)).first->second;
    }
    return EcmascriptReader(text, grammar, *own).read(Node(root));
}

}  // namespace host::sources
