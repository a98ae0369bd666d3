// Reads what a file of JavaScript, TypeScript or TSX states about names.
//
// Bodies of classes are not scopes of names: a name in one is looked up around the class. `this` is.
#pragma once

#include "host/sources/ecmascript/ecmascript_dialect.h"
#include "host/sources/ecmascript/ecmascript_doc_comment.h"
#include "host/sources/syntax_reader.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace host::sources {

class EcmascriptReader : public SyntaxReader<EcmascriptReader> {
  public:
    EcmascriptReader(std::string_view text, const TSLanguage* grammar, const NodeRules<EcmascriptReader>& rules);

    [[nodiscard]] const NodeRules<EcmascriptReader>& rules() const { return rules_; }

    /// Reads the tree of the text.
    syntax::Syntax read(const Node& root);

    // The rules by node type: each reads a node and returns what its value is, of a type the type itself.

    // Names and other expressions (expressions.cpp).
    syntax::ExpressionId identifier(const Node& node);
    syntax::ExpressionId this_value(const Node& node);
    syntax::ExpressionId super_value(const Node& node);
    syntax::ExpressionId literal(const Node& node);
    syntax::ExpressionId member(const Node& node);
    syntax::ExpressionId subscript(const Node& node);
    syntax::ExpressionId inner(const Node& node);
    syntax::ExpressionId cast(const Node& node);
    syntax::ExpressionId satisfies(const Node& node);
    syntax::ExpressionId assertion(const Node& node);
    syntax::ExpressionId instantiation(const Node& node);
    syntax::ExpressionId awaited(const Node& node);
    syntax::ExpressionId assignment(const Node& node);
    syntax::ExpressionId binary(const Node& node);
    syntax::ExpressionId parenthesized(const Node& node);
    syntax::ExpressionId ternary(const Node& node);
    syntax::ExpressionId sequence(const Node& node);
    syntax::ExpressionId operation(const Node& node);
    syntax::ExpressionId array(const Node& node);
    syntax::ExpressionId object(const Node& node);
    syntax::ExpressionId element(const Node& node);

    // Calls (calls.cpp).
    syntax::ExpressionId call(const Node& node);
    syntax::ExpressionId creation(const Node& node);

    // Types (types.cpp).
    syntax::ExpressionId type_name(const Node& node);
    syntax::ExpressionId nested_type_name(const Node& node);
    syntax::ExpressionId generic_type(const Node& node);
    syntax::ExpressionId array_type(const Node& node);
    syntax::ExpressionId tuple_type(const Node& node);
    syntax::ExpressionId union_type(const Node& node);
    syntax::ExpressionId function_type(const Node& node);
    syntax::ExpressionId constructor_type(const Node& node);
    syntax::ExpressionId object_type(const Node& node);
    syntax::ExpressionId literal_type(const Node& node);
    syntax::ExpressionId predefined_type(const Node& node);
    syntax::ExpressionId type_query(const Node& node);
    syntax::ExpressionId lookup_type(const Node& node);
    syntax::ExpressionId conditional_type(const Node& node);
    syntax::ExpressionId infer_type(const Node& node);
    syntax::ExpressionId type_predicate(const Node& node);
    syntax::ExpressionId this_type(const Node& node);
    syntax::ExpressionId index_signature(const Node& node);

    // Functions, blocks and what they bind (functions.cpp).
    syntax::ExpressionId function_declaration(const Node& node);
    syntax::ExpressionId function_expression(const Node& node);
    syntax::ExpressionId block(const Node& node);
    syntax::ExpressionId for_in(const Node& node);
    syntax::ExpressionId catch_clause(const Node& node);
    syntax::ExpressionId return_statement(const Node& node);
    syntax::ExpressionId variables(const Node& node);

    // Types that are declared, and their members (declarations.cpp, members.cpp).
    syntax::ExpressionId class_declaration(const Node& node);
    syntax::ExpressionId class_expression(const Node& node);
    syntax::ExpressionId interface_declaration(const Node& node);
    syntax::ExpressionId enum_declaration(const Node& node);
    syntax::ExpressionId type_alias(const Node& node);
    syntax::ExpressionId namespace_declaration(const Node& node);
    syntax::ExpressionId ambient_declaration(const Node& node);
    syntax::ExpressionId method(const Node& node);
    syntax::ExpressionId field_definition(const Node& node);
    syntax::ExpressionId property_signature(const Node& node);
    syntax::ExpressionId call_signature(const Node& node);
    syntax::ExpressionId static_block(const Node& node);

