#include "host/worktree/refresh.h"

#include "host/files/text_spool.h"
#include "host/indexing/file_rows.h"
#include "host/indexing/revision.h"
#include "host/manifests/manifests.h"
#include "host/resolve/resolver.h"
#include "host/rules/test_paths.h"
#include "host/sqlite/revised_sqlite_index.h"
#include "host/threads/all_cores.h"
#include "host/worktree/affected_files.h"
#include "host/worktree/extract.h"
#include "host/worktree/source_reading.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <iterator>
#include <map>
#include <string>
#include <utility>

namespace host::worktree {

namespace {

class Refresh {
  public:
    Refresh(const Checkout& checkout, const ListedSources& listed, const IndexedSources& indexed, TextSpool& spool)
        : listed_(listed), indexed_(indexed), spool_(spool), reading_(checkout, &indexed.facts, spool),
          files_(listed.sources.size()), changed_(indexed.changed.size()) {}

    // Reads the changed files, and then those that see the change; of others what they show. Returns whether all that is
    // needed is known.
    [[nodiscard]] bool read(indexing::Progress& progress) {
        // The changed ones first: the longest part of the work is to parse them.
        const std::size_t changed = changed_.size();
        std::vector<std::uint32_t> others;
        for (std::uint32_t file = 0; file < files_.size(); ++file) {
            if (!std::ranges::binary_search(indexed_.changed, file)) {
                others.push_back(file);
            }
        }
        const auto read = [&](std::size_t at) {
            return at < changed ? read_changed(at) : take(others[at - changed], old_surface(others[at - changed]));
        };
        if (!all_hold(files_.size(), read, progress)) {
            return false;
        }
        std::optional<std::vector<std::uint32_t>> affected = affected_files(changed_, files_, indexed_.facts, progress);
        affected_ = affected ? std::move(*affected) : std::vector<std::uint32_t>();
        return affected &&
               all_hold(
                   affected_.size(), [&](std::size_t at) { return read_affected(affected_[at]); }, progress);
    }

    // The files whose rows may change, ascending.
    [[nodiscard]] const std::vector<std::uint32_t>& affected() const { return affected_; }

    // Links what the files show, and resolves the affected ones.
    std::optional<Revision> revise(std::vector<resolve::Package> packages, const IndexState& state,
                                   indexing::Progress& progress) {
        resolve::Repository repository{.files = {}, .packages = std::move(packages)};
        for (const ReadFile& file : files_) {
            repository.files.push_back({file.path, file.facts.dialect, &file.facts.syntax});
        }
        const resolve::Resolver resolver(repository);
        progress.report();
        on_all_cores(
            files_.size(),
            [&](std::size_t at) { resolve_names(files_[at], static_cast<resolve::FileId>(at), resolver); },
            [&](std::size_t) { progress.report(); });
        std::map<std::string, std::int64_t> unresolved;
        for (const std::uint32_t file : affected_) {
            unresolved_[file] = files_[file].references.unresolved;
            unresolved[std::string(files_[file].facts.language)] +=
                files_[file].references.unresolved - indexed_.sources[file].unresolved;
        }
        indexing::ImportReport report;
        const indexing::Extraction extraction = extract(files_, repository, {}, report);
        return indexing::revise(extraction, affected_, state, report, unresolved, spool_);
    }

    [[nodiscard]] std::vector<ImportedSource> sources() const {
        std::vector<ImportedSource> sources = indexed_.sources;
        for (const auto& [file, unresolved] : unresolved_) {
            sources[file] = {files_[file].content_hash, unresolved};
        }
        return sources;
    }

  private:
    // Does something for each number below `count`, on all cores. Returns whether it holds of all.
    template <class Holds>
    static bool all_hold(std::size_t count, const Holds& holds, indexing::Progress& progress) {
        std::atomic<bool> hold = true;
        on_all_cores(
            count,
            [&](std::size_t at) {
                if (hold && !holds(at)) {
                    hold = false;
                }
            },
            [&](std::size_t) { progress.report(); });
        return hold;
    }

    [[nodiscard]] std::optional<SourceFacts> old_surface(std::uint32_t file) const {
        const std::string& path = listed_.sources[file].path;
        const std::int64_t hash = indexed_.sources[file].content_hash;
        return hash == 0 ? surface_of(facts_of_name(path)) : indexed_.facts.find_surface(hash, path);
    }

    // Takes what is known of a file that has not changed. Returns whether anything is.
    bool take(std::uint32_t file, std::optional<SourceFacts> facts) {
        if (facts) {
            files_[file].path = listed_.sources[file].path;
            files_[file].content_hash = indexed_.sources[file].content_hash;
            files_[file].facts = std::move(*facts);
            files_[file].declarations = spooled(files_[file].facts.declarations, spool_);
        }
        return facts.has_value();
    }

    bool read_changed(std::size_t at) {
        const std::uint32_t file = indexed_.changed[at];
        std::optional<SourceFacts> surface = old_surface(file);
        files_[file] = reading_.read(listed_.sources[file].path, 0);
        const bool can_be_read = files_[file].content_hash != 0 && indexed_.sources[file].content_hash != 0;
        if (!can_be_read || !surface || surface->language != files_[file].facts.language) {
            return false;
        }
        changed_[at] = {file, std::move(*surface)};
        return true;
    }

    bool read_affected(std::uint32_t file) {
        const bool is_read = std::ranges::binary_search(indexed_.changed, file);
        return is_read || take(file, indexed_.facts.find(files_[file].content_hash, files_[file].path));
    }

    const ListedSources& listed_;
    const IndexedSources& indexed_;
    TextSpool& spool_;
    const SourceReading reading_;
    std::vector<ReadFile> files_;         // those that are not affected hold surfaces
    std::vector<ChangedSource> changed_;  // in the order of `IndexedSources::changed`
    std::vector<std::uint32_t> affected_;
    std::map<std::uint32_t, std::int64_t> unresolved_;  // of the affected files
};

std::vector<RowId> ids_of(const std::vector<std::uint32_t>& files) {
    std::vector<RowId> ids;
    std::ranges::transform(files, std::back_inserter(ids), indexing::RowIds::of_file);
    return ids;
}

}  // namespace

std::optional<std::vector<ImportedSource>> refresh_listed(const Checkout& checkout, const ListedSources& listed,
                                                          const RepositoryRules& rules, const IndexedSources& indexed,
                                                          const SqliteIndex& index, indexing::Progress& progress) {
    try {
        RevisedSqliteIndex revised(index.name(), [&] { progress.report(); });
        TextSpool spool(revised.scratch_path("texts"));
        Refresh refresh(checkout, listed, indexed, spool);
        if (!refresh.read(progress)) {
            return std::nullopt;
        }
        const PathRules tests(rules.tests);
        const TestRulesInForce in_force(tests);
        const std::optional<Revision> revision = refresh.revise(manifests::packages_of(checkout, listed.paths),
                                                                revised.state(ids_of(refresh.affected())), progress);
        if (revision) {
            revised.commit(*revision);
        }
        return revision ? std::optional(refresh.sources()) : std::nullopt;
    } catch (const IndexError&) {  // which the import replaces
        return std::nullopt;
    }
}

}  // namespace host::worktree
