// What a page's reader should know of how the page came about.
#pragma once

#include "embedded/files/checkout.h"
#include "embedded/index/database.h"
#include "models/ordered_map.h"
#include "models/text.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace embedded {

/// Reasons not to take all that a page says at its word.
struct Caveats {
    std::vector<models::Text> changed;  ///< files whose content is not the one that was indexed, in the page's order
    std::vector<models::Text> damaged;  ///< files of which a part that declares something did not parse
    bool has_no_sources = false;        ///< whether the checkout gives none of the page's files
    bool has_no_outside = false;        ///< whether the page consists of every file of the index
};

/// What is to be said of these, in one line each, of files that changed and of damaged ones at most five; `checkout` is what somebody called
/// it.
std::vector<std::string> remarks_on(const Caveats& caveats, const std::string& checkout);

/// Reads the files of a page from the checkout, and watches for what its reader should know.
class WatchfulReader {
  public:
    /// `paths` are files of the index, each once. `checkout` must outlive this object. Throws `IndexError`.
    WatchfulReader(storage::Database& db, const Checkout& checkout, std::span<const std::string> paths);

    /// The lines of one of the files, as `Checkout::read_lines` gives them.
    std::optional<std::vector<std::string>> read(const models::Text& path);

    /// What is to be said of the page, when each of its files was read once.
    [[nodiscard]] Caveats caveats() const;

  private:
    const Checkout& checkout_;
    models::OrderedMap<std::string, std::int64_t> indexed_;  // path -> hash of the content that was indexed
    bool has_no_outside_;
    std::set<std::string, std::less<>> noted_damage_;  // paths, as the index notes them
    std::vector<models::Text> changed_;
    std::vector<models::Text> damaged_;
    std::size_t asked_ = 0;
    std::size_t given_ = 0;
};

}  // namespace embedded
