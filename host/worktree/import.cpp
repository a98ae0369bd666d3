#include "host/worktree/import.h"

#include "host/files/text_spool.h"
#include "host/indexing/making.h"
#include "host/manifests/manifests.h"
#include "host/resolve/resolver.h"
#include "host/rules/test_paths.h"
#include "host/sources/outline.h"
#include "host/worktree/all_cores.h"
#include "host/worktree/extract.h"
#include "host/worktree/source_facts.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <utility>

namespace host::worktree {

namespace {

using indexing::Extraction;
using indexing::ImportReport;
using indexing::Progress;

// Reads sources, and what is known of them without reading.
class Reading {
  public:
    Reading(const Checkout& checkout, const ListedSources& listed, const KnownSources* known, TextSpool& spool)
        : checkout_(checkout), listed_(listed), known_(known), spool_(spool) {}

    [[nodiscard]] ReadFile read(std::size_t at) const {
        ReadFile file;
        file.path = listed_.sources[at].path;
        file.content_hash = known_ == nullptr ? 0 : known_->content_hashes[at];
        std::optional<SourceFacts> facts = known_facts(file);
        file.facts = facts ? std::move(*facts) : read_facts(file);
        file.declarations = spooled(std::exchange(file.facts.declarations, {}), spool_);
        return file;
    }

  private:
    [[nodiscard]] std::optional<SourceFacts> known_facts(const ReadFile& file) const {
        return known_ == nullptr || file.content_hash == 0 ? std::nullopt
                                                           : known_->facts.find(file.content_hash, file.path);
    }

    SourceFacts read_facts(ReadFile& file) const {
        static const std::atomic<bool> IS_CANCELLED = false;
        const std::optional<FileContent> content = checkout_.read(file.path, sources::LARGEST_SOURCE);
        const bool is_new = content && std::exchange(file.content_hash, content->hash) != content->hash;
        if (std::optional<SourceFacts> facts = is_new ? known_facts(file) : std::nullopt) {
            return std::move(*facts);
        }
        if (!content || !content->text) {
            file.content_hash = content ? content->hash : 0;
            return facts_of_name(file.path);
        }
        SourceFacts facts = facts_of(*content->text, file.path, IS_CANCELLED);
        if (known_ != nullptr) {
            known_->facts.add(file.content_hash, file.path, facts);
        }
        return facts;
    }

    const Checkout& checkout_;
    const ListedSources& listed_;
    const KnownSources* known_;
    TextSpool& spool_;
};

// Resolves what the files state, and puts all together.
Extraction link(std::span<ReadFile> files, resolve::Repository& repository, Progress& progress, ImportReport& report) {
    for (const ReadFile& file : files) {
        repository.files.push_back({file.path, file.facts.dialect, &file.facts.syntax});
    }
    const resolve::Resolver resolver(repository);
    std::vector<resolve::References> references(files.size());
    on_all_cores(
        files.size(),
        [&](std::size_t at) { references[at] = resolver.references_of(static_cast<resolve::FileId>(at)); },
        [&](std::size_t count) { progress.advance(count); });
    return extract(files, repository, resolver, references, report);
}

}  // namespace

ImportReport import_sources(const ImportRequest& request, NewIndex& index, const indexing::OnProgress& on_progress) {
    Progress progress(on_progress);
    const Checkout checkout(request.folder);
    const RepositoryRules rules = with_repository_rules({request.exclusions, request.tests}, checkout);
    const ListedSources listed = list_sources(checkout, rules.exclusions, [&] { progress.report(); });
    if (listed.sources.empty() && index.would_replace()) {
        throw std::runtime_error(request.folder + ": no source file is there, so " + index.name() +
                                 " is kept; name the folder of a checkout, or remove the index first");
    }
    return import_listed(checkout, listed, rules, nullptr, index, progress).report;
}

Imported import_listed(const Checkout& checkout, const ListedSources& listed, const RepositoryRules& rules,
                       const KnownSources* known, NewIndex& index, Progress& progress) {
    index.watch([&] { progress.report(); });
    index.claim(checkout.root().string());
    Imported imported;
    ImportReport& report = imported.report;
    report.source = report.checkout = checkout.root().string();
    for (const std::string& path : listed.excluded) {
        report.excluded.add(path);
    }
    const PathRules tests(rules.tests);
    const TestRulesInForce in_force(tests);
    progress.expect(3 * listed.sources.size());
    TextSpool spool(index.scratch_path("texts"));
    const Reading reading(checkout, listed, known, spool);
    std::vector<ReadFile> files(listed.sources.size());
    on_all_cores(
        files.size(), [&](std::size_t at) { files[at] = reading.read(at); },
        [&](std::size_t count) { progress.advance(count); });
    std::ranges::transform(files, std::back_inserter(imported.content_hashes), &ReadFile::content_hash);
    resolve::Repository repository{.files = {}, .packages = manifests::packages_of(checkout, listed.paths)};
    const Extraction extraction = link(files, repository, progress, report);
    make_index(extraction, rules.tests, checkout, spool, index, progress, report);
    return imported;
}

}  // namespace host::worktree
