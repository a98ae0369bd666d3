#include "host/command/stats_command.h"

#include "host/command/format_option.h"
#include "host/command/index_option.h"
#include "host/command/standard_output.h"
#include "host/lookup/index_stats.h"
#include "host/lookup/listings.h"
#include "host/lookup/listings_json.h"
#include "host/schemas/schemas.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>
#include <string>

namespace host {

namespace {

struct StatsArguments {
    IndexOption index;
    std::string format = "text";
    bool check = false;
};

}  // namespace

void add_stats_command(CLI::App& app) {
    const auto arguments = std::make_shared<StatsArguments>();
    CLI::App& stats = *app.add_subcommand("stats", "Tell what is in an index, and how it was made");
    add_index_options(stats, arguments->index, "The index");
    add_checkout_option(stats, arguments->index);
    add_format_options(stats, arguments->format, schemas::STATS);
    stats.add_flag("--check", arguments->check, "Read all of the index, and fail when it is damaged");
    stats.callback([arguments] {
        read_index(arguments->index, [&](storage::Database& index) {
            if (arguments->check) {
                index.check();
            }
            IndexStats found = index_stats(index);
            found.is_checked = arguments->check;
            print([&](std::ostream& out) {
                arguments->format == "json" ? write_json(out, found) : write_text(out, found);
            });
        });
    });
}

}  // namespace host
