// wiki-scope init
#pragma once

namespace CLI {
class App;
}

namespace embedded {

void add_init_command(CLI::App& app);

}  // namespace embedded
