#include "host/command/pages_command.h"

#include "host/command/file_option.h"
#include "host/command/html_format.h"
#include "host/command/index_option.h"
#include "host/command/interruption.h"
#include "host/command/progress_line.h"
#include "host/command/source_url_option.h"
#include "host/command/standard_error.h"
#include "host/command/standard_output.h"
#include "host/index/index_error.h"
#include "host/pages/update.h"
#include "host/text/counted.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <ostream>
#include <span>
#include <string>
#include <vector>

namespace host {

namespace {

constexpr int NOT_UP_TO_DATE = 1;

struct PagesArguments {
    std::string wiki;
    std::string checkout;
    IndexOption index;
    std::string format = "markdown";
    std::string source_url;
    pages::UpdateOptions update;
    bool only_lists_uncovered = false;
};

pages::Wiki wiki_of(const PagesArguments& arguments) {
    pages::Wiki wiki = pages::read_wiki(arguments.wiki);
    const std::string commit = arguments.source_url.empty() ? "" : commit_of_checkout(arguments.index);
    for (pages::WikiPage& page : wiki.pages) {
        page.request.checkout = arguments.checkout;
        page.request.commit = commit;
        if (!arguments.source_url.empty()) {
            page.request.source_url.emplace(arguments.source_url);
        }
        if (arguments.format == "json") {
            page.request.format = PageRequest::Format::JSON;
        }
        if (arguments.format == "html") {
            choose_all_sections(page.request);
        }
    }
    return wiki;
}

pages::PageFormat format_named(const std::string& name) {
    return name == "html" ? html_format() : name == "json" ? pages::json_format() : pages::markdown_format();
}

void say_all(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        say(line);
    }
}

void print_lines(std::ostream& out, const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        out << line << '\n';
    }
}

void print_lines(const pages::UpdateReport& report) {
    print([&](std::ostream& out) {
        print_lines(out, report.changes);
        print_lines(out, report.removed);
    });
}

std::string closing_words(const pages::UpdateReport& report, bool is_check) {
    std::string words = counted(std::ssize(report.changes), "page") + (is_check ? " to write, " : " written, ");
    if (!report.removed.empty()) {
        words.append(std::to_string(report.removed.size())).append(is_check ? " to remove, " : " removed, ");
    }
    words.append(std::to_string(report.unchanged)).append(" unchanged");
    return report.failures.empty() ? words : words + "; not all could be made";
}

// Names the first files that several pages are about.
void say_which_are_shared(const pages::Wiki& wiki, std::span<const pages::SharedFile> shared) {
    constexpr std::size_t NAMED = 3;
    for (const auto& [path, pages] : shared.first(std::min(shared.size(), NAMED))) {
        std::string titles;
        for (const std::size_t page : pages) {
            titles.append(titles.empty() ? "" : ", ").append(wiki.pages[page].title);
        }
        std::string line = path;
        say(line.append(": on ").append(counted(std::ssize(pages), "page")).append(": ").append(titles));
    }
    if (shared.size() > NAMED) {
        say("... and " + counted(static_cast<std::int64_t>(shared.size() - NAMED), "more file") + " on several pages");
    }
}

void say_what_is_covered(const pages::Wiki& wiki, const pages::Coverage& coverage) {
    say_which_are_shared(wiki, coverage.shared);
    if (!coverage.uncovered.empty()) {
        say("production files on no page: " + std::to_string(coverage.uncovered.size()) + " (--uncovered lists them)");
    }
}

void list_uncovered(const PagesArguments& arguments) {
    const pages::Wiki wiki = wiki_of(arguments);
    read_index(arguments.index, [&](storage::Database& db) {
        const pages::Coverage coverage = pages::coverage_of(pages::files_of_pages(wiki, db), wiki.tests, db);
        print([&](std::ostream& out) { print_lines(out, coverage.uncovered); });
        say_which_are_shared(wiki, coverage.shared);
    });
}

pages::UpdateReport updated(const PagesArguments& arguments, const pages::Wiki& wiki) {
    const Interruption interruption;
    const std::unique_ptr<Index> index = index_of(arguments.index);
    ProgressLine line(arguments.update.is_check ? "Comparing the pages" : "Making the pages");
    const auto total = std::ssize(wiki.pages);
    try {
        return pages::update_wiki(
            *index, wiki, arguments.update,
            [] { Interruption::throw_if_requested("interrupted; no page has changed"); },
            [&](std::size_t done) { line.show(static_cast<std::int64_t>(done), total); });
    } catch (const UnusableIndex& error) {
        throw std::runtime_error(failure_of(arguments.index, *index, error));
    } catch (const IndexError& error) {
        throw std::runtime_error(failure_of(arguments.index, *index, error));
    }
}

void update(const PagesArguments& arguments) {
    const pages::Wiki wiki = wiki_of(arguments);
    const pages::UpdateReport report = updated(arguments, wiki);
    print_lines(report);
    say_all(report.remarks);
    say_all(report.failures);
    say_what_is_covered(wiki, report.coverage);
    say(closing_words(report, arguments.update.is_check));
    const bool is_as_it_is_to_be = report.changes.empty() && report.removed.empty();
    if (!report.failures.empty() || (arguments.update.is_check && !is_as_it_is_to_be)) {
        throw CLI::RuntimeError(NOT_UP_TO_DATE);
    }
}

}  // namespace

void add_pages_command(CLI::App& app) {
    const auto arguments = std::make_shared<PagesArguments>();
    arguments->update.version = WIKI_SCOPE_VERSION;
    CLI::App& pages = *app.add_subcommand("pages", "Write the pages of a wiki, or tell which have changed");
    add_file_option(pages, "WIKI", arguments->wiki, "The file that lists the pages, in TOML");
    CLI::Option* const folder = add_file_option(pages, "--out", arguments->update.folder,
                                                "The folder of the pages, which is made if there is none")
                                    ->type_name("DIR")
                                    ->required(false);
    add_index_options(pages, arguments->index, "The index");
    add_checkout_option(pages, arguments->checkout);
    pages.add_option("--format", arguments->format, "markdown for people, json for programs, html for a browser")
        ->type_name("FORMAT")
        ->check(CLI::IsMember(std::vector<std::string>{"markdown", "json", "html"}))
        ->capture_default_str();
    add_source_url_option(pages, arguments->source_url);
    CLI::Option* const check = pages.add_flag("--check", arguments->update.is_check,
                                              "Write nothing; exit with 1 when a page would change, and say why");
    CLI::Option* const prune =
        pages.add_flag("--prune", arguments->update.prunes, "Remove the files of pages that the wiki no longer has");
    pages
        .add_flag("--uncovered", arguments->only_lists_uncovered,
                  "List the production files that no page is about, and do nothing else")
        ->excludes(check)
        ->excludes(prune);
    pages.callback([arguments, folder] {
        if (arguments->only_lists_uncovered) {
            list_uncovered(*arguments);
            return;
        }
        if (folder->empty()) {
            throw CLI::RequiredError("--out");
        }
        if (arguments->format == "json" && !arguments->source_url.empty()) {
            throw CLI::ValidationError("--source-url", "applies to Markdown and HTML only");
        }
        arguments->update.format = format_named(arguments->format);
        update(*arguments);
    });
}

}  // namespace host
