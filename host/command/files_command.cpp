#include "host/command/files_command.h"

#include "host/command/format_option.h"
#include "host/command/index_option.h"
#include "host/command/path_rule_options.h"
#include "host/command/standard_error.h"
#include "host/command/standard_output.h"
#include "host/lookup/files.h"
#include "host/lookup/listings.h"
#include "host/lookup/listings_json.h"
#include "host/schemas/schemas.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace host {

namespace {

struct FilesArguments {
    std::vector<std::string> paths;
    IndexOption index;
    std::string format = "text";
    PathRuleOptions tests;
};

void print_files(const FilesArguments& arguments, storage::Database& index) {
    const ListedFiles listed =
        list_files(index, paths_in_index(arguments.index, arguments.paths), arguments.tests.rules());
    for (const std::string& remark : listed.remarks) {
        say(remark);
    }
    if (listed.is_failure) {
        throw CLI::RuntimeError(1);
    }
    print([&](std::ostream& out) {
        arguments.format == "json" ? write_json(out, listed.files) : write_text(out, listed.files);
    });
}

}  // namespace

void add_files_command(CLI::App& app) {
    const auto arguments = std::make_shared<FilesArguments>();
    CLI::App& files = *app.add_subcommand("files", "List the files of an index");
    files.add_option("PATH", arguments->paths, "Files, folders and patterns, as for a page; by default all");
    add_index_options(files, arguments->index, "The index");
    add_checkout_option(files, arguments->index);
    add_format_options(files, arguments->format, schemas::FILES);
    add_test_options(files, arguments->tests);
    files.callback([arguments] {
        read_index(arguments->index, [&](storage::Database& index) { print_files(*arguments, index); });
    });
}

}  // namespace host
