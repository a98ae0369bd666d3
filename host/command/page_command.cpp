#include "host/command/page_command.h"

#include "host/command/format_option.h"
#include "host/command/html_format.h"
#include "host/command/index_option.h"
#include "host/command/number_option.h"
#include "host/command/path_rule_options.h"
#include "host/command/source_url_option.h"
#include "host/command/standard_error.h"
#include "host/command/standard_output.h"
#include "host/page/page_json.h"
#include "host/page/page_values.h"
#include "host/page/requested_page.h"
#include "host/schemas/schemas.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace host {

namespace {

struct PageArguments {
    IndexOption index;
    std::string format = "markdown";
    std::vector<std::string> only;
    bool without_source = false;
    std::string source_url;
    PathRuleOptions tests;
    PageRequest page;  // what the options say directly
};

PageRequest request_of(const PageArguments& arguments) {
    PageRequest request = arguments.page;
    request.paths = paths_in_index(arguments.index, request.paths);
    if (arguments.format != "markdown" && (request.max_bytes || request.max_tokens)) {
        throw CLI::ValidationError(request.max_bytes ? "--max-bytes" : "--max-tokens", "applies to Markdown only");
    }
    if (arguments.format == "json" && !arguments.source_url.empty()) {
        throw CLI::ValidationError("--source-url", "applies to Markdown and HTML only");
    }
    if (arguments.format == "json") {
        request.format = PageRequest::Format::JSON;
        if (arguments.without_source) {
            throw CLI::ValidationError("--no-source",
                                       "applies to Markdown and HTML only: JSON holds signatures and no source");
        }
    }
    for (const std::string& name : arguments.only) {
        request.only.add(section_named(name).value());
    }
    if (arguments.format == "html") {
        choose_all_sections(request);
    }
    request.with_source = !arguments.without_source;
    request.tests = arguments.tests.rules();
    request.commit = commit_of_checkout(arguments.index);
    if (!arguments.source_url.empty()) {
        request.source_url.emplace(arguments.source_url);
    }
    return request;
}

void say_remarks(const RequestedPage& page) {
    for (const std::string& remark : page.remarks()) {
        say(remark);
    }
}

// Prints a page whole or not at all: of one that fails halfway nobody sees a part, nor remarks on it.
void print_page(const PageArguments& arguments, const PageRequest& request, storage::Database& index) {
    const RequestedPage page(request, index);
    if (page.is_failure()) {
        say_remarks(page);
        throw CLI::RuntimeError(1);
    }
    if (arguments.format == "json") {  // whose text can be many times what it states
        const PageValues values = page_values(page.page(), index, request.only);
        say_remarks(page);
        print_at_once([&](std::ostream& out) { write_json(out, page.page(), values, request.only); });
        return;
    }
    TextPieces text;
    write_to(text, [&](std::ostream& out) {
        arguments.format == "html" ? write_html(out, page, index, {.title = title_of(arguments.page.paths)})
                                   : page.write(out);
    });
    say_remarks(page);
    print_text(text);
}

}  // namespace

void add_page_command(CLI::App& app) {
    const auto arguments = std::make_shared<PageArguments>();
    CLI::App& page = *app.add_subcommand("page", "Print what the files of a page are");
    page.add_option("PATH", arguments->page.paths,
                    "The files of the page; a folder or a pattern stands for those below it or that it matches")
        ->required();
    add_index_options(page, arguments->index, "The index");
    add_checkout_option(page, arguments->page.checkout);
    page.add_flag("--strict", arguments->page.is_strict, "Fail when the index does not hold one of the paths");

    add_test_options(page, arguments->tests);
    add_format_options(page, arguments->format, schemas::PAGE, {{"html", "for a browser"}});
    page.add_option("--only", arguments->only,
                    "Print these sections alone, of JSON their keys, the outline only so: " + section_names())
        ->type_name("SECTION[,SECTION]")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check([](const std::string& name) { return section_named(name) ? "" : "no such section: " + name; });
    page.add_flag("--no-source", arguments->without_source,
                  "Print the signatures of the declarations, instead of their source");

    add_source_url_option(page, arguments->source_url);

    add_number_option(page, "--max-bytes", arguments->page.max_bytes,
                      "How long the Markdown may be; what matters least is left out");
    add_number_option(page, "--max-tokens", arguments->page.max_tokens, "As --max-bytes, four bytes a token");

    PageOptions& numbers = arguments->page.numbers;
    const auto add_number = [&page](const std::string& name, auto& number, const std::string& help) {
        return add_number_option(page, name, number, help)->group("What is chosen");
    };
    add_number("--total", numbers.total, "Declarations that get a block");
    add_number("--floor", numbers.floor, "Best declarations that each file gets first, if the total allows");
    add_number("--max-share", numbers.max_share, "Share of the total that one file may take from others")
        ->check([](const std::string& text) {
            double share = 0;
            return parse_number(text, share) && share > PageOptions::LARGEST_SHARE ? text + " is more than 1" : "";
        });
    add_number("--deep", numbers.deep, "Names for a deeper treatment");
    add_number("--deep-per-file", numbers.deep_per_file, "Names for a deeper treatment from any one file");
    add_number("--neighbours", numbers.neighbours, "Declarations of other files that the page leans on");

    page.callback([arguments] {
        const PageRequest request = request_of(*arguments);
        read_index(arguments->index, [&](storage::Database& index) { print_page(*arguments, request, index); });
    });
}

}  // namespace host
