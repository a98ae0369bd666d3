#include "host/scip/import.h"

#include "host/files/checkout.h"
#include "host/files/text_spool.h"
#include "host/rules/configuration.h"
#include "host/rules/exclusions.h"
#include "host/rules/test_paths.h"
#include "host/scip/gathered.h"
#include "host/scip/index_writer.h"
#include "host/scip/language.h"
#include "host/scip/modules.h"
#include "host/scip/namesakes.h"
#include "host/scip/open_tokens.h"
#include "host/scip/project_root.h"
#include "host/scip/references.h"
#include "host/scip/report_json.h"
#include "host/scip/rules_of_uses.h"
#include "host/scip/scip_files.h"
#include "host/scip/undeclared.h"
#include "host/scip/unseen_names.h"
#include "host/sources/source_reader.h"
#include "host/summary/shared_summaries.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <vector>

namespace host::scip {

namespace {

// How far an import has come, and whoever wants to know.
class Steps {
  public:
    explicit Steps(const ImportProgress& progress) : progress_(progress) {}

    void expect(std::size_t total) { total_ = std::max<std::int64_t>(static_cast<std::int64_t>(total), 1); }

    void advance(std::size_t steps = 1) {
        done_ += static_cast<std::int64_t>(steps);
        tell();
    }

    void tell() const {
        if (progress_) {
            progress_(done_, total_);
        }
    }

  private:
    const ImportProgress& progress_;
    std::int64_t done_ = 0;
    std::int64_t total_ = 1;
};

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

    sources::Sources finish(const std::function<void()>& look) {
        return reader_ ? reader_->finish(look) : sources::Sources();
    }

  private:
    std::optional<Checkout> checkout_;
    std::optional<sources::SourceReader> reader_;
};

// Adds a path to those that an index notes, each ended by "\n", as long as they are not too many.
void add_noted(const std::string& path, std::string& paths) {
    constexpr std::size_t MOST = 65'536;  // bytes
    if (path.find('\n') == std::string::npos && paths.size() + path.size() < MOST) {
        paths.append(path).append("\n");
    }
}

// Puts together what SCIP and the sources say, and reports what became of the sources.
Gathered gather(Contents contents, const sources::Sources& sources, const Steps& steps, ImportReport& report) {
    Gathered gathered{
        .contents = std::move(contents), .rows = {}, .content_hashes = {}, .damaged = {}, .shared_summaries = {}};
    std::vector<std::string> summaries;
    const Homes homes(gathered.contents);
    const CallableTypes callable_types(sources);
    for (auto& [path, file] : gathered.contents.files) {
        const auto found = sources.find(path);
        const sources::Source* const source = found == sources.end() ? nullptr : &found->second;
        if (source != nullptr && source->outline && source->outline->is_cpp && stated_language(file.language).empty()) {
            file.language = "cpp";  // as a header may be
        }
        FileRows rows = rows_of(path, file, gathered.contents, homes, callable_types, source);
        if (source == nullptr) {
            report.unread.add(path);
        } else {
            ++report.sources;
            summaries.push_back(source->summary);
            if (!source->outline && sources::language_of(language_of(file.language, path), path) != nullptr) {
                report.unparsed.add(path);
            }
        }
        if (source != nullptr && source->outline && source->outline->is_damaged) {
            report.damaged.add(path);
            report.out_of_damage += rows.out_of_damage;
            if (rows.out_of_damage > 0) {
                add_noted(path, gathered.damaged);
            }
        }
        if (rows.has_moved) {
            report.moved.add(path);
        }
        gathered.rows.push_back(std::move(rows));
        gathered.content_hashes.push_back(source == nullptr ? 0 : source->content_hash);
        steps.tell();
    }
    gathered.shared_summaries = shared_summaries(summaries);
    return gathered;
}

// Where the sources are: in the checkout, else in the root of the repository where that is a folder of this machine.
std::optional<std::string> folder_of_sources(const std::optional<std::string>& checkout, const Repository& repository) {
    std::error_code error;
    const bool is_here = repository.root && std::filesystem::is_directory(*repository.root, error);
    return checkout || !is_here ? checkout : repository.root->string();
}

// The rules of an import: what is asked for, then what the repository says, then what is usual or what uses say.
struct Rules {
    std::vector<PathRule> exclusions;
    std::vector<PathRule> tests;
};

std::vector<PathRule> joined(std::vector<PathRule> first, const std::vector<PathRule>& then) {
    first.insert(first.end(), then.begin(), then.end());
    return first;
}

Rules rules_for(const ImportRequest& request, const std::optional<Checkout>& checkout) {
    const Configuration configuration = checkout ? read_configuration(*checkout) : Configuration();
    return {.exclusions = joined(joined(request.exclusions, configuration.exclusions), usual_exclusions()),
            .tests = joined(request.tests, configuration.tests)};
}

// Reads the SCIP files, and beside them the sources that they name.
Gathered read_all(ScipFiles& scip, const Repository& repository, const Rules& rules, SourcesOfCheckout& sources,
                  TextSpool& spool, Steps& steps, ImportReport& report) {
    const PathRules exclusions(rules.exclusions);
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
        .after_document = [&] { steps.advance(); },
    };
    const std::vector<PlacedScipFile> placed = scip.placed_in(repository);
    Contents contents = read_contents(placed, spool, listener);
    steps.advance(static_cast<std::size_t>(contents.unusable_documents + contents.unwanted_documents));
    const sources::Sources read = sources.finish([&] { steps.tell(); });
    UndeclaredByFile undeclared;
    if (sources.checkout()) {
        report.checkout = sources.checkout()->root();
        undeclared = add_undeclared(contents, read);
        count_locals(placed, undeclared, *sources.checkout(), contents);
    }
    Modules modules(contents, read);
    settle_open_tokens(contents, read, modules, sources.checkout(), report);
    add_unseen_names(contents, modules, undeclared);
    choose_namesakes(contents, modules);
    return gather(std::move(contents), read, steps, report);
}

