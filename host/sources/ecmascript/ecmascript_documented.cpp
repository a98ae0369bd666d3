// What doc comments say of the declarations and functions that they stand before, where the language has no types.
#include "host/sources/ecmascript/ecmascript_doc_comment.h"
#include "host/sources/ecmascript/ecmascript_reader.h"

#include <utility>

namespace host::sources {

namespace {

using std::string_view;
using syntax::ExpressionId;
using syntax::UNKNOWN;

}  // namespace

// A comment documents what follows it, whatever other comments stand between.
ExpressionId EcmascriptReader::comment(const Node& node) {
    if (is_doc_comment(text(node))) {
        doc_ = {text(node), node.end()};
    } else {
        doc_.end = is_documented(node) ? node.end() : doc_.end;
    }
    return UNKNOWN;
}

// Reads the comments among the `others` children of a node that are read one by one.
void EcmascriptReader::read_comments_among(const Node& node, std::uint32_t others) {
    if (!has_types() && node.named_children() > others) {
        for_each_child(node, [&](const Node& child, TSFieldId) {
            if (child.type() == "comment") {
                visit(child);
            }
        });
    }
}

bool EcmascriptReader::is_documented(const Node& node) const {
    return !doc_.text.empty() && node.exists() && doc_.end <= node.begin() &&
           text(doc_.end, node.begin()).find_first_not_of(" \t\r\n\f\v") == string_view::npos;
}

// Has the comment before a node be that of a node in it, if there is one.
void EcmascriptReader::pass_doc(const Node& node, const Node& inner) {
    if (inner.exists() && is_documented(node)) {
        doc_.end = inner.begin();
    }
}

// The type that the comment before a node states: `@type {T}`.
ExpressionId EcmascriptReader::documented_type(const Node& node) {
    return is_documented(node) ? doc_type(read_doc_tags(doc_.text).type) : UNKNOWN;
}

ExpressionId EcmascriptReader::documented_value(const Node& node) {
    return out_.instance(documented_type(node));
}

// What a comment says of a function, and so of no parameter that begins where the function does.
EcmascriptReader::Documented EcmascriptReader::documented_function(const Node& node) {
    Documented documented;
    if (!is_documented(node)) {
        return documented;
    }
    const DocTags tags = read_doc_tags(std::exchange(doc_, {}).text);
    const TypeScope scope(*this);
    for (const string_view parameter : tags.type_parameters) {
        out_.bind(parameter, UNKNOWN);
    }
    const bool is_getter = node.type() == "method_definition" && has_word(node, "get");
    documented.result = doc_type(is_getter && tags.result.empty() ? tags.type : tags.result);
    documented.self = out_.instance(doc_type(tags.self));
    for (const auto& [name, type, members] : tags.parameters) {
        documented.in_order.push_back(doc_type_with(type, members));
        documented.parameters.emplace(name, documented.in_order.back());
    }
    return documented;
}

// Type parameters of a class, which those who name it may give arguments for.
void EcmascriptReader::bind_documented_parameters(const Node& type) {
    if (is_documented(type)) {
        std::uint32_t number = 0;
        for (const string_view parameter : read_doc_tags(doc_.text).type_parameters) {
            out_.bind(parameter, out_.add(syntax::Operation::PARAMETER, UNKNOWN, number++));
        }
    }
}

}  // namespace host::sources
