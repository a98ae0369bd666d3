#include "host/worktree/import.h"

#include "host/files/text_spool.h"
#include "host/indexing/making.h"
#include "host/manifests/manifests.h"
#include "host/resolve/resolver.h"
#include "host/rules/test_paths.h"
#include "host/worktree/all_cores.h"
#include "host/worktree/extract.h"
#include "host/worktree/source_reading.h"

#include <cstddef>
#include <span>
#include <stdexcept>

namespace host::worktree {

namespace {

using indexing::Extraction;
using indexing::ImportReport;
using indexing::Progress;

// Resolves what the files state, and puts all together.
Extraction link(std::span<ReadFile> files, resolve::Repository& repository, Progress& progress, Imported& imported) {
    for (const ReadFile& file : files) {
        repository.files.push_back({file.path, file.facts.dialect, &file.facts.syntax});
    }
    const resolve::Resolver resolver(repository);
    std::vector<resolve::References> references(files.size());
    on_all_cores(
        files.size(),
        [&](std::size_t at) { references[at] = resolver.references_of(static_cast<resolve::FileId>(at)); },
        [&](std::size_t count) { progress.advance(count); });
    for (std::size_t at = 0; at < files.size(); ++at) {
        imported.sources.push_back({files[at].content_hash, references[at].unresolved});
    }
    return extract(files, repository, resolver, references, imported.report);
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
    const SourceReading reading(checkout, known == nullptr ? nullptr : &known->facts, spool);
    std::vector<ReadFile> files(listed.sources.size());
    const auto read = [&](std::size_t at) {
        files[at] = reading.read(listed.sources[at].path, known == nullptr ? 0 : known->content_hashes[at]);
        files[at].facts.declarations = {};  // which are in the spool
    };
    on_all_cores(files.size(), read, [&](std::size_t count) { progress.advance(count); });
    resolve::Repository repository{.files = {}, .packages = manifests::packages_of(checkout, listed.paths)};
    const Extraction extraction = link(files, repository, progress, imported);
    make_index(extraction, rules.tests, checkout, spool, index, progress, report);
    return imported;
}

}  // namespace host::worktree