    // Modules (modules.cpp).
    syntax::ExpressionId import_statement(const Node& node);
    syntax::ExpressionId import_alias(const Node& node);
    syntax::ExpressionId export_statement(const Node& node);

    // Comments that document what follows them (documented.cpp).
    syntax::ExpressionId comment(const Node& node);

  private:
    // Where the reader is.
    struct Context {
        syntax::ExpressionId self = syntax::UNKNOWN;               // what `this` is
        syntax::DeclarationId type = syntax::NO_DECLARATION;       // whose members are read
        syntax::DeclarationId container = syntax::NO_DECLARATION;  // that declarations are members of
        std::size_t locals = 0;                                    // local scopes around
        std::size_t blocks = 0;                                    // of these, within the function
        bool is_exported = false;                                  // what is declared
        bool is_static = false;                                    // the member that is read
        bool is_class = false;                                     // the type whose members are read
        syntax::ExpressionId result = syntax::UNKNOWN;             // what the function is to return
        std::vector<syntax::ExpressionId>* returned = nullptr;     // what it returns
    };

    // Puts the context back as it was.
    class Saved {
      public:
        explicit Saved(Context& context) : context_(context), before_(context) {}
        ~Saved() { context_ = before_; }
        Saved(const Saved&) = delete;
        Saved& operator=(const Saved&) = delete;

      private:
        Context& context_;
        Context before_;
    };

    // A scope of locals, of which `var` ignores those of blocks.
    class LocalScope {
      public:
        enum class Of : std::uint8_t { BLOCK, FUNCTION };

        LocalScope(EcmascriptReader& reader, Of of);
        ~LocalScope();
        LocalScope(const LocalScope&) = delete;
        LocalScope& operator=(const LocalScope&) = delete;

      private:
        EcmascriptReader& reader_;
        Context before_;
    };

    // A scope of the parameters of a type.
    class TypeScope {
      public:
        explicit TypeScope(EcmascriptReader& reader) : reader_(reader) { reader.out_.open_local(); }
        ~TypeScope() { reader_.out_.close(); }
        TypeScope(const TypeScope&) = delete;
        TypeScope& operator=(const TypeScope&) = delete;

      private:
        EcmascriptReader& reader_;
    };

    struct Export {
        std::string_view name;
        std::string_view as;
    };

    struct Parameter {
        std::string_view name;
        Node node;
    };

    // What is known of the arguments that a function is called with.
    struct Arguments {
        std::vector<syntax::ExpressionId> known = {};
        syntax::ExpressionId function = syntax::UNKNOWN;  // that the function is to be like
        syntax::ExpressionId self = syntax::UNKNOWN;      // `this`, of one that is assigned to a member
    };

    struct Signature {
        syntax::ExpressionId result = syntax::UNKNOWN;
        syntax::ListId parameters = 0;  // their types
    };

    // What is assigned to a member of `this`.
    struct OwnMember {
        std::uint32_t offset = 0;  // of its name, where it is assigned first
        std::vector<syntax::ExpressionId> values;
        syntax::ExpressionId stated = syntax::UNKNOWN;  // by a comment
    };

    // A comment that documents.
    struct DocComment {
        std::string_view text;
        std::uint32_t end = 0;  // what it documents begins behind this, after blanks
    };

    // What a comment states of a function.
    struct Documented {
        syntax::ExpressionId result = syntax::UNKNOWN;                               // its type
        syntax::ExpressionId self = syntax::UNKNOWN;                                 // the value of `this`
        std::unordered_map<std::string_view, syntax::ExpressionId> parameters = {};  // types by name
        std::vector<syntax::ExpressionId> in_order = {};                             // the same
    };

    class DocType;

    using MemberKey = std::pair<syntax::DeclarationId, std::string_view>;  // its type, its name
    using MergedKey = std::tuple<syntax::DeclarationId, syntax::Kind, std::string_view>;

    // Expressions.
    syntax::ExpressionId visit_expecting(const Node& node, syntax::ExpressionId expected);
    syntax::ExpressionId read_object(const Node& node, syntax::ExpressionId expected);
    syntax::ExpressionId read_pair(const Node& node, syntax::ExpressionId expected);
    syntax::ExpressionId property(syntax::ExpressionId of, const Node& name, syntax::Role role, std::uint8_t arguments);
    syntax::ExpressionId read_array(const Node& node, syntax::ExpressionId expected);
    void read_attribute(const Node& node, syntax::ExpressionId properties);
    [[nodiscard]] std::string_view name_text(const Node& node) const;

