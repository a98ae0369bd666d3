// Classes of Python.
#include "host/sources/python/python_reader.h"

#include <algorithm>
#include <array>
#include <utility>

namespace host::sources {

using syntax::ExpressionId;
using syntax::Kind;
using syntax::Operation;

namespace {

using std::string_view;

// Bases that give their classes a constructor with the fields as keywords.
constexpr std::array<string_view, 3> RECORD_BASES{"BaseModel", "NamedTuple", "TypedDict"};
constexpr std::array<string_view, 5> ENUMERATION_BASES{"Enum", "Flag", "IntEnum", "IntFlag", "StrEnum"};

bool is_last_name_of(const auto& names, string_view dotted) {
    const std::size_t dot = dotted.rfind('.');
    return std::ranges::find(names, dot == string_view::npos ? dotted : dotted.substr(dot + 1)) != names.end();
}

}  // namespace

ExpressionId PythonReader::read_class(const Node& node) {
    Decorators decorators = std::exchange(decorators_, {});
    const Node name = node.child(fields().name);
    Scope& around = scopes_.back();
    Scope type{.kind = Scope::Kind::CLASS, .is_hidden = functions_ > 0};
    const bool is_local = around.kind == Scope::Kind::FUNCTION;
    type.declaration = out_.declare({.name = out_.name(text(name)),
                                     .kind = Kind::TYPE,
                                     .parent = around.declaration,
                                     .offset = name.begin(),
                                     .is_hidden = type.is_hidden,
                                     .is_local = is_local});
    if (is_local) {
        out_.bind(text(name), out_.add(Operation::DECLARATION, type.declaration));
    } else {
        around.bindings.try_emplace(text(name)).first->second.declaration = type.declaration;
    }
    const Node type_parameters = node.child(fields().type_parameters);
    for (const std::string_view parameter : open_type_parameters(type_parameters)) {
        type.type_parameters.try_emplace(parameter, static_cast<std::uint32_t>(type.type_parameters.size()));
    }
    read_bases(node.child(fields().superclasses), type, decorators);
    find_names(node.child(fields().body), type);
    declare_keywords(type, decorators.is_record);
    scopes_.push_back(std::move(type));
    visit(node.child(fields().body));
    settle(scopes_.back());
    scopes_.pop_back();
    close_type_parameters(type_parameters);
    return syntax::UNKNOWN;
}

void PythonReader::read_bases(const Node& list, Scope& type, Decorators& decorators) {
    std::vector<ExpressionId> bases;
    ExpressionId container = syntax::UNKNOWN;
    for_each_child(list, [&](const Node& base, TSFieldId) {
        if (base.type() == "keyword_argument") {
            visit(base.child(fields().value));
            return;
        }
        const bool is_subscripted = base.type() == "subscript";
        const TypingForm form = form_of(is_subscripted ? base.child(fields().value) : base);
        const ExpressionId stated = read_type(base);
        if (form == TypingForm::LIST || form == TypingForm::MAP) {
            container = stated;
        } else if (stated != syntax::UNKNOWN) {
            bases.push_back(stated);
        }
        if (is_subscripted) {
            number_type_parameters(base, type);
        }
        decorators.is_record = decorators.is_record || is_last_name_of(RECORD_BASES, text(base));
        type.is_enumeration = type.is_enumeration || is_last_name_of(ENUMERATION_BASES, text(base));
    });
    out_.declaration(type.declaration).bases = out_.list(bases);
    out_.declaration(type.declaration).type = container;
}

// `class A(Generic[T, U])`, `class A(Base[T])`
void PythonReader::number_type_parameters(const Node& list, Scope& type) {
    const bool is_of_all = form_of(list.child(fields().value)) == TypingForm::PARAMETERS;
    for_each_child(list, [&](const Node& argument, TSFieldId field) {
        if (field == fields().subscript && (is_of_all || type_variables_.contains(text(argument)))) {
            type.type_parameters.try_emplace(text(argument), static_cast<std::uint32_t>(type.type_parameters.size()));
        }
    });
}

// Finds the names that a class itself binds, wherever in it: an attribute of `self` with such a name is no other one.
void PythonReader::find_names(const Node& block, Scope& type) const {
    for_each_child(block, [&](const Node& child, TSFieldId) {
        const string_view kind = child.type();
        if (kind == "function_definition" || kind == "class_definition") {
            type.bindings.try_emplace(text(child.child(fields().name)));
        } else if (kind == "assignment") {
            type.bindings.try_emplace(text(child.child(fields().left)));
        } else if (kind == "block" || kind == "decorated_definition" || kind.ends_with("_statement") ||
                   kind.ends_with("_clause")) {
            find_names(child, type);
        }
    });
}

void PythonReader::declare_keywords(const Scope& type, bool is_record) {
    const bool has_constructor = type.bindings.contains("__init__");
    if (has_constructor || is_record) {
        out_.declare({.name = out_.name(KEYWORDS),
                      .kind = has_constructor ? Kind::VALUE : Kind::ALIAS,
                      .parent = type.declaration,
                      .type = has_constructor ? syntax::UNKNOWN : out_.add(Operation::DECLARATION, type.declaration),
                      .is_hidden = true});
    }
}

// Null outside of classes.
const PythonReader::Scope* PythonReader::class_around() const {
    const auto found = std::find_if(scopes_.rbegin(), scopes_.rend(),
                                    [](const Scope& scope) { return scope.kind == Scope::Kind::CLASS; });
    return found == scopes_.rend() ? nullptr : &*found;
}

}  // namespace host::sources
