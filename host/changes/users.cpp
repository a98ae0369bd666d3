#include "host/changes/users.h"

#include <algorithm>
#include <utility>

namespace host::changes {

UsersOf users_of(const IndexState& state, const std::vector<Number>& declarations) {
    UsersOf users;
    for (const Number declaration : declarations) {
        for (const Use& use : state.uses_of(declaration)) {
            if (use.source == state.declarations()[declaration].file) {
                continue;
            }
            if (state.files()[use.source].is_test) {
                if (use.is_evidence) {
                    users.tests.insert(use.source);
                }
            } else if (use.is_evidence) {
                users.production[use.source] += use.references;
            } else {
                users.name_matches += use.references;
            }
        }
    }
    return users;
}

FileUsers::FileUsers(const IndexState& state) : users_(state.files().size()) {
    for (const Use& use : state.uses()) {
        const Number file = state.declarations()[use.target].file;
        if (use.is_evidence && use.source != file && !state.files()[use.source].is_test) {
            users_[file].push_back(use.source);
        }
    }
    for (std::vector<Number>& users : users_) {
        std::ranges::sort(users);
        users.erase(std::unique(users.begin(), users.end()), users.end());
    }
}

std::map<Number, std::size_t> FileUsers::reached(const std::set<Number>& first, Number origin,
                                                 std::size_t depth) const {
    std::map<Number, std::size_t> distances;
    std::vector<Number> nearest(first.begin(), first.end());
    for (std::size_t distance = 1; distance <= depth && !nearest.empty(); ++distance) {
        std::vector<Number> next;
        for (const Number file : nearest) {
            if (file != origin && distances.emplace(file, distance).second) {
                next.insert(next.end(), users_[file].begin(), users_[file].end());
            }
        }
        nearest = std::move(next);
    }
    return distances;
}

}  // namespace host::changes
