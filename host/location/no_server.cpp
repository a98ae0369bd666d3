#include "host/index/server_index.h"

#include <stdexcept>

namespace host {

namespace {

std::runtime_error knows_none() {
    return std::runtime_error("--index: this wiki-scope was built without PostgreSQL; name a file");
}

}  // namespace

std::unique_ptr<Index> server_index(const std::string& /*address*/, const std::string& /*repository*/) {
    throw knows_none();
}

std::string grants_for(const Rights& /*rights*/) {
    throw knows_none();
}

Preparation prepare_server(const std::string& /*address*/) {
    throw knows_none();
}

}  // namespace host
