#include "host/command/serve_command.h"

#include "host/command/file_option.h"
#include "host/command/index_option.h"
#include "host/command/standard_error.h"
#include "host/files/checkout.h"
#include "host/serve/server.h"

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>

namespace host {

namespace {

struct ServeArguments {
    IndexOption index;
    std::string checkout;  // empty for the result of `source_folder`
    std::string wiki;      // empty for none
};

[[noreturn]] void end_without_output(const std::string& reason) {
    say("standard output: cannot be written (" + reason + ")");
    std::_Exit(1);
}

void run_server(const ServeArguments& arguments, const std::shared_ptr<const Index>& index) {
    if (!arguments.checkout.empty()) {
        const Checkout must_be_there(arguments.checkout);
    }
    const auto describe = [index, option = arguments.index](const std::exception& failure) {
        return failure_of(option, *index, failure);
    };
    const auto out = std::make_shared<serve::MessageWriter>(STDOUT_FILENO, end_without_output);
    serve::MessageReader in(STDIN_FILENO);
    serve::Server server({.index = index,
                          .checkout = arguments.checkout,
                          .version = WIKI_SCOPE_VERSION,
                          .describe = describe,
                          .wiki = arguments.wiki.empty() ? pages::Wiki() : pages::read_wiki(arguments.wiki)},
                         out);
    if (!server.run(in)) {
        std::_Exit(0);  // without waiting for calls whose client is gone
    }
}

}  // namespace

void add_serve_command(CLI::App& app) {
    const auto arguments = std::make_shared<ServeArguments>();
    CLI::App& serve = *app.add_subcommand("serve", "Serve an index over the Model Context Protocol");
    add_index_options(serve, arguments->index, "The index");
    add_checkout_option(serve, arguments->checkout);
    add_file_option(serve, "--wiki", arguments->wiki, "The file that lists the pages of a wiki, which become resources")
        ->type_name("FILE")
        ->required(false);
    serve.callback([arguments] {
        const std::shared_ptr<const Index> index = index_of(arguments->index);
        try {
            run_server(*arguments, index);
        } catch (const std::exception& failure) {
            throw std::runtime_error(failure_of(arguments->index, *index, failure));
        }
    });
}

}  // namespace host
