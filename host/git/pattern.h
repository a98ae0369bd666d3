// Patterns as Git's own files hold them: .gitignore, .gitattributes.
#pragma once

#include "host/text/glob.h"

#include <optional>
#include <string_view>
#include <utility>

namespace host::git {

/// A pattern for paths below the folder whose file holds it.
///
///     *.log       the name of a file or folder in any folder
///     /a  a/b     a path from the folder on
///     a/          folders only
class Pattern {
  public:
    /// Reads a pattern without blanks around it. None for one that matches nothing, or that is longer than any path.
    static std::optional<Pattern> read(std::string_view text);

    /// `path` is relative to the folder.
    [[nodiscard]] bool matches(std::string_view path, bool is_folder) const;

  private:
    explicit Pattern(Glob glob) : glob_(std::move(glob)) {}

    Glob glob_;
    bool is_name_ = false;
    bool is_for_folders_ = false;
};

}  // namespace host::git
