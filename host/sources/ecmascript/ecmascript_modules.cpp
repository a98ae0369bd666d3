// What a file takes from other modules, and what it exports.
#include "host/sources/ecmascript/ecmascript_reader.h"

#include <algorithm>

namespace host::sources {

namespace {

using std::string_view;
using syntax::DeclarationId;
using syntax::ExpressionId;
using syntax::Kind;
using syntax::Operation;
using syntax::Role;
using syntax::UNKNOWN;

constexpr string_view DEFAULT = "default";
/// How a module is found that is one value: `export = a`, `module.exports = a`.
constexpr string_view WHOLE = "export=";

}  // namespace

// The text of a string literal without its quotes.
string_view EcmascriptReader::string_value(const Node& node) const {
    const string_view whole = text(node);
    return whole.size() >= 2 ? whole.substr(1, whole.size() - 2) : string_view();
}

// Names that hide those of the language.
void EcmascriptReader::collect_names(const Node& root) {
    const auto add = [&](const Node& declaration) {
        if (const Node name = declaration.child(fields_.name); name.exists()) {
            own_names_.insert(text(name));
        }
    };
    const auto add_all = [&](const auto& self, const Node& node) -> void {
        if (node.type() == "identifier") {
            own_names_.insert(text(node));
        }
        for_each_child(node, [&](const Node& child, TSFieldId) { self(self, child); });
    };
    for_each_child(root, [&](const Node& child, TSFieldId) {
        const Node declared = child.child(fields_.declaration);
        const Node statement = declared.exists() ? declared : child;
        if (statement.type() == "import_statement") {
            add_all(add_all, statement);
        } else if (statement.type() == "lexical_declaration" || statement.type() == "variable_declaration") {
            for_each_child(statement, [&](const Node& variable, TSFieldId) { add(variable); });
        } else {
            add(statement);
        }
    });
}

// Adds an import at the top of the file, and returns what it means.
ExpressionId EcmascriptReader::import(string_view name, string_view module, string_view original, bool is_type) {
    const syntax::Import import{
        .name = out_.name(name), .module = out_.name(module), .original = out_.name(original), .is_type = is_type};
    if (!name.empty()) {
        imports_.insert_or_assign(name, import);
    }
    return out_.add(Operation::IMPORT, out_.import(import));
}

ExpressionId EcmascriptReader::import_statement(const Node& node) {
    const bool is_type = has_word(node, "type");
    Node clause;
    Node require;
    for_each_child(node, [&](const Node& child, TSFieldId) {
        clause = child.type() == "import_clause" ? child : clause;
        require = child.type() == "import_require_clause" ? child : require;
    });
    if (require.exists()) {  // `import a = require("m")`
        const Node name = require.named_child(0);
        out_.mention(import(text(name), string_value(require.child(fields_.source)), "", is_type),
                     token(name, Role::IMPORT));
    } else if (clause.exists()) {
        read_import_clause(clause, string_value(node.child(fields_.source)), is_type);
    } else {
        out_.import({.module = out_.name(string_value(node.child(fields_.source)))});
    }
    return UNKNOWN;
}

void EcmascriptReader::read_import_clause(const Node& clause, string_view module, bool is_type) {
    for_each_child(clause, [&](const Node& child, TSFieldId) {
        if (child.type() == "identifier") {
            out_.mention(import(text(child), module, DEFAULT, is_type), token(child, Role::IMPORT));
        } else if (child.type() == "namespace_import") {
            const Node name = child.named_child(0);
            out_.mention(import(text(name), module, "", is_type), token(name, Role::IMPORT));
        } else if (child.type() == "named_imports") {
            for_each_child(child, [&](const Node& specifier, TSFieldId) {
                const Node original = specifier.child(fields_.name);
                const Node alias = specifier.child(fields_.alias);
                if (original.exists()) {
                    const Node name = alias.exists() ? alias : original;
                    out_.mention(
                        import(text(name), module, name_text(original), is_type || has_word(specifier, "type")),
                        token(original, Role::IMPORT));
                }
            });
        }
    });
}

// `import a = b.c`: another name of a member of a namespace.
ExpressionId EcmascriptReader::import_alias(const Node& node) {
    const Node name = node.named_child(0);
    const ExpressionId meaning = qualifier(node.named_child(1));
    if (context_.locals == 0 && name.exists()) {
        for (const Kind kind : {Kind::ALIAS, Kind::VALUE}) {
            const DeclarationId declared = declare(name, kind);
            out_.declaration(declared).is_hidden = true;
            out_.declaration(declared).type = meaning;
        }
    }
    return UNKNOWN;
}

ExpressionId EcmascriptReader::export_statement(const Node& node) {
    const Saved saved(context_);
    const Node source = node.child(fields_.source);
    const Node declaration = node.child(fields_.declaration);
    const bool is_default = has_word(node, "default");
    const bool is_all = has_word(node, "*");
    const Node value = node.child(fields_.value);
    visit_decorators(node);
    if (declaration.exists()) {
        context_.is_exported = true;
        visit(declaration);
        if (const Node name = declaration.child(fields_.name); is_default && name.exists()) {
            exports_.push_back({text(name), DEFAULT});
        }
    } else if (is_all && source.exists()) {
        out_.import({.module = out_.name(string_value(source)), .is_star = true, .is_exported = true});
    } else if (value.exists()) {
        export_value(value, is_default ? DEFAULT : WHOLE);
    } else {
        for_each_child(node, [&](const Node& child, TSFieldId) {
            if (child.type() == "export_clause") {
                read_export_clause(child, source);
            } else if (child.type() == "namespace_export") {  // `export * as a from "m"`
                out_.import({.name = out_.name(name_text(child.named_child(0))),
                             .module = out_.name(string_value(source)),
                             .is_exported = true});
            } else if (child != source) {
                export_value(child, WHOLE);  // `export = a`
            }
        });
    }
    return UNKNOWN;
}

void EcmascriptReader::read_export_clause(const Node& clause, const Node& source) {
    if (clause.named_children() == 0) {  // `export {}` exports nothing, but makes the file a module
        out_.import({.is_exported = true});
    }
    for_each_child(clause, [&](const Node& specifier, TSFieldId) {
        const Node name = specifier.child(fields_.name);
        const Node alias = specifier.child(fields_.alias);
        if (!name.exists()) {
            return;
        }
        const string_view as = name_text(alias.exists() ? alias : name);
        if (source.exists()) {
            const std::uint32_t import = out_.import({.name = out_.name(as),
                                                      .module = out_.name(string_value(source)),
                                                      .original = out_.name(name_text(name)),
                                                      .is_exported = true});
            out_.mention(out_.add(Operation::IMPORT, import), token(name, Role::IMPORT));
        } else {
            out_.use(token(name, Role::IMPORT));
            exports_.push_back({text(name), as});
        }
    });
}

// Exports a value under a name of which the file has no declaration: a name that it has, or anything else.
void EcmascriptReader::export_value(const Node& value, string_view as) {
    if (as == WHOLE) {  // which others can import as the default, too
        out_.import({.name = out_.name(DEFAULT), .original = out_.name(WHOLE), .is_exported = true});
    }
    if (value.type() == "identifier") {
        visit(value);
        exports_.push_back({text(value), as});
        return;
    }
    const ExpressionId meaning = visit(value);
    const DeclarationId declared =
        out_.declare({.name = out_.name(as), .kind = Kind::VALUE, .offset = value.begin(), .is_hidden = true});
    out_.declaration(declared).type = meaning;
}

// Exports names that the file declares or imports, now that all of these are known.
void EcmascriptReader::settle_exports() {
    for (const auto& [name, declared] : top_) {  // of functions without a body the first stands for all
        const auto is_announced = [&](DeclarationId id) {
            return out_.declaration(id).kind == Kind::FUNCTION && !out_.declaration(id).is_definition;
        };
        if (std::ranges::all_of(declared, is_announced)) {
            out_.declaration(declared.front()).is_definition = true;
        }
    }
    for (const Export& each : exports_) {
        if (const auto declared = top_.find(each.name); declared != top_.end()) {
            for (const DeclarationId id : declared->second) {
                out_.declaration(id).is_private = false;
            }
            if (each.name != each.as) {
                out_.import({.name = out_.name(each.as), .original = out_.name(each.name), .is_exported = true});
            }
        } else if (const auto imported = imports_.find(each.name); imported != imports_.end()) {
            syntax::Import again = imported->second;
            again.name = out_.name(each.as);
            again.is_exported = true;
            out_.import(again);
        }
    }
}

// `const a = require("m")`, `const {a, b: c} = require("m")` in JavaScript are imports. Returns whether it was one.
bool EcmascriptReader::read_required(const Node& name, const Node& initial) {
    const bool is_call = initial.exists() && initial.type() == "call_expression";
    const string_view module = is_call ? module_of_call(initial) : string_view();
    if (module.empty() || initial.child(fields_.function).type() == "import") {
        return false;
    }
    if (name.type() == "identifier") {
        import(text(name), module, "");
        return true;
    }
    bool is_plain = name.type() == "object_pattern";
    for_each_child(name, [&](const Node& child, TSFieldId) {
        const Node value = child.child(fields_.value);
        is_plain = is_plain && (child.type() == "shorthand_property_identifier_pattern" ||
                                (child.type() == "pair_pattern" && value.exists() && value.type() == "identifier"));
    });
    if (is_plain) {
        for_each_child(name, [&](const Node& child, TSFieldId) {
            const Node key = child.child(fields_.key);
            const Node bound = key.exists() ? child.child(fields_.value) : child;
            const Node original = key.exists() ? key : child;
            out_.mention(import(text(bound), module, name_text(original)), token(original, Role::IMPORT));
        });
    }
    return is_plain;
}

// `module.exports = ...`, `exports.a = ...`, `module.exports.a = ...`. Returns whether it was one.
bool EcmascriptReader::read_common_js_export(const Node& left, const Node& right) {
    if (!left.exists() || !right.exists() || left.type() != "member_expression" || own_names_.contains("module") ||
        own_names_.contains("exports")) {
        return false;
    }
    const Node object = left.child(fields_.object);
    const Node property = left.child(fields_.property);
    if (text(left) == "module.exports") {
        if (right.type() == "object") {
            export_members(right);
        } else {
            export_value(right, WHOLE);
        }
        return true;
    }
    if (text(object) == "exports" || text(object) == "module.exports") {
        export_value(right, text(property));
        return true;
    }
    return false;
}

// `module.exports = {a, b: c, d() {}}`
void EcmascriptReader::export_members(const Node& object) {
    for_each_child(object, [&](const Node& child, TSFieldId) {
        const Node key = child.child(fields_.key);
        if (child.type() == "shorthand_property_identifier") {
            visit(child);
            exports_.push_back({text(child), text(child)});
        } else if (child.type() == "pair" && key.exists() && key.type() != "computed_property_name") {
            export_value(child.child(fields_.value), name_text(key));
        } else {
            visit(child);  // a method is declared at the top
        }
    });
}

}  // namespace host::sources
