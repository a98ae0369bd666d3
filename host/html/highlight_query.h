// A grammar's query for highlighting, compiled.
#pragma once

#include "host/html/highlighting.h"

#include <tree_sitter/api.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

namespace host::html {

/// Safe to use on several threads.
class HighlightQuery {
  public:
    /// Throws `std::logic_error` when the query does not fit the grammar of the language.
    HighlightQuery(const sources::Language& language, const std::string& query);

    [[nodiscard]] const TSQuery* handle() const { return query_.get(); }

    /// What the capture with this number colors its node as; none when it leaves it as it is.
    [[nodiscard]] std::optional<CodeClass> class_of(std::uint32_t capture) const { return classes_[capture]; }

    /// Whether a match in `text` fulfils the predicates of its pattern. Those that ask for the scope of a name hold.
    [[nodiscard]] bool holds(const TSQueryMatch& match, std::string_view text) const;

  private:
    struct Deleter {
        void operator()(TSQuery* query) const { ts_query_delete(query); }
    };

    // What the text of a captured node must be.
    struct Condition {
        std::uint32_t capture = 0;
        std::regex expected;
    };

    std::unique_ptr<TSQuery, Deleter> query_;
    std::vector<std::optional<CodeClass>> classes_;   // by capture
    std::vector<std::vector<Condition>> conditions_;  // by pattern
};

/// The query of a language, which lives as long as the program; null when there is none. Safe to call on several
/// threads.
const HighlightQuery* highlight_query_of(const sources::Language& language);

}  // namespace host::html
