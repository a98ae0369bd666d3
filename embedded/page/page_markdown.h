// A page's grounding as Markdown, for people.
#pragma once

#include "embedded/files/checkout.h"
#include "embedded/page/page.h"

#include <iosfwd>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace embedded {

/// The sections of a page, in the order in which they are printed.
enum class Section { FILES, CONSUMERS, DECLARATIONS, IN_DEPTH, DEPENDENCIES, SEEDS };

/// The section that a user calls `name`; none when there is no such section.
std::optional<Section> section_named(std::string_view name);

/// The names of all sections, in their order, joined by ", ".
std::string section_names();

struct MarkdownOptions {
    std::set<Section> only;   ///< the sections to write; all when empty
    bool with_source = true;  ///< whether each selected declaration stands with its source lines, or its signature
};

/// Writes the sections of the page, each under its own "##" heading. What the index says of the selected declarations
/// in words is asked of `db`, which is the page's; their source is read from `checkout`, and left out where it is not
/// there. Throws what `tests_reaching` throws; whether everything was written is for the caller to ask of `out`.
void write_markdown(std::ostream& out, const Page& page, const storage::Database& db, const Checkout& checkout,
                    const MarkdownOptions& options);

}  // namespace embedded
