// The command `wiki-scope diff`.
#pragma once

namespace CLI {
class App;
}

namespace host {

/// Adds the subcommand; it runs when `app` has parsed its arguments. Throws `std::runtime_error` with one line.
void add_diff_command(CLI::App& app);

}  // namespace host
