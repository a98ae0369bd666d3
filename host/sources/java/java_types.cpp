// Types, with the generic ones of Java's library that hold others.
#include "host/sources/java/java_reader.h"

#include <array>
#include <span>
#include <unordered_map>

namespace host::sources {

namespace {

using syntax::Operation;
using syntax::Role;

// What types of Java's library hold by their first two arguments. What a call of `get` or `next` gives, or a loop,
// is an element.
const std::unordered_map<std::string_view, Operation>& java_containers() {
    static const std::unordered_map<std::string_view, Operation> containers = [] {
        constexpr auto JAVA_LISTS = std::to_array<std::string_view>(
            {"ArrayDeque", "ArrayList",     "AtomicReference", "BlockingQueue", "Collection",   "CopyOnWriteArrayList",
             "Deque",      "EnumSet",       "Enumeration",     "Future",        "HashSet",      "Iterable",
             "Iterator",   "LinkedHashSet", "LinkedList",      "List",          "ListIterator", "NavigableSet",
             "Optional",   "PriorityQueue", "Queue",           "Reference",     "Set",          "SoftReference",
             "SortedSet",  "Stack",         "Stream",          "Supplier",      "ThreadLocal",  "TreeSet",
             "Vector",     "WeakReference"});
        constexpr auto JAVA_MAPS = std::to_array<std::string_view>(
            {"ConcurrentHashMap", "ConcurrentMap", "ConcurrentNavigableMap", "Entry", "EnumMap", "HashMap", "Hashtable",
             "IdentityHashMap", "LinkedHashMap", "Map", "NavigableMap", "SortedMap", "TreeMap", "WeakHashMap"});
        std::unordered_map<std::string_view, Operation> all;
        for (const std::string_view name : JAVA_LISTS) {
            all.emplace(name, Operation::LIST);
        }
        for (const std::string_view name : JAVA_MAPS) {
            all.emplace(name, Operation::MAP);
        }
        return all;
    }();
    return containers;
}

}  // namespace

JavaReader::Id JavaReader::read_type_name(const Node& node) {
    return named_type(node, Role::TYPE);
}

JavaReader::Id JavaReader::read_generic_type(const Node& node) {
    Id type = syntax::UNKNOWN;
    std::string_view name;
    std::vector<Id> arguments;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "type_arguments") {
            for_each_child(child, [&](const Node& argument, TSFieldId) {
                if (!is_java_comment(argument)) {
                    arguments.push_back(visit(argument));
                }
            });
        } else if (!is_java_comment(child)) {
            type = visit(child);
            name = text(child);
        }
    });
    if (arguments.empty()) {
        return type;
    }
    name = name == "Map.Entry" ? "Map" : name;
    if (const auto container = java_containers().find(name);
        container != java_containers().end() && is_of_library(name)) {
        const bool is_map = container->second == Operation::MAP;
        return out_.add({container->second, arguments.front(), is_map ? arguments.back() : 0, out_.name(name)});
    }
    return out_.add(Operation::GENERIC, type, out_.list(arguments));
}

JavaReader::Id JavaReader::read_array_type(const Node& node) {
    const JavaFields& at = JavaFields::get();
    return lists_of(visit(node.child(at.element)), node.child(at.dimensions));
}

JavaReader::Id JavaReader::read_primitive_type(const Node& node) {
    return foreign(text(node));
}

// A type of the language by its name.
JavaReader::Id JavaReader::foreign(std::string_view type) {
    const Id id = out_.add({.operation = Operation::FOREIGN, .name = out_.name(type)});
    primitive_.insert(id);
    primitive_.insert(out_.instance(id));
    return id;
}

JavaReader::Id JavaReader::array_of(Id type) {
    return out_.add({.operation = Operation::LIST, .a = type, .name = out_.name("[]")});
}

JavaReader::Id JavaReader::read_annotated_type(const Node& node) {
    Id type = syntax::UNKNOWN;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (!is_java_comment(child)) {
            type = visit(child);  // the last, behind the annotations
        }
    });
    return type;
}

// Of `? super T` is known what can be put there, not what is there.
JavaReader::Id JavaReader::read_wildcard(const Node& node) {
    Id type = syntax::UNKNOWN;
    bool is_lower_bound = false;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "super") {
            is_lower_bound = true;
        } else if (!is_java_comment(child)) {
            type = visit(child);
        }
    });
    return is_lower_bound ? syntax::UNKNOWN : type;
}

// An array of a type, for each pair of brackets.
JavaReader::Id JavaReader::lists_of(Id type, const Node& dimensions) {
    if (!dimensions.exists()) {
        return type;
    }
    for_each_child(
        dimensions, [&](const Node& child, TSFieldId) { type = child.type() == "[" ? array_of(type) : type; }, true);
    return type;
}

// The type that the text states; UNKNOWN for `var`.
JavaReader::Id JavaReader::declared_type(const Node& type) {
    return text(type) == "var" ? syntax::UNKNOWN : visit(type);
}

}  // namespace host::sources
