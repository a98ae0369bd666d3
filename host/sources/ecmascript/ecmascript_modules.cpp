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

}  // namespace

// The text of a string literal without its quotes.
string_view EcmascriptReader::string_value(const Node& node) const {
    const string_view whole = text(node);
    return whole.size() >= 2 ? whole.substr(1, whole.size() - 2) : string_view();
}

// Names that hide those of the language.
void EcmascriptReader::collect_names(const Node& root) {
    const auto add_all = [&](const auto& self, const Node& node) -> void {
        if (node.type() == "identifier" || node.type() == "shorthand_property_identifier_pattern") {
            own_names_.insert(text(node));
        }
        for_each_child(node, [&](const Node& child, TSFieldId) { self(self, child); });
    };
    const auto add = [&](const Node& declaration) {
        const Node name = declaration.child(fields_.name);
        if (name.exists() && name.type().ends_with("_pattern")) {
            add_all(add_all, name);
        } else if (name.exists()) {
            own_names_.insert(text(name));
        }
    };
    for_each_child(root, [&](const Node& child, TSFieldId) {
        const Node declared = child.child(fields_.declaration);
        const Node statement = declared.exists() ? declared : child;
        if (statement.type() == "import_statement") {
            add_all(add_all, statement);
        } else if (statement.type() == "lexical_declaration" || statement.type() == "variable_declaration") {
            for_each_child(statement, [&](const Node& variable, TSFieldId) { add(variable); });
        } else if (statement.type() == "expression_statement") {
            collect_assigned(statement.named_child(0));
        } else if (statement.type() == "comment") {
            collect_aliases(statement);
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
    pass_doc(node, declaration.exists() ? declaration : value);
    if (declaration.exists()) {
        context_.is_exported = true;
        visit(declaration);
        if (const Node name = declaration.child(fields_.name); is_default && name.exists()) {
            exports_.push_back({text(name), DEFAULT});
        }
    } else if (is_all && source.exists()) {
        out_.import({.module = out_.name(string_value(source)), .is_star = true, .is_exported = true});
    } else if (value.exists()) {
        export_value(value, is_default ? DEFAULT : WHOLE_MODULE);
    } else {
        for_each_child(node, [&](const Node& child, TSFieldId) {
            if (child.type() == "export_clause") {
                read_export_clause(child, source);
            } else if (child.type() == "namespace_export") {  // `export * as a from "m"`
                out_.import({.name = out_.name(name_text(child.named_child(0))),
                             .module = out_.name(string_value(source)),
                             .is_exported = true});
            } else if (child != source) {
                export_value(child, WHOLE_MODULE);  // `export = a`
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

// Exports a value under a name of which the file has no declaration: a name that it has, or anything else. Returns what
// the value is.
ExpressionId EcmascriptReader::export_value(const Node& value, string_view as) {
    if (as == WHOLE_MODULE) {
        pass_on_whole();
    }
    const ExpressionId meaning = visit(value);
    if (value.type() == "identifier") {
        exports_.push_back({text(value), as});
        return meaning;
    }
    const DeclarationId declared =
        out_.declare({.name = out_.name(as), .kind = Kind::VALUE, .offset = value.begin(), .is_hidden = true});
    out_.declaration(declared).type = meaning;
    return meaning;
}

// Exports what the file has under another name.
void EcmascriptReader::pass_on(string_view as, string_view name) {
    out_.import({.name = out_.name(as), .original = out_.name(name), .is_exported = true});
}

// What a module is as a whole others can import as the default, too.
void EcmascriptReader::pass_on_whole() {
    pass_on(DEFAULT, WHOLE_MODULE);
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
                pass_on(each.as, each.name);
            }
        } else if (const auto imported = imports_.find(each.name); imported != imports_.end()) {
            syntax::Import again = imported->second;
            again.name = out_.name(each.as);
            again.is_exported = true;
            out_.import(again);
        }
    }
}

}  // namespace host::sources
