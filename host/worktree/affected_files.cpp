#include "host/worktree/affected_files.h"

#include "host/resolve/changed_names.h"
#include "host/resolve/differences.h"
#include "host/threads/all_cores.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace host::worktree {

namespace {

using resolve::ChangedNames;
using Change = ChangedNames::Change;

resolve::File file_with(const ReadFile& file, const SourceFacts& facts) {
    return {file.path, facts.dialect, &facts.syntax};
}

// The names that mean something else; none where that is not known.
std::optional<ChangedNames> changed_names(std::span<const ChangedSource> changed, std::span<const ReadFile> files) {
    std::vector<resolve::File> now;
    for (const ReadFile& file : files) {
        now.push_back(file_with(file, file.facts));
    }
    ChangedNames names;
    for (const auto& [file, old_surface] : changed) {
        const bool is_seen = to_bytes(surface_of(files[file].facts)) != to_bytes(old_surface);
        if (is_seen && !resolve::add_differences(file_with(files[file], old_surface), now[file], now, names)) {
            return std::nullopt;
        }
    }
    return names.add_leading_to_these(now) ? std::optional(std::move(names)) : std::nullopt;
}

// Whether a file has one of the names. Reads no more of what is known of it than it must.
bool has_any(const ChangedNames& names, const ReadFile& file, FactsStore& facts) {
    if (file.content_hash == 0) {  // nothing is known, and nothing was
        return false;
    }
    Change most = Change::UNCHANGED;
    const auto is_changed_everywhere = [&](std::string_view name) {
        most = std::max(most, names.change_of(name));
        return most == Change::EVERYWHERE;
    };
    if (facts.have_name(file.content_hash, file.path, is_changed_everywhere) || most == Change::UNCHANGED) {
        return most != Change::UNCHANGED;
    }
    const std::optional<SourceFacts> whole = facts.find(file.content_hash, file.path);
    return !whole || names.are_looked_up_in(file_with(file, *whole));
}

}  // namespace

std::optional<std::vector<std::uint32_t>> affected_files(std::span<const ChangedSource> changed,
                                                         std::span<const ReadFile> files, FactsStore& facts,
                                                         indexing::Progress& progress) {
    constexpr std::size_t LARGEST_PART = 8;
    constexpr std::size_t FEW = 100;
    const std::optional<ChangedNames> names = changed_names(changed, files);
    if (!names) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> is_affected(files.size());
    if (!names->are_none()) {
        on_all_cores(
            files.size(), [&](std::size_t file) { is_affected[file] = has_any(*names, files[file], facts) ? 1 : 0; },
            [&](std::size_t) { progress.report(); });
    }
    for (const ChangedSource& each : changed) {
        is_affected[each.file] = 1;
    }
    std::vector<std::uint32_t> affected;
    for (std::uint32_t file = 0; file < files.size(); ++file) {
        if (is_affected[file] != 0) {
            affected.push_back(file);
        }
    }
    return affected.size() <= files.size() / LARGEST_PART + FEW ? std::optional(std::move(affected)) : std::nullopt;
}

}  // namespace host::worktree
