#include "embedded/command/init_command.h"

#include "embedded/command/file_option.h"
#include "embedded/command/index_option.h"
#include "embedded/command/standard_output.h"
#include "embedded/index/index_at.h"
#include "embedded/index/server_index.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>
#include <string>

namespace embedded {

namespace {

void prepare(const std::string& place) {
    if (!is_server(place)) {
        throw CLI::ValidationError("--index", "init prepares a database, as postgresql://host/database; a file needs "
                                              "no preparation");
    }
    const std::unique_ptr<Index> index = index_at(place);
    try {
        const Preparation made = prepare_server(place);
        print([&](std::ostream& out) {
            out << index->name() << ": "
                << (made.before == 0          ? "prepared"
                    : made.before == made.now ? "was prepared before"
                                              : "brought up from version " + std::to_string(made.before))
                << "; version " << made.now << " of the schema\n";
        });
    } catch (const UnusableIndex& error) {
        throw std::runtime_error(failure_of(*index, error));
    }
}

}  // namespace

void add_init_command(CLI::App& app) {
    const auto place = std::make_shared<std::string>();
    CLI::App& init = *app.add_subcommand("init", "Prepare a PostgreSQL database for indexes, or bring it up to date");
    add_file_option(init, "--index", *place, "The address of the database: postgresql://host/database")
        ->type_name("ADDRESS");
    init.callback([place] { prepare(*place); });
}

}  // namespace embedded
