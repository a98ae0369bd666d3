#include "host/changes/changes.h"

#include "host/changes/index_state.h"
#include "host/changes/pairing.h"
#include "host/changes/signature.h"
#include "host/changes/users.h"
#include "host/paths/find_paths.h"
#include "host/paths/missing_paths.h"
#include "workers/wiki/scope/kinds.h"

#include <algorithm>
#include <future>
#include <iterator>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace host::changes {

namespace {

using Selection = std::unordered_set<std::string>;

// The paths of a request that one of the indexes has.
struct Selected {
    Selection files;
    std::vector<std::string> remarks;
    bool is_failure = false;
};

Selected selected(storage::Database& old_index, storage::Database& new_index, const std::vector<std::string>& paths) {
    const std::vector<std::string> all{"."};
    const std::vector<std::string>& named = paths.empty() ? all : paths;
    const FoundPaths before = find_paths(old_index, nullptr, named);
    const FoundPaths after = find_paths(new_index, nullptr, named);
    Selected selected;
    selected.files.insert(before.indexed.begin(), before.indexed.end());
    selected.files.insert(after.indexed.begin(), after.indexed.end());
    std::vector<std::string> missing;
    std::ranges::copy_if(after.missing, std::back_inserter(missing), [&](const std::string& path) {
        return std::ranges::find(before.missing, path) != before.missing.end();
    });
    selected.is_failure = selected.files.empty() && !paths.empty();
    selected.remarks = remarks_on_missing(missing, after.suggestions, selected.is_failure);
    return selected;
}

class Comparison {
  public:
    Comparison(IndexState& old_state, IndexState& new_state, const Selected& selected, std::size_t depth)
        : old_(old_state), new_(new_state), pairing_(paired(old_state, new_state)), selected_(selected.files),
          depth_(depth) {
        if (depth_ > 1) {
            new_users_.emplace(new_);
        }
    }

    [[nodiscard]] Changes changes() const {
        Changes changes;
        add_files(changes);
        add_removed(changes);
        add_kept(changes);
        add_added(changes);
        add_users(changes);
        return changes;
    }

  private:
    [[nodiscard]] bool is_selected(const FileState& file) const { return selected_.contains(file.path); }

    // Whether a pair of files is selected: by either path.
    [[nodiscard]] bool is_selected_pair(Number old_file) const {
        return is_selected(old_.files()[old_file]) || is_selected(new_.files()[pairing_.files.of_old[old_file]]);
    }

    void add_files(Changes& changes) const {
        for (Number file = 0; file < old_.files().size(); ++file) {
            const FileState& before = old_.files()[file];
            const Number counterpart = pairing_.files.of_old[file];
            if (counterpart == NONE) {
                if (is_selected(before)) {
                    changes.removed_files.push_back(before.path);
                }
                continue;
            }
            const FileState& after = new_.files()[counterpart];
            if (!is_selected_pair(file)) {
                continue;
            }
            if (before.path != after.path) {
                changes.moved_files.push_back({before.path, after.path});
            } else if (before.content_hash && after.content_hash && before.content_hash != after.content_hash) {
                changes.changed_files.push_back(after.path);
            }
        }
        for (Number file = 0; file < new_.files().size(); ++file) {
            if (pairing_.files.of_new[file] == NONE && is_selected(new_.files()[file])) {
                changes.added_files.push_back(new_.files()[file].path);
            }
        }
    }

    // Whether a declaration is told of by itself.
    static bool is_told(const IndexState& state, Number declaration) {
        return state.declarations()[declaration].is_public && !state.file_of(declaration).is_test;
    }

    // Whether it can only be used by its name, so that what is not found to use it does not use it.
    static bool is_api(const IndexState& state, Number declaration) {
        const DeclarationState& declared = state.declarations()[declaration];
        return is_told(state, declaration) && declared.type == NONE && wiki::scope::is_callable_or_type(declared.kind);
    }

    // Whether the type that a declaration is a member of has no counterpart either, and is told of with its members.
    static bool goes_with_its_type(const IndexState& state, const std::vector<Number>& counterparts,
                                   Number declaration) {
        const Number type = state.declarations()[declaration].type;
        return type != NONE && counterparts[type] == NONE && is_told(state, type);
    }

    // Of all types without a counterpart, their members, and those of these.
    static std::unordered_map<Number, std::vector<Number>> members_of_types(const IndexState& state,
                                                                            const std::vector<Number>& counterparts) {
        std::unordered_map<Number, std::vector<Number>> members;
        for (Number at = 0; at < state.declarations().size(); ++at) {
            if (counterparts[at] == NONE && is_told(state, at)) {
                Number type = at;
                while (goes_with_its_type(state, counterparts, type)) {
                    type = state.declarations()[type].type;
                }
                members[type].push_back(at);
            }
        }
        return members;
    }

