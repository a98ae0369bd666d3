#include "host/command/diff_command.h"

#include "host/changes/changes.h"
#include "host/changes/changes_json.h"
#include "host/changes/changes_markdown.h"
#include "host/command/compared_state.h"
#include "host/command/file_option.h"
#include "host/command/format_option.h"
#include "host/command/index_option.h"
#include "host/command/interruption.h"
#include "host/command/number_option.h"
#include "host/command/path_rule_options.h"
#include "host/command/standard_error.h"
#include "host/command/standard_output.h"
#include "host/page/budget.h"
#include "host/schemas/schemas.h"

#include <CLI/CLI.hpp>

#include <cstddef>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace host {

namespace {

constexpr int HAS_CHANGES = 1;

struct DiffArguments {
    std::string old_state;
    std::string new_state;  // empty for the work tree; a path where it is no state
    std::vector<std::string> paths;
    std::string checkout;
    std::string repository;
    std::string format = "markdown";
    std::size_t depth = 1;
    std::optional<std::size_t> max_bytes;
    bool has_exit_code = false;
    PathRuleOptions tests;
};

changes::Changes compared(const DiffArguments& arguments) {
    const Interruption interruption;
    const ComparableStates states(arguments.checkout, arguments.repository);
    changes::ChangesRequest request{
        .paths = arguments.paths, .tests = arguments.tests.rules(), .depth = arguments.depth};
    const bool is_path = !arguments.new_state.empty() && !states.know(arguments.new_state);
    if (is_path) {
        request.paths.insert(request.paths.begin(), arguments.new_state);
    }
    request.paths = paths_in_index({.place = "", .checkout = arguments.checkout}, request.paths);
    const ComparedState before = states.open(arguments.old_state);
    const ComparedState after =
        is_path || arguments.new_state.empty() ? states.open_work_tree() : states.open(arguments.new_state);
    try {
        return changes::compare(before.database(), after.database(), request);
    } catch (const IndexError& error) {
        throw before.failure(error);
    }
}

void print_changes(const DiffArguments& arguments) {
    if (arguments.format == "json" && arguments.max_bytes) {
        throw CLI::ValidationError("--max-bytes", "applies to Markdown only");
    }
    const changes::Changes changes = compared(arguments);
    for (const std::string& remark : changes.remarks) {
        say(remark);
    }
    if (changes.is_failure) {
        throw CLI::RuntimeError(1);
    }
    print([&](std::ostream& out) {
        arguments.format == "json" ? changes::write_json(out, changes)
                                   : changes::write_markdown(out, changes, arguments.max_bytes);
    });
    if (arguments.has_exit_code && !changes.empty()) {
        throw CLI::RuntimeError(HAS_CHANGES);
    }
}

}  // namespace

void add_diff_command(CLI::App& app) {
    const auto arguments = std::make_shared<DiffArguments>();
    CLI::App& diff = *app.add_subcommand("diff", "Print what changed between two states, and whom it concerns");
    add_file_option(diff, "OLD", arguments->old_state,
                    "An index, a file or the address of a PostgreSQL database; or a revision of the checkout's Git "
                    "repository, such as HEAD~3");
    add_file_option(diff, "NEW", arguments->new_state, "Likewise; by default the files of the checkout as they are")
        ->required(false);
    diff.add_option("PATH", arguments->paths, "Files, folders and patterns, as for a page; by default all");
    add_file_option(diff, "--checkout", arguments->checkout,
                    "The folder of the checkout; by default the one around the current folder")
        ->type_name("DIR")
        ->required(false);
    diff.add_option("--repository", arguments->repository,
                    "The repository in a database; by default the name of the folder of the checkout")
        ->type_name("NAME");
    add_format_options(diff, arguments->format, schemas::DIFF);
    add_number_option(diff, "--depth", arguments->depth, "How many steps to follow from users to their users")
        ->check([](const std::string& text) { return text == "0" ? "0 is less than 1" : ""; });
    add_number_option(diff, "--max-bytes", arguments->max_bytes,
                      "How long the Markdown may be; what matters least is left out");
    diff.add_flag("--exit-code", arguments->has_exit_code, "Exit with 1 when anything has changed");
    add_test_options(diff, arguments->tests);
    diff.callback([arguments] { print_changes(*arguments); });
}

}  // namespace host
