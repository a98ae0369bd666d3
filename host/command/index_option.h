// The index that a command reads.
#pragma once

#include "host/index/index.h"

#include <exception>
#include <functional>
#include <memory>
#include <string>

namespace CLI {
class App;
}

namespace host {

/// Where a command's index lies.
struct IndexOption {
    std::string place;
    std::string origin = {};      ///< what has named the place, where that is not the option
    std::string repository = {};  ///< in a server; empty for that of the checkout
    std::string checkout = {};    ///< as "--checkout" names it; empty for the current folder
};

/// Adds "--index PLACE", for which `index_named_elsewhere` stands in, and "--repository NAME".
void add_index_options(CLI::App& command, IndexOption& option, const std::string& help);

/// The index that is to be read. Throws `CLI::ValidationError`, and what `index_at` throws.
std::unique_ptr<Index> index_of(const IndexOption& option);

/// Adds "--checkout DIR", which may be left out.
void add_checkout_option(CLI::App& command, std::string& path);

/// The line that is said of a failure to open the index or to work with it: where the index is at fault, what is wrong with
/// it and what can be done about that; else what the failure says.
std::string failure_of(const Index& index, const std::exception& failure);

/// The same, with what has named the index if no option has.
std::string failure_of(const IndexOption& option, const Index& index, const std::exception& failure);

/// Opens the index of the option and has `read` read it. Throws what `index_of` and `read` throw; where the index is at
/// fault it is a `std::runtime_error` with the line of `failure_of`.
void read_index(const IndexOption& option, const std::function<void(storage::Database&)>& read);

}  // namespace host
