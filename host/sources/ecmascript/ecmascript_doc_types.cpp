// Types that only doc comments state, as in JavaScript: `@param {Store} a`, `@returns {Item[]}`, `@type {Map<K, V>}`.
// Comments mention no names: what they name is looked up, and no more.
#include "host/sources/ecmascript/ecmascript_doc_comment.h"
#include "host/sources/ecmascript/ecmascript_reader.h"

#include <algorithm>
#include <array>
#include <utility>

namespace host::sources {

namespace {

using std::string_view;
using syntax::ExpressionId;
using syntax::Operation;
using syntax::Space;
using syntax::UNKNOWN;

constexpr string_view DOC_TYPE_BLANKS = " \t\r\n\f\v";
constexpr std::size_t DEEPEST_DOC_TYPE = 20;

constexpr std::array<string_view, 3> NOTHING_TYPES{"null", "undefined", "void"};
// Types that have any member, or members that are not followed.
constexpr std::array<string_view, 6> OPEN_TYPES{"any", "Function", "never", "object", "Object", "unknown"};
constexpr std::array<string_view, 10> PRIMITIVE_TYPES{"bigint", "boolean", "Boolean", "false",  "Number",
                                                      "number", "RegExp",  "string",  "String", "true"};

}  // namespace

// Reads a type from the text of a tag. What cannot be read makes all of it unknown.
class EcmascriptReader::DocType {
  public:
    DocType(EcmascriptReader& reader, string_view text) : reader_(reader), rest_(text) {}

    // UNKNOWN of `null` and the like, and where nothing can be said.
    ExpressionId read() {
        const ExpressionId type = read_inner();
        skip_blanks();
        return is_followed_ && rest_.empty() ? type : UNKNOWN;
    }

  private:
    ExpressionId fail() {
        is_followed_ = false;
        rest_ = {};
        return UNKNOWN;
    }

    // A type that may be open, and then is unknown, whatever stands around it.
    ExpressionId read_inner() {
        const bool is_open = std::exchange(is_open_, false);
        const ExpressionId type = read_union();
        return std::exchange(is_open_, is_open) ? UNKNOWN : type;
    }

    // `A | B`
    ExpressionId read_union() {
        if (++depth_ > DEEPEST_DOC_TYPE) {
            return fail();
        }
        std::vector<ExpressionId> types;
        take("|");
        do {
            types.push_back(read_intersection());
        } while (take("|"));
        --depth_;
        return reader_.out_.one_of(types);
    }

    // `A & B` has the members of both, of whatever else one may have.
    ExpressionId read_intersection() {
        const bool is_open = is_open_;
        std::vector<ExpressionId> types;
        do {
            types.push_back(read_marked());
        } while (take("&"));
        const ExpressionId all = reader_.out_.one_of(types);
        is_open_ = types.size() > 1 && all != UNKNOWN ? is_open : is_open_;
        return all;
    }

    // `?T`, `!T`, `T=`, `...T`: a further argument of a function is in a list of such.
    ExpressionId read_marked() {
        const bool is_rest = take("...");
        while (take("?") || take("!")) {
        }
        const ExpressionId type = read_array();
        while (take("?") || take("!") || take("=")) {
        }
        return is_rest && type != UNKNOWN ? reader_.out_.add(Operation::LIST, type) : type;
    }

    // `T[]`
    ExpressionId read_array() {
        ExpressionId type = read_primary();
        while (take("[")) {
            type = take("]") ? reader_.out_.add(Operation::LIST, type) : fail();
        }
        return type;
    }

    ExpressionId read_primary() {
        skip_blanks();
        if (begins_arrow()) {
            return read_arrow();
        }
        if (take("(")) {
            const ExpressionId type = read_union();
            return take(")") ? type : fail();
        }
        if (take("{")) {
            return read_object();
        }
        if (const string_view quote = rest_.substr(0, 1); quote == "'" || quote == "\"") {
            take_string();
            return reader_.out_.add(Operation::FOREIGN);
        }
        const string_view name = take_name();
        if (name == "import") {
            return read_import();
        }
        if (name == "this") {
            return reader_.this_type({});
        }
        if (name == "typeof") {
            return read_type_of();
        }
        if (name == "function" && take("(")) {
            return read_function();
        }
        return name.empty() || name == "keyof" || name == "new" || name == "asserts" ? fail() : read_named(name);
    }

    // Whether `(a: A) => B` comes next: whether "=>" stands behind the parenthesis that is opened.
    [[nodiscard]] bool begins_arrow() const {
        std::size_t depth = 0;
        for (std::size_t at = 0; at < rest_.size() && rest_.front() == '('; ++at) {
            depth += rest_[at] == '(' ? 1 : 0;
            depth -= rest_[at] == ')' ? 1 : 0;
            if (depth == 0) {
                const std::size_t next = rest_.find_first_not_of(DOC_TYPE_BLANKS, at + 1);
                return next != string_view::npos && rest_.substr(next).starts_with("=>");
            }
        }
        return false;
    }

