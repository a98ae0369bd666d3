// Types of Python: annotations, also those that are strings, and what stands for a type in values.
#include "host/sources/python/python_reader.h"
#include "host/sources/syntax_tree.h"

namespace host::sources {

using syntax::ExpressionId;
using syntax::Kind;
using syntax::Operation;
using syntax::Role;
using syntax::Space;

ExpressionId PythonReader::read_type(const Node& node) {
    if (!node.exists()) {
        return syntax::UNKNOWN;
    }
    const std::string_view type = node.type();
    if (type == "identifier" || type == "attribute") {
        return read_type_name(node);
    }
    if (type == "generic_type" || type == "subscript") {
        return read_subscripted_type(node);
    }
    if (type == "string") {
        return read_string_type(node);
    }
    const bool is_union = type == "union_type" || type == "binary_operator";
    if (!is_union && type != "type" && type != "parenthesized_expression" && type != "list") {
        return visit(node);
    }
    std::vector<ExpressionId> types;
    for_each_child(node, [&](const Node& child, TSFieldId) { types.push_back(read_type(child)); });
    return is_union || types.size() == 1 ? joined(types) : syntax::UNKNOWN;
}

// Opens a scope for `[T, U: Bound, *V]`, if there are any. Returns their names. Callers choose what they are.
std::vector<std::string_view> PythonReader::open_type_parameters(const Node& list) {
    std::vector<std::string_view> names;
    if (list.exists()) {
        out_.open_local();
    }
    for_each_child(list, [&](const Node& parameter, TSFieldId) {
        const Node stated = parameter.named_child(0);
        const bool is_plain = !stated.exists() || stated.type() == "identifier";
        names.push_back(text(is_plain ? stated : stated.named_child(0)));
        out_.bind(names.back(), syntax::UNKNOWN);
        read_type(is_plain ? Node() : stated.named_child(1));  // the bound
    });
    return names;
}

void PythonReader::close_type_parameters(const Node& list) {
    if (list.exists()) {
        out_.close();
    }
}

ExpressionId PythonReader::read_type_alias(const Node& node) {
    Node left = node.child(fields().left).named_child(0);
    const bool is_generic = left.exists() && left.type() == "generic_type";
    const Node type_parameters = is_generic ? left.named_child(1) : Node();
    left = is_generic ? left.named_child(0) : left;
    open_type_parameters(type_parameters);
    const ExpressionId type = read_type(node.child(fields().right));
    close_type_parameters(type_parameters);
    if (!left.exists() || left.type() != "identifier") {
        return syntax::UNKNOWN;
    }
    if (functions_ > 0) {
        out_.bind(text(left), type);
    } else {
        out_.declare({.name = out_.name(text(left)),
                      .kind = Kind::ALIAS,
                      .parent = scopes_.back().declaration,
                      .type = type,
                      .offset = left.begin()});
    }
    return syntax::UNKNOWN;
}

ExpressionId PythonReader::read_type_name(const Node& node) {
    const ExpressionId name = read_head(node);
    if (const TypingForm form = form_of(node); form != TypingForm::NONE) {
        return type_of_form(form, {}, false);
    }
    const Scope* const type = class_around();
    if (type != nullptr) {
        if (const auto number = type->type_parameters.find(text(node)); number != type->type_parameters.end()) {
            return out_.add(Operation::PARAMETER, syntax::UNKNOWN, number->second);
        }
    }
    return name;
}

// A name of a type, without what stands in brackets behind it.
ExpressionId PythonReader::read_head(const Node& node) {
    if (node.exists() && node.type() == "attribute") {
        const ExpressionId object = visit(node.child(fields().object));
        return out_.use_member(object, token(node.child(fields().attribute), Role::TYPE, Space::TYPE));
    }
    return node.exists() && node.type() == "identifier" ? use(token(node, Role::TYPE, Space::TYPE)) : visit(node);
}

ExpressionId PythonReader::read_subscripted_type(const Node& node) {
    const Node head = node.named_child(0);
    std::vector<Node> arguments;
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (child.type() == "type_parameter") {
            for_each_child(child, [&](const Node& argument, TSFieldId) { arguments.push_back(argument); });
        } else if (field == fields().subscript) {
            arguments.push_back(child);
        }
    });
    const TypingForm form = form_of(head);
    const ExpressionId name = read_head(head);
    std::vector<ExpressionId> types;
    for (const Node& argument : arguments) {
        const bool is_value = form == TypingForm::LITERAL || (form == TypingForm::ANNOTATED && !types.empty());
        types.push_back(is_value ? visit(argument) : read_type(argument));
    }
    if (form == TypingForm::NONE) {
        return out_.add(Operation::GENERIC, name, out_.list(types));
    }
    return type_of_form(form, types, !arguments.empty() && text(arguments.back()) == "...");
}