    // Calls.
    static std::uint8_t argument_count(const Node& arguments);
    syntax::ExpressionId callee(const Node& node, std::uint8_t arguments);
    syntax::ExpressionId container_call(syntax::ExpressionId of, std::string_view name, syntax::ExpressionId called);
    syntax::ExpressionId read_arguments(const Node& node, syntax::ExpressionId called, std::string_view method,
                                        syntax::ExpressionId of);
    syntax::ExpressionId required_module(const Node& node);
    [[nodiscard]] std::string_view module_of_call(const Node& node) const;

    // Types.
    syntax::ExpressionId value_of_type(const Node& annotation);
    syntax::ExpressionId built_in(std::string_view name, const std::vector<syntax::ExpressionId>& arguments);
    std::vector<syntax::ExpressionId> types_in(const Node& node);
    syntax::ExpressionId qualifier(const Node& node);
    [[nodiscard]] bool is_built_in(std::string_view name) const;

    // Functions.
    std::vector<Parameter> type_parameters(const Node& node);
    void bind_type_parameters(const std::vector<Parameter>& parameters, bool has_bounds);
    syntax::ExpressionId result_type(const Node& node, const std::vector<Parameter>& parameters);
    Signature read_function(const Node& node, const Arguments& arguments);
    syntax::ExpressionId function_value(const Node& node, const Arguments& arguments);
    void read_declared(const Node& node, syntax::DeclarationId declared, syntax::ExpressionId self = syntax::UNKNOWN);
    syntax::ExpressionId argument(const Arguments& arguments, std::size_t at);
    syntax::ExpressionId result_of(syntax::ExpressionId stated, syntax::ExpressionId expected, bool is_async);
    syntax::ListId read_parameters(const Node& node, const Arguments& expected, const Documented& documented);
    syntax::ExpressionId read_parameter(const Node& node, syntax::ExpressionId expected);
    syntax::ExpressionId read_untyped_parameter(const Node& node, std::size_t number, syntax::ExpressionId expected,
                                                const Documented& documented);
    void declare_parameter_property(const Node& node, const Node& name, syntax::ExpressionId value);
    void read_body(const Node& node);
    [[nodiscard]] static bool has_word(const Node& node, std::string_view word);

    // Locals.
    void read_variable(const Node& node, bool is_var);
    void bind_names_in(const Node& parameters);
    void bind_pattern(const Node& pattern, syntax::ExpressionId value, bool is_var);
    void bind_object_pattern(const Node& pattern, syntax::ExpressionId value, bool is_var);
    void bind_array_pattern(const Node& pattern, syntax::ExpressionId value, bool is_var);
    void bind_entries(const Node& pattern, syntax::ExpressionId container, bool is_var);
    void bind_name(const Node& name, syntax::ExpressionId value, bool is_var);

    // Declarations.
    syntax::DeclarationId declare(const Node& name, syntax::Kind kind);
    syntax::DeclarationId declare_hidden_type();
    syntax::DeclarationId declare_merged(const Node& name, syntax::Kind kind);
    syntax::DeclarationId declare_member(const Node& name, syntax::Kind kind);
    void read_class(const Node& node, syntax::DeclarationId type);
    std::vector<syntax::ExpressionId> read_heritage(const Node& node);
    void add_bases(syntax::DeclarationId type, const std::vector<syntax::ExpressionId>& bases);
    void read_members(const Node& body, syntax::DeclarationId type);
    void bind_class_parameters(const Node& node);
    void read_globals(const Node& block);
    void open_namespaces(const Node& name, std::size_t& opened);
    void visit_computed(const Node& name);
    void visit_decorators(const Node& node);
    void read_modifiers(const Node& node);

    // Modules.
    syntax::ExpressionId import(std::string_view name, std::string_view module, std::string_view original,
                                bool is_type = false);
    void read_import_clause(const Node& clause, std::string_view module, bool is_type);
    void read_export_clause(const Node& clause, const Node& source);
    syntax::ExpressionId export_value(const Node& value, std::string_view as);
    void pass_on(std::string_view as, std::string_view name);
    void pass_on_whole();
    void settle_exports();
    void collect_names(const Node& root);
    [[nodiscard]] std::string_view string_value(const Node& node) const;

