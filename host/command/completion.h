// What shells are told of the command, so that they complete its arguments.
#pragma once

namespace CLI {
class App;
}

namespace host {

/// Adds the subcommand "completion SHELL", which prints the completion for a shell: the commands of `app` and the options
/// of each, as they are when it runs.
void add_completion_command(CLI::App& app);

}  // namespace host
