// A page's grounding as Markdown, for people.
#pragma once

#include "host/links/source_links.h"
#include "host/page/page.h"
#include "host/page/page_head.h"
#include "host/page/section.h"

#include <cstddef>
#include <iosfwd>
#include <optional>

namespace host {

struct MarkdownOptions {
    SectionChoice only = {};  ///< the sections to write
    PageHead head = {};       ///< of which the stamp stands in a comment
    bool with_source = true;  ///< whether each selected declaration stands with its source lines, or its signature
    std::optional<std::size_t> max_bytes =
        std::nullopt;                    ///< how long the text may be, as `fitted` (budget.h) shortens it
    const SourceLinks* links = nullptr;  ///< where citations lead; null where they are plain text
};

/// Writes the sections of the page, each under its own "##" heading. What the index says of the selected declarations
/// in words is asked of `db`, which is the page's; their source is left out where `page.sources` gives none. A source
/// that is part of another one on the page is not printed again. Throws what `tests_reaching` and `fitted` throw;
/// whether everything was written is for the caller to ask of `out`.
void write_markdown(std::ostream& out, const Page& page, storage::Database& db, const MarkdownOptions& options);

}  // namespace host
