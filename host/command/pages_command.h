// The command `wiki-scope pages`.
#pragma once

namespace CLI {
class App;
}

namespace host {

/// Adds the command, which writes the pages of a wiki, or tells which of them are not as they are to be.
void add_pages_command(CLI::App& app);

}  // namespace host
