#include "host/sources/c/c_reader.h"

#include "host/sources/c/c_alternatives.h"
#include "host/sources/c/c_condition.h"
#include "host/sources/c/c_conditions.h"
#include "host/sources/c/c_mending.h"
#include "host/sources/c/c_scanner.h"
#include "host/sources/c/c_substitutes.h"
#include "host/sources/syntax_readers.h"

extern "C" {
const TSLanguage* tree_sitter_c();
const TSLanguage* tree_sitter_cpp();
}

namespace host::sources {

namespace {

// Those of C++ alone are 0 in C.
TSFieldId c_field(const TSLanguage* language, std::string_view name) {
    return ts_language_field_id_for_name(language, name.data(), static_cast<std::uint32_t>(name.size()));
}

}  // namespace

Node first_child(const Node& node) {
    Node first;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (!first.exists() && child.type() != "comment") {
            first = child;
        }
    });
    return first;
}

bool has_token(const Node& node, std::string_view token) {
    bool is_there = false;
    for_each_child(
        node, [&](const Node& child, TSFieldId) { is_there = is_there || child.type() == token; }, true);
    return is_there;
}

CGrammar::CGrammar(const TSLanguage* language)
    : alternative(field(language, "alternative")), argument(field(language, "argument")),
      arguments(field(language, "arguments")), base(c_field(language, "base")), body(field(language, "body")),
      captures(c_field(language, "captures")), condition(field(language, "condition")),
      consequence(field(language, "consequence")), declarator(field(language, "declarator")),
      default_type(c_field(language, "default_type")), default_value(c_field(language, "default_value")),
      designator(field(language, "designator")), field_name(field(language, "field")),
      function(field(language, "function")), index(c_field(language, "index")), indices(c_field(language, "indices")),
      initializer(field(language, "initializer")), left(field(language, "left")), member(field(language, "member")),
      name(field(language, "name")), operator_name(field(language, "operator")),
      parameters(field(language, "parameters")), path(field(language, "path")),
      placement(c_field(language, "placement")), right(field(language, "right")), scope(c_field(language, "scope")),
      size(field(language, "size")), template_parameters(c_field(language, "template_parameters")),
      type(field(language, "type")), value(field(language, "value")) {}

NodeRules<CReader> CDialect::shared_rules(const TSLanguage* language) {
    using R = CReader;
    return {language,
            {
                // Directives.
                {"preproc_include", &R::read_include},
                {"preproc_def", &R::read_macro},
                {"preproc_function_def", &R::read_macro},
                {"preproc_ifdef", &R::read_condition},
                {"preproc_if", &R::read_level},
                {"preproc_elif", &R::read_level},
                {"preproc_else", &R::read_level},
                {"preproc_call", &R::ignore},
                // Declarations.
                {"declaration_list", &R::read_level},
                {"declaration", &R::read_declaration},
                {"field_declaration", &R::read_declaration},
                {"function_definition", &R::read_function},
                {"parameter_declaration", &R::read_parameter},
                {"type_definition", &R::read_type_definition},
                {"attribute_specifier", &R::ignore},
                {"attribute_declaration", &R::ignore},
                {"ms_declspec_modifier", &R::ignore},
                // Types.
                {"type_identifier", &R::read_type_name},
                {"type_descriptor", &R::read_described_type},
                {"primitive_type", &R::read_builtin_type},
                {"sized_type_specifier", &R::read_builtin_type},
                {"struct_specifier", &R::read_free_specifier},
                {"union_specifier", &R::read_free_specifier},
                {"enum_specifier", &R::read_free_specifier},
                {"enumerator", &R::read_enumerator},
                // Expressions.
                {"identifier", &R::read_identifier},
                {"string_literal", &R::read_literal},
                {"char_literal", &R::read_literal},
                {"number_literal", &R::read_literal},
                {"field_expression", &R::read_field},
                {"call_expression", &R::read_call},
                {"assignment_expression", &R::read_assignment},
                {"cast_expression", &R::read_cast},
                {"pointer_expression", &R::read_pointer_operation},
                {"subscript_expression", &R::read_element},
                {"parenthesized_expression", &R::read_inner},
                {"comma_expression", &R::read_inner},
                {"update_expression", &R::read_inner},
                {"conditional_expression", &R::read_conditional},
                {"binary_expression", &R::read_binary},
                {"compound_literal_expression", &R::read_compound_literal},
                {"initializer_list", &R::read_initializer_list},
                {"offsetof_expression", &R::read_offset},
                // Statements.
                {"compound_statement", &R::read_block},
                {"for_statement", &R::read_block},
                {"if_statement", &R::read_block},
                {"while_statement", &R::read_block},
                {"switch_statement", &R::read_block},
            }};
}

const CDialect& CDialect::c() {
    static const CDialect dialect = [] {
        CDialect made{.fields = CGrammar(tree_sitter_c()), .rules = shared_rules(tree_sitter_c()), .is_cpp = false};
        made.rules.add({
            {"macro_type_specifier", &CReader::read_macro_type},
            {"true", &CReader::read_identifier},  // a macro, like "false"
            {"false", &CReader::read_identifier},
        });
        return made;
    }();
    return dialect;
}