    // CommonJS (common_js.cpp).
    bool read_required(const Node& name, const Node& initial);
    void bind_required(const Node& pattern, std::string_view module);
    std::optional<syntax::ExpressionId> common_js_export(const Node& left, const Node& right);
    Node exported_as(Node value, std::string_view name);
    [[nodiscard]] bool is_own_exports(const Node& node) const;
    std::optional<syntax::ExpressionId> own_export(const Node& node, syntax::Role role, std::uint8_t arguments);
    static std::string name_of_export(std::string_view name);
    syntax::ExpressionId export_whole(const Node& value);
    syntax::ExpressionId export_property(const Node& property, const Node& value);
    syntax::ExpressionId export_as(const Node& value, std::string_view name);
    void export_members(const Node& object);

    // Members that assignments declare (assigned.cpp).
    [[nodiscard]] Node assigned_value(Node node) const;
    void collect_assigned(const Node& assignment);
    std::optional<syntax::ExpressionId> assigned_member(const Node& left, const Node& right);
    syntax::DeclarationId declare_assigned(const syntax::Declaration& declaration, std::string_view member);
    syntax::ExpressionId read_assigned(const Node& value, syntax::DeclarationId declared, syntax::ExpressionId self);
    void read_constructor(const Node& node, const Node& name);
    syntax::ExpressionId self_of(syntax::DeclarationId type);
    void note_own_member(const Node& left, const Node& right, syntax::ExpressionId value, syntax::ExpressionId stated);
    void settle_own_members();

    // What comments state (documented.cpp, doc_types.cpp).
    void read_comments_among(const Node& node, std::uint32_t others);
    [[nodiscard]] bool is_documented(const Node& node) const;
    void pass_doc(const Node& node, const Node& inner);
    syntax::ExpressionId documented_type(const Node& node);
    syntax::ExpressionId documented_value(const Node& node);
    Documented documented_function(const Node& node);
    void bind_documented_parameters(const Node& type);
    syntax::ExpressionId doc_type(std::string_view text);
    syntax::ExpressionId imported_type(std::string_view module, std::string_view name);
    static std::string name_of_alias(std::string_view name);
    void collect_aliases(const Node& comment);
    void declare_documented_member(syntax::DeclarationId type, std::string_view name, syntax::ExpressionId stated);
    syntax::ExpressionId doc_type_with(std::string_view text, const std::vector<DocName>& members);
    syntax::ExpressionId aliased_type(const DocAlias& alias);
    void declare_aliases();

    /// Whether the language has types and, with them, always classes.
    [[nodiscard]] bool has_types() const { return fields_.return_type != 0; }

    /// How a module is found that is one value: `export = a`, `module.exports = a`.
    static constexpr std::string_view WHOLE_MODULE = "export=";
    static constexpr std::string_view DEFAULT = "default";

    const NodeRules<EcmascriptReader>& rules_;
    EcmascriptFields fields_;
    Context context_;
    bool is_ambient_ = false;                         // in what is only declared
    std::unordered_set<std::string_view> own_names_;  // that the file binds at its top
    std::unordered_set<std::string_view> members_;    // the names of methods of the type that is read
    std::unordered_map<std::string_view, std::vector<syntax::DeclarationId>> top_;
    std::unordered_map<syntax::DeclarationId, std::vector<syntax::ExpressionId>> bases_;
    std::map<MergedKey, syntax::DeclarationId> merged_;             // the first of each
    std::unordered_map<std::string_view, syntax::Import> imports_;  // by the name that they bind
    std::vector<Export> exports_;
    std::unordered_set<std::string_view> constructors_;      // functions to which members are assigned
    std::map<std::string, syntax::DeclarationId> assigned_;  // the first to each member
    std::unordered_map<syntax::ExpressionId, syntax::DeclarationId> types_by_self_;
    std::map<MemberKey, OwnMember> own_members_;
    std::set<MemberKey> declared_members_;
    DocComment doc_;                                                                                // the last one
    std::vector<DocAlias> doc_aliases_;                                                             // of all the file
    std::map<std::pair<std::string_view, std::string_view>, syntax::ExpressionId> imported_types_;  // by module, name
};

}  // namespace host::sources
