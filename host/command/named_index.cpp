#include "host/command/named_index.h"

#include "host/rules/configuration.h"

#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace host {

std::optional<NamedIndex> index_named_elsewhere(const std::string& checkout) {
    constexpr const char* VARIABLE = "WIKI_SCOPE_INDEX";
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the program never changes the environment
    if (const char* const place = std::getenv(VARIABLE); place != nullptr && !std::string_view(place).empty()) {
        return NamedIndex{place, VARIABLE};
    }
    const std::string index = read_configuration(Checkout(checkout.empty() ? "." : checkout)).index;
    const std::filesystem::path folder = checkout;
    return index.empty() ? std::nullopt : std::optional(NamedIndex{folder / index, folder / CONFIGURATION_FILE});
}

}  // namespace host
