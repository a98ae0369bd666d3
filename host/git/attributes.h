// The attributes that .gitattributes files give to files, as far as they say what people did not write.
#pragma once

#include "host/git/pattern.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host::git {

/// What is said of a file; none where nothing is.
struct Origin {
    std::optional<bool> is_generated;  ///< linguist-generated
    std::optional<bool> is_vendored;   ///< linguist-vendored
};

/// Groups of attributes that have a name: "[attr]made linguist-generated -diff". Only the file in the root of a checkout
/// can define them.
using AttributeMacros = std::map<std::string, Origin, std::less<>>;

/// The rules of one .gitattributes file.
class AttributeRules {
  public:
    /// Adds to `macros` what the text defines.
    AttributeRules(std::string_view text, AttributeMacros& macros);

    /// Completes what is said of the file at `path`, relative to the folder of the rules, where that says nothing.
    void complete(std::string_view path, Origin& origin) const;

  private:
    struct Rule {
        Pattern pattern;
        Origin origin;
    };
    std::vector<Rule> rules_;  // of several that match, the last that says something counts
};

}  // namespace host::git
