#include "host/paths/source_folder.h"

#include "host/index/notes.h"

#include <filesystem>
#include <system_error>

namespace host {

namespace fs = std::filesystem;

namespace {

// The root of the repository that the folder is part of; the folder itself when it is part of none.
fs::path repository_around(const fs::path& folder) {
    std::error_code error;
    for (fs::path above = folder; !above.empty(); above = above.parent_path()) {
        if (fs::exists(above / ".git", error)) {
            return above;
        }
        if (above == above.root_path()) {
            break;
        }
    }
    return folder;
}

}  // namespace

SourceFolder source_folder(const std::string& named, storage::Database& db) {
    if (!named.empty()) {
        return {.path = named, .is_the_users_choice = true};
    }
    const std::string noted = db.noted(notes::CHECKOUT);
    std::error_code error;
    const fs::path current = fs::current_path(error);
    const fs::path repository = repository_around(current);
    if (!noted.empty() && (noted == current || noted == repository)) {
        return {.path = noted, .is_the_users_choice = true};
    }
    return {.path = db.origin().is_users_own ? noted : repository.string()};
}

std::optional<Checkout> source_checkout(const std::string& named, storage::Database& db) {
    const std::string folder = source_folder(named, db).path;
    std::error_code error;
    return fs::is_directory(folder, error) ? std::optional<Checkout>(folder) : std::nullopt;
}

}  // namespace host
