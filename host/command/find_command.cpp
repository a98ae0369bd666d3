#include "host/command/find_command.h"

#include "host/command/format_option.h"
#include "host/command/index_option.h"
#include "host/command/number_option.h"
#include "host/command/standard_error.h"
#include "host/command/standard_output.h"
#include "host/lookup/declarations.h"
#include "host/lookup/listings.h"
#include "host/lookup/listings_json.h"
#include "host/schemas/schemas.h"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <iterator>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>

namespace host {

namespace {

struct FindArguments {
    std::string name;
    IndexOption index;
    std::string format = "text";
    std::int64_t limit = 50;
};

void print_declarations(const FindArguments& arguments, storage::Database& index) {
    const FoundDeclarations found = find_declarations(index, arguments.name, arguments.limit);
    if (found.count == 0) {
        throw std::runtime_error(nothing_found(arguments.name));
    }
    print([&](std::ostream& out) { arguments.format == "json" ? write_json(out, found) : write_text(out, found); });
    if (const std::int64_t more = found.count - std::ssize(found.best); more > 0) {
        say("... and " + std::to_string(more) + " more; --limit " + std::to_string(found.count) + " lists all");
    }
}

}  // namespace

void add_find_command(CLI::App& app) {
    const auto arguments = std::make_shared<FindArguments>();
    CLI::App& find = *app.add_subcommand("find", "Find declarations by name");
    find.add_option("NAME", arguments->name,
                    "What a declaration is called, or how its name begins, or a part of it; with what it stands in, "
                    "as Subject.next, the whole name")
        ->required()
        ->check([](const std::string& name) { return name.empty() ? "an empty name" : ""; });
    add_index_options(find, arguments->index, "The index");
    add_checkout_option(find, arguments->index);
    add_format_options(find, arguments->format, schemas::FIND);
    add_number_option(find, "--limit", arguments->limit, "How many to list at most");
    find.callback([arguments] {
        read_index(arguments->index, [&](storage::Database& index) { print_declarations(*arguments, index); });
    });
}

}  // namespace host
