#include "host/command/index_option.h"

#include "host/command/file_option.h"
#include "host/command/named_index.h"
#include "host/command/reading_progress.h"
#include "host/files/folder_name.h"
#include "host/index/index_error.h"
#include "host/index/place.h"
#include "host/location/index_at.h"
#include "host/worktree/checkout_index.h"

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <system_error>

namespace host {

namespace {

std::string advice(UnusableIndex::Fault fault, const Index& index) {
    switch (fault) {
    case UnusableIndex::Fault::MISSING:
        return "; make one with: wiki-scope import FOLDER " + index.options();
    case UnusableIndex::Fault::FOREIGN:
        return "; name another file";
    case UnusableIndex::Fault::OUTDATED:
        return "; import the SCIP file again";
    case UnusableIndex::Fault::UNPREPARED:
        return "; prepare it with: wiki-scope init --index " + index.name();
    case UnusableIndex::Fault::UNTRUSTED:
        return "; have it removed, or name another database";
    case UnusableIndex::Fault::NEWER:
        return "; install a newer wiki-scope";
    }
    return "";
}

void name_elsewhere(IndexOption& option, IndexDefault otherwise) {
    const std::optional<NamedIndex> named = index_named_elsewhere(option.checkout);
    if (named) {
        option.place = named->place;
        option.origin = named->origin;
    } else if (otherwise == IndexDefault::NONE) {
        throw CLI::RequiredError("--index");
    }
}

// The index of the sources of a checkout.
std::unique_ptr<Index> kept_index(const std::string& checkout) {
    const std::string root =
        checkout.empty() ? worktree::checkout_around(std::filesystem::current_path()).string() : checkout;
    return std::make_unique<worktree::CheckoutIndex>(root, progress_of_reading());
}

}  // namespace

void add_index_options(CLI::App& command, IndexOption& option, const std::string& help, IndexDefault otherwise) {
    const std::string elsewhere = otherwise == IndexDefault::NONE
                                      ? "; by default the one that WIKI_SCOPE_INDEX or .wiki-scope.toml names"
                                      : "; by default the one that WIKI_SCOPE_INDEX or .wiki-scope.toml names, else "
                                        "one of the sources of the checkout, which is kept up to date";
    add_file_option(command, "--index", option.place,
                    help + ", a file or the address of a PostgreSQL database" + elsewhere)
        ->type_name("PLACE")
        ->required(false);
    command
        .add_option("--repository", option.repository,
                    "The repository in a database; by default the name of the folder of the checkout")
        ->type_name("NAME")
        ->check([](const std::string& name) { return name.empty() ? "an empty name" : ""; });
    command.parse_complete_callback([&command, &option, otherwise] {
        const CLI::Option* const checkout = command.get_option_no_throw("--checkout");
        option.checkout = checkout != nullptr && *checkout ? checkout->as<std::string>() : "";
        if (option.place.empty()) {
            name_elsewhere(option, otherwise);
        }
        if (!option.repository.empty() && !is_server(option.place)) {
            throw CLI::ValidationError("--repository", "applies to databases only: a file holds one index");
        }
    });
}

std::unique_ptr<Index> index_of(const IndexOption& option) {
    const std::string& checkout = option.checkout;
    if (option.place.empty()) {
        return kept_index(checkout);
    }
    const std::string repository =
        option.repository.empty() ? folder_name(checkout.empty() ? "." : checkout) : option.repository;
    if (repository.empty() && is_server(option.place)) {
        throw CLI::ValidationError("--repository", "is required: the current folder has no name");
    }
    return index_at(option.place, repository);
}

std::vector<std::string> paths_in_index(const IndexOption& option, std::vector<std::string> paths) {
    namespace fs = std::filesystem;
    if (!option.place.empty() || !option.checkout.empty()) {
        return paths;
    }
    const fs::path here = fs::current_path();
    const fs::path root = worktree::checkout_around(here);
    for (std::string& path : paths) {
        const fs::path below = (here / path).lexically_normal().lexically_relative(root);
        std::error_code error;
        if (!path.empty() && fs::exists(here / path, error) && !below.empty() && *below.begin() != "..") {
            path = (below.has_filename() ? below : below.parent_path()).generic_string();
        }
    }
    return paths;
}

void add_checkout_option(CLI::App& command, std::string& path) {
    add_file_option(command, "--checkout", path,
                    "The folder that the paths are relative to; by default the one that the import read")
        ->type_name("DIR")
        ->required(false);
}

void add_checkout_option(CLI::App& command, IndexOption& option) {
    add_file_option(command, "--checkout", option.checkout,
                    "The folder of the checkout, whose index is used unless one is named; by default the one around "
                    "the current folder")
        ->type_name("DIR")
        ->required(false);
}

std::string failure_of(const Index& index, const std::exception& failure) {
    const std::string what = failure.what();
    if (const auto* const unusable = dynamic_cast<const UnusableIndex*>(&failure)) {
        return what + advice(unusable->fault(), index);
    }
    const auto* const error = dynamic_cast<const IndexError*>(&failure);
    return error != nullptr && error->is_about_content()
               ? what + "; it is not a whole wiki-scope index: import the SCIP file again"
               : what;
}

std::string failure_of(const IndexOption& option, const Index& index, const std::exception& failure) {
    if (option.place.empty() && dynamic_cast<const IndexError*>(&failure) != nullptr) {
        return std::string(failure.what()) + "; remove " + index.name() + ", and try again";
    }
    return failure_of(index, failure) + (option.origin.empty() ? "" : " (" + option.origin + " names this index)");
}

void read_index(const IndexOption& option, const std::function<void(storage::Database&)>& read) {
    const std::unique_ptr<Index> index = index_of(option);
    try {
        const std::unique_ptr<IndexConnection> connection = index->connect();
        read(*connection->read());
    } catch (const UnusableIndex& error) {
        throw std::runtime_error(failure_of(option, *index, error));
    } catch (const IndexError& error) {
        throw std::runtime_error(failure_of(option, *index, error));
    }
}

}  // namespace host
