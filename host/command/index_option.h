// The options that name the index of a command.
#pragma once

#include "host/index/index.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace host {

/// The place of a command's index.
struct IndexOption {
    std::string place;            ///< empty for the index of a checkout that is kept up to date (checkout_index.h)
    std::string origin = {};      ///< what names the place if not the option: a variable or a file
    std::string repository = {};  ///< the repository in a server; empty for that of the checkout
    std::string checkout = {};    ///< the value of "--checkout"; empty for that around the current folder
};

/// What a command reads or makes when nothing names an index.
enum class IndexDefault : std::uint8_t {
    NONE,         ///< nothing: an index must be named
    OF_CHECKOUT,  ///< the index of the checkout
};

/// Adds "--index PLACE", whose default is `index_named_elsewhere`, and "--repository NAME".
void add_index_options(CLI::App& command, IndexOption& option, const std::string& help,
                       IndexDefault otherwise = IndexDefault::OF_CHECKOUT);

/// Returns the index to read. Throws `CLI::ValidationError`, and what `index_at` and `CheckoutIndex` throw.
std::unique_ptr<Index> index_of(const IndexOption& option);

/// Returns paths of a command as the index has them: without an index or a checkout that is named, what lies in the
/// current folder goes by its path from the root of the checkout around that. Others stay as they are.
std::vector<std::string> paths_in_index(const IndexOption& option, std::vector<std::string> paths);

/// Adds "--checkout DIR", which is optional.
void add_checkout_option(CLI::App& command, std::string& path);

/// The same for a command that has no other use of it than to find its index.
void add_checkout_option(CLI::App& command, IndexOption& option);

/// Returns one line about a failure to open or use the index. If the index is at fault, the line adds what to do about
/// it.
std::string failure_of(const Index& index, const std::exception& failure);

/// The same; adds what named the index, unless the option did.
std::string failure_of(const IndexOption& option, const Index& index, const std::exception& failure);

/// Opens the index and calls `read` with it. Throws what `index_of` and `read` throw. If the index is at fault, throws
/// a `std::runtime_error` with the line of `failure_of`.
void read_index(const IndexOption& option, const std::function<void(storage::Database&)>& read);

}  // namespace host
