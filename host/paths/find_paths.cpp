#include "host/paths/find_paths.h"

#include "host/paths/nearest_path.h"
#include "host/text/glob.h"
#include "models/ordered_map.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace host {

namespace {

// What paths of files the index holds.
class IndexedFiles {
  public:
    // `expected` are asked for at once, as the paths that most likely will be.
    IndexedFiles(storage::Database& db, std::span<const std::string> expected) : db_(db) {
        expected_.insert(expected.begin(), expected.end());
        db_.read_files_at(expected, [&](const FileRow& file) { held_.emplace(file.path); });
    }

    [[nodiscard]] bool hold(const std::string& path) const {
        bool is_held = held_.contains(path);
        if (!is_held && !expected_.contains(path)) {
            db_.read_files_at(std::span(&path, 1), [&](const FileRow&) { is_held = true; });
        }
        return is_held;
    }

    // In path order; "." is the root of the repository.
    [[nodiscard]] std::vector<std::string> below(const std::string& folder) const {
        std::vector<std::string> paths;
        if (!folder.empty()) {  // the empty path is not the root of the file system
            db_.read_files_below(folder == "." ? "" : folder,
                                 [&](const FileRow& file) { paths.emplace_back(file.path); });
        }
        return paths;
    }

    // All files, in path order; read once.
    [[nodiscard]] const std::vector<std::string>& all() {
        if (!all_) {
            all_ = below(".");
        }
        return *all_;
    }

    void check_interrupt() const { db_.check_interrupt(); }

  private:
    storage::Database& db_;
    std::optional<std::vector<std::string>> all_;
    std::unordered_set<std::string> expected_;
    std::unordered_set<std::string> held_;
};

std::string plain_path(const std::string& named) {
    std::string plain = std::filesystem::path(named).lexically_normal().generic_string();
    if (plain.size() > 1 && plain.ends_with('/')) {
        plain.pop_back();
    }
    return plain;
}

// Finds the files that a name stands for.
class Finder {
  public:
    Finder(storage::Database& db, const Checkout* checkout, std::span<const std::string> named)
        : files_(db, named), checkout_(checkout) {}

    // Nothing when the index knows no such file or folder, and none that fits a pattern. What it knows itself comes
    // before what the name means on this machine.
    std::vector<std::string> find(const std::string& name) {
        if (files_.hold(name)) {
            return {name};
        }
        const std::string plain = plain_path(name);
        std::vector<std::string> files = standing_for(plain);
        if (files.empty()) {
            if (const std::string meant = path_meant(name); meant != plain) {
                files = standing_for(meant);
            }
        }
        return files;
    }

    // The path of the repository that a name means when the index does not know it as it stands.
    [[nodiscard]] std::string path_meant(const std::string& name) const {
        const bool may_lie_below = checkout_ != nullptr && !name.empty();
        const std::optional<std::string> path = may_lie_below ? checkout_->path_below(name) : std::nullopt;
        return !path ? plain_path(name) : path->empty() ? "." : *path;
    }

    const std::vector<std::string>& all_files() { return files_.all(); }

    void check_interrupt() const { files_.check_interrupt(); }

  private:
    // The file, the files below the folder, or those that fit the pattern.
    std::vector<std::string> standing_for(const std::string& path) {
        if (files_.hold(path)) {
            return {path};
        }
        std::vector<std::string> files = files_.below(path);
        return files.empty() ? matching(path) : files;
    }

    std::vector<std::string> matching(const std::string& pattern) {
        std::vector<std::string> files;
        if (is_glob(pattern)) {
            const Glob glob(pattern);
            std::ranges::copy_if(all_files(), std::back_inserter(files), [&](const std::string& file) {
                check_interrupt();
                return glob.matches(file);
            });
        }
        return files;
    }

    IndexedFiles files_;
    const Checkout* checkout_;
};

// The files, which are in path order, and every folder above one of them.
std::vector<std::string> with_folders(const std::vector<std::string>& files) {
    std::vector<std::string> places;
    std::string_view before;
    for (const std::string& file : files) {
        // A folder that stands above the file before, too, is there already. The root of a file system is none.
        const auto known = static_cast<std::size_t>(std::ranges::mismatch(before, file).in1 - before.begin());
        for (std::size_t end = file.find('/', std::max<std::size_t>(known, 1)); end != std::string::npos;
             end = file.find('/', end + 1)) {
            places.push_back(file.substr(0, end));
        }
        places.push_back(file);
        before = file;
    }
    return places;
}

std::vector<Suggestion> suggestions_for(std::span<const std::string> missing, Finder& finder) {
    constexpr std::size_t MOST = 10;  // nobody mistypes more: a longer list was made by a program
    std::vector<Suggestion> suggestions;
    if (missing.empty()) {
        return suggestions;
    }
    const std::vector<std::string> places = with_folders(finder.all_files());
    for (const std::string& name : missing.first(std::min(MOST, missing.size()))) {
        finder.check_interrupt();
        if (std::optional<std::string> nearest = nearest_path(finder.path_meant(name), places)) {
            suggestions.push_back({name, std::move(*nearest)});
        }
    }
    return suggestions;
}

}  // namespace

FoundPaths find_paths(storage::Database& db, const Checkout* checkout, std::span<const std::string> named) {
    Finder finder(db, checkout, named);
    models::OrderedSet<std::string> indexed;
    models::OrderedSet<std::string> missing;
    for (const std::string& name : named) {
        finder.check_interrupt();
        const std::vector<std::string> files = finder.find(name);
        for (const std::string& file : files) {
            indexed.insert(file);
        }
        if (files.empty()) {
            missing.insert(name);
        }
    }
    std::vector<std::string> not_found(missing.begin(), missing.end());
    std::vector<Suggestion> suggestions = suggestions_for(not_found, finder);
    return {{indexed.begin(), indexed.end()}, std::move(not_found), std::move(suggestions)};
}

}  // namespace host
