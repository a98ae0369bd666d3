// Citations of files and lines.
#pragma once

#include "host/links/source_links.h"
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

/// The Markdown of a citation: in code, and where both `links` and lines are given, as a link. `links` may be null.
std::string cited(std::string_view path, const std::optional<wiki::scope::LineRange>& lines, const SourceLinks* links);
std::string cited(std::string_view path, const std::optional<std::int32_t>& line, const SourceLinks* links);

/// The same for a cell of a table.
std::string cited_in_cell(std::string_view path, const std::optional<wiki::scope::LineRange>& lines,
                          const SourceLinks* links);

}  // namespace host
