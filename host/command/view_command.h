// The command `wiki-scope view`.
#pragma once

namespace CLI {
class App;
}

namespace host {

/// Adds the subcommand; it runs when `app` has parsed its arguments. Throws `std::runtime_error` with one line.
void add_view_command(CLI::App& app);

}  // namespace host