    static Declared declared(const IndexState& state, Number number) {
        const DeclarationState& declaration = state.declarations()[number];
        std::string name(declaration.name);
        for (Number type = declaration.type; type != NONE; type = state.declarations()[type].type) {
            name.insert(0, ".").insert(0, state.declarations()[type].name.view());
        }
        return {.name = std::move(name),
                .fqn = std::string(declaration.fqn),
                .kind = std::string(declaration.kind),
                .path = state.files()[declaration.file].path,
                .first_line = declaration.first_line,
                .last_line = declaration.last_line,
                .signature = std::string(state.signature(number)),
                .is_public = declaration.is_public};
    }

    [[nodiscard]] User::Now now(Number old_user, const std::map<Number, std::int64_t>& new_users) const {
        const Number counterpart = pairing_.files.of_old[old_user];
        if (counterpart == NONE) {
            return User::Now::GONE;
        }
        const FileState& before = old_.files()[old_user];
        const FileState& after = new_.files()[counterpart];
        return new_users.contains(counterpart)             ? User::Now::USES
               : have_same_content(before, after)          ? User::Now::UNCHANGED
               : before.content_hash && after.content_hash ? User::Now::CHANGED
                                                           : User::Now::UNKNOWN;
    }

    // Adds who has used and who uses what is told of.
    void add_users_of(DeclarationChange& change, const UsersOf& before, const UsersOf& after, Number new_file) const {
        std::set<Number> nearest;
        for (const auto& [user, references] : before.production) {
            change.users.push_back({old_.files()[user].path, references, now(user, after.production)});
            if (pairing_.files.of_old[user] != NONE) {
                nearest.insert(pairing_.files.of_old[user]);
            }
        }
        for (const auto& [user, references] : after.production) {
            nearest.insert(user);
        }
        if (new_users_) {
            for (const auto& [file, distance] : new_users_->reached(nearest, new_file, depth_)) {
                if (distance > 1) {
                    change.distant.push_back({new_.files()[file].path, distance});
                }
            }
            std::ranges::stable_sort(change.distant, {}, &Distant::distance);
        }
    }

    void add_removed(Changes& changes) const {
        const auto members = members_of_types(old_, pairing_.declarations.of_old);
        for (Number at = 0; at < old_.declarations().size(); ++at) {
            const auto with_members = members.find(at);
            if (with_members == members.end() || !is_selected(old_.file_of(at))) {
                continue;
            }
            DeclarationChange change{.before = declared(old_, at), .members = with_members->second.size() - 1};
            const UsersOf before = users_of(old_, with_members->second);
            add_users_of(change, before, {}, pairing_.files.of_old[old_.declarations()[at].file]);
            add_tests(change, old_, before);
            changes.removed.push_back(std::move(change));
        }
    }

    static void add_tests(DeclarationChange& change, const IndexState& state, const UsersOf& users) {
        std::ranges::transform(users.tests, std::back_inserter(change.tests),
                               [&](Number file) { return state.files()[file].path; });
        change.name_matches = users.name_matches;
    }

    void add_added(Changes& changes) const {
        const auto members = members_of_types(new_, pairing_.declarations.of_new);
        for (Number at = 0; at < new_.declarations().size(); ++at) {
            const auto with_members = members.find(at);
            if (with_members != members.end() && is_selected(new_.file_of(at))) {
                changes.added.push_back({.after = declared(new_, at), .members = with_members->second.size() - 1});
            }
        }
    }

    // Whether a type was renamed that a declaration is a member of; then their texts are the same but for its name.
    [[nodiscard]] bool is_in_renamed_type(Number old_one) const {
        for (Number type = old_.declarations()[old_one].type; type != NONE; type = old_.declarations()[type].type) {
            const Number counterpart = pairing_.declarations.of_old[type];
            if (counterpart != NONE && old_.declarations()[type].name != new_.declarations()[counterpart].name) {
                return true;
            }
        }
        return false;
    }

    [[nodiscard]] DeclarationChange difference(Number old_one, Number new_one) const {
        const DeclarationState& before = old_.declarations()[old_one];
        const DeclarationState& after = new_.declarations()[new_one];
        const bool is_renamed = before.name != after.name;
        const bool has_signatures = !old_.signature(old_one).empty() && !new_.signature(new_one).empty();
        const bool is_member_of_moved =
            are_of_one_type(before, after) && old_.declarations()[before.type].file == before.file;
        return {.is_moved = pairing_.files.of_old[before.file] != after.file && !is_member_of_moved,
                .is_renamed = is_renamed,
                .has_other_signature = has_signatures && !is_renamed && !is_in_renamed_type(old_one) &&
                                       !is_same_signature(old_.signature(old_one), new_.signature(new_one)),
                .has_other_kind = before.kind != after.kind,
                .has_other_visibility =
                    before.is_public != after.is_public && !share_it_with_their_type(before, after)};
    }

