#include "host/index/server_index.h"

#include <stdexcept>

namespace host {

namespace {

std::runtime_error no_server() {
    return std::runtime_error("--index: this wiki-scope was built without PostgreSQL; name a file");
}

}  // namespace

std::unique_ptr<Index> server_index(const std::string& /*address*/, const std::string& /*repository*/) {
    throw no_server();
}

std::string grants_for(const Rights& /*rights*/) {
    throw no_server();
}

Preparation prepare_server(const std::string& /*address*/) {
    throw no_server();
}

}  // namespace host
