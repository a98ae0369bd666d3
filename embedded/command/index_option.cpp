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

void add_checkout_option(CLI::App& command, std::string& path) {
    add_file_option(command, "--checkout", path,
                    "The folder that the paths are relative to; by default the one that the index was made in")
        ->type_name("DIR")
        ->required(false);
}

std::string failure_to_read(const std::string& path, const std::exception& failure) {
    const std::string what = failure.what();
    if (const auto* const unusable = dynamic_cast<const UnusableIndex*>(&failure)) {
        return what + advice(unusable->fault(), path);
    }
    const auto* const error = dynamic_cast<const SqliteError*>(&failure);
    return error != nullptr && error->is_about_content()
               ? what + "; it is not a whole wiki-scope index: import the SCIP file again"
               : what;
}

void read_index(const std::string& path, const std::function<void(const Connection&)>& read) {
    try {
        read(open_index(path));
    } catch (const UnusableIndex& error) {
        throw std::runtime_error(failure_to_read(path, error));
    } catch (const SqliteError& error) {
        throw std::runtime_error(failure_to_read(path, error));
    }
}

}  // namespace embedded
