#include "host/rules/misnamed_tests.h"

#include "host/rules/test_paths.h"
#include "host/text/ascii.h"
#include "host/text/glob.h"
#include "host/text/utf8.h"
#include "utils/path_filter.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <set>

namespace host {

namespace {

using std::string_view;

// "src/a.ts" -> "src", "a.ts" -> ""
string_view folder_of(string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == string_view::npos ? string_view() : path.substr(0, slash);
}

// "src/a.d.ts" -> "src/a"
string_view without_extension(string_view path) {
    const std::size_t dot = path.find('.', path.rfind('/') + 1);
    return path.substr(0, dot);
}

bool lies_below(string_view path, string_view folder) {
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

// Whether a file serves those who develop the library instead of its users: "benchmarks/a.ts", "setupTests.ts",
// "a.stories.tsx", "tests.py".
bool serves_developers(string_view path) {
    constexpr auto WORDS =
        std::to_array<string_view>({"test",    "tests",     "mock",       "mocks",  "fixture",    "fixtures", "bench",
                                    "benches", "benchmark", "benchmarks", "script", "scripts",    "story",    "stories",
                                    "example", "examples",  "demo",       "demos",  "playground", "sandbox",  "docs"});
    const std::string folded = lowered(path);
    string_view rest = folded;
    while (!rest.empty()) {
        const string_view word = rest.substr(0, rest.find_first_of("/._-"));
        rest.remove_prefix(std::min(word.size() + 1, rest.size()));
        if (word.starts_with("setup") || std::ranges::find(WORDS, word) != WORDS.end()) {
            return true;
        }
    }
    return false;
}

class MisnamedTests {
  public:
    MisnamedTests(std::span<const string_view> paths, std::span<const FileImport> imports)
        : paths_(paths), imports_(imports), is_product_(paths.size()) {
        for (std::uint32_t place = 0; place < paths.size(); ++place) {
            folders_.push_back(sole_test_folder(paths[place]));
            is_test_.push_back(utils::is_test_path(paths[place]));
            if (!folders_.back().empty()) {
                files_[folders_.back()].push_back(place);
            } else if (!is_test_.back()) {
                source_folders_.insert(folder_of(paths[place]));
            }
        }
    }

    void find_exported(std::span<const std::string> exported) {
        std::set<string_view> whole;       // without extensions: packages export built files, whose extensions differ
        std::set<string_view> beginnings;  // of patterns, up to the star
        for (const string_view each : exported) {
            const std::size_t star = each.find('*');
            star == string_view::npos ? whole.insert(without_extension(each)) : beginnings.insert(each.substr(0, star));
        }
        const auto is_exported = [&](string_view path, string_view folder) {
            bool found = whole.contains(without_extension(path));
            for (std::size_t end = folder.size() + 1; !found && end <= path.size(); ++end) {
                found = beginnings.contains(path.substr(0, end));
            }
            return found;
        };
        for (const auto& [folder, places] : files_) {
            for (const std::uint32_t place : places) {
                is_product_[place] = is_exported(paths_[place], folder);
            }
        }
    }

    void find_imported() {
        for (const FileImport& import : imports_) {
            if (proves(import)) {
                is_product_[import.target] = true;
            }
        }
        follow_imports();
    }

    void find_the_rest_of_folders() {
        for (const auto& [folder, files] : files_) {
            const auto products = std::ranges::count_if(files, [&](std::uint32_t file) { return is_product_[file]; });
            if (2 * products > std::ssize(files)) {
                for (const std::uint32_t file : files) {
                    is_product_[file] = true;
                }
            }
        }
    }

    [[nodiscard]] std::vector<PathRule> rules() const {
        constexpr std::size_t MOST = 100;
        const std::set<string_view> mixed = folders_with_tests();
        std::vector<PathRule> rules;
        const auto add = [&rules](const std::string& pattern) {
            if (rules.size() < MOST && pattern.size() <= Glob::LONGEST && is_utf8(pattern)) {
                rules.push_back({pattern, false});
            }
        };
        for (const auto& [folder, files] : files_) {
            if (!mixed.contains(folder)) {
                add("/" + escaped(folder) + "/");
                continue;
            }
            for (const std::uint32_t file : files) {
                if (is_product_[file]) {
                    add("/" + escaped(paths_[file]));
                }
            }
        }
        return rules;
    }

  private:
    // Whether the importing file is production code below the test folder's parent, and that parent holds such code.
    [[nodiscard]] bool proves(const FileImport& import) const {
        const string_view source = paths_[import.source];
        const string_view sources = folder_of(folders_[import.target]);
        return !is_test_[import.source] && !source.ends_with(".rs") && source_folders_.contains(sources) &&
               lies_below(source, sources) && !serves_developers(source.substr(sources.size()));
    }

    void follow_imports() {
        std::multimap<std::uint32_t, std::uint32_t> targets;  // by source; both in the same test folder
        for (const auto& [source, target] : imports_) {
            if (!folders_[source].empty() && folders_[source] == folders_[target]) {
                targets.emplace(source, target);
            }
        }
        std::vector<std::uint32_t> next;
        for (std::uint32_t place = 0; place < paths_.size(); ++place) {
            if (is_product_[place]) {
                next.push_back(place);
            }
        }
        while (!next.empty()) {
            const auto [begin, end] = targets.equal_range(next.back());
            next.pop_back();
            for (auto each = begin; each != end; ++each) {
                if (!is_product_[each->second]) {
                    is_product_[each->second] = true;
                    next.push_back(each->second);
                }
            }
        }
    }

    // The folders that still hold tests, by whatever rule.
    [[nodiscard]] std::set<string_view> folders_with_tests() const {
        std::set<string_view> mixed;
        for (std::size_t place = 0; place < paths_.size(); ++place) {
            if (is_test_[place] && !is_product_[place]) {
                for (string_view folder = folder_of(paths_[place]); !folder.empty(); folder = folder_of(folder)) {
                    mixed.insert(folder);
                }
            }
        }
        return mixed;
    }

    std::span<const string_view> paths_;
    std::span<const FileImport> imports_;
    // One element for each file of `paths_`.
    std::vector<string_view> folders_;  // `sole_test_folder`
    std::vector<bool> is_test_;
    std::vector<bool> is_product_;  // proven to be production code in spite of the folder's name

    std::map<string_view, std::vector<std::uint32_t>> files_;  // by their `sole_test_folder`
    std::set<string_view> source_folders_;                     // those that hold production code
};

}  // namespace

std::vector<PathRule> rules_for_misnamed_tests(std::span<const std::string_view> paths,
                                               std::span<const FileImport> imports,
                                               std::span<const std::string> exported) {
    MisnamedTests tests(paths, imports);
    tests.find_exported(exported);
    tests.find_imported();
    tests.find_the_rest_of_folders();
    return tests.rules();
}

}  // namespace host
