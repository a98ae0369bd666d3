#include "host/imports/import.h"

#include "host/files/checkout.h"
#include "host/files/text_spool.h"
#include "host/git/repository_folder.h"
#include "host/indexing/joining.h"
#include "host/indexing/making.h"
#include "host/rules/repository_rules.h"
#include "host/rules/test_paths.h"
#include "host/scip/project_root.h"
#include "host/scip/read_documents.h"
#include "host/scip/scip_files.h"
#include "host/sources/language.h"
#include "host/worktree/checkout_index.h"
#include "host/worktree/listed_sources.h"
#include "host/worktree/read_sources.h"

#include <cstddef>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

namespace host::imports {

namespace {

using indexing::ImportReport;
using indexing::OnProgress;
using indexing::Progress;
using worktree::ListedSources;

// Where the sources are: in the checkout, else in the root of the repository where that is a folder of this machine.
std::optional<Checkout> checkout_of(const std::optional<std::string>& folder, const scip::Repository& repository) {
    std::error_code error;
    if (folder) {
        return std::optional<Checkout>(std::in_place, *folder);
    }
    const bool is_here = repository.root && std::filesystem::is_directory(*repository.root, error);
    return is_here ? std::optional<Checkout>(std::in_place, repository.root->string()) : std::nullopt;
}

// Whether the files of the root can be listed: SCIP files alone may state any folder, such as one above a whole disk.
bool is_checkout(const std::optional<std::string>& folder, const scip::Repository& repository) {
    return folder || git::is_checkout_root(worktree::checkout_around(*repository.root));
}

// Leaves out the sources of which documents tell, and those that they call generated. Returns how many.
std::size_t leave_out_described(const scip::ReadDocuments& documents, ListedSources& listed) {
    std::set<std::string_view> paths(documents.unwanted.begin(), documents.unwanted.end());
    for (const indexing::ExtractedFile& file : documents.extraction.files) {
        paths.insert(file.path);
    }
    std::erase_if(listed.excluded, [&](const std::string& path) { return paths.contains(path); });
    return std::erase_if(listed.sources, [&](const git::CheckoutFile& source) { return paths.contains(source.path); });
}

// The files of documents, with what their sources state.
std::vector<resolve::File> described_files(const scip::ReadDocuments& documents) {
    std::vector<resolve::File> files;
    for (const indexing::ExtractedFile& file : documents.extraction.files) {
        const auto source = documents.sources.find(file.path);
        const bool is_read = source != documents.sources.end() && source->second.outline;
        if (is_read && source->second.outline->syntax) {
            const std::string_view dialect = sources::understood_language(file.language, file.path)->name;
            files.push_back({file.path, dialect, &*source->second.outline->syntax});
        }
    }
    return files;
}

}  // namespace

ImportReport import_scip(const ImportRequest& request, NewIndex& index, const OnProgress& on_progress) {
    Progress progress(on_progress);
    const auto check_interrupt = [&] { progress.report(); };
    index.watch(check_interrupt);
    scip::ScipFiles scip(request.scip_paths, index.scratch_path("input"), check_interrupt);
    const scip::Repository repository = scip.repository(request.checkout);
    index.claim(request.checkout ? *request.checkout : repository.root.value_or("").string());
    const std::optional<Checkout> checkout = checkout_of(request.checkout, repository);
    const RepositoryRules rules = with_repository_rules({request.exclusions, request.tests}, checkout);
    const PathRules tests(rules.tests);
    const TestRulesInForce in_force(tests);
    ListedSources listed = checkout && is_checkout(request.checkout, repository)
                               ? worktree::list_sources(*checkout, rules.exclusions, check_interrupt)
                               : ListedSources();
    if (!request.has_other_files) {
        listed.sources.clear();
        listed.excluded.clear();
    }
    progress.expect(2 * scip.document_count() + 3 * listed.sources.size());
    TextSpool spool(index.scratch_path("texts"));
    ImportReport report;
    report.source = scip.names();
    report.tool = scip.tools();
    scip::ReadDocuments documents =
        scip::read_documents(scip, repository, PathRules(rules.exclusions), checkout, spool, progress, report);
    const std::vector<resolve::File> described = described_files(documents);
    progress.advance(3 * leave_out_described(documents, listed));
    for (const std::string& path : listed.excluded) {
        report.excluded.add(path);
    }
    std::optional<worktree::ReadSources> sources;
    if (checkout) {
        sources.emplace(*checkout, listed, nullptr, spool, progress);
        documents.extraction =
            joined(std::move(documents.extraction), sources->extract(described, progress, report), report);
    }
    if (documents.extraction.files.empty() && index.would_replace()) {
        throw std::runtime_error(scip.names() + ": no source file is named there, so " + index.name() +
                                 " is kept; run the indexer on sources, or remove the index first");
    }
    make_index(documents.extraction, rules.tests, checkout, spool, index, 0, progress, report);
    return report;
}

}  // namespace host::imports
