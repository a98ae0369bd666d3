// Paths, and the names that `use` takes by them.
#include "host/sources/rust/rust_reader.h"

namespace host::sources {

namespace {

using syntax::Operation;
using syntax::Role;
using syntax::Space;

// What nobody writes: a longer path. Each import keeps its own.
constexpr std::size_t MOST_SEGMENTS = 50;

// The first words of paths that start from the file's own crate.
bool is_rust_keyword(std::string_view segment) {
    return segment == "crate" || segment == "self" || segment == "super";
}

void add_rust_segments(const Node& node, std::vector<Node>& segments) {
    if (node.type() != "scoped_identifier") {
        segments.push_back(node);
        return;
    }
    const RustFields& at = RustFields::get();
    if (const Node path = node.child(at.path); path.exists()) {
        add_rust_segments(path, segments);
    }
    segments.push_back(node.child(at.name));
}

// Whether a path holds nothing but `self` and `super`.
bool is_rust_module_of_own(const Node& path) {
    if (path.type() == "scoped_identifier") {
        const RustFields& at = RustFields::get();
        const Node before = path.child(at.path);
        return path.child(at.name).type() == "super" && before.exists() && is_rust_module_of_own(before);
    }
    return path.type() == "self" || path.type() == "super";
}

}  // namespace

// A raw name without its mark: `type` of `r#type`.
std::string_view RustReader::name_text(const Node& node) const {
    std::string_view name = text(node);
    if (name.starts_with("r#")) {
        name.remove_prefix(2);
    }
    return name;
}

syntax::Token RustReader::name_token(const Node& node, Role role, Space space) const {
    syntax::Token token = this->token(node, role, space);
    token.name = name_text(node);
    return token;
}

std::string RustReader::joined(const std::vector<Node>& segments, std::size_t count) const {
    std::string path;
    for (std::size_t at = 0; at < count; ++at) {
        path.append(at == 0 ? "" : "::").append(name_text(segments[at]));
    }
    return path;
}

RustReader::Id RustReader::read_path(const Node& node) {
    return path(node, Role::VALUE, Space::VALUE);
}

// The value, type or module that a path leads to; its last name is used in this role.
RustReader::Id RustReader::path(const Node& node, Role role, Space space) {
    const RustFields& at = RustFields::get();
    if (!node.exists()) {
        return syntax::UNKNOWN;
    }
    const std::string_view kind = node.type();
    if (kind == "identifier" || kind == "type_identifier") {
        return text(node) == "Self" ? surroundings_.self_type : out_.use(name_token(node, role, space));
    }
    if (is_rust_module_of_own(node)) {
        return imported(std::string(text(node)), "");
    }
    if (kind != "scoped_identifier" && kind != "scoped_type_identifier") {
        return visit(node);
    }
    const Node before = node.child(at.path);
    const syntax::Token last = name_token(node.child(at.name), role, space);
    if (!before.exists()) {
        return syntax::UNKNOWN;  // `::name`: of another crate
    }
    if (before.type() == "crate") {
        const Id global = out_.add({Operation::GLOBAL, 0, static_cast<std::uint32_t>(space), out_.name(last.name)});
        out_.mention(global, last);
        return global;
    }
    return out_.use_member(qualifier(before), last);
}

// What stands before "::". A module is never a local, even where a local has its name.
RustReader::Id RustReader::qualifier(const Node& node) {
    if (node.type() != "identifier" || is_rust_item_name(text(node))) {
        return path(node, Role::VALUE, Space::QUALIFIER);
    }
    const syntax::Token module = name_token(node, Role::VALUE, Space::QUALIFIER);
    const Id name =
        out_.add({Operation::NAME, out_.around(), static_cast<std::uint32_t>(module.space), out_.name(module.name)});
    out_.mention(name, module);
    return name;
}

RustReader::Id RustReader::read_use(const Node& node) {
    bool is_exported = false;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        is_exported = is_exported || child.type() == "visibility_modifier";
    });
    std::vector<Node> before;
    read_use_tree(node.child(RustFields::get().argument), before, is_exported);
    return syntax::UNKNOWN;
}

