#include "embedded/command/page_command.h"

#include "embedded/command/file_option.h"
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
#include "models/ordered_map.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <memory>
#include <ostream>
#include <span>
#include <sstream>
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
    bool is_strict = false;
    PathRuleOptions tests;
};

MarkdownOptions markdown_options(const PageArguments& arguments) {
    MarkdownOptions options{.only = {}, .with_source = !arguments.without_source};
    for (const std::string& name : arguments.only) {
        options.only.insert(section_named(name).value());
    }
    return options;
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

std::string advice(UnusableIndex::Fault fault, const std::string& path) {
    switch (fault) {
    case UnusableIndex::Fault::MISSING:
        return "; make one with: wiki-scope import INDEX.scip --index " + path;
    case UnusableIndex::Fault::FOREIGN:
        return "; name another file";
    case UnusableIndex::Fault::OUTDATED:
        break;
    }
    return "; import the SCIP file again";
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

// Says which paths the index does not hold, and what they may have been meant to be. It is a failure when it holds none
// of them, or when none may be missing.
void judge_missing_paths(const Page& page, bool is_strict) {
    const bool is_failure = !page.missing.empty() && (is_strict || page.facts.files.empty());
    models::OrderedMap<std::string, std::string> nearest;
    for (const Suggestion& suggestion : page.suggestions) {
        nearest[suggestion.missing] = "; did you mean " + suggestion.nearest + "?";
    }
    for (const std::string& path : page.missing) {
        if (is_failure || nearest.contains(path)) {
            say((path + ": not in the index").append(nearest.get(path, "")));
        }
    }
    if (is_failure) {
        throw CLI::RuntimeError(1);
    }
}

void print_page(const PageArguments& arguments) {
    Connection index = open_index(arguments.index);
    const std::string folder = checkout_folder(arguments, index);
    const Checkout checkout(folder);
    const PathRules tests = test_rules(arguments.tests, index);
    const TestRulesInForce in_force(tests);
    storage::Database db(std::move(index));
    const Page page = load_page(db, checkout, arguments.paths, arguments.page);
    judge_missing_paths(page, arguments.is_strict);
    say_caveats(page.caveats, folder);
    print([&](std::ostream& out) {
        if (arguments.format == "json") {
            write_json(out, page, db);
        } else {
            write_markdown(out, page, db, checkout, markdown_options(arguments));
        }
    });
}

// Adds to what is wrong with an index what can be done about it.
void print_page_or_advise(const PageArguments& arguments) {
    try {
        print_page(arguments);
    } catch (const UnusableIndex& error) {
        throw std::runtime_error(error.what() + advice(error.fault(), arguments.index));
    } catch (const SqliteError& error) {
        if (!error.is_about_content()) {
            throw;
        }
        throw std::runtime_error(std::string(error.what()) +
                                 "; it is not a whole wiki-scope index: import the SCIP file again");
    }
}

// Sets a number from the whole of a decimal text; false when the text is none, the number cannot hold it, or it is
// negative: what is counted or shared out never is.
template <class Number>
bool parse(const std::string& text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return rest == end && error == std::errc() && std::isfinite(static_cast<double>(number)) && number >= 0;
}

void add_number(CLI::App& command, const std::string& name, auto& number, const std::string& help) {
    std::ostringstream preset;
    preset << number;
    const auto set = [&number, name](const std::string& text) {
        if (!parse(text, number)) {
            throw CLI::ConversionError(name + ": \"" + text + "\" is not a number that can be used");
        }
    };
    command.add_option_function<std::string>(name, set, help)
        ->type_name("N")
        ->default_str(preset.str())
        ->group("What is chosen");
}

}  // namespace

void add_page_command(CLI::App& app) {
    const auto arguments = std::make_shared<PageArguments>();
    CLI::App& page = *app.add_subcommand("page", "Print what the files of a page are");
    page.add_option("PATH", arguments->paths,
                    "The files of the page; a folder or a pattern stands for those below it or that it matches")
        ->required();
    add_file_option(page, "--index", arguments->index, "The index, as made by wiki-scope import")->type_name("FILE.db");
    add_file_option(page, "--checkout", arguments->checkout,
                    "The folder that the paths are relative to; by default the one that the index was made in")
        ->type_name("DIR")
        ->required(false);
    page.add_flag("--strict", arguments->is_strict, "Fail when the index does not hold one of the paths");

    add_test_options(page, arguments->tests);
    CLI::Option* format = page.add_option("--format", arguments->format, "markdown for people, json for programs");
    format->type_name("FORMAT")->check(CLI::IsMember({"markdown", "json"}))->capture_default_str();
    page.add_option("--only", arguments->only, "Print these sections of the Markdown alone: " + section_names())
        ->type_name("SECTION[,SECTION]")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check([](const std::string& name) { return section_named(name) ? "" : "no such section: " + name; });
    page.add_flag("--no-source", arguments->without_source,
                  "Print the signatures of the declarations in the Markdown, instead of their source");

    PageOptions& numbers = arguments->page;
    add_number(page, "--total", numbers.total, "Declarations that get a block");
    add_number(page, "--floor", numbers.floor, "Best declarations that each file gets first, if the total allows");
    add_number(page, "--max-share", numbers.max_share, "Share of the total that one file may take from others");
    add_number(page, "--deep", numbers.deep, "Names for a deeper treatment");
    add_number(page, "--deep-per-file", numbers.deep_per_file, "Names for a deeper treatment from any one file");
    add_number(page, "--neighbours", numbers.neighbours, "Declarations of other files that the page leans on");

    page.callback([arguments] { print_page_or_advise(*arguments); });
}

}  // namespace embedded