    // `(a: A, b?: B) => C`
    ExpressionId read_arrow() {
        std::vector<ExpressionId> parameters;
        for (take("("); is_followed_ && !take(")"); take(",")) {
            const bool is_rest = take("...");
            if (take_name().empty()) {  // a pattern
                return fail();
            }
            take("?");
            const ExpressionId type = take(":") ? read_inner() : UNKNOWN;
            parameters.push_back(is_rest ? UNKNOWN : type);
        }
        take("=>");
        const ExpressionId result = read_inner();
        return reader_.out_.add(Operation::FUNCTION, result, reader_.out_.list(parameters));
    }

    // `function(A, B): C`
    ExpressionId read_function() {
        std::vector<ExpressionId> parameters;
        for (; is_followed_ && !take(")"); take(",")) {
            parameters.push_back(read_inner());
        }
        const ExpressionId result = take(":") ? read_inner() : UNKNOWN;
        return reader_.out_.add(Operation::FUNCTION, result, reader_.out_.list(parameters));
    }

    // `{a: A, b?: B}`
    ExpressionId read_object() {
        const syntax::DeclarationId type = reader_.declare_hidden_type();
        while (is_followed_ && !take("}")) {
            const string_view name = take_name();
            take("?");
            if (name.empty() || !take(":")) {
                return fail();
            }
            reader_.declare_documented_member(type, name, read_inner());
            static_cast<void>(take(",") || take(";"));
        }
        return reader_.out_.add(Operation::DECLARATION, type);
    }

    // `typeof a.b`
    ExpressionId read_type_of() {
        const string_view name = take_name();
        if (name.empty() || name == "import") {
            return fail();
        }
        ExpressionId value = reader_.out_.look_up(name, Space::VALUE);
        while (take(".")) {
            value = reader_.out_.add(
                {Operation::MEMBER, value, static_cast<std::uint32_t>(Space::VALUE), reader_.out_.name(take_name())});
        }
        return reader_.out_.add(Operation::TYPE_OF, value);
    }

    // `import("m")`, `import("m").T`
    ExpressionId read_import() {
        const bool is_call = take("(");
        const string_view module = take_string();
        if (!is_call || module.empty() || !take(")")) {
            return fail();
        }
        const string_view name = take(".") ? take_name() : string_view();
        return read_generic(read_members(reader_.imported_type(module, name)));
    }

    ExpressionId read_named(string_view name) {
        skip_blanks();
        const bool is_own = reader_.own_names_.contains(name);
        if (!is_own && is_one_of(name, NOTHING_TYPES)) {
            return UNKNOWN;
        }
        if (!is_own && is_one_of(name, PRIMITIVE_TYPES)) {
            return reader_.out_.add(Operation::FOREIGN);
        }
        if (!is_own && (reader_.is_built_in(name) || is_one_of(name, OPEN_TYPES))) {
            return read_built_in(name);
        }
        const bool is_qualified = rest_.starts_with('.') && !rest_.starts_with(".<");
        const ExpressionId type = reader_.out_.look_up(name, is_qualified ? Space::QUALIFIER : Space::TYPE);
        return read_generic(read_members(type));
    }

    // `Map<K, V>`, `Array.<T>`, `Object<K, V>`
    ExpressionId read_built_in(string_view name) {
        const std::vector<ExpressionId> arguments = read_arguments();
        const bool is_known = std::ranges::any_of(arguments, [](ExpressionId each) { return each != UNKNOWN; });
        if (!is_known || (is_one_of(name, OPEN_TYPES) && name != "Object")) {
            is_open_ = true;
            return UNKNOWN;
        }
        return reader_.built_in(name == "Object" ? "Record" : name, arguments);
    }

    // `.a.T` of `type`
    ExpressionId read_members(ExpressionId type) {
        while (rest_.starts_with('.') && !rest_.starts_with(".<")) {
            rest_.remove_prefix(1);
            const string_view name = take_name();
            const bool is_last = !rest_.starts_with('.') || rest_.starts_with(".<");
            type = reader_.out_.add({Operation::MEMBER, type,
                                     static_cast<std::uint32_t>(is_last ? Space::TYPE : Space::QUALIFIER),
                                     reader_.out_.name(name)});
        }
        return type;
    }

    ExpressionId read_generic(ExpressionId type) {
        const std::vector<ExpressionId> arguments = read_arguments();
        return arguments.empty() ? type : reader_.out_.add(Operation::GENERIC, type, reader_.out_.list(arguments));
    }

    // `<A, B>`, `.<A, B>`
    std::vector<ExpressionId> read_arguments() {
        std::vector<ExpressionId> arguments;
        if (take("<") || take(".<")) {
            do {
                arguments.push_back(read_inner());
            } while (take(","));
            if (!take(">")) {
                fail();
            }
        }
        return arguments;
    }

    string_view take_name() {
        skip_blanks();
        std::size_t size = 0;
        while (size < rest_.size() && is_doc_name_letter(rest_[size])) {
            ++size;
        }
        const string_view name = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return name;
    }

