// Citations of files and lines.
#pragma once

#include "storage/grounding_queries.h"
#include "workers/wiki/scope/ranking.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The lines that a citation of a declaration can name; none when the index does not know where it stands.
std::optional<wiki::scope::LineRange> cited_lines(const storage::ScopeSymbol& symbol);

/// "src/a.ts:L2-L4", or the path alone.
std::string citation(std::string_view path, const std::optional<wiki::scope::LineRange>& lines);

/// "src/b.ts:L45", or the path alone.
std::string citation(std::string_view path, const std::optional<std::int32_t>& line);

}  // namespace host
