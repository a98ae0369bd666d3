// Reads what a Python file states about names.
//
// A name is of the function around it, of the class around it, or of the file. Where it is first bound, a class or a
// file declares it; what is assigned to it there and later together says what it holds.
#pragma once

#include "host/sources/python/typing_forms.h"
#include "host/sources/syntax_reader.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace host::sources {

class PythonReader : public SyntaxReader<PythonReader> {
  public:
    explicit PythonReader(std::string_view text)
        : SyntaxReader(text, syntax::Visibility::WHOLE_SCOPE), whole_text_(text) {}

    static const NodeRules<PythonReader>& rules();

    /// Reads the tree of the text.
    syntax::Syntax read(const Node& root);

  private:
    using ExpressionId = syntax::ExpressionId;
    using DeclarationId = syntax::DeclarationId;

    struct Fields;
    static const Fields& fields();

    // A name of the file, or of a class with the attributes of its instances.
    struct Binding {
        DeclarationId declaration = syntax::NO_DECLARATION;  // that of what is bound first
        std::vector<ExpressionId> values;                    // that are assigned
        bool is_annotated = false;                           // so that what is assigned says no more
        bool is_overload = false;                            // so that the next function of the name is the same
    };

    struct Scope {
        enum class Kind : std::uint8_t { FILE, CLASS, FUNCTION };

        Kind kind = Kind::FILE;
        std::size_t comprehensions = 0;  // between the scope and the node that is read

        // Of the file and of a class.
        std::map<std::string_view, Binding> bindings = {};

        // Of a class.
        DeclarationId declaration = syntax::NO_DECLARATION;
        bool is_hidden = false;  // in a function
        bool is_enumeration = false;
        std::unordered_map<std::string_view, std::uint32_t> type_parameters = {};  // by number

        // Of a function.
        std::string_view self = {};                 // of a method: its first parameter
        ExpressionId self_value = syntax::UNKNOWN;  // of a method: what that is
        std::size_t class_of_self = 0;              // of a method: its class among the scopes
        std::unordered_set<std::string_view> parameters = {};
        std::unordered_set<std::string_view> annotated = {};  // locals, as in Binding
        std::unordered_set<std::string_view> globals = {};
        std::vector<ExpressionId> returned = {};
        std::vector<ExpressionId> yielded = {};
        bool is_generator = false;
    };

    // What is written above a function or class.
    struct Decorators {
        bool is_static = false;
        bool is_of_class = false;
        bool is_property = false;
        bool is_accessor = false;  // `@name.setter`
        bool is_overload = false;
        bool is_context = false;  // `@contextmanager`
        bool is_record = false;   // `@dataclass`
    };

    struct Parameter {
        std::string_view name = {};
        ExpressionId value = syntax::UNKNOWN;
        bool is_annotated = false;
    };

    // Functions (python_functions.cpp).
    ExpressionId read_decorated(const Node& node);
    ExpressionId read_function(const Node& node);
    ExpressionId read_lambda(const Node& node);
    ExpressionId read_return(const Node& node);
    ExpressionId read_yield(const Node& node);
    void read_decorator(const Node& node);
    DeclarationId declare_function(const Node& name, const Decorators& decorators, std::size_t type_scopes);
    void set_self(Scope& function, std::string_view name, const std::vector<Parameter>& parameters,
                  const Decorators& decorators);
    Scope read_body(const Node& body, Scope function, const std::vector<Parameter>& parameters, ExpressionId* value);
    ExpressionId result_of(const Scope& body, ExpressionId stated, bool is_async);
    ExpressionId context_of(ExpressionId generator, bool is_async);
    std::vector<Parameter> read_parameters(const Node& list);
    Parameter read_parameter(const Node& node);

    // Classes (python_classes.cpp).
    ExpressionId read_class(const Node& node);
    void read_bases(const Node& list, Scope& type, Decorators& decorators);
    void number_type_parameters(const Node& list, Scope& type);
    void find_names(const Node& block, Scope& type) const;
    void declare_keywords(const Scope& type, bool is_record);
    [[nodiscard]] const Scope* class_around() const;

    // Bindings (python_bindings.cpp).
    ExpressionId read_assignment(const Node& node);
    ExpressionId read_walrus(const Node& node);
    ExpressionId read_for(const Node& node);
    ExpressionId read_with(const Node& node);
    ExpressionId read_as_pattern(const Node& node);
    ExpressionId read_global(const Node& node);
    void bind_target(const Node& target, ExpressionId value, bool is_annotated = false);
    void bind_name(const Node& name, ExpressionId value, bool is_annotated);
    void bind_attribute(const Node& attribute, ExpressionId value, bool is_annotated);
    static void add_value(Binding& binding, ExpressionId value, bool is_annotated);
    void settle(const Scope& scope);
    [[nodiscard]] const Scope* method_of_self(std::string_view name) const;

