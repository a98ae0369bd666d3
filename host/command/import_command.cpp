#include "host/command/import_command.h"

#include "host/command/file_option.h"
#include "host/command/index_option.h"
#include "host/command/interruption.h"
#include "host/command/path_rule_options.h"
#include "host/command/progress_line.h"
#include "host/command/standard_error.h"
#include "host/command/standard_output.h"
#include "host/imports/import.h"
#include "host/indexing/report_text.h"
#include "host/location/index_at.h"
#include "host/worktree/import.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace host {

namespace {

using indexing::ImportReport;

struct ImportArguments {
    std::vector<std::string> sources;
    IndexOption index;
    PathRuleOptions exclusions;
    PathRuleOptions tests;
    std::string checkout;  // empty for the project root that the SCIP files state
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

bool is_folder(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

void require_one_checkout(const ImportArguments& arguments) {
    if (std::ranges::count(arguments.sources, "-") > 1) {
        throw CLI::ValidationError("SOURCE", "- may be given only once");
    }
    const auto folders = std::ranges::count_if(arguments.sources, is_folder);
    if (folders > 1 || (folders == 1 && !arguments.checkout.empty())) {
        throw CLI::ValidationError("SOURCE", "only one folder holds the sources: give no other, nor --checkout");
    }
}

ImportReport import_all(const ImportArguments& arguments, NewIndex& index, const indexing::OnProgress& on_progress) {
    std::vector<std::string> scip_paths = arguments.sources;
    const auto folder = std::ranges::find_if(scip_paths, is_folder);
    const bool has_other_files = folder != scip_paths.end();
    std::string checkout = arguments.checkout;
    if (has_other_files) {
        checkout = *folder;
        scip_paths.erase(folder);
    }
    if (scip_paths.empty()) {
        return worktree::import_sources({checkout, arguments.exclusions.rules(), arguments.tests.rules()}, index,
                                        on_progress);
    }
    return imports::import_scip({.scip_paths = scip_paths,
                                 .checkout = checkout.empty() ? std::nullopt : std::optional(checkout),
                                 .has_other_files = has_other_files,
                                 .exclusions = arguments.exclusions.rules(),
                                 .tests = arguments.tests.rules()},
                                index, on_progress);
}

void run_import(const ImportArguments& arguments) {
    require_one_checkout(arguments);
    const Interruption interruption;
    const std::unique_ptr<Index> index = index_at(arguments.index.place, arguments.index.repository);
    const std::unique_ptr<NewIndex> made = begin_index(arguments.index, *index);
    ImportReport report;
    {
        ProgressLine progress("Importing");
        const indexing::OnProgress on_progress = [&](std::int64_t done, std::int64_t total) {
            Interruption::throw_if_requested(interruption_message(*index));
            progress.show(done, total);
        };
        report = import_all(arguments, *made, on_progress);
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
    CLI::App& command = *app.add_subcommand("import", "Make an index of a repository, from its sources or SCIP files");
    add_file_option(command, "SOURCE", arguments->sources,
                    "The folder of a checkout, SCIP files that indexers have written (- for standard input), or both");
    add_index_options(command, arguments->index, "The index to make, or to replace", IndexDefault::NONE);
    add_file_option(command, "--checkout", arguments->checkout,
                    "The folder that holds the sources; by default the project root that the SCIP files state")
        ->type_name("DIR")
        ->required(false);
    add_exclusion_options(command, arguments->exclusions);
    add_test_options(command, arguments->tests);
    command.callback([arguments] { run_import(*arguments); });
}

}  // namespace host
