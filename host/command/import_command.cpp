#include "host/command/import_command.h"

#include "host/command/file_option.h"
#include "host/command/index_option.h"
#include "host/command/interruption.h"
#include "host/command/path_rule_options.h"
#include "host/command/standard_error.h"
#include "host/command/standard_output.h"
#include "host/indexing/report_text.h"
#include "host/location/index_at.h"
#include "host/scip/import.h"

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace host {

namespace {

struct ImportArguments {
    std::vector<std::string> scip;
    IndexOption index;
    PathRuleOptions exclusions;
    PathRuleOptions tests;
    std::string checkout;  // empty for the project root that the SCIP files state
};

// Shows the progress of an import on one line of a terminal; shows nothing elsewhere.
class ProgressLine {
  public:
    ProgressLine() = default;
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine() {
        if (percent_ >= 0) {
            std::cerr << "\r\033[K" << std::flush;
        }
    }

    void show(std::int64_t done, std::int64_t total) {
        const std::int64_t percent = 100 * done / total;
        if (is_shown_ && percent != percent_) {
            std::cerr << "\rImporting: " << percent << " %" << std::flush;
            percent_ = percent;
        }
    }

  private:
    bool is_shown_ = isatty(STDERR_FILENO) != 0;
    std::int64_t percent_ = -1;
};

std::string interruption_message(const Index& index) {
    return "interrupted; nothing was changed at " + index.name();
}

std::unique_ptr<NewIndex> begin_index(const IndexOption& option, const Index& index) {
    try {
        return index.replace([&] { Interruption::throw_if_requested(interruption_message(index)); });
    } catch (const UnusableIndex& error) {
        throw std::runtime_error(failure_of(option, index, error));
    }
}

void run_import(const ImportArguments& arguments) {
    if (std::ranges::count(arguments.scip, "-") > 1) {
        throw CLI::ValidationError("INDEX.scip", "- may be given only once");
    }
    const Interruption interruption;
    const std::unique_ptr<Index> index = index_at(arguments.index.place, arguments.index.repository);
    const std::unique_ptr<NewIndex> made = begin_index(arguments.index, *index);
    indexing::ImportReport report;
    {
        ProgressLine progress;
        const scip::ImportRequest request{.scip_paths = arguments.scip,
                                          .checkout = arguments.checkout.empty() ? std::nullopt
                                                                                 : std::optional(arguments.checkout),
                                          .exclusions = arguments.exclusions.rules(),
                                          .tests = arguments.tests.rules()};
        report = scip::import_scip(request, *made, [&](std::int64_t done, std::int64_t total) {
            Interruption::throw_if_requested(interruption_message(*index));
            progress.show(done, total);
        });
    }
    print([&](std::ostream& out) {
        write_made(out, made->name(), report);
        write_findings(out, report);
    });
    if (const std::string remark = made->remark(); !remark.empty()) {
        say(remark);
    }
}

}  // namespace

void add_import_command(CLI::App& app) {
    const auto arguments = std::make_shared<ImportArguments>();
    CLI::App& command = *app.add_subcommand("import", "Make an index of a repository from SCIP files");
    add_file_option(command, "INDEX.scip", arguments->scip,
                    "SCIP files that indexers have written; - for standard input");
    add_index_options(command, arguments->index, "The index to make, or to replace");
    add_file_option(command, "--checkout", arguments->checkout,
                    "The folder that holds the sources; by default the project root that the SCIP files state")
        ->type_name("DIR")
        ->required(false);
    add_exclusion_options(command, arguments->exclusions);
    add_test_options(command, arguments->tests);
    command.callback([arguments] { run_import(*arguments); });
}

}  // namespace host
