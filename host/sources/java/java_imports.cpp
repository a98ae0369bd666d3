// Packages, imports, and names of types with what stands before them.
#include "host/sources/java/java_reader.h"

#include "host/text/ascii.h"

#include <algorithm>

namespace host::sources {

namespace {

using syntax::Operation;
using syntax::Role;
using syntax::Space;

// The names of `a.b.c`, written as an identifier or as a type, without what else stands among them.
void add_java_segments(const Node& node, std::vector<Node>& segments) {
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "identifier" || child.type() == "type_identifier") {
            segments.push_back(child);
        } else if (child.type() == "scoped_identifier" || child.type() == "scoped_type_identifier" ||
                   child.type() == "generic_type") {
            add_java_segments(child, segments);
        }
    });
}

std::vector<Node> java_segments(const Node& node) {
    std::vector<Node> segments;
    if (node.named_children() == 0) {
        segments.push_back(node);
    } else {
        add_java_segments(node, segments);
    }
    return segments;
}

// Names of types begin so, and names of packages do not.
bool is_capitalized(std::string_view name) {
    return !name.empty() && name.front() >= 'A' && name.front() <= 'Z';
}

}  // namespace

std::string JavaReader::joined(const std::vector<Node>& segments, std::size_t count) const {
    std::string text;
    for (std::size_t at = 0; at < count; ++at) {
        text.append(at == 0 ? "" : ".").append(this->text(segments[at]));
    }
    return text;
}

JavaReader::Id JavaReader::read_package(const Node& node) {
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (child.type() == "identifier" || child.type() == "scoped_identifier") {
            const std::vector<Node> segments = java_segments(child);
            out_.set_package(joined(segments, segments.size()));
            package_roots_.insert(text(segments.front()));
        } else {
            visit(child);
        }
    });
    return syntax::UNKNOWN;
}

// The classes around what is imported are named by it, too.
JavaReader::Id JavaReader::read_import(const Node& node) {
    std::vector<Node> segments;
    bool is_star = false;
    bool is_static = false;
    for_each_child(
        node,
        [&](const Node& child, TSFieldId) {
            is_star = is_star || child.type() == "asterisk";
            is_static = is_static || child.type() == "static";
            if (child.type() == "identifier" || child.type() == "scoped_identifier") {
                segments = java_segments(child);
            }
        },
        true);
    if (segments.empty()) {
        return syntax::UNKNOWN;
    }
    package_roots_.insert(text(segments.front()));
    const std::size_t last = segments.size() - 1;
    for (std::size_t at = 1; at < last + (is_star ? 1 : 0); ++at) {
        if (is_capitalized(text(segments[at]))) {
            type_of_package(joined(segments, at), segments[at], Role::IMPORT);
        }
    }
    if (is_star) {
        const std::string all = joined(segments, segments.size());
        out_.import({.module = out_.name(all), .is_star = true});
        imported_packages_.push_back(all);
        return syntax::UNKNOWN;
    }
    const std::string from = joined(segments, last);
    const std::string_view name = text(segments[last]);
    const auto import = [&](std::string_view original) {
        const syntax::NameId id = out_.name(original);
        return out_.add(Operation::IMPORT, out_.import({.name = id, .module = out_.name(from), .original = id}));
    };
    Id imported = import(name);
    if (is_static) {  // of one name there can be a method, too; names of methods begin small
        const Id method = import(method_name(name));
        imported = is_capitalized(name) ? imported : method;
    } else {
        imported_from_.emplace(name, from);
    }
    out_.mention(imported, token(segments[last], Role::IMPORT));
    return syntax::UNKNOWN;
}

// A service of a module, or what provides it.
JavaReader::Id JavaReader::read_service(const Node& node) {
    for_each_child(node, [&](const Node& child, TSFieldId) {
        if (!is_java_comment(child)) {
            type_named(java_segments(child), Role::TYPE);
        }
    });
    return syntax::UNKNOWN;
}

/// A type by its name, with or without what stands before it: `Map.Entry`, `java.util.Map`. What is generic is read
/// without its arguments.
JavaReader::Id JavaReader::named_type(const Node& node, Role role) {
    return type_named(java_segments(node), role);
}

JavaReader::Id JavaReader::type_named(const std::vector<Node>& segments, Role role) {
    if (segments.empty()) {
        return syntax::UNKNOWN;
    }
    const std::size_t last = segments.size() - 1;
    if (last == 0) {
        return out_.use(token(segments.front(), role, Space::TYPE));
    }
    std::size_t at = 0;
    Id type = syntax::UNKNOWN;
    if (!is_capitalized(text(segments.front()))) {
        while (at < last && !is_capitalized(text(segments[at]))) {
            ++at;
        }
        type = type_of_package(joined(segments, at), segments[at], at == last ? role : Role::TYPE);
    } else {
        type = out_.use(token(segments.front(), Role::TYPE, Space::QUALIFIER));
    }
    for (++at; at <= last; ++at) {
        type = out_.use_member(
            type, token(segments[at], at == last ? role : Role::TYPE, at == last ? Space::TYPE : Space::QUALIFIER));
    }
    return type;
}

/// The last name of a type, or of what holds nothing but a type.
std::string_view JavaReader::simple_name(const Node& type) const {
    const std::vector<Node> segments = java_segments(type);
    return segments.empty() ? std::string_view() : text(segments.back());
}

// A type that the text names with its package. It serves as an import that binds no name.
JavaReader::Id JavaReader::type_of_package(const std::string& package, const Node& name, Role role) {
    const auto [found, is_new] = types_of_packages_.emplace(package + "." + std::string(text(name)), syntax::UNKNOWN);
    if (is_new) {
        found->second =
            out_.add(Operation::IMPORT, out_.import({.module = out_.name(package), .original = out_.name(text(name))}));
    }
    out_.mention(found->second, token(name, role, Space::TYPE));
    return found->second;
}

// Whether an expression is the name of a package, as far as the text can say that: `com.example` of
// `com.example.Store.open()`, where the file's own package or an import begins with `com`, and no local is named so.
bool JavaReader::is_name_of_package(const Node& node) {
    const JavaFields& at = JavaFields::get();
    constexpr std::size_t LONGEST = 20;  // no package has more names
    Node first = node;
    for (std::size_t names = 0; first.exists() && first.type() == "field_access"; ++names) {
        if (names > LONGEST || is_capitalized(text(first.child(at.field)))) {
            return false;
        }
        first = first.child(at.object);
    }
    if (!first.exists() || first.type() != "identifier" || !package_roots_.contains(text(first))) {
        return false;
    }
    const Id unbound = out_.add(
        {Operation::NAME, out_.around(), static_cast<std::uint32_t>(Space::QUALIFIER), out_.name(text(first))});
    return out_.look_up(text(first), Space::QUALIFIER) == unbound;
}

/// Whether a simple name means a type of Java's library, if it is the name of one.
bool JavaReader::is_of_library(std::string_view type) const {
    const auto is_library = [](const std::string& package) { return package.starts_with("java."); };
    const auto found = imported_from_.find(type);
    return found == imported_from_.end() ? type == "Iterable" || std::ranges::any_of(imported_packages_, is_library)
                                         : is_library(found->second);
}

}  // namespace host::sources
