#include "host/scip/import.h"

#include "host/files/checkout.h"
#include "host/files/text_spool.h"
#include "host/indexing/making.h"
#include "host/rules/repository_rules.h"
#include "host/rules/test_paths.h"
#include "host/scip/extract.h"
#include "host/scip/language.h"
#include "host/scip/modules_of.h"
#include "host/scip/namesakes.h"
#include "host/scip/open_tokens.h"
#include "host/scip/project_root.h"
#include "host/scip/scip_files.h"
#include "host/scip/undeclared.h"
#include "host/scip/unseen_names.h"
#include "host/sources/source_reader.h"

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <vector>

namespace host::scip {

namespace {

using indexing::Extraction;
using indexing::ImportReport;
using indexing::OnProgress;
using indexing::Progress;

// The sources of a repository; none of them where there is no checkout.
class SourcesOfCheckout {
  public:
    SourcesOfCheckout(const std::optional<std::string>& folder, TextSpool& spool) {
        if (folder) {
            checkout_.emplace(*folder);
            reader_.emplace(*checkout_, spool);
        }
    }

    void request(const std::string& path, const std::string& language) {
        if (reader_) {
            reader_->request(path, language);
        }
    }

    [[nodiscard]] const std::optional<Checkout>& checkout() const { return checkout_; }

    sources::Sources finish(const std::function<void()>& check_interrupt) {
        return reader_ ? reader_->finish(check_interrupt) : sources::Sources();
    }

  private:
    std::optional<Checkout> checkout_;
    std::optional<sources::SourceReader> reader_;
};

// Where the sources are: in the checkout, else in the root of the repository where that is a folder of this machine.
std::optional<std::string> folder_of_sources(const std::optional<std::string>& checkout, const Repository& repository) {
    std::error_code error;
    const bool is_here = repository.root && std::filesystem::is_directory(*repository.root, error);
    return checkout || !is_here ? checkout : repository.root->string();
}

// Reads the SCIP files, and beside them the sources that they name.
Extraction read_all(ScipFiles& scip, const Repository& repository, const PathRules& exclusions,
                    SourcesOfCheckout& sources, TextSpool& spool, Progress& progress, ImportReport& report) {
    const ContentsListener listener{
        .wants = [&](const std::string& path,
                     bool is_generated) { return !exclusions.decide(path).value_or(is_generated); },
        .new_file = [&](const std::string& path,
                        const std::string& language) { sources.request(path, stated_language(language)); },
        .text_of = [&](const std::string& path) -> std::optional<std::string> {
            std::optional<FileContent> file =
                sources.checkout() ? sources.checkout()->read(path, sources::LARGEST_SOURCE) : std::nullopt;
            return file ? std::move(file->text) : std::nullopt;
        },
        .after_document = [&] { progress.advance(1); },
    };
    const std::vector<PlacedScipFile> placed = scip.placed_in(repository);
    Contents contents = read_contents(placed, spool, listener);
    progress.advance(static_cast<std::size_t>(contents.unusable_documents + contents.unwanted_documents));
    const sources::Sources read = sources.finish([&] { progress.report(); });
    UndeclaredByFile undeclared;
    if (sources.checkout()) {
        report.checkout = sources.checkout()->root();
        undeclared = add_undeclared(contents, read);
        count_locals(placed, undeclared, *sources.checkout(), contents);
    }
    indexing::Modules modules = modules_of(contents, read);
    settle_open_tokens(contents, read, modules, sources.checkout(), report);
    add_unseen_names(contents, modules, undeclared);
    choose_namesakes(contents, modules);
    report.unparsed_symbols = static_cast<std::int64_t>(contents.symbols.unparsed());
    report.unusable_documents = contents.unusable_documents;
    report.unusable_definitions = contents.unusable_definitions;
    for (const std::string& path : contents.unwanted) {
        report.excluded.add(path);
    }
    return extract(
        std::move(contents), read, [&] { progress.report(); }, report);
}

}  // namespace

ImportReport import_scip(const ImportRequest& request, NewIndex& index, const OnProgress& on_progress) {
    Progress progress(on_progress);
    index.watch([&] { progress.report(); });
    ScipFiles scip(request.scip_paths, index.scratch_path("input"), [&] { progress.report(); });
    progress.expect(2 * scip.document_count());
    progress.report();
    const Repository repository = scip.repository(request.checkout);
    index.claim(request.checkout ? *request.checkout : repository.root.value_or("").string());
    TextSpool spool(index.scratch_path("texts"));
    ImportReport report;
    report.source = scip.names();
    report.tool = scip.tools();
    SourcesOfCheckout sources(folder_of_sources(request.checkout, repository), spool);
    const RepositoryRules rules = with_repository_rules({request.exclusions, request.tests}, sources.checkout());
    const PathRules tests(rules.tests);
    const TestRulesInForce in_force(tests);
    const Extraction extraction =
        read_all(scip, repository, PathRules(rules.exclusions), sources, spool, progress, report);
    if (extraction.files.empty() && index.would_replace()) {
        throw std::runtime_error(scip.names() + ": no source file is named there, so " + index.name() +
                                 " is kept; run the indexer on sources, or remove the index first");
    }
    make_index(extraction, rules.tests, sources.checkout(), spool, index, progress, report);
    return report;
}

}  // namespace host::scip
