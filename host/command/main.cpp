// The program wiki-scope: imports an index, looks up declarations and files in it, and grounds pages.

#include "host/command/completion.h"
#include "host/command/diff_command.h"
#include "host/command/files_command.h"
#include "host/command/find_command.h"
#include "host/command/import_command.h"
#include "host/command/init_command.h"
#include "host/command/page_command.h"
#include "host/command/pages_command.h"
#include "host/command/serve_command.h"
#include "host/command/standard_error.h"
#include "host/command/standard_output.h"
#include "host/command/stats_command.h"
#include "host/command/view_command.h"

#include <CLI/CLI.hpp>

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <iostream>
#include <new>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr int FAILED = 1;
constexpr int WRONG_USAGE = 2;

// Opens closed standard streams as /dev/null. Otherwise a file that the program opens would become one of them.
void open_standard_streams() {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system declares it so
    int opened = open("/dev/null", O_RDONLY);
    while (opened >= 0 && opened <= STDERR_FILENO) {
        opened = dup(opened);
    }
    close(opened);
}

int complain(std::string_view message, int exit_code) {
    host::say(message);
    return exit_code;
}

// Describes what is wrong with the arguments of a command. An unknown argument comes before a missing one, since it may
// be its misspelling.
std::string fault_of(const CLI::App& command, const CLI::ParseError& error) {
    const std::vector<std::string> unknown = command.remaining();
    const bool is_missing_one = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    return is_missing_one && !unknown.empty() ? CLI::ExtrasError(unknown).what() : error.what();
}

std::string usage_message(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<CLI::App*> commands = app.get_subcommands();
    if (!commands.empty()) {
        const CLI::App& command = *commands.front();
        return fault_of(command, error) + " (see wiki-scope " + command.get_name() + " --help)";
    }
    const std::vector<std::string> unknown = app.remaining();
    return (unknown.empty() ? error.what() : "no such command: " + unknown.front()) + " (see wiki-scope --help)";
}

int run(int argc, char** argv) {
    CLI::App app("States what the files of a wiki page are: how big, what for, who uses them, which tests reach them.",
                 "wiki-scope");
    app.set_version_flag("--version", "wiki-scope " WIKI_SCOPE_VERSION);
    app.require_subcommand(1);
    host::add_init_command(app);
    host::add_import_command(app);
    host::add_page_command(app);
    host::add_pages_command(app);
    host::add_view_command(app);
    host::add_files_command(app);
    host::add_find_command(app);
    host::add_stats_command(app);
    host::add_diff_command(app);
    host::add_serve_command(app);
    host::add_completion_command(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& answered) {  // --help, --version
        host::print([&](std::ostream& out) { app.exit(answered, out); });
    } catch (const CLI::RuntimeError& failure) {  // already reported
        return failure.get_exit_code();
    } catch (const CLI::ParseError& error) {
        return complain(usage_message(app, error), WRONG_USAGE);
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    open_standard_streams();
    std::ios::sync_with_stdio(false);
    // The program ends quietly when its reader closes the pipe, even if its parent ignores SIGPIPE.
    std::signal(SIGPIPE, SIG_DFL);
    try {
        return run(argc, argv);
    } catch (const std::bad_alloc&) {
        return complain("out of memory; end other programs, or ask for less", FAILED);
    } catch (const std::exception& error) {
        return complain(error.what(), FAILED);
    }
}