    // Patterns of `match` (python_patterns.cpp).
    ExpressionId read_dotted_pattern(const Node& node);
    ExpressionId read_class_pattern(const Node& node);
    ExpressionId read_keyword_pattern(const Node& node);
    ExpressionId read_splat_pattern(const Node& node);
    ExpressionId read_dotted_name(const Node& node);

    // Types (python_types.cpp).
    ExpressionId read_type(const Node& node);
    ExpressionId read_type_alias(const Node& node);
    std::vector<std::string_view> open_type_parameters(const Node& list);
    void close_type_parameters(const Node& list);
    ExpressionId read_type_name(const Node& node);
    ExpressionId read_head(const Node& node);
    ExpressionId read_string_type(const Node& node);
    ExpressionId read_subscripted_type(const Node& node);
    ExpressionId type_of_form(TypingForm form, const std::vector<ExpressionId>& types, bool is_endless);
    [[nodiscard]] TypingForm form_of(const Node& name) const;

    // Imports (python_imports.cpp).
    ExpressionId read_import(const Node& node);
    ExpressionId read_import_from(const Node& node);
    ExpressionId read_nothing(const Node& node);
    void bind_module(const Node& module, const Node& alias);
    void bind_imported(std::string_view module, const Node& original, const Node& alias);
    ExpressionId bind_import(syntax::Import import, std::string_view name);

    // Expressions (python_expressions.cpp).
    ExpressionId read_name(const Node& node);
    ExpressionId use(const syntax::Token& token);
    ExpressionId read_attribute(const Node& node);
    ExpressionId read_subscript(const Node& node);
    ExpressionId read_await(const Node& node);
    ExpressionId read_literal(const Node& node);
    ExpressionId read_inner(const Node& node);
    ExpressionId read_boolean(const Node& node);
    ExpressionId read_conditional(const Node& node);

    // Calls (python_calls.cpp).
    ExpressionId read_call(const Node& node);
    ExpressionId read_cast(const Node& arguments);
    std::vector<ExpressionId> read_arguments(const Node& list, ExpressionId callee);
    ExpressionId call_of_container(ExpressionId container, std::string_view method);
    ExpressionId call_of_builtin(std::string_view name, const std::vector<ExpressionId>& arguments);

    // Displays and comprehensions (python_displays.cpp).
    ExpressionId read_list(const Node& node);
    ExpressionId read_tuple(const Node& node);
    ExpressionId read_dictionary(const Node& node);
    ExpressionId read_comprehension(const Node& node);
    ExpressionId list_of(ExpressionId element);
    ExpressionId tuple_of(const std::vector<ExpressionId>& components);
    std::vector<ExpressionId> read_all(const Node& node);

    // Values (python_values.cpp).
    ExpressionId type_of(ExpressionId value);
    ExpressionId joined(const std::vector<ExpressionId>& values);
    ExpressionId member(ExpressionId of, std::string_view name);

    // The hidden member of a class by which keywords of its constructor are looked up: the class itself where they are
    // the names of its fields, nothing where it has a constructor of its own.
    static constexpr std::string_view KEYWORDS = "()";

    struct ParserDeleter {
        void operator()(TSParser* parser) const { ts_parser_delete(parser); }
    };

    std::string_view whole_text_;
    std::vector<Scope> scopes_{{}};           // around the node that is read; the first is the file
    std::size_t functions_ = 0;               // of these
    Decorators decorators_;                   // of the function or class that is read next
    ExpressionId matched_ = syntax::UNKNOWN;  // the value that a class pattern matches
    std::unordered_map<std::string_view, std::string_view> typing_names_;  // what the library calls a name
    std::unordered_set<std::string_view> typing_modules_;                  // names of its modules
    std::unordered_set<std::string_view> type_variables_;
    std::unique_ptr<TSParser, ParserDeleter> parser_;  // of types in strings
};

// The fields of the grammar.
struct PythonReader::Fields {
    TSFieldId alias;
    TSFieldId arguments;
    TSFieldId attribute;
    TSFieldId body;
    TSFieldId function;
    TSFieldId key;
    TSFieldId left;
    TSFieldId module_name;
    TSFieldId name;
    TSFieldId object;
    TSFieldId operator_;
    TSFieldId parameters;
    TSFieldId return_type;
    TSFieldId right;
    TSFieldId subscript;
    TSFieldId superclasses;
    TSFieldId type;
    TSFieldId type_parameters;
    TSFieldId value;
};

}  // namespace host::sources
