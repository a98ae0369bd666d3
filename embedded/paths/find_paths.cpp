#include "embedded/paths/find_paths.h"

#include "embedded/paths/nearest_path.h"
#include "embedded/text/glob.h"
#include "models/ordered_map.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>

namespace embedded {

namespace {

// A query for the paths of files that meet a condition, in path order. Blobs and paths with a NUL in them are left out,
// so that nothing is found here that the queries for the page then miss: a text of `bound_list` ends at a NUL.
std::string paths_where(const std::string& condition) {
    return "SELECT path FROM files WHERE " + condition +
           " AND typeof(path) = 'text' AND instr(path, char(0)) = 0 ORDER BY path";
}

// Whether the index holds exactly this file.
class IndexedFile {
  public:
    explicit IndexedFile(const Connection& index) : row_(index, paths_where("path = ?1")) {}

    bool operator()(const std::string& path) {
        row_.reset();
        row_.bind(1, path);
        return row_.step();
    }

  private:
    Statement row_;
};

// The files of the index below a folder, in path order.
class FilesBelow {
  public:
    explicit FilesBelow(const Connection& index)
        : all_(index, paths_where("true")), below_(index, paths_where("path > ?1 AND path < ?2")) {}

    std::vector<std::string> operator()(const std::string& folder) {
        if (folder == ".") {
            return paths(all_);
        }
        if (folder.empty()) {
            return {};  // not the root of the file system
        }
        // Every path that begins with "folder/" comes before "folder0": "0" is the character after "/".
        below_.reset();
        below_.bind(1, folder + "/");
        below_.bind(2, folder + "0");
        return paths(below_);
    }

  private:
    static std::vector<std::string> paths(Statement& rows) {
        std::vector<std::string> paths;
        while (rows.step()) {
            paths.emplace_back(rows.text(0));
        }
        rows.reset();
        return paths;
    }

    Statement all_;
    Statement below_;
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
    Finder(const Connection& index, const Checkout* checkout)
        : is_indexed_(index), files_below_(index), checkout_(checkout) {}

    // None when the index knows no such file or folder, and none that fits a pattern. What it knows itself comes before
    // what the name means on this machine.
    std::vector<std::string> find(const std::string& name) {
        if (is_indexed_(name)) {
            return {name};
        }
        for (const std::string& path : {plain_path(name), path_meant(name)}) {
            if (std::vector<std::string> files = at(path); !files.empty()) {
                return files;
            }
            if (std::vector<std::string> files = matching(path); !files.empty()) {
                return files;
            }
        }
        return {};
    }

    // The path of the repository that a name means when the index does not know it as it stands.
    [[nodiscard]] std::string path_meant(const std::string& name) const {
        const bool may_lie_below = checkout_ != nullptr && !name.empty();
        const std::optional<std::string> path = may_lie_below ? checkout_->path_below(name) : std::nullopt;
        return !path ? plain_path(name) : path->empty() ? "." : *path;
    }

    std::vector<std::string> all_files() { return files_below_("."); }

  private:
    std::vector<std::string> at(const std::string& path) {
        return is_indexed_(path) ? std::vector{path} : files_below_(path);
    }

    std::vector<std::string> matching(const std::string& pattern) {
        std::vector<std::string> files;
        if (is_glob(pattern)) {
            const Glob glob(pattern);
            files = all_files();
            std::erase_if(files, [&](const std::string& file) { return !glob.matches(file); });
        }
        return files;
    }

    IndexedFile is_indexed_;
    FilesBelow files_below_;
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
        if (std::optional<std::string> nearest = nearest_path(finder.path_meant(name), places)) {
            suggestions.push_back({name, std::move(*nearest)});
        }
    }
    return suggestions;
}

}  // namespace

FoundPaths find_paths(const Connection& index, const Checkout* checkout, std::span<const std::string> named) {
    Finder finder(index, checkout);
    models::OrderedSet<std::string> indexed;
    models::OrderedSet<std::string> missing;
    for (const std::string& name : named) {
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

}  // namespace embedded
