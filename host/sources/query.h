// The query of a language, read.
#pragma once

#include "host/sources/language.h"
#include "host/sources/pattern.h"

#include <tree_sitter/api.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace host::sources {

/// What a capture says of its node; language.h tells what each means. The kinds of declarations come first, then what
/// else says which node a match is about.
enum class Capture : std::uint8_t {
    CLASS,
    STRUCT,
    INTERFACE,
    ENUM,
    TYPE,
    FUNCTION,
    METHOD,
    CONSTRUCTOR,
    ATTRIBUTE,
    CONSTANT,
    VARIABLE,
    DECLARATION,
    BINDING,
    NAMESPACE,
    WRAPPER,
    OF,
    CALLABLE,
    CONST,
    EXPORTED,
    NAME,
    BODY,
    VALUE,
    DOCSTRING,
    PART,
    NAMED,
    DECORATOR,
    EXPORTING,
    TESTING,
    TEST,
    COMMENT,
    VISIBLE,
    HIDDEN,
    LOCAL,
    ENCLOSED,
    EXPORT,
    SLOT,
    LIST,
    MODULE,
    CPP,
    ARGUMENT,  ///< nothing: it serves a predicate
};

/// What a query calls a capture, without "@"; empty for an argument.
std::string_view name_of(Capture capture);

/// Whether the capture states the kind of a declaration; its name is the kind.
constexpr bool is_kind(Capture capture) {
    return capture <= Capture::VARIABLE;
}

/// Whether the node of the capture is what the match is about.
constexpr bool is_subject(Capture capture) {
    return capture <= Capture::EXPORTED;
}

/// The patterns of a language, and what their captures mean. Safe to use on several threads.
class Query {
  public:
    /// A pattern that a node of some type may match.
    struct Candidate {
        const NodePattern* node = nullptr;
        std::uint32_t pattern = 0;  ///< its place in the query
    };

    /// Throws `std::logic_error` when the query does not fit the grammar, and for a capture that neither means anything
    /// nor serves a predicate.
    explicit Query(const Language& language);
    ~Query() = default;
    Query(const Query&) = delete;
    Query& operator=(const Query&) = delete;

    /// The patterns for nodes of a type, in the order of the query.
    [[nodiscard]] std::span<const Candidate> candidates(TSSymbol symbol) const {
        return symbol >= candidates_.size() ? of_errors_ : candidates_[symbol];
    }

    /// The predicates of the pattern at this place.
    [[nodiscard]] std::span<const Predicate> predicates(std::uint32_t pattern) const {
        return patterns_.patterns[pattern].predicates;
    }

    /// What the capture with this number means.
    [[nodiscard]] Capture capture(CaptureNumber number) const { return captures_[number]; }

    /// Whether any of the patterns captures this.
    [[nodiscard]] bool has(Capture capture) const { return std::ranges::find(captures_, capture) != captures_.end(); }

  private:
    Patterns patterns_;
    std::vector<Capture> captures_;                   // by number
    std::vector<std::vector<Candidate>> candidates_;  // by type
    std::vector<Candidate> of_errors_;
};

/// The query of one of `languages()`. Read when it is first asked for; lives as long as the program. Safe to call
/// on several threads.
const Query& query_of(const Language& language);

}  // namespace host::sources
