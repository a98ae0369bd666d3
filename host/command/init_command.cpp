#include "host/command/init_command.h"

#include "host/command/file_option.h"
#include "host/command/index_option.h"
#include "host/command/standard_output.h"
#include "host/index/place.h"
#include "host/index/server_index.h"
#include "host/location/index_at.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>
#include <string>

namespace host {

namespace {

struct InitArguments {
    std::string place;
    Rights rights;
};

void require_server(const std::string& place) {
    if (!is_server(place)) {
        throw CLI::ValidationError("--index", "must be the address of a database, such as postgresql://host/database; "
                                              "a file needs no preparation");
    }
}

void prepare(const std::string& place) {
    const std::unique_ptr<Index> index = index_at(place);
    try {
        const Preparation made = prepare_server(place);
        print([&](std::ostream& out) {
            out << index->name() << ": "
                << (made.before == 0          ? "prepared"
                    : made.before == made.now ? "already prepared"
                                              : "upgraded from version " + std::to_string(made.before))
                << "; version " << made.now << " of the schema\n";
        });
    } catch (const UnusableIndex& error) {
        throw std::runtime_error(failure_of(*index, error));
    }
}

}  // namespace

void add_init_command(CLI::App& app) {
    const auto arguments = std::make_shared<InitArguments>();
    const auto problem_of = [](const std::string& name) { return name.empty() ? "an empty name" : ""; };
    CLI::App& init = *app.add_subcommand("init", "Prepare a PostgreSQL database for indexes, or bring it up to date");
    add_file_option(init, "--index", arguments->place, "The address of the database: postgresql://host/database")
        ->type_name("ADDRESS");
    CLI::Option* const grants =
        init.add_option("--grants", arguments->rights.role,
                        "Print the SQL that grants this role the right to read and no other, and prepare nothing; "
                        "public for every role")
            ->type_name("ROLE")
            ->check(problem_of);
    init.add_flag("--may-import", arguments->rights.may_import, "With --grants: grant the right to import, too")
        ->needs(grants);
    init.add_option("--repository", arguments->rights.repository,
                    "With --grants: grant access to this repository only, by row-level security")
        ->type_name("NAME")
        ->needs(grants)
        ->check(problem_of);
    init.callback([arguments] {
        require_server(arguments->place);
        if (arguments->rights.role.empty()) {
            prepare(arguments->place);
        } else {
            print([&](std::ostream& out) { out << grants_for(arguments->rights); });
        }
    });
}

}  // namespace host
