// Which names a file makes public, apart from what the declarations of its outline say of themselves.
#pragma once

#include "host/sources/captures.h"
#include "host/sources/language.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace host::sources {

class PublicNames {
  public:
    /// Takes the list of exports from the captures of the text.
    PublicNames(std::string_view text, const Language& language, Captures& captures);

    /// Whether a name is public that is declared without a mark at the top of the file.
    [[nodiscard]] bool contains(const std::string& name) const;

    /// Whether a name is public that is declared at the top of the file in some way that the outline does not know, or
    /// in a part that does not parse: there its line says whether it is marked.
    [[nodiscard]] bool contains(const std::string& name, std::int32_t line) const;

  private:
    std::vector<std::int32_t> marked_lines_;  // of a text of which a part does not parse, in order
    Unmarked unmarked_;
    std::unordered_set<std::string> listed_;
};

}  // namespace host::sources
