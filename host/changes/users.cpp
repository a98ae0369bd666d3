#include "host/changes/users.h"

#include <algorithm>
#include <utility>

namespace host::changes {

namespace {

bool is_from_other_production_file(const IndexState& state, const Use& use) {
    return use.source != state.declarations()[use.target].file && !state.files()[use.source].is_test;
}

}  // namespace

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

bool has_production_users(const IndexState& state, Number declaration) {
    return std::ranges::any_of(state.uses_of(declaration), [&](const Use& use) {
        return use.is_evidence && is_from_other_production_file(state, use);
    });
}

bool is_referred_to(const IndexState& state, Number declaration) {
    return std::ranges::any_of(state.uses_of(declaration),
                               [&](const Use& use) { return is_from_other_production_file(state, use); });
}

FileUsers::FileUsers(const IndexState& state) : users_(state.files().size()) {
    std::vector<Number> last_used(state.files().size(), NONE);  // of each file the file that it was last seen to use
    for (Number file = 0; file < state.files().size(); ++file) {
        for (const Use& use : state.uses_of_file(file)) {
            if (use.is_evidence && is_from_other_production_file(state, use) &&
                std::exchange(last_used[use.source], file) != file) {
                users_[file].push_back(use.source);
            }
        }
        std::ranges::sort(users_[file]);
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
