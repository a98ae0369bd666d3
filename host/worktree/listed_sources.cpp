#include "host/worktree/listed_sources.h"

#include "host/files/file_language.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace host::worktree {

namespace {

// Whether a file may be a manifest or a configuration, by its extension.
bool may_describe(std::string_view path) {
    constexpr std::array<std::string_view, 7> EXTENSIONS{"cfg", "json", "mod", "toml", "work", "xml", "yaml"};
    const std::string_view extension = path.substr(path.rfind('.') + 1);
    return std::ranges::find(EXTENSIONS, extension) != EXTENSIONS.end();
}

}  // namespace

ListedSources list_sources(const Checkout& checkout, const std::vector<PathRule>& exclusions,
                           const std::function<void()>& check_interrupt) {
    const PathRules rules(exclusions);
    ListedSources listed;
    for (git::CheckoutFile& file : git::checkout_files(checkout, check_interrupt)) {
        listed.paths.push_back(file.path);
        if (usual_language(file.path).empty()) {
            if (may_describe(file.path)) {
                listed.manifests.push_back(std::move(file));
            }
            continue;
        }
        const bool is_foreign = file.origin.is_generated.value_or(false) || file.origin.is_vendored.value_or(false);
        if (rules.decide(file.path).value_or(is_foreign)) {
            listed.excluded.push_back(std::move(file.path));
        } else {
            listed.sources.push_back(std::move(file));
        }
    }
    return listed;
}

}  // namespace host::worktree
