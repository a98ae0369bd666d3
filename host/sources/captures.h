// The captures of a language's query in a text.
#pragma once

#include "host/sources/language.h"
#include "host/sources/syntax_tree.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace host::sources {

/// A part of the text: byte offsets, half-open.
struct Bytes {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr,readability-implicit-bool-conversion): it misreads the default
    friend auto operator<=>(const Bytes&, const Bytes&) = default;
};

/// Tells the nodes of one tree apart.
using NodeId = const void*;

struct CapturedName {
    Bytes name;
    std::uint32_t row = 0;     ///< 0-based
    std::uint32_t column = 0;  ///< 0-based, in bytes
    NodeId node = nullptr;     ///< the declaration
    bool is_binding = false;
};

/// What matches say of one node, all of them together.
struct CapturedNode {
    Bytes bytes;
    std::string_view kind;              ///< of a declaration; empty where it is left open
    std::uint32_t kind_at = 0;          ///< the place in the query of the pattern that states the kind
    std::optional<std::uint32_t> body;  ///< where the first of its bodies begins
    std::optional<Bytes> value;
    std::optional<Bytes> docstring;
    std::vector<NodeId> parts;  ///< types
    std::vector<std::string_view> type_names;
    bool is_declaration = false;
    bool is_binding = false;
    bool is_namespace = false;
    bool is_wrapper = false;
    bool is_exported = false;
    bool is_callable = false;
    bool is_const = false;
};

/// language.h tells what the captures mean.
struct Captures {
    std::vector<CapturedName> names;
    std::unordered_map<NodeId, CapturedNode> nodes;
    std::vector<Bytes> decorators;
    std::vector<Bytes> exporting;  // decorators
    std::vector<Bytes> testing;    // decorators
    std::vector<Bytes> tests;
    std::vector<Bytes> comments;
    std::vector<Bytes> visible;
    std::vector<Bytes> hidden;
    std::vector<Bytes> local;
    std::unordered_set<std::string> exports;
    std::unordered_set<std::string> slots;
    bool has_list = false;
    bool is_module = false;
    bool is_cpp = false;
    bool is_damaged = false;  ///< whether a part of the text does not parse
    std::size_t damage = 0;   ///< how large that is, in bytes
};

/// Whether what stands in @enclosed bodies is captured, too.
enum class Bodies : std::uint8_t { READ, PASSED_OVER };

/// Runs the query of the language over the tree of the text. Nothing is in order.
Captures captures_in(const SyntaxTree& tree, std::string_view text, const Language& language, Bodies bodies);

}  // namespace host::sources
