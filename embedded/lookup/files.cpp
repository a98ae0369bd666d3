#include "embedded/lookup/files.h"

#include "embedded/files/checkout.h"
#include "embedded/paths/missing_paths.h"
#include "embedded/rules/noted_rules.h"
#include "embedded/rules/test_paths.h"
#include "embedded/sqlite/index.h"
#include "utils/path_filter.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <unordered_set>

namespace embedded {

namespace {

// The folder that the index was made in, where it is there: what paths of this machine are looked up by.
std::optional<Checkout> checkout_of(const Connection& index) {
    const std::string folder = noted(index, "checkout");
    std::error_code error;
    return std::filesystem::is_directory(folder, error) ? std::optional<Checkout>(folder) : std::nullopt;
}

std::vector<ListedFile> files_at(const Connection& index, std::span<const std::string> paths) {
    const std::unordered_set<std::string_view> wanted(paths.begin(), paths.end());
    Statement rows(index, "SELECT path, language, declarations, declared_lines FROM files ORDER BY path");
    std::vector<ListedFile> files;
    files.reserve(wanted.size());
    while (rows.step()) {
        if (wanted.contains(rows.text(0))) {
            files.push_back({.path = std::string(rows.text(0)),
                             .language = std::string(rows.text(1)),
                             .declarations = rows.integer(2),
                             .declared_lines = rows.integer(3),
                             .is_test = utils::is_test_path(rows.text(0))});
        }
    }
    return files;
}

}  // namespace

ListedFiles list_files(const Connection& index, std::span<const std::string> named,
                       const std::vector<PathRule>& tests) {
    const PathRules rules = with_noted_rules(tests, index);
    const TestRulesInForce in_force(rules);
    const std::optional<Checkout> checkout = checkout_of(index);
    const std::vector<std::string> all{"."};
    const FoundPaths found = find_paths(index, checkout ? &*checkout : nullptr, named.empty() ? all : named);
    const bool is_failure = found.indexed.empty() && !named.empty();
    return {.files = files_at(index, found.indexed),
            .remarks = remarks_on_missing(found.missing, found.suggestions, is_failure),
            .is_failure = is_failure};
}

}  // namespace embedded
