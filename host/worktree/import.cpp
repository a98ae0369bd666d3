#include "host/worktree/import.h"

#include "host/files/checkout.h"
#include "host/files/file_language.h"
#include "host/files/text_spool.h"
#include "host/git/checkout_files.h"
#include "host/indexing/making.h"
#include "host/manifests/manifests.h"
#include "host/resolve/resolver.h"
#include "host/rules/repository_rules.h"
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

ReadFile read_file(const std::string& path, const Checkout& checkout, TextSpool& spool) {
    static const std::atomic<bool> IS_CANCELLED = false;
    ReadFile file;
    file.path = path;
    file.facts = facts_of_name(path);
    if (const std::optional<FileContent> content = checkout.read(path, sources::LARGEST_SOURCE)) {
        file.content_hash = content->hash;
        if (content->text) {
            file.facts = facts_of(*content->text, path, IS_CANCELLED);
            file.declarations = spooled(std::exchange(file.facts.declarations, {}), spool);
        }
    }
    return file;
}

// Chooses the files whose names tell their language, and that neither a rule nor an attribute leaves out.
std::vector<ReadFile> chosen(std::span<const git::CheckoutFile> listed, const PathRules& exclusions,
                             ImportReport& report) {
    std::vector<ReadFile> files;
    for (const auto& [path, stamp, origin] : listed) {
        const bool is_foreign = origin.is_generated.value_or(false) || origin.is_vendored.value_or(false);
        if (usual_language(path).empty()) {
            continue;
        }
        if (exclusions.decide(path).value_or(is_foreign)) {
            report.excluded.add(path);
        } else {
            files.emplace_back().path = path;
        }
    }
    return files;
}

Extraction read_all(std::vector<ReadFile>& files, resolve::Repository& repository, const Checkout& checkout,
                    TextSpool& spool, Progress& progress, ImportReport& report) {
    const auto on_done = [&](std::size_t count) { progress.advance(count); };
    on_all_cores(
        files.size(), [&](std::size_t at) { files[at] = read_file(files[at].path, checkout, spool); }, on_done);
    for (const ReadFile& file : files) {
        repository.files.push_back({file.path, file.facts.dialect, &file.facts.syntax});
    }
    const resolve::Resolver resolver(repository);
    std::vector<resolve::References> references(files.size());
    on_all_cores(
        files.size(),
        [&](std::size_t at) { references[at] = resolver.references_of(static_cast<resolve::FileId>(at)); }, on_done);
    return extract(files, repository, resolver, references, report);
}

}  // namespace

ImportReport import_sources(const ImportRequest& request, NewIndex& index, const indexing::OnProgress& on_progress) {
    Progress progress(on_progress);
    index.watch([&] { progress.report(); });
    const std::optional<Checkout> checkout(request.folder);
    index.claim(checkout->root().string());
    ImportReport report;
    report.source = report.checkout = checkout->root().string();
    const RepositoryRules rules = with_repository_rules({request.exclusions, request.tests}, checkout);
    const PathRules tests(rules.tests);
    const TestRulesInForce in_force(tests);
    const std::vector<git::CheckoutFile> listed = git::checkout_files(*checkout, [&] { progress.report(); });
    std::vector<std::string> paths;
    std::ranges::transform(listed, std::back_inserter(paths), &git::CheckoutFile::path);
    std::vector<ReadFile> files = chosen(listed, PathRules(rules.exclusions), report);
    if (files.empty() && index.would_replace()) {
        throw std::runtime_error(request.folder + ": no source file is there, so " + index.name() +
                                 " is kept; name the folder of a checkout, or remove the index first");
    }
    progress.expect(3 * files.size());
    TextSpool spool(index.scratch_path("texts"));
    resolve::Repository repository{.files = {}, .packages = manifests::packages_of(*checkout, paths)};
    const Extraction extraction = read_all(files, repository, *checkout, spool, progress, report);
    make_index(extraction, rules.tests, checkout, spool, index, progress, report);
    return report;
}

}  // namespace host::worktree