void RustReader::read_use_tree(const Node& node, std::vector<Node>& before, bool is_exported) {
    const RustFields& at = RustFields::get();
    if (!node.exists() || is_rust_comment(node) || before.size() > MOST_SEGMENTS) {
        return;
    }
    const std::size_t outside = before.size();
    if (node.type() == "use_list") {
        for_each_child(node, [&](const Node& child, TSFieldId) { read_use_tree(child, before, is_exported); });
    } else if (node.type() == "scoped_use_list") {
        if (const Node path = node.child(at.path); path.exists()) {
            add_rust_segments(path, before);
            mention_modules(before);
        }
        read_use_tree(node.child(at.list), before, is_exported);
    } else if (node.type() == "use_wildcard") {
        for_each_child(node, [&](const Node& child, TSFieldId) {
            if (!is_rust_comment(child)) {
                add_rust_segments(child, before);
            }
        });
        mention_modules(before);
        out_.import({.module = out_.name(joined(before, before.size())),
                     .around = out_.around(),
                     .is_star = true,
                     .is_exported = is_exported});
    } else {
        const bool has_alias = node.type() == "use_as_clause";
        add_rust_segments(has_alias ? node.child(at.path) : node, before);
        import_name(before, has_alias ? name_text(node.child(at.alias)) : std::string_view(), is_exported);
    }
    before.resize(outside);
}

// `segments` lead to what is imported, under `name` if that is not empty.
void RustReader::import_name(const std::vector<Node>& segments, std::string_view name, bool is_exported) {
    std::vector<Node> path = segments;
    const bool is_self = path.size() > 1 && path.back().type() == "self";
    if (is_self) {
        path.pop_back();
    }
    const Node last = path.back();
    if (is_rust_keyword(text(last)) && name.empty()) {
        return;
    }
    const std::string module = joined(path, path.size() - 1);
    const std::string_view own = name_text(last);
    const bool is_whole = module.empty() || is_rust_keyword(text(last));
    const std::uint32_t import = out_.import({.name = out_.name(name.empty() ? own : name),
                                              .module = out_.name(is_whole ? joined(path, path.size()) : module),
                                              .original = is_whole ? 0 : out_.name(own),
                                              .around = out_.around(),
                                              .is_exported = is_exported});
    is_imported_from_own_.emplace(name.empty() ? own : name, is_rust_keyword(text(path.front())));
    if (!is_self) {
        path.pop_back();
        mention_modules(path);
        if (!is_rust_keyword(text(last))) {
            out_.mention(out_.add(Operation::IMPORT, import), name_token(last, Role::IMPORT, Space::QUALIFIER));
        }
    }
}

// Mentions the names of a path, from the last to one that was mentioned with another path.
void RustReader::mention_modules(const std::vector<Node>& segments) {
    for (std::size_t at = segments.size(); at-- > 0 && mentioned_.insert(segments[at].begin()).second;) {
        if (!is_rust_keyword(text(segments[at]))) {
            out_.mention(imported(joined(segments, at), std::string(name_text(segments[at]))),
                         name_token(segments[at], Role::IMPORT, Space::QUALIFIER));
        }
    }
}

// What a path leads to, as an import that binds no name.
RustReader::Id RustReader::imported(const std::string& module, const std::string& name) {
    const auto [found, is_new] =
        imported_.emplace(std::to_string(out_.around()) + " " + module + "::" + name, syntax::UNKNOWN);
    if (is_new) {
        const bool is_whole = module.empty() || name.empty();
        found->second = out_.add(Operation::IMPORT, out_.import({.module = out_.name(module.empty() ? name : module),
                                                                 .original = is_whole ? 0 : out_.name(name),
                                                                 .around = out_.around()}));
    }
    return found->second;
}

RustReader::Id RustReader::read_extern_crate(const Node& node) {
    const RustFields& at = RustFields::get();
    const Node name = node.child(at.name);
    const Node alias = node.child(at.alias);
    out_.import({.name = out_.name(name_text(alias.exists() ? alias : name)),
                 .module = out_.name(name_text(name)),
                 .around = out_.around()});
    return syntax::UNKNOWN;
}

}  // namespace host::sources
