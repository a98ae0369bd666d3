// Completion scripts for shells.
#pragma once

namespace CLI {
class App;
}

namespace host {

/// Adds the subcommand "completion SHELL", which prints the completion script for a shell. The script covers the
/// commands of `app` and their options at the time when the subcommand runs.
void add_completion_command(CLI::App& app);

}  // namespace host
