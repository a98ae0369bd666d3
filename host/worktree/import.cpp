#include "host/worktree/import.h"

#include "host/files/text_spool.h"
#include "host/indexing/making.h"
#include "host/indexing/revision.h"
#include "host/rules/test_paths.h"

#include <stdexcept>

namespace host::worktree {

using indexing::ImportReport;
using indexing::Progress;

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
    ReadSources sources(checkout, listed, known, spool, progress);
    const indexing::Extraction extraction = sources.extract({}, progress, report);
    imported.sources = sources.imported();
    const RowId room = known == nullptr ? 0 : indexing::ROOM_FOR_MORE;
    make_index(extraction, rules.tests, checkout, spool, index, room, progress, report);
    return imported;
}

}  // namespace host::worktree
