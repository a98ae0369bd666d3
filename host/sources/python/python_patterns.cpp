// Patterns of Python's `match`.
#include "host/sources/python/python_reader.h"

namespace host::sources {

using syntax::ExpressionId;
using syntax::Role;

// A name alone is bound to what it matches, one with dots is a value.
ExpressionId PythonReader::read_dotted_pattern(const Node& node) {
    if (node.named_children() == 1) {
        bind_target(node.named_child(0), matched_);
        return syntax::UNKNOWN;
    }
    return read_dotted_name(node);
}

ExpressionId PythonReader::read_dotted_name(const Node& node) {
    ExpressionId value = syntax::UNKNOWN;
    bool is_first = true;
    for_each_child(node, [&](const Node& part, TSFieldId) {
        value = is_first ? use(token(part)) : out_.use_member(value, token(part));
        is_first = false;
    });
    return value;
}

ExpressionId PythonReader::read_class_pattern(const Node& node) {
    const ExpressionId around = matched_;
    ExpressionId instance = syntax::UNKNOWN;
    bool is_first = true;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (is_first) {
            instance = out_.instance(read_dotted_name(child));
        } else {
            const bool has_keyword = child.named_children() > 0 && child.named_child(0).type() == "keyword_pattern";
            matched_ = has_keyword ? instance : syntax::UNKNOWN;
            visit(child);
        }
        is_first = false;
    });
    matched_ = around;
    return instance;
}

// `name=pattern` in a class pattern.
ExpressionId PythonReader::read_keyword_pattern(const Node& node) {
    const ExpressionId around = matched_;
    bool is_first = true;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (is_first) {
            matched_ = out_.use_member(matched_, token(child, Role::KEY));
        } else {
            visit(child);
        }
        is_first = false;
    });
    matched_ = around;
    return syntax::UNKNOWN;
}

ExpressionId PythonReader::read_splat_pattern(const Node& node) {
    bind_target(node.named_child(0), syntax::UNKNOWN);
    return syntax::UNKNOWN;
}

}  // namespace host::sources
