// Reasons to doubt what a page says.
#pragma once

#include "host/index/database.h"
#include "host/page/page_sources.h"
#include "models/text.h"

#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace host {

/// Reasons not to take all that a page says at its word.
struct Caveats {
    std::vector<models::Text> changed;   ///< files whose content is not the one that was indexed, in the page's order
    std::vector<models::Text> withheld;  ///< files that the page may not show, in the page's order
    std::vector<models::Text> outside;   ///< files behind links that lead out of the checkout, in the page's order
    std::vector<models::Text> damaged;   ///< files of which a part that declares something did not parse
    bool has_no_sources = false;         ///< whether the checkout gives none of the page's files
    bool has_no_outside = false;         ///< whether the page consists of every file of the index
};

/// What is to be said of these, in one line each, of files of one kind at most five; `checkout` is what somebody called
/// it.
std::vector<std::string> remarks_on(const Caveats& caveats, const std::string& checkout);

/// Reads the files of a page, and watches for what its reader should know.
class WatchfulReader {
  public:
    /// `paths` are files of the index, each once. `db` and `sources` must outlive this object. Throws `IndexError`.
    WatchfulReader(storage::Database& db, const PageSources& sources, std::span<const std::string> paths);

    /// The lines of one of the files; none when the page may not show it. Throws what `db.check_interrupt` throws.
    std::optional<std::vector<std::string>> read(const models::Text& path);

    /// What is to be said of the page, when each of its files was read once.
    [[nodiscard]] Caveats caveats() const;

  private:
    storage::Database& db_;
    const PageSources& sources_;
    bool has_no_outside_;
    std::set<std::string, std::less<>> noted_damage_;  // paths, as the index notes them
    std::vector<models::Text> changed_;
    std::vector<models::Text> withheld_;
    std::vector<models::Text> outside_;
    std::vector<models::Text> damaged_;
    bool is_any_asked_ = false;
    bool is_any_there_ = false;
};

}  // namespace host
