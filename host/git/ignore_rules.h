// What Git ignores, by the .gitignore files of a checkout.
#pragma once

#include "host/git/pattern.h"

#include <optional>
#include <string_view>
#include <vector>

namespace host::git {

/// The rules of one .gitignore file.
class IgnoreRules {
  public:
    explicit IgnoreRules(std::string_view text);

    /// Returns whether a path, relative to the folder of the file, is ignored; none when no rule matches it. What lies
    /// in an ignored folder is ignored as well, which the caller must know.
    [[nodiscard]] std::optional<bool> decide(std::string_view path, bool is_folder) const;

  private:
    struct Rule {
        Pattern pattern;
        bool ignores = true;
    };
    std::vector<Rule> rules_;  // the last that matches decides
};

}  // namespace host::git
