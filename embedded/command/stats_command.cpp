#include "embedded/command/stats_command.h"

#include "embedded/command/format_option.h"
#include "embedded/command/index_option.h"
#include "embedded/command/standard_output.h"
#include "embedded/lookup/index_stats.h"
#include "embedded/lookup/listings.h"
#include "embedded/lookup/listings_json.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>
#include <string>

namespace embedded {

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
    add_format_option(stats, arguments->format);
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

}  // namespace embedded
