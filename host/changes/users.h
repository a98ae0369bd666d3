// Who uses a declaration or a file in one state of a repository, and who uses those.
#pragma once

#include "host/changes/index_state.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <vector>

namespace host::changes {

/// Those that use some declarations, without the file that declares them.
struct UsersOf {
    std::map<Number, std::int64_t> production;  ///< the files that are proven to use one, and their references
    std::set<Number> tests;                     ///< likewise
    std::int64_t name_matches = 0;              ///< references of other production files that only match a name
};

/// Returns the users of a declaration and, if it is a type, of its members in the same file.
UsersOf users_of(const IndexState& state, const std::vector<Number>& declarations);

/// Whether other production files are proven to use a declaration.
bool has_production_users(const IndexState& state, Number declaration);

/// Whether other production files refer to a declaration, be it by its name alone.
bool is_referred_to(const IndexState& state, Number declaration);

/// Which production files are proven to use which others.
class FileUsers {
  public:
    explicit FileUsers(const IndexState& state);

    /// The production files that use a file, in order.
    [[nodiscard]] const std::vector<Number>& of(Number file) const { return users_[file]; }

    /// Returns how far away the users of users are: at most `depth` steps, of which the files in `first` are the first.
    /// The file `origin` is none of them.
    [[nodiscard]] std::map<Number, std::size_t> reached(const std::set<Number>& first, Number origin,
                                                        std::size_t depth) const;

  private:
    std::vector<std::vector<Number>> users_;
};

}  // namespace host::changes
