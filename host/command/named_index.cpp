#include "host/command/named_index.h"

#include "host/rules/configuration.h"
#include "host/worktree/checkout_index.h"

#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace host {

namespace {

// The checkout around the current folder; empty for that folder itself.
std::filesystem::path root_of_current_folder() {
    const std::filesystem::path current = std::filesystem::current_path();
    const std::filesystem::path root = worktree::checkout_around(current);
    return root == current ? std::filesystem::path() : root;
}

}  // namespace

std::optional<NamedIndex> index_named_elsewhere(const std::string& checkout) {
    constexpr const char* VARIABLE = "WIKI_SCOPE_INDEX";
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the program never changes the environment
    if (const char* const place = std::getenv(VARIABLE); place != nullptr && !std::string_view(place).empty()) {
        return NamedIndex{place, VARIABLE};
    }
    const std::filesystem::path folder = checkout.empty() ? root_of_current_folder() : std::filesystem::path(checkout);
    const std::string index = read_configuration(Checkout(folder.empty() ? "." : folder.string())).index;
    return index.empty() ? std::nullopt : std::optional(NamedIndex{folder / index, folder / CONFIGURATION_FILE});
}

}  // namespace host
