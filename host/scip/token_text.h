// Compares the text of a token with the name that its document states.
//
// An indexer may take one name for another: scip-python names the wrong declaration for what a package passes on
// through `*`. The text tells.
#pragma once

#include "host/scip/reader.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host::scip {

/// The text of a source behind a byte-order mark, to be asked for by range. Columns count UTF-16 code units. Fast where
/// the ranges ascend.
class RangedText {
  public:
    explicit RangedText(std::string text);

    /// What stands at the range, line ends included; empty where the range is none of the text. Valid as long as this
    /// object.
    std::string_view at(const Range& range);

    /// Where the range begins, in bytes; none where the text has no such line.
    std::optional<std::uint32_t> offset_of(const Range& range);

    /// What stands behind the range on its last line.
    std::string_view behind(const Range& range);

    /// A part of the text with the name before it, where a dot stands between them: "b" -> "a.b"; else the part alone.
    [[nodiscard]] std::string_view with_name_before(std::string_view part) const;

    [[nodiscard]] const std::string& text() const { return text_; }

  private:
    /// Where a place is; none where the text has no such line.
    std::optional<std::size_t> offset_of(std::int32_t line, std::int32_t column);

    std::string text_;
    std::vector<std::size_t> lines_;  // where each begins
    // The last place that was asked for.
    std::int32_t line_ = 0;
    std::int32_t column_ = 0;
    std::size_t offset_ = 0;
};

/// Whether a token with this text may name the symbol: it is its name, the end of a module's name, the name of the type
/// that a constructor makes, or an import that gives it another one ("a as b"). A parameter or the like may always be
/// meant: these have no rows.
///
///     DateField          `m`/DateField#        yes
///     DateField          `m`/DateTimeField#    no
///     f as g             `m`/f().              yes
///     .b                 `a.b`/__init__:       yes
bool may_name(std::string_view text, std::string_view symbol);

}  // namespace host::scip
