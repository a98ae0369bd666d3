// What the readers of all languages share that turn a syntax tree into what a file states about names (syntax.h).
//
// The reader of a language is a class derived from `SyntaxReader<Reader>`. Its rules are a table: what to do at each
// node type that says something about names. Everything else is passed through.
#pragma once

#include "host/syntax/syntax_builder.h"

#include <tree_sitter/api.h>

#include <cstdint>
#include <initializer_list>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host::sources {

/// A node of a tree, or none.
class Node {
  public:
    Node() = default;
    explicit Node(TSNode node) : node_(node) {}

    [[nodiscard]] bool exists() const { return node_.id != nullptr; }
    [[nodiscard]] TSNode raw() const { return node_; }
    [[nodiscard]] const void* id() const { return node_.id; }
    [[nodiscard]] TSSymbol symbol() const { return ts_node_symbol(node_); }
    [[nodiscard]] std::string_view type() const { return ts_node_type(node_); }
    [[nodiscard]] std::uint32_t begin() const { return ts_node_start_byte(node_); }
    [[nodiscard]] std::uint32_t end() const { return ts_node_end_byte(node_); }
    [[nodiscard]] std::uint32_t line() const { return ts_node_start_point(node_).row + 1; }  ///< 1-based
    /// None of none, too.
    [[nodiscard]] Node child(TSFieldId field) const {
        return exists() ? wrapped(ts_node_child_by_field_id(node_, field)) : Node();
    }
    [[nodiscard]] Node named_child(std::uint32_t at) const {
        return exists() ? wrapped(ts_node_named_child(node_, at)) : Node();
    }
    [[nodiscard]] std::uint32_t named_children() const { return exists() ? ts_node_named_child_count(node_) : 0; }

    friend bool operator==(const Node& one, const Node& other) { return ts_node_eq(one.node_, other.node_); }

  private:
    static Node wrapped(TSNode node) { return ts_node_is_null(node) ? Node() : Node(node); }

    TSNode node_{};
};

/// Calls `visit(child, field)` with each child of a node, in order; `field` is 0 where the child has none. Unlike
/// `named_child`, takes the same time for each. Anonymous children are left out unless `all`. None has no children.
template <class Visit>
void for_each_child(const Node& node, const Visit& visit, bool all = false) {
    if (!node.exists()) {
        return;
    }
    TSTreeCursor cursor = ts_tree_cursor_new(node.raw());
    if (ts_tree_cursor_goto_first_child(&cursor)) {
        do {
            const TSNode child = ts_tree_cursor_current_node(&cursor);
            if (all || ts_node_is_named(child)) {
                visit(Node(child), ts_tree_cursor_current_field_id(&cursor));
            }
        } while (ts_tree_cursor_goto_next_sibling(&cursor));
    }
    ts_tree_cursor_delete(&cursor);
}

/// What a reader does at the nodes of each type. Made once for each language.
template <class Reader>
class NodeRules {
  public:
    /// Reads a node, and returns the expression that its value is; UNKNOWN for what is no expression.
    using Rule = syntax::ExpressionId (Reader::*)(const Node& node);

    /// Throws what `add` throws.
    NodeRules(const TSLanguage* language, std::initializer_list<std::pair<std::string_view, Rule>> rules)
        : language_(language), rules_(ts_language_symbol_count(language), nullptr) {
        add(rules);
    }

    /// Adds rules, for dialects that have some in common. Throws `std::logic_error` for a node type that the grammar
    /// does not have.
    void add(std::initializer_list<std::pair<std::string_view, Rule>> rules) {
        for (const auto& [type, rule] : rules) {
            bool is_there = false;
            for (TSSymbol symbol = 0; symbol < rules_.size(); ++symbol) {  // some types have several symbols
                if (ts_language_symbol_type(language_, symbol) == TSSymbolTypeRegular &&
                    ts_language_symbol_name(language_, symbol) == type) {
                    rules_[symbol] = rule;
                    is_there = true;
                }
            }
            if (!is_there) {
                throw std::logic_error("no such node: " + std::string(type));
            }
        }
    }

    /// Null where the reader has none: for errors, too.
    [[nodiscard]] Rule of(TSSymbol symbol) const { return symbol < rules_.size() ? rules_[symbol] : nullptr; }

  private:
    const TSLanguage* language_;
    std::vector<Rule> rules_;
};

/// Returns the id of a field. Throws `std::logic_error` when the grammar has no such field.
inline TSFieldId field(const TSLanguage* language, std::string_view name) {
    const TSFieldId id = ts_language_field_id_for_name(language, name.data(), static_cast<std::uint32_t>(name.size()));
    if (id == 0) {
        throw std::logic_error("no such field: " + std::string(name));
    }
    return id;
}

/// `Reader` has `const NodeRules<Reader>& rules() const`, which may be static.
template <class Reader>
class SyntaxReader {
  public:
    SyntaxReader(std::string_view text, syntax::Visibility visibility) : out_(visibility), text_(text) {}

    /// Reads the tree of the text.
    syntax::Syntax read(const Node& root) {
        visit(root);
        return out_.finish();
    }

  protected:
    /// Reads a node, which may be none, by its rule. Without one, reads its named children, and gives UNKNOWN.
    syntax::ExpressionId visit(const Node& node) {
        if (!node.exists()) {
            return syntax::UNKNOWN;
        }
        auto& reader = static_cast<Reader&>(*this);
        if (const auto rule = reader.rules().of(node.symbol())) {
            return (reader.*rule)(node);
        }
        visit_children(node);
        return syntax::UNKNOWN;
    }

    void visit_children(const Node& node) {
        for_each_child(node, [&](const Node& child, TSFieldId) { visit(child); });
    }

    [[nodiscard]] std::string_view text(const Node& node) const {
        return node.exists() ? text_.substr(node.begin(), node.end() - node.begin()) : std::string_view();
    }

    [[nodiscard]] std::string_view text(std::uint32_t begin, std::uint32_t end) const {
        return text_.substr(begin, end - begin);
    }

    /// Returns a node as a name token.
    [[nodiscard]] syntax::Token token(const Node& node, syntax::Role role = syntax::Role::VALUE,
                                      syntax::Space space = syntax::Space::VALUE) const {
        return {.name = text(node), .offset = node.begin(), .line = node.line(), .role = role, .space = space};
    }

    syntax::SyntaxBuilder out_;

  private:
    std::string_view text_;
};

}  // namespace host::sources