    // Whether two declarations are members of a type that is in both states.
    [[nodiscard]] bool are_of_one_type(const DeclarationState& before, const DeclarationState& after) const {
        return before.type != NONE && after.type != NONE && pairing_.declarations.of_old[before.type] == after.type;
    }

    // Whether the type of which both are members has another visibility, which is told of that.
    [[nodiscard]] bool share_it_with_their_type(const DeclarationState& before, const DeclarationState& after) const {
        return are_of_one_type(before, after) &&
               old_.declarations()[before.type].is_public != new_.declarations()[after.type].is_public;
    }

    // What both states have: how it differs, and whether nothing uses it any more.
    void add_kept(Changes& changes) const {
        for (Number at = 0; at < old_.declarations().size(); ++at) {
            const Number counterpart = pairing_.declarations.of_old[at];
            if (counterpart == NONE || (!is_told(old_, at) && !is_told(new_, counterpart)) ||
                !(is_selected(old_.file_of(at)) || is_selected(new_.file_of(counterpart)))) {
                continue;
            }
            DeclarationChange change = difference(at, counterpart);
            if (change.is_moved || change.is_renamed || change.has_other_signature || change.has_other_kind ||
                change.has_other_visibility) {
                const UsersOf after = users_of(new_, {counterpart});
                change.before = declared(old_, at);
                change.after = declared(new_, counterpart);
                add_users_of(change, users_of(old_, {at}), after, new_.declarations()[counterpart].file);
                add_tests(change, new_, after);
                changes.changed.push_back(std::move(change));
            }
            if (is_api(old_, at) && is_api(new_, counterpart)) {
                add_use(changes, at, counterpart);
            }
        }
    }

    void add_use(Changes& changes, Number old_one, Number new_one) const {
        if (has_production_users(old_, old_one) && !is_referred_to(new_, new_one)) {
            changes.unused.push_back(declared(new_, new_one));
        } else if (has_production_users(new_, new_one) && !is_referred_to(old_, old_one)) {
            changes.used_again.push_back(declared(new_, new_one));
        }
    }

    // The paths of those files that have no counterpart among others.
    static std::vector<std::string> not_among(const IndexState& state, const std::vector<Number>& files,
                                              const std::vector<Number>& counterparts,
                                              const std::vector<Number>& others) {
        std::vector<std::string> paths;
        for (const Number file : files) {
            if (!std::ranges::binary_search(others, counterparts[file]) || counterparts[file] == NONE) {
                paths.push_back(state.files()[file].path);
            }
        }
        return paths;
    }

    void add_users(Changes& changes) const {
        const FileUsers before(old_);
        const FileUsers after(new_);
        for (Number file = 0; file < new_.files().size(); ++file) {
            const Number old_file = pairing_.files.of_new[file];
            if (old_file == NONE || new_.files()[file].is_test || !is_selected_pair(old_file)) {
                continue;
            }
            FileUsersChange change{.path = new_.files()[file].path,
                                   .gained =
                                       not_among(new_, after.of(file), pairing_.files.of_new, before.of(old_file)),
                                   .lost = not_among(old_, before.of(old_file), pairing_.files.of_old, after.of(file))};
            if (!change.gained.empty() || !change.lost.empty()) {
                changes.users.push_back(std::move(change));
            }
        }
    }

    const IndexState& old_;
    const IndexState& new_;
    const Pairing pairing_;
    const Selection& selected_;
    const std::size_t depth_;
    std::optional<FileUsers> new_users_;
};

}  // namespace

bool Changes::empty() const {
    return added_files.empty() && removed_files.empty() && moved_files.empty() && changed_files.empty() &&
           removed.empty() && changed.empty() && added.empty() && users.empty() && unused.empty() && used_again.empty();
}

Changes compare(storage::Database& old_index, storage::Database& new_index, const ChangesRequest& request) {
    Selected choice = selected(old_index, new_index, request.paths);
    if (choice.is_failure) {
        return {.remarks = std::move(choice.remarks), .is_failure = true};
    }
    const auto read = [&](storage::Database& index) { return IndexState(index, request.tests); };
    std::future<IndexState> reading = std::async([&] { return read(old_index); });
    IndexState new_state = read(new_index);
    IndexState old_state = reading.get();
    Changes changes = Comparison(old_state, new_state, choice, request.depth).changes();
    changes.remarks = std::move(choice.remarks);
    return changes;
}

}  // namespace host::changes
