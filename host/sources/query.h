// The query of a language, compiled.
#pragma once

#include "host/sources/language.h"

#include <tree_sitter/api.h>

#include <cstdint>
#include <memory>
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

/// A compiled query. Safe to use on several threads.
class Query {
  public:
    /// Throws `std::logic_error` when the query does not fit the grammar, and for a capture that neither means anything
    /// nor serves a predicate.
    explicit Query(const Language& language);

    [[nodiscard]] const TSQuery* handle() const { return query_.get(); }

    /// What the capture with this number, as matches have it, means.
    [[nodiscard]] Capture capture(std::uint32_t number) const { return captures_[number]; }

  private:
    struct Deleter {
        void operator()(TSQuery* query) const { ts_query_delete(query); }
    };

    std::unique_ptr<TSQuery, Deleter> query_;
    std::vector<Capture> captures_;  // by number
};

/// The query of one of `languages()`. Compiled when it is first asked for; lives as long as the program. Safe to call
/// on several threads.
const Query& query_of(const Language& language);

}  // namespace host::sources
