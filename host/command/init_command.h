// wiki-scope init
#pragma once

namespace CLI {
class App;
}

namespace host {

void add_init_command(CLI::App& app);

}  // namespace host
