// Makes a page from a request, for the command and the server.
#pragma once

#include "host/index/database.h"
#include "host/links/source_links.h"
#include "host/page/page.h"
#include "host/page/page_head.h"
#include "host/page/section.h"
#include "host/paths/source_folder.h"
#include "host/rules/path_rules.h"
#include "host/rules/test_paths.h"
#include "host/summary/shared_summaries.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace host {

struct PageRequest {
    enum class Format : std::uint8_t { MARKDOWN, JSON };

    std::vector<std::string> paths;    ///< as `find_paths` reads them
    std::string checkout = {};         ///< empty for what `source_folder` finds
    std::vector<PathRule> tests = {};  ///< asked before the rules that the index notes
    PageOptions numbers = {};          ///< how much is chosen
    bool is_strict = false;            ///< whether a single missing path is a failure
    Format format = Format::MARKDOWN;
    SectionChoice only = {};                              ///< the sections to write, of JSON their keys
    bool with_source = true;                              ///< as in `MarkdownOptions`; nothing to JSON
    std::optional<std::size_t> max_bytes = std::nullopt;  ///< as in `MarkdownOptions`; nothing to JSON
    /// As many times `BYTES_OF_A_TOKEN` bytes (budget.h); of this and `max_bytes` the smaller counts.
    std::optional<std::size_t> max_tokens = std::nullopt;
    std::optional<SourceUrl> source_url = std::nullopt;  ///< where citations lead; nothing to JSON
    std::string commit = {};  ///< of the sources, for `source_url`; empty for the one that the index notes
};

/// The page that somebody asks for. The rules for tests and the shared summaries of its index are in force as long as
/// it lives: it is for one thread, and ends before any others that were in force on it.
class RequestedPage {
  public:
    /// Both arguments must outlive this object; `before_reading` is called as `load_page` says. Throws `IndexError`,
    /// and `std::runtime_error` with one line when there is no checkout, the rules of the index cannot be read, or
    /// nobody knows the commit that links are to name.
    RequestedPage(const PageRequest& request, storage::Database& db, const BeforeReading& before_reading = {});

    /// Whether paths are missing so that the page was not to be made; the remarks say which.
    [[nodiscard]] bool is_failure() const;

    /// What somebody who asks should know beside the page: what missing paths may have been meant to be, of a failure
    /// all missing paths, and what leaves the page in doubt. Each is one line.
    [[nodiscard]] std::vector<std::string> remarks() const;

    [[nodiscard]] const PageRequest& request() const { return request_; }
    [[nodiscard]] const Page& page() const { return page_; }
    /// Where citations lead; null where they are plain text.
    [[nodiscard]] const SourceLinks* source_links() const { return links_ ? &*links_ : nullptr; }

    /// Writes the page in the format that was asked for. Throws what `write_json` and `write_markdown` throw.
    void write(std::ostream& out, const PageHead& head = {}) const;

  private:
    const PageRequest& request_;
    const SourceFolder folder_;
    const PathRules tests_;
    const TestRulesInForce in_force_;
    const SharedSummariesInForce shared_summaries_;
    storage::Database& db_;
    const std::optional<SourceLinks> links_;
    const Page page_;
};

}  // namespace host
