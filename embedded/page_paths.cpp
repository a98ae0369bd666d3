#include "embedded/page_paths.h"

#include "workers/wiki/scope/ordered_map.h"

#include <filesystem>

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
    explicit IndexedFile(const storage::Database& db) : row_(db.connection(), paths_where("path = ?1")) {}

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
    explicit FilesBelow(const storage::Database& db)
        : all_(db.connection(), paths_where("true")), below_(db.connection(), paths_where("path > ?1 AND path < ?2")) {}

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

}  // namespace

PagePaths find_page_paths(const storage::Database& db, std::span<const std::string> named) {
    IndexedFile is_indexed(db);
    FilesBelow files_below(db);
    wiki::scope::OrderedSet<std::string> indexed;
    wiki::scope::OrderedSet<std::string> missing;
    for (const std::string& name : named) {
        const std::string path = is_indexed(name) ? name : plain_path(name);
        if (is_indexed(path)) {
            indexed.insert(path);
        } else if (const auto files = files_below(path); !files.empty()) {
            for (const std::string& file : files) {
                indexed.insert(file);
            }
        } else {
            missing.insert(name);
        }
    }
    return {indexed.keys(), missing.keys()};
}

}  // namespace embedded