const CDialect& CDialect::cpp() {
    using R = CReader;
    static const CDialect dialect = [] {
        CDialect made{.fields = CGrammar(tree_sitter_cpp()), .rules = shared_rules(tree_sitter_cpp()), .is_cpp = true};
        made.rules.add({
            {"namespace_definition", &R::read_namespace},
            {"namespace_alias_definition", &R::read_namespace_alias},
            {"using_declaration", &R::read_using},
            {"alias_declaration", &R::read_alias},
            {"template_declaration", &R::read_template},
            {"friend_declaration", &R::read_friend},
            {"concept_definition", &R::read_concept},
            {"class_specifier", &R::read_free_specifier},
            {"optional_parameter_declaration", &R::read_parameter},
            {"variadic_parameter_declaration", &R::read_parameter},
            {"placeholder_type_specifier", &R::read_deduced_type},
            {"decltype", &R::read_type_of_value},
            {"qualified_identifier", &R::read_qualified},
            {"template_type", &R::read_template_type},
            {"template_function", &R::read_template_function},
            {"dependent_type", &R::read_inner},
            {"field_initializer", &R::read_field_initializer},
            {"raw_string_literal", &R::read_literal},
            {"this", &R::read_this},
            {"new_expression", &R::read_new},
            {"lambda_expression", &R::read_lambda},
            {"condition_clause", &R::read_inner},
            {"for_range_loop", &R::read_range_loop},
            {"catch_clause", &R::read_block},
        });
        return made;
    }();
    return dialect;
}

// What the tree was made without names things of the file, too.
syntax::Syntax CReader::read_file(TSNode root) {
    const CTokens scanned = scan_c(text_);
    CCompiled compiled = compiled_c(text_, scanned);
    const std::vector<LooseMacro> macros = loose_macros(text_, scanned);
    const std::vector<CSplit> splits = split_parts(text_, scanned, compiled.regions);
    out_.set_regions(std::move(compiled.regions));
    const auto begins_at = [&](std::size_t at) {
        const auto begin = static_cast<std::uint32_t>(at);
        return Node(ts_node_descendant_for_byte_range(root, begin, begin + 1)).begin() == begin;
    };
    const bool is_mended = macros.empty()
                               ? !splits.empty() && !begins_at(splits.front().begin)
                               : !begins_at(static_cast<std::size_t>(macros.front().name.data() - text_.data()));
    if (is_mended) {
        for (const LooseMacro& macro : macros) {
            out_.use({.name = macro.name,
                      .offset = static_cast<std::uint32_t>(macro.name.data() - text_.data()),
                      .line = macro.line,
                      .role = macro.is_called ? syntax::Role::CALL : syntax::Role::VALUE,
                      .space = syntax::Space::TYPE});
        }
        read_calls_in(splits, scanned);
        read_conditions_in(splits, scanned);
    }
    const std::vector<CBody> bodies =
        ts_node_has_error(root) ? bodies_of_functions(text_, scanned, splits) : std::vector<CBody>();
    bodies_ = bodies;
    read_level(Node(root));
    syntax::Syntax stated = out_.finish();
    join_alternatives(stated, dialect_.is_cpp);
    mark_substitutes(stated, compiled.branches);
    return stated;
}

// Of functions: all else may be a local or a member.
void CReader::read_calls_in(const std::vector<CSplit>& splits, const CTokens& scanned) {
    const std::vector<CToken>& tokens = scanned.tokens;
    const auto begins_with = [&](std::size_t at, std::string_view marks) {
        return at < tokens.size() && marks.find(text_[tokens[at].begin]) != std::string_view::npos;
    };
    std::size_t at = 0;
    for (const CSplit& split : splits) {
        for (; at < tokens.size() && tokens[at].begin < split.end; ++at) {
            const std::string_view word = text_.substr(tokens[at].begin, tokens[at].end - tokens[at].begin);
            const bool is_member = at > 0 && begins_with(at - 1, ".>");
            if (tokens[at].begin >= split.begin && tokens[at].is_word && begins_with(at + 1, "(") && !is_member &&
                !is_c_keyword(word)) {
                out_.use({.name = word,
                          .offset = static_cast<std::uint32_t>(tokens[at].begin),
                          .line = tokens[at].line,
                          .role = syntax::Role::CALL});
            }
        }
    }
}

// The names of the directives.
void CReader::read_conditions_in(const std::vector<CSplit>& splits, const CTokens& scanned) {
    auto directive = scanned.directives.begin();
    for (const CSplit& split : splits) {
        for (; directive != scanned.directives.end() && directive->begin < split.end; ++directive) {
            std::string_view condition = text_.substr(directive->begin + 1, directive->end - directive->begin - 1);
            const std::string_view keyword = cut_word(condition);
            if (directive->begin < split.begin || !(keyword.starts_with("if") || keyword == "elif")) {
                continue;
            }
            for (const CToken& token : scan_c(condition).tokens) {
                const std::string_view word = condition.substr(token.begin, token.end - token.begin);
                if (token.is_word && word != "defined") {
                    out_.use({.name = word,
                              .offset = static_cast<std::uint32_t>(word.data() - text_.data()),
                              .line = directive->line + token.line - 1});
                }
            }
        }
    }
}

syntax::Syntax read_c(std::string_view text, TSNode root) {
    return CReader(text, CDialect::c()).read_file(root);
}

syntax::Syntax read_cpp(std::string_view text, TSNode root) {
    return CReader(text, CDialect::cpp()).read_file(root);
}

}  // namespace host::sources
