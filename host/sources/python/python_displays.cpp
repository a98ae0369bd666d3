// Lists, tuples, dictionaries and comprehensions of Python.
#include "host/sources/python/python_reader.h"

namespace host::sources {

using syntax::ExpressionId;
using syntax::Operation;

std::vector<ExpressionId> PythonReader::read_all(const Node& node) {
    std::vector<ExpressionId> all;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (!ts_node_is_extra(child.raw())) {
            all.push_back(visit(child));
        }
    });
    return all;
}

ExpressionId PythonReader::list_of(ExpressionId element) {
    return out_.instance(out_.add(Operation::LIST, type_of(element)));
}

ExpressionId PythonReader::tuple_of(const std::vector<ExpressionId>& components) {
    std::vector<ExpressionId> types;
    types.reserve(components.size());
    for (const ExpressionId component : components) {
        types.push_back(type_of(component));
    }
    return out_.instance(out_.add(Operation::TUPLE, out_.list(types)));
}

ExpressionId PythonReader::read_list(const Node& node) {
    return list_of(joined(read_all(node)));
}

ExpressionId PythonReader::read_tuple(const Node& node) {
    return tuple_of(read_all(node));
}

ExpressionId PythonReader::read_dictionary(const Node& node) {
    std::vector<ExpressionId> keys;
    std::vector<ExpressionId> values;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (!ts_node_is_extra(child.raw())) {
            const Node key = child.child(fields().key);  // none of `**other`
            keys.push_back(visit(key));
            values.push_back(key.exists() ? visit(child.child(fields().value)) : visit(child));
        }
    });
    const ExpressionId key = type_of(joined(keys));
    return out_.instance(out_.add(Operation::MAP, key, type_of(joined(values))));
}

// The range of the first loop is evaluated outside of the comprehension.
ExpressionId PythonReader::read_comprehension(const Node& node) {
    Node first;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (!first.exists() && child.type() == "for_in_clause") {
            first = child;
        }
    });
    const ExpressionId first_range = visit(first.child(fields().right));
    out_.open_local();
    ++scopes_.back().comprehensions;
    for_each_child(node, [&](const Node& child, TSFieldId field) {
        if (child.type() == "for_in_clause") {
            const ExpressionId range = child == first ? first_range : visit(child.child(fields().right));
            bind_target(child.child(fields().left), out_.add(Operation::ITERATED, range));
        } else if (field != fields().body) {
            visit(child);
        }
    });
    const Node body = node.child(fields().body);
    const Node key = body.child(fields().key);  // of a dictionary
    const ExpressionId key_value = visit(key);
    const ExpressionId value = visit(key.exists() ? body.child(fields().value) : body);
    --scopes_.back().comprehensions;
    out_.close();
    return key.exists() ? out_.instance(out_.add(Operation::MAP, type_of(key_value), type_of(value))) : list_of(value);
}

}  // namespace host::sources
