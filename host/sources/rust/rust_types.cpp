// Types, with those of Rust's library that hold others.
#include "host/sources/rust/rust_reader.h"

#include <array>
#include <unordered_map>

namespace host::sources {

namespace {

using syntax::Operation;
using syntax::Role;
using syntax::Space;

// What types of Rust's library hold by their first arguments.
const std::unordered_map<std::string_view, Operation>& rust_containers() {
    static const std::unordered_map<std::string_view, Operation> containers{
        {"Option", Operation::AWAITABLE},
        {"Result", Operation::AWAITABLE},
        {"Vec", Operation::LIST},
        {"VecDeque", Operation::LIST},
        {"HashSet", Operation::LIST},
        {"BTreeSet", Operation::LIST},
        {"BinaryHeap", Operation::LIST},
        {"LinkedList", Operation::LIST},
        {"HashMap", Operation::MAP},
        {"BTreeMap", Operation::MAP},
        {"Box", Operation::POINTER},
        {"Rc", Operation::POINTER},
        {"Arc", Operation::POINTER},
        {"Cell", Operation::POINTER},
        {"RefCell", Operation::POINTER},
        {"Ref", Operation::POINTER},
        {"RefMut", Operation::POINTER},
        {"Cow", Operation::POINTER},
        {"Mutex", Operation::POINTER},
        {"RwLock", Operation::POINTER},
        {"Pin", Operation::POINTER},
        {"ManuallyDrop", Operation::POINTER},
        {"Iterator", Operation::LIST},
        {"IntoIterator", Operation::LIST},
        {"DoubleEndedIterator", Operation::LIST},
        {"ExactSizeIterator", Operation::LIST},
    };
    return containers;
}

}  // namespace

RustReader::Id RustReader::read_type_name(const Node& node) {
    return path(node, Role::TYPE, Space::TYPE);
}

RustReader::Id RustReader::read_generic_type(const Node& node) {
    const RustFields& at = RustFields::get();
    const Node named = node.child(at.type);
    return generic_of(named, path(named, Role::TYPE, Space::TYPE), node.child(at.type_arguments));
}

RustReader::Id RustReader::generic_of(const Node& named, Id type, const Node& arguments) {
    const RustFields& at = RustFields::get();
    std::vector<Id> given;
    for_each_child(arguments, [&](const Node& child, TSFieldId) {
        if (child.type() == "type_binding") {
            given.push_back(visit(child.child(at.type)));
        } else if (child.type() != "lifetime" && !is_rust_comment(child)) {
            given.push_back(visit(child));
        }
    });
    const Node last = named.child(at.name);
    const std::string_view name = text(last.exists() ? last : named);
    if (given.empty()) {
        return type;
    }
    const auto container = rust_containers().find(name);
    if (container == rust_containers().end() || !may_be_of_library(name)) {
        return out_.add(Operation::GENERIC, type, out_.list(given));
    }
    const bool is_map = container->second == Operation::MAP;
    return out_.add(container->second, given.front(), is_map ? given.back() : 0);
}

// Whether a name that types of the library have is not taken from this crate.
bool RustReader::may_be_of_library(std::string_view type) const {
    const auto found = is_imported_from_own_.find(type);
    return found == is_imported_from_own_.end() || !found->second;
}

RustReader::Id RustReader::read_reference_type(const Node& node) {
    const Id type = visit(node.child(RustFields::get().type));
    return type == syntax::UNKNOWN ? type : out_.add(Operation::POINTER, type);
}

RustReader::Id RustReader::read_array_type(const Node& node) {
    const RustFields& at = RustFields::get();
    visit(node.child(at.length));
    return out_.add(Operation::LIST, visit(node.child(at.element)));
}

RustReader::Id RustReader::read_tuple_type(const Node& node) {
    std::vector<Id> types;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (!is_rust_comment(child)) {
            types.push_back(visit(child));
        }
    });
    return out_.add(Operation::TUPLE, out_.list(types));
}

RustReader::Id RustReader::read_function_type(const Node& node) {
    const RustFields& at = RustFields::get();
    visit(node.child(at.trait));
    for_each_child(node.child(at.parameters), [&](const Node& child, TSFieldId) {
        const Node type = child.child(at.type);
        visit(child.type() == "parameter" ? type : child);
    });
    return out_.add(Operation::FUNCTION, visit(node.child(at.return_type)));
}

RustReader::Id RustReader::read_trait_type(const Node& node) {
    return visit(node.child(RustFields::get().trait));
}

RustReader::Id RustReader::read_bounded_type(const Node& node) {
    std::vector<Id> types;
    add_bounds(node, types);
    return out_.one_of(types);
}

RustReader::Id RustReader::read_primitive_type(const Node& /*node*/) {
    return out_.add(Operation::FOREIGN);
}

// `T as Trait`: what follows is of the trait.
RustReader::Id RustReader::read_qualified_type(const Node& node) {
    const RustFields& at = RustFields::get();
    visit(node.child(at.type));
    return visit(node.child(at.alias));
}

}  // namespace host::sources
