#include "host/command/view_command.h"

#include "host/command/browser.h"
#include "host/command/file_option.h"
#include "host/command/html_format.h"
#include "host/command/index_option.h"
#include "host/command/path_rule_options.h"
#include "host/command/standard_error.h"
#include "host/command/standard_output.h"
#include "host/files/staged_file.h"
#include "host/page/requested_page.h"
#include "host/pages/digest.h"
#include "host/worktree/cache_folder.h"
#include "host/worktree/checkout_index.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace host {

namespace {

namespace fs = std::filesystem;

struct ViewArguments {
    IndexOption index;
    PathRuleOptions tests;
    PageRequest page;
};

// Where the page of these paths lies: in a folder that nobody else can enter.
fs::path file_of(const std::vector<std::string>& paths) {
    std::string all;
    for (const std::string& path : paths) {
        all += path + '\n';
    }
    return worktree::cache_folder(worktree::checkout_around(fs::current_path())) /
           ("view-" + pages::digest_of(all) + ".html");
}

void view(const PageRequest& request, const std::string& title, storage::Database& index) {
    const RequestedPage page(request, index);
    std::ostringstream text;
    if (!page.is_failure()) {
        write_html(text, page, index, {.title = title});
    }
    for (const std::string& remark : page.remarks()) {
        say(remark);
    }
    if (page.is_failure()) {
        throw CLI::RuntimeError(1);
    }
    const fs::path file = file_of(request.paths);
    StagedFile(file, text.str()).commit();
    print([&](std::ostream& out) { out << file.string() << '\n'; });
    if (!open_in_browser(file)) {
        say("no browser could be opened here; open the file above in one");
    }
}

}  // namespace

void add_view_command(CLI::App& app) {
    const auto arguments = std::make_shared<ViewArguments>();
    CLI::App& command = *app.add_subcommand("view", "Open a page in the browser");
    command
        .add_option("PATH", arguments->page.paths,
                    "The files of the page; a folder or a pattern stands for those below it or that it matches")
        ->required();
    add_index_options(command, arguments->index, "The index");
    add_checkout_option(command, arguments->page.checkout);
    add_test_options(command, arguments->tests);
    command.callback([arguments] {
        PageRequest request = arguments->page;
        request.paths = paths_in_index(arguments->index, request.paths);
        request.tests = arguments->tests.rules();
        choose_all_sections(request);
        read_index(arguments->index,
                   [&](storage::Database& index) { view(request, title_of(arguments->page.paths), index); });
    });
}

}  // namespace host
