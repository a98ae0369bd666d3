// The sources that a page may show.
#pragma once

#include "host/files/checkout.h"
#include "host/index/database.h"
#include "models/ordered_map.h"
#include "models/text.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace host {

/// Which files of a folder a page may show.
enum class SourceAccess : std::uint8_t {
    ALL,         ///< each that the index names: the user has chosen the folder
    AS_INDEXED,  ///< those with the content that the import read: an index must not choose what else is read
};

/// A file of a page.
struct PageSource {
    enum class State : std::uint8_t {
        READ,
        CHANGED,   ///< read, but the import read another content
        WITHHELD,  ///< there, but its content is not known to be the one that the import read
        OUTSIDE,   ///< behind a symbolic link that leads out of the checkout
        MISSING,   ///< the checkout does not give it
    };
    State state = State::MISSING;
    std::vector<std::string> lines = {};  ///< as `Checkout::read_lines` gives them; none of a file that was not read
};

class PageSources {
  public:
    /// `paths` are files of the index. Throws `IndexError`.
    PageSources(storage::Database& db, Checkout checkout, SourceAccess access, std::span<const std::string> paths);

    /// One of the files, as it is now.
    [[nodiscard]] PageSource read(const models::Text& path) const;

  private:
    Checkout checkout_;
    SourceAccess access_;
    models::OrderedMap<std::string, std::int64_t> indexed_;  // path -> hash of the content that the import read
};

}  // namespace host
