#include "embedded/command/index_option.h"

#include "embedded/command/file_option.h"
#include "embedded/sqlite/index.h"

#include <stdexcept>

namespace embedded {

namespace {

std::string advice(UnusableIndex::Fault fault, const std::string& path) {
    switch (fault) {
    case UnusableIndex::Fault::MISSING:
        return "; make one with: wiki-scope import INDEX.scip --index " + path;
    case UnusableIndex::Fault::FOREIGN:
        return "; name another file";
    case UnusableIndex::Fault::OUTDATED:
        break;
    }
    return "; import the SCIP file again";
}

}  // namespace

void add_index_option(CLI::App& command, std::string& path) {
    add_file_option(command, "--index", path, "The index, as made by wiki-scope import")->type_name("FILE.db");
}

void read_index(const std::string& path, const std::function<void(Connection)>& read) {
    try {
        read(open_index(path));
    } catch (const UnusableIndex& error) {
        throw std::runtime_error(error.what() + advice(error.fault(), path));
    } catch (const SqliteError& error) {
        if (!error.is_about_content()) {
            throw;
        }
        throw std::runtime_error(std::string(error.what()) +
                                 "; it is not a whole wiki-scope index: import the SCIP file again");
    }
}

}  // namespace embedded