// What an index notes of itself: what pages need, and everything that was found out.
void note_origin(RowWriter& out, const Gathered& gathered, const Rules& rules, const ImportReport& report) {
    out.note("checkout", report.checkout);
    out.note("test_rules", written(rules.tests));
    out.note("shared_summaries", gathered.shared_summaries);
    out.note("damaged", gathered.damaged);
    out.note("report", written(report));
}

void write_index(NewIndex& index, const Gathered& gathered, const References& references, const Rules& rules,
                 TextSpool& spool, Steps& steps, ImportReport& report) {
    const PathRules tests(rules.tests);
    const TestRulesInForce in_force(tests);
    try {
        RowWriter& out = index.rows();
        write_rows(
            out, gathered, references, spool, [&](std::size_t documents) { steps.advance(documents); }, report);
        note_origin(out, gathered, rules, report);
        index.complete({.files = report.files, .declarations = report.declarations, .edges = report.edges});
    } catch (const IndexError& error) {
        throw index.failure(error);
    }
}

}  // namespace

ImportReport import_scip(const ImportRequest& request, NewIndex& index, const ImportProgress& progress) {
    Steps steps(progress);
    index.watch([&] { steps.tell(); });
    ScipFiles scip(request.scip_paths, index.scratch_path("input"), [&] { steps.tell(); });
    steps.expect(2 * scip.document_count());
    steps.tell();
    const Repository repository = scip.repository(request.checkout);
    index.claim(request.checkout ? *request.checkout : repository.root.value_or("").string());
    TextSpool spool(index.scratch_path("texts"));
    ImportReport report;
    report.tool = scip.tools();
    SourcesOfCheckout sources(folder_of_sources(request.checkout, repository), spool);
    Rules rules = rules_for(request, sources.checkout());
    const PathRules tests(rules.tests);
    const TestRulesInForce in_force(tests);
    const Gathered gathered = read_all(scip, repository, rules, sources, spool, steps, report);
    if (gathered.contents.files.empty() && index.would_replace()) {
        throw std::runtime_error(scip.names() + ": no source file is named there, so " + index.name() +
                                 " is kept; run the indexer on sources, or remove the index first");
    }
    report.source = scip.names();
    report.unparsed_symbols = static_cast<std::int64_t>(gathered.contents.symbols.unparsed());
    report.unusable_documents = gathered.contents.unusable_documents;
    report.unusable_definitions = gathered.contents.unusable_definitions;
    for (const std::string& path : gathered.contents.unwanted) {
        report.excluded.add(path);
    }
    const References references(gathered.contents, gathered.rows);
    for (const PathRule& rule : rules_of_uses(gathered, references, sources.checkout(), [&] { steps.tell(); })) {
        rules.tests.push_back(rule);
        report.misnamed_tests.add(rule.pattern.substr(1));
    }
    write_index(index, gathered, references, rules, spool, steps, report);
    steps.tell();
    index.commit();
    return report;
}

}  // namespace host::scip
