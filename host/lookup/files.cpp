#include "host/lookup/files.h"

#include "host/files/checkout.h"
#include "host/paths/missing_paths.h"
#include "host/paths/source_folder.h"
#include "host/rules/noted_rules.h"
#include "host/rules/test_paths.h"
#include "utils/path_filter.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <unordered_set>

namespace host {

namespace {

// What paths of this machine are looked up by.
std::optional<Checkout> checkout_of(storage::Database& db) {
    const std::string folder = source_folder("", db).path;
    std::error_code error;
    return std::filesystem::is_directory(folder, error) ? std::optional<Checkout>(folder) : std::nullopt;
}

std::vector<ListedFile> files_at(storage::Database& db, std::span<const std::string> paths) {
    const std::unordered_set<std::string_view> wanted(paths.begin(), paths.end());
    std::vector<ListedFile> files;
    files.reserve(wanted.size());
    db.read_files_below("", [&](const FileRow& file) {
        if (wanted.contains(file.path)) {
            files.push_back({.path = std::string(file.path),
                             .language = std::string(file.language.value_or("")),
                             .declarations = file.declarations,
                             .declared_lines = file.declared_lines,
                             .is_test = utils::is_test_path(file.path)});
        }
    });
    return files;
}

}  // namespace

ListedFiles list_files(storage::Database& db, std::span<const std::string> named, const std::vector<PathRule>& tests) {
    const PathRules rules = with_noted_rules(tests, db);
    const TestRulesInForce in_force(rules, [&db] { db.check_interrupt(); });
    const std::optional<Checkout> checkout = checkout_of(db);
    const std::vector<std::string> all{"."};
    const FoundPaths found = find_paths(db, checkout ? &*checkout : nullptr, named.empty() ? all : named);
    const bool is_failure = found.indexed.empty() && !named.empty();
    return {.files = files_at(db, found.indexed),
            .remarks = remarks_on_missing(found.missing, found.suggestions, is_failure),
            .is_failure = is_failure};
}

}  // namespace host
