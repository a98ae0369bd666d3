// wiki-scope: import an index, ground a page.

#include "embedded/command/import_command.h"
#include "embedded/command/page_command.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <string>

namespace {

constexpr int FAILED = 1;
constexpr int WRONG_USAGE = 2;

std::string usage_message(const CLI::App* app, const CLI::Error& error) {
    return "wiki-scope: " + std::string(error.what()) + " (see " + app->get_name() + " --help)\n";
}

}  // namespace

int main(int argc, char** argv) {
    try {
        std::ios::sync_with_stdio(false);
        CLI::App app("States what the files of a wiki page are: how big, what for, who uses them, which tests reach "
                     "them.",
                     "wiki-scope");
        app.set_version_flag("--version", "wiki-scope " WIKI_SCOPE_VERSION);
        app.require_subcommand(1);
        app.failure_message(usage_message);
        embedded::add_import_command(app);
        embedded::add_page_command(app);
        try {
            app.parse(argc, argv);
        } catch (const CLI::Success& success) {  // --help, --version
            return app.exit(success);
        } catch (const CLI::ParseError& error) {
            app.exit(error);
            return WRONG_USAGE;
        }
        return 0;
    } catch (const std::bad_alloc&) {
        std::cerr << "wiki-scope: out of memory; name fewer files\n";
    } catch (const std::exception& error) {
        std::cerr << "wiki-scope: " << error.what() << '\n';
    }
    return FAILED;
}