    // The text of a string without its quotes.
    string_view take_string() {
        skip_blanks();
        const std::size_t end = rest_.empty() ? string_view::npos : rest_.find(rest_.front(), 1);
        if (end == string_view::npos) {
            fail();
            return {};
        }
        const string_view value = rest_.substr(1, end - 1);
        rest_.remove_prefix(end + 1);
        return value;
    }

    bool take(string_view wanted) {
        skip_blanks();
        const bool is_there = rest_.starts_with(wanted);
        rest_.remove_prefix(is_there ? wanted.size() : 0);
        return is_there;
    }

    // A line of a comment may begin with "*".
    void skip_blanks() {
        while (!rest_.empty() && DOC_TYPE_BLANKS.find(rest_.front()) != string_view::npos) {
            const std::size_t blanks = std::min(rest_.find_first_not_of(DOC_TYPE_BLANKS), rest_.size());
            const bool is_line = rest_.substr(0, blanks).find('\n') != string_view::npos;
            rest_.remove_prefix(blanks);
            rest_.remove_prefix(is_line && rest_.starts_with('*') ? 1 : 0);
        }
    }

    EcmascriptReader& reader_;
    string_view rest_;
    std::size_t depth_ = 0;
    bool is_followed_ = true;
    bool is_open_ = false;  // whether what is being read may have any member
};

ExpressionId EcmascriptReader::doc_type(string_view text) {
    return text.empty() ? UNKNOWN : DocType(*this, text).read();
}

// A type of another module, which a comment may take without an import: one that has its name in a comment there, too,
// or what the module exports.
ExpressionId EcmascriptReader::imported_type(string_view module, string_view name) {
    const auto [known, is_new] = imported_types_.try_emplace({module, name}, UNKNOWN);
    if (is_new) {
        const auto import = [&](string_view original) {
            return out_.add(Operation::IMPORT, out_.import({.module = out_.name(module),
                                                            .original = out_.name(original),
                                                            .is_type = true,
                                                            .is_in_function = true,
                                                            .is_in_comment = true}));
        };
        const ExpressionId exported = import(name);
        known->second = name.empty() ? exported : out_.one_of(std::array{import(name_of_alias(name)), exported});
    }
    return known->second;
}

// The name under which comments in other files find a type that a comment names. No code imports it under this.
std::string EcmascriptReader::name_of_alias(string_view name) {
    return "typedef " + std::string(name);
}

// Notes the types to which a comment at the top of the file gives names.
void EcmascriptReader::collect_aliases(const Node& comment) {
    const string_view text = this->text(comment);
    const bool may_name_types =
        text.find("@typedef") != string_view::npos || text.find("@callback") != string_view::npos;
    if (!has_types() && is_doc_comment(text) && may_name_types) {
        const DocTags tags = read_doc_tags(text);
        if (tags.type_parameters.empty()) {  // what is made of arguments is not followed
            doc_aliases_.insert(doc_aliases_.end(), tags.aliases.begin(), tags.aliases.end());
        }
    }
}

void EcmascriptReader::declare_documented_member(syntax::DeclarationId type, string_view name, ExpressionId stated) {
    out_.declare({.name = out_.name(name),
                  .kind = syntax::Kind::VALUE,
                  .parent = type,
                  .type = out_.instance(stated),
                  .is_hidden = true});
}

// The type that a tag states, of which further tags may state the members.
ExpressionId EcmascriptReader::doc_type_with(string_view text, const std::vector<DocName>& members) {
    const bool is_object = text.empty() || text == "Object" || text == "object";
    if (!is_object || members.empty()) {
        return doc_type(text);
    }
    const syntax::DeclarationId type = declare_hidden_type();
    for (const DocName& member : members) {
        declare_documented_member(type, member.name, doc_type_with(member.type, member.members));
    }
    return out_.add(Operation::DECLARATION, type);
}

// The type that a comment gives a name.
ExpressionId EcmascriptReader::aliased_type(const DocAlias& alias) {
    if (!alias.is_function) {
        return doc_type_with(alias.type, alias.properties);
    }
    std::vector<ExpressionId> parameters;
    for (const auto& [name, type, members] : alias.parameters) {
        parameters.push_back(doc_type_with(type, members));
    }
    return out_.add(Operation::FUNCTION, doc_type(alias.result), out_.list(parameters));
}

// Declares the types that comments at the top of the file give names.
void EcmascriptReader::declare_aliases() {
    for (const DocAlias& alias : doc_aliases_) {
        if (!own_names_.contains(alias.name)) {
            const ExpressionId type = aliased_type(alias);
            out_.declare({.name = out_.name(alias.name),
                          .kind = syntax::Kind::ALIAS,
                          .type = type,
                          .is_private = true,
                          .is_hidden = true});
            out_.declare({.name = out_.name(name_of_alias(alias.name)),
                          .kind = syntax::Kind::ALIAS,
                          .type = type,
                          .is_hidden = true});
        }
    }
}

}  // namespace host::sources
