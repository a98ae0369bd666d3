#include "host/changes/pairing.h"

#include "host/changes/same_text.h"
#include "host/changes/signature.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <utility>

namespace host::changes {

namespace {

// The files of a state without a counterpart, by content.
std::map<std::int64_t, std::vector<Number>> left_by_content(const IndexState& state,
                                                            const std::vector<Number>& counterparts) {
    std::map<std::int64_t, std::vector<Number>> left;
    for (Number file = 0; file < state.files().size(); ++file) {
        if (counterparts[file] == NONE && state.files()[file].content_hash) {
            left[*state.files()[file].content_hash].push_back(file);
        }
    }
    return left;
}

void join_files(const IndexState& old_state, const IndexState& new_state, Counterparts& files) {
    for (Number file = 0; file < old_state.files().size(); ++file) {
        if (const Number same = new_state.file_at(old_state.files()[file].path); same != NONE) {
            files.join(file, same);
        }
    }
    const auto came = left_by_content(new_state, files.of_new);
    for (const auto& [content, left] : left_by_content(old_state, files.of_old)) {
        const auto found = came.find(content);
        if (found != came.end() && left.size() == 1 && found->second.size() == 1) {
            files.join(left.front(), found->second.front());
        }
    }
}

std::vector<Named> declarations_in(const IndexState& state, const FileState& file) {
    std::vector<Named> declarations;
    for (Number at = file.first_declaration; at < file.first_declaration + file.declarations; ++at) {
        declarations.push_back({state.declarations()[at].fqn, at});
    }
    return declarations;
}

// What was moved with its file bears another qualified name, but stands at the same place in it.
bool join_in_order(const IndexState& old_state, const std::vector<Named>& olds, const IndexState& new_state,
                   const std::vector<Named>& news, Counterparts& declarations) {
    const auto is_same = [&](const Named& one, const Named& other) {
        const DeclarationState& declared = old_state.declarations()[one.declaration];
        const DeclarationState& counterpart = new_state.declarations()[other.declaration];
        return declared.name == counterpart.name && declared.kind == counterpart.kind &&
               declared.first_line == counterpart.first_line && declared.last_line == counterpart.last_line;
    };
    if (!std::ranges::equal(olds, news, is_same)) {
        return false;
    }
    for (std::size_t at = 0; at < olds.size(); ++at) {
        declarations.join(olds[at].declaration, news[at].declaration);
    }
    return true;
}

using Group = std::vector<Named>::iterator;

// What tells declarations of one name apart: their kind, and their signature.
using Overload = std::pair<models::Text, std::string>;

Overload overload(const IndexState& state, Number declaration) {
    return {state.declarations()[declaration].kind, compact(state.signature(declaration))};
}

// Joins declarations of one name, each list from its first to behind its last.
void join_group(const IndexState& old_state, std::pair<Group, Group> olds, const IndexState& new_state,
                std::pair<Group, Group> news, Counterparts& declarations) {
    const auto is_left_of_old = [&](const Named& each) { return declarations.of_old[each.declaration] == NONE; };
    const auto is_left_of_new = [&](const Named& each) { return declarations.of_new[each.declaration] == NONE; };
    if (olds.second - olds.first > 1 || news.second - news.first > 1) {
        std::multimap<Overload, Number> left;
        for (auto each = news.first; each != news.second; ++each) {
            if (is_left_of_new(*each)) {
                left.emplace(overload(new_state, each->declaration), each->declaration);
            }
        }
        for (auto old_one = olds.first; old_one != olds.second; ++old_one) {
            const Overload wanted = overload(old_state, old_one->declaration);
            if (const auto same = left.lower_bound(wanted); same != left.end() && same->first == wanted) {
                declarations.join(old_one->declaration, same->second);
                left.erase(same);
            }
        }
    }
    const auto old_one = std::find_if(olds.first, olds.second, is_left_of_old);
    const auto new_one = std::find_if(news.first, news.second, is_left_of_new);
    if (old_one != olds.second && new_one != news.second &&
        std::find_if(std::next(old_one), olds.second, is_left_of_old) == olds.second &&
        std::find_if(std::next(new_one), news.second, is_left_of_new) == news.second) {
        declarations.join(old_one->declaration, new_one->declaration);
    }
}

void join_declarations(const IndexState& old_state, const IndexState& new_state, Pairing& pairing) {
    for (Number file = 0; file < old_state.files().size(); ++file) {
        const Number counterpart = pairing.files.of_old[file];
        if (counterpart == NONE) {
            continue;
        }
        const FileState& before = old_state.files()[file];
        const FileState& after = new_state.files()[counterpart];
        std::vector<Named> olds = declarations_in(old_state, before);
        std::vector<Named> news = declarations_in(new_state, after);
        if (!have_same_content(before, after) ||
            !join_in_order(old_state, olds, new_state, news, pairing.declarations)) {
            join_by_name(old_state, std::move(olds), new_state, std::move(news), pairing.declarations);
        }
    }
}

// Of the pairs of files whose content is not known to be the same, and of all files without a counterpart.
std::vector<Number> changed_files(const IndexState& state, const IndexState& other,
                                  const std::vector<Number>& counterparts) {
    std::vector<Number> changed;
    for (Number file = 0; file < state.files().size(); ++file) {
        const Number counterpart = counterparts[file];
        if (counterpart == NONE || !have_same_content(state.files()[file], other.files()[counterpart])) {
            changed.push_back(file);
        }
    }
    return changed;
}

}  // namespace

bool have_same_content(const FileState& one, const FileState& other) {
    return one.content_hash && one.content_hash == other.content_hash;
}

void join_by_name(const IndexState& old_state, std::vector<Named> olds, const IndexState& new_state,
                  std::vector<Named> news, Counterparts& declarations) {
    std::ranges::stable_sort(olds, {}, &Named::name);
    std::ranges::stable_sort(news, {}, &Named::name);
    for (auto begin = olds.begin(); begin != olds.end();) {
        const auto end = std::ranges::upper_bound(begin, olds.end(), begin->name, {}, &Named::name);
        join_group(old_state, {begin, end}, new_state,
                   {std::ranges::lower_bound(news, begin->name, {}, &Named::name),
                    std::ranges::upper_bound(news, begin->name, {}, &Named::name)},
                   declarations);
        begin = end;
    }
}

Pairing paired(IndexState& old_state, IndexState& new_state) {
    Pairing pairing{.files = {old_state.files().size(), new_state.files().size()},
                    .declarations = {old_state.declarations().size(), new_state.declarations().size()}};
    join_files(old_state, new_state, pairing.files);
    old_state.read_signatures(changed_files(old_state, new_state, pairing.files.of_old));
    new_state.read_signatures(changed_files(new_state, old_state, pairing.files.of_new));
    join_declarations(old_state, new_state, pairing);
    join_same_texts(old_state, new_state, pairing);
    return pairing;
}

}  // namespace host::changes
