// Indexes in a database server. A program is built for one kind of server, or for none.
#pragma once

#include "host/index/index.h"

#include <cstdint>
#include <memory>
#include <string>

namespace host {

/// The index of a repository in a server. `repository` may be empty to import: the folder of the repository names it
/// then. Throws `std::runtime_error` with one line, which holds no password, when this is no address, or this program
/// knows no servers.
std::unique_ptr<Index> server_index(const std::string& address, const std::string& repository);

/// What a server was prepared for: versions of its schema.
struct Preparation {
    std::int64_t before = 0;  ///< 0 for none
    std::int64_t now = 0;
};

/// Makes the tables of a database, or brings them to the version that this program knows. Throws as `server_index`
/// does, `IndexError`, and `UnusableIndex` when they are newer.
Preparation prepare_server(const std::string& address);

/// What a role may do with the indexes of a server.
struct Rights {
    std::string role;  ///< "public" for every role
    bool may_import = false;
    std::string repository = {};  ///< the only one that it may read and import; empty for all
};

/// The statements by which who has prepared a database gives these rights. Throws when this program knows no servers.
std::string grants_for(const Rights& rights);

}  // namespace host
