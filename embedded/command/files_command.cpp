#include "embedded/command/files_command.h"

#include "embedded/command/format_option.h"
#include "embedded/command/index_option.h"
#include "embedded/command/missing_paths.h"
#include "embedded/command/path_rule_options.h"
#include "embedded/command/standard_output.h"
#include "embedded/files/checkout.h"
#include "embedded/lookup/files.h"
#include "embedded/lookup/listings.h"
#include "embedded/lookup/listings_json.h"
#include "embedded/paths/find_paths.h"
#include "embedded/rules/test_paths.h"
#include "embedded/sqlite/index.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <system_error>
#include <vector>

namespace embedded {

namespace {

struct FilesArguments {
    std::vector<std::string> paths;
    std::string index;
    std::string format = "text";
    PathRuleOptions tests;
};

// The folder that the index was made in, where it is there: what paths of this machine are looked up by.
std::optional<Checkout> checkout_of(const Connection& index) {
    const std::string folder = noted(index, "checkout");
    std::error_code error;
    return std::filesystem::is_directory(folder, error) ? std::optional<Checkout>(folder) : std::nullopt;
}

void print_files(const FilesArguments& arguments, const Connection& index) {
    const PathRules tests = test_rules(arguments.tests, index);
    const TestRulesInForce in_force(tests);
    const std::optional<Checkout> checkout = checkout_of(index);
    const std::vector<std::string> all{"."};
    const FoundPaths found =
        find_paths(index, checkout ? &*checkout : nullptr, arguments.paths.empty() ? all : arguments.paths);
    const bool has_found_nothing = found.indexed.empty() && !arguments.paths.empty();
    judge_missing_paths(found.missing, found.suggestions, has_found_nothing);
    const std::vector<ListedFile> files = list_files(index, found.indexed);
    print([&](std::ostream& out) { arguments.format == "json" ? write_json(out, files) : write_text(out, files); });
}

}  // namespace

void add_files_command(CLI::App& app) {
    const auto arguments = std::make_shared<FilesArguments>();
    CLI::App& files = *app.add_subcommand("files", "List the files of an index");
    files.add_option("PATH", arguments->paths, "Files, folders and patterns, as for a page; by default all");
    add_index_option(files, arguments->index);
    add_format_option(files, arguments->format);
    add_test_options(files, arguments->tests);
    files.callback([arguments] {
        read_index(arguments->index, [&](const Connection& index) { print_files(*arguments, index); });
    });
}

}  // namespace embedded
