#include "embedded/command/index_option.h"

#include "embedded/command/file_option.h"
#include "embedded/index/index_at.h"
#include "embedded/index/index_error.h"

#include <memory>
#include <stdexcept>

namespace embedded {

namespace {

std::string advice(UnusableIndex::Fault fault, const std::string& index) {
    switch (fault) {
    case UnusableIndex::Fault::MISSING:
        return "; make one with: wiki-scope import INDEX.scip --index " + index;
    case UnusableIndex::Fault::FOREIGN:
        return "; name another file";
    case UnusableIndex::Fault::OUTDATED:
        return "; import the SCIP file again";
    }
    return "";
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

std::string failure_to_read(const std::string& index, const std::exception& failure) {
    const std::string what = failure.what();
    if (const auto* const unusable = dynamic_cast<const UnusableIndex*>(&failure)) {
        return what + advice(unusable->fault(), index);
    }
    const auto* const error = dynamic_cast<const IndexError*>(&failure);
    return error != nullptr && error->is_about_content()
               ? what + "; it is not a whole wiki-scope index: import the SCIP file again"
               : what;
}

void read_index(const std::string& path, const std::function<void(storage::Database&)>& read) {
    const std::unique_ptr<Index> index = index_at(path);
    try {
        const std::unique_ptr<IndexConnection> connection = index->connect();
        read(*connection->read());
    } catch (const UnusableIndex& error) {
        throw std::runtime_error(failure_to_read(index->name(), error));
    } catch (const IndexError& error) {
        throw std::runtime_error(failure_to_read(index->name(), error));
    }
}

}  // namespace embedded