ExpressionId PythonReader::type_of_form(TypingForm form, const std::vector<ExpressionId>& types, bool is_endless) {
    const auto type = [&](std::size_t at) { return at < types.size() ? types[at] : syntax::UNKNOWN; };
    switch (form) {
    case TypingForm::LIST:
        return out_.add(Operation::LIST, type(0));
    case TypingForm::MAP:
        return out_.add(Operation::MAP, type(0), type(1));
    case TypingForm::TUPLE:
        return is_endless || types.empty() ? out_.add(Operation::LIST, type(0))
                                           : out_.add(Operation::TUPLE, out_.list(types));
    case TypingForm::FIRST:
    case TypingForm::ANNOTATED:
        return type(0);
    case TypingForm::UNION:
        return joined(types);
    case TypingForm::CLASS:
        return type_of(type(0));
    case TypingForm::CALLABLE:
        return out_.add(Operation::FUNCTION, type(1));
    case TypingForm::AWAITABLE:
        return out_.add(Operation::AWAITABLE, type(0));
    case TypingForm::COROUTINE:
        return out_.add(Operation::AWAITABLE, type(2));
    case TypingForm::LITERAL:
        return out_.add(Operation::FOREIGN);
    case TypingForm::SELF:
        if (const Scope* const around = class_around()) {
            return out_.add(Operation::SELF_TYPE, around->declaration);
        }
        break;
    case TypingForm::NONE:
    case TypingForm::PARAMETERS:
    case TypingForm::ALIAS:
        break;
    }
    return syntax::UNKNOWN;
}

// A name of the typing module, and that of a builtin container, unless the file has that name for something else.
TypingForm PythonReader::form_of(const Node& name) const {
    if (!name.exists()) {
        return TypingForm::NONE;
    }
    if (name.type() == "attribute") {
        const bool is_of_typing = typing_modules_.contains(text(name.child(fields().object)));
        return is_of_typing ? typing_form(text(name.child(fields().attribute))) : TypingForm::NONE;
    }
    if (name.type() != "identifier") {
        return TypingForm::NONE;
    }
    if (const auto imported = typing_names_.find(text(name)); imported != typing_names_.end()) {
        return typing_form(imported->second);
    }
    const bool is_builtin = is_builtin_container(text(name)) && !scopes_.front().bindings.contains(text(name));
    return is_builtin ? typing_form(text(name)) : TypingForm::NONE;
}

// Parses a string as an expression where it stands, so that its names have their places.
ExpressionId PythonReader::read_string_type(const Node& node) {
    constexpr std::uint32_t LONGEST = 1'000;  // bytes; nothing in it nests deeper than the stack goes
    const Node content = node.named_children() == 3 ? node.named_child(1) : Node();
    const bool is_plain = content.exists() && content.type() == "string_content" && content.named_children() == 0 &&
                          text(node).find_first_of("\"'") == 0;
    if (!is_plain || content.end() - content.begin() > LONGEST) {
        return visit(node);
    }
    if (parser_ == nullptr) {
        parser_.reset(ts_parser_new());
        ts_parser_set_language(parser_.get(), ts_node_language(node.raw()));
    }
    const TSRange range{.start_point = ts_node_start_point(content.raw()),
                        .end_point = ts_node_end_point(content.raw()),
                        .start_byte = content.begin(),
                        .end_byte = content.end()};
    ts_parser_set_included_ranges(parser_.get(), &range, 1);
    const TSTree* const tree = ts_parser_parse_string(parser_.get(), nullptr, whole_text_.data(),
                                                      static_cast<std::uint32_t>(whole_text_.size()));
    const Node root(ts_tree_root_node(tree));
    const bool is_expression = !ts_node_has_error(root.raw()) && root.named_children() == 1 &&
                               root.named_child(0).type() == "expression_statement";
    return is_expression ? read_type(root.named_child(0).named_child(0)) : syntax::UNKNOWN;
}

}  // namespace host::sources
