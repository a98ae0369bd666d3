// Patterns of syntax trees, in the notation of tree-sitter's queries as far as queries/*.scm use it:
//
//     (type)                     a node of this type; (_) any that has a type
//     "text"                     a token
//     (type (a) field: (b))      with these among its children, in this order; one under a field of it
//     (type . (a))               with no other node, tokens aside, before this child; behind a child: right behind it
//     (type !field)              without such a field
//     [(a) (b)]                  one or the other
//     (type) @name               captured by this name
//     (#eq? @name "text")        in a pattern: only where this text has been captured; or that of another @name
//     (#not-eq? @name "text")    only where another text has been captured, or none
//
// The library's own queries cost too much here: to compile those of C++ takes it a quarter of a second, since it
// analyzes what trees the grammar can make, and it walks all of a tree.
#pragma once

#include <tree_sitter/api.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace host::sources {

/// Index of a capture's name in `Patterns::captures`.
using CaptureNumber = std::uint16_t;

struct ChildPattern;

/// What one node of a tree must be.
struct NodePattern {
    static constexpr TSSymbol ANY_NAMED = std::numeric_limits<TSSymbol>::max() - 1;

    TSSymbol symbol = ANY_NAMED;
    std::vector<CaptureNumber> captures;  ///< by which it is captured
    std::vector<TSFieldId> absent;        ///< fields that it must not have
    std::vector<ChildPattern> children;   ///< what must be found among its children, in this order
};

struct ChildPattern {
    std::vector<NodePattern> alternatives;
    TSFieldId field = 0;        ///< under which the parent must have it; 0: whichever
    bool is_next = false;       ///< whether no named node may stand between it and the child found before, or the begin
    bool has_captures = false;  ///< whether any of its nodes is captured
};

/// What `#eq?` and `#not-eq?` compare.
struct PredicateOperand {
    bool is_capture = false;
    CaptureNumber capture = 0;
    std::string text;  ///< unless it is a capture
};

struct Predicate {
    bool is_equal = true;  ///< whether they must be equal, or must not be
    PredicateOperand left;
    PredicateOperand right;
};

struct Pattern {
    std::vector<NodePattern> alternatives;
    std::vector<Predicate> predicates;  ///< each of which must hold
};

struct Patterns {
    std::vector<Pattern> patterns;      ///< in the order of the text
    std::vector<std::string> captures;  ///< their names without "@", each once
};

/// Reads patterns for trees of a grammar. Throws `std::logic_error`, which tells the place, for what is none, and for
/// a type, token or field that the grammar does not have.
Patterns read_patterns(std::string_view text, const TSLanguage* grammar);

}  // namespace host::sources
