// Types that only doc comments state, as in JavaScript: `@param {Store} a`, `@returns {Item[]}`, `@type {Map<K, V>}`.
// Comments mention no names: what they name is looked up, and no more.
#include "host/sources/ecmascript/ecmascript_doc_comment.h"
#include "host/sources/ecmascript/ecmascript_reader.h"

#include <algorithm>
#include <array>

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

// Reads a type from the text of a tag. What of it cannot be followed makes all of it unknown.
class EcmascriptReader::DocType {
  public:
    DocType(EcmascriptReader& reader, string_view text) : reader_(reader), rest_(text) {}

    // UNKNOWN of `null` and the like, and where nothing can be said.
    ExpressionId read() {
        const ExpressionId type = read_union();
        skip_blanks();
        return is_followed_ && rest_.empty() ? type : UNKNOWN;
    }

  private:
    ExpressionId fail() {
        is_followed_ = false;
        rest_ = {};
        return UNKNOWN;
    }

    // `A | B`
    ExpressionId read_union() {
        if (++depth_ > DEEPEST_DOC_TYPE) {
            return fail();
        }
        std::vector<ExpressionId> types;
        take("|");
        do {
            types.push_back(read_marked());
        } while (take("|"));
        --depth_;
        return reader_.out_.one_of(types);
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
        if (take("(")) {
            const ExpressionId type = read_union();
            return take(")") && !take("=>") ? type : fail();
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
        return name.empty() || name == "typeof" || name == "keyof" ? fail() : read_named(name);
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
            return fail();
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
                arguments.push_back(read_union());
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
    if (!has_types() && is_doc_comment(text(comment)) && text(comment).find("@typedef") != string_view::npos) {
        const DocTags tags = read_doc_tags(text(comment));
        if (tags.type_parameters.empty()) {  // what is made of arguments is not followed
            doc_aliases_.insert(doc_aliases_.end(), tags.aliases.begin(), tags.aliases.end());
        }
    }
}

// Declares the types that comments at the top of the file give names.
void EcmascriptReader::declare_aliases() {
    for (const DocName& alias : doc_aliases_) {
        if (!own_names_.contains(alias.name)) {
            const ExpressionId type = doc_type(alias.type);
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
