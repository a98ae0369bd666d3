#include "embedded/command/page_command.h"

#include "embedded/command/file_option.h"
#include "embedded/command/format_option.h"
#include "embedded/command/index_option.h"
#include "embedded/command/missing_paths.h"
#include "embedded/command/number_option.h"
#include "embedded/command/path_rule_options.h"
#include "embedded/command/standard_error.h"
#include "embedded/command/standard_output.h"
#include "embedded/files/checkout.h"
#include "embedded/page/caveats.h"
#include "embedded/page/page.h"
#include "embedded/page/page_json.h"
#include "embedded/page/page_markdown.h"
#include "embedded/rules/test_paths.h"
#include "embedded/sqlite/database.h"
#include "embedded/sqlite/index.h"
#include "embedded/text/counted.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <span>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace embedded {

namespace {

struct PageArguments {
    std::vector<std::string> paths;
    std::string index;
    std::string checkout;  // empty for the folder that the index was made in
    std::string format = "markdown";
    PageOptions page;
    std::vector<std::string> only;
    bool without_source = false;
    std::optional<std::size_t> max_bytes;
    bool is_strict = false;
    PathRuleOptions tests;
};

SectionChoice chosen_sections(const PageArguments& arguments) {
    SectionChoice sections;
    for (const std::string& name : arguments.only) {
        sections.add(section_named(name).value());
    }
    return sections;
}

void say_caveats(const Caveats& caveats, const std::string& checkout) {
    constexpr std::size_t NAMED = 5;
    const std::size_t count = caveats.changed.size();
    for (const models::Text& path : std::span(caveats.changed).first(std::min(count, NAMED))) {
        say(std::string(path) + ": changed since it was indexed; its lines may be off; index again");
    }
    if (count > NAMED) {
        say("... and " + counted(static_cast<std::int64_t>(count - NAMED), "more file") +
            " changed since indexed; index again");
    }
    if (caveats.has_no_sources) {
        say(checkout + ": holds none of the page's files; name the folder that was indexed with --checkout");
    }
    if (caveats.has_no_outside) {
        say("the page consists of every file of the index: nothing is outside of it, so no use from outside is known");
    }
}

// The folder that the user names, else the one that the index was made in.
std::string checkout_folder(const PageArguments& arguments, const Connection& index) {
    if (!arguments.checkout.empty()) {
        return arguments.checkout;
    }
    std::string folder = noted(index, "checkout");
    std::error_code error;
    if (folder.empty() || !std::filesystem::is_directory(folder, error)) {
        throw std::runtime_error(
            arguments.index + (folder.empty() ? ": made without sources" : ": made in " + folder + ", which is gone") +
            "; name the folder that its paths are relative to with --checkout");
    }
    return folder;
}

void print_page(const PageArguments& arguments, Connection index) {
    if (arguments.max_bytes && arguments.format == "json") {
        throw CLI::ValidationError("--max-bytes", "shortens Markdown alone");
    }
    const std::string folder = checkout_folder(arguments, index);
    const Checkout checkout(folder);
    const PathRules tests = test_rules(arguments.tests, index);
    const TestRulesInForce in_force(tests);
    storage::Database db(std::move(index));
    const Page page = load_page(db, checkout, arguments.paths, arguments.page);
    const bool is_failure = !page.missing.empty() && (arguments.is_strict || page.facts.files.empty());
    judge_missing_paths(page.missing, page.suggestions, is_failure);
    say_caveats(page.caveats, folder);
    print([&](std::ostream& out) {
        if (arguments.format == "json") {
            write_json(out, page, db, chosen_sections(arguments));
        } else {
            write_markdown(out, page, db, checkout,
                           {.only = chosen_sections(arguments),
                            .with_source = !arguments.without_source,
                            .max_bytes = arguments.max_bytes});
        }
    });
}

}  // namespace

void add_page_command(CLI::App& app) {
    const auto arguments = std::make_shared<PageArguments>();
    CLI::App& page = *app.add_subcommand("page", "Print what the files of a page are");
    page.add_option("PATH", arguments->paths,
                    "The files of the page; a folder or a pattern stands for those below it or that it matches")
        ->required();
    add_index_option(page, arguments->index);
    add_file_option(page, "--checkout", arguments->checkout,
                    "The folder that the paths are relative to; by default the one that the index was made in")
        ->type_name("DIR")
        ->required(false);
    page.add_flag("--strict", arguments->is_strict, "Fail when the index does not hold one of the paths");

    add_test_options(page, arguments->tests);
    add_format_option(page, arguments->format);
    page.add_option("--only", arguments->only, "Print these sections alone, of JSON their keys: " + section_names())
        ->type_name("SECTION[,SECTION]")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check([](const std::string& name) { return section_named(name) ? "" : "no such section: " + name; });
    page.add_flag("--no-source", arguments->without_source,
                  "Print the signatures of the declarations in the Markdown, instead of their source");

    add_number_option(page, "--max-bytes", arguments->max_bytes,
                      "How long the Markdown may be; what matters least is left out");

    PageOptions& numbers = arguments->page;
    const auto add_number = [&page](const std::string& name, auto& number, const std::string& help) {
        add_number_option(page, name, number, help)->group("What is chosen");
    };
    add_number("--total", numbers.total, "Declarations that get a block");
    add_number("--floor", numbers.floor, "Best declarations that each file gets first, if the total allows");
    add_number("--max-share", numbers.max_share, "Share of the total that one file may take from others");
    add_number("--deep", numbers.deep, "Names for a deeper treatment");
    add_number("--deep-per-file", numbers.deep_per_file, "Names for a deeper treatment from any one file");
    add_number("--neighbours", numbers.neighbours, "Declarations of other files that the page leans on");

    page.callback([arguments] {
        read_index(arguments->index, [&](Connection index) { print_page(*arguments, std::move(index)); });
    });
}

}  // namespace embedded
