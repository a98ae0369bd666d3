#include "host/pages/coverage.h"

#include "host/paths/find_paths.h"
#include "host/paths/source_folder.h"
#include "host/rules/noted_rules.h"
#include "host/rules/test_paths.h"
#include "utils/path_filter.h"

#include <map>
#include <optional>
#include <utility>

namespace host::pages {

Coverage coverage_of(std::span<const std::vector<std::string>> files_of_pages, const std::vector<PathRule>& tests,
                     storage::Database& db) {
    std::map<std::string, std::vector<std::size_t>, std::less<>> pages_of;
    for (std::size_t page = 0; page < files_of_pages.size(); ++page) {
        for (const std::string& file : files_of_pages[page]) {
            pages_of[file].push_back(page);
        }
    }
    const PathRules rules = with_noted_rules(tests, db);
    const TestRulesInForce in_force(rules, [&db] { db.check_interrupt(); });
    Coverage coverage;
    db.read_files_below("", [&](const FileRow& file) {
        if (utils::is_test_path(file.path)) {
            return;
        }
        const auto pages = pages_of.find(file.path);
        if (pages == pages_of.end()) {
            coverage.uncovered.emplace_back(file.path);
        } else if (pages->second.size() > 1) {
            coverage.shared.push_back({std::string(file.path), pages->second});
        }
    });
    return coverage;
}

std::vector<std::vector<std::string>> files_of_pages(const Wiki& wiki, storage::Database& db) {
    std::vector<std::vector<std::string>> files;
    files.reserve(wiki.pages.size());
    for (const WikiPage& page : wiki.pages) {
        const std::optional<Checkout> checkout = source_checkout(page.request.checkout, db);
        files.push_back(find_paths(db, checkout ? &*checkout : nullptr, page.request.paths).indexed);
    }
    return files;
}

}  // namespace host::pages
