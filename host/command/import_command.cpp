#include "host/command/import_command.h"

#include "host/command/file_option.h"
#include "host/command/index_option.h"
#include "host/command/interruption.h"
#include "host/command/path_rule_options.h"
#include "host/command/progress_line.h"
#include "host/command/standard_error.h"
#include "host/command/standard_output.h"
#include "host/indexing/report_text.h"
#include "host/location/index_at.h"
#include "host/scip/import.h"
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

void require_one_kind(const ImportArguments& arguments) {
    if (std::ranges::count(arguments.sources, "-") > 1) {
        throw CLI::ValidationError("SOURCE", "- may be given only once");
    }
    if (std::ranges::any_of(arguments.sources, is_folder) &&
        (arguments.sources.size() > 1 || !arguments.checkout.empty())) {
        throw CLI::ValidationError("SOURCE", "a folder is imported alone, without --checkout");
    }
}

scip::ImportRequest request_of_scip(const ImportArguments& arguments) {
    return {.scip_paths = arguments.sources,
            .checkout = arguments.checkout.empty() ? std::nullopt : std::optional(arguments.checkout),
            .exclusions = arguments.exclusions.rules(),
            .tests = arguments.tests.rules()};
}

worktree::ImportRequest request_of_folder(const ImportArguments& arguments) {
    return {.folder = arguments.sources.front(),
            .exclusions = arguments.exclusions.rules(),
            .tests = arguments.tests.rules()};
}

void run_import(const ImportArguments& arguments) {
    require_one_kind(arguments);
    const Interruption interruption;
    const std::unique_ptr<Index> index = index_at(arguments.index.place, arguments.index.repository);
    const std::unique_ptr<NewIndex> made = begin_index(arguments.index, *index);
    indexing::ImportReport report;
    {
        ProgressLine progress("Importing");
        const indexing::OnProgress on_progress = [&](std::int64_t done, std::int64_t total) {
            Interruption::throw_if_requested(interruption_message(*index));
            progress.show(done, total);
        };
        report = is_folder(arguments.sources.front())
                     ? worktree::import_sources(request_of_folder(arguments), *made, on_progress)
                     : scip::import_scip(request_of_scip(arguments), *made, on_progress);
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
                    "The folder of a checkout; or SCIP files that indexers have written, - for standard input");
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
