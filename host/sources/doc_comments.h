// Which comments document a declaration.
#pragma once

#include "host/sources/language.h"
#include "host/sources/regions.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace host::sources {

/// The comments of a text that may document what stands below them: those before which nothing stands on their line
/// but other comments.
class DocComments {
  public:
    /// All must outlive the object.
    DocComments(std::string_view text, const Language& language, const Parts& comments, const Parts& decorators);

    /// The prose of those that document a declaration, which begins at `begin` and with its decorators at `first`.
    [[nodiscard]] std::string above(std::uint32_t begin, std::uint32_t first) const;

  private:
    [[nodiscard]] bool document(std::string_view comment) const;
    [[nodiscard]] bool is_near(const Bytes& comment, std::uint32_t below) const;

    std::string_view text_;
    const Language& language_;
    const Parts& decorators_;
    Parts leading_;
};

}  // namespace host::sources
