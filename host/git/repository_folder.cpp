#include "host/git/repository_folder.h"

#include "host/files/checkout.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <system_error>

namespace host::git {

namespace {

namespace fs = std::filesystem;

// The first line of a file in a folder; empty where there is none.
std::string first_line(const fs::path& folder, std::string_view name) {
    constexpr std::size_t LONGEST = 4'096;  // bytes
    const std::optional<FileContent> file = Checkout(folder).read(name, LONGEST);
    return file && file->text ? file->text->substr(0, file->text->find_first_of("\r\n")) : "";
}

}  // namespace

std::string repository_folder(const fs::path& root) {
    constexpr std::string_view LINK = "gitdir: ";
    std::error_code error;
    if (fs::is_directory(root / ".git", error)) {
        return root / ".git";
    }
    const std::string link = first_line(root, ".git");
    return link.starts_with(LINK) ? (root / link.substr(LINK.size())).string() : "";
}

std::string shared_folder(const std::string& repository) {
    const std::string link = first_line(repository, "commondir");
    return link.empty() ? repository : (fs::path(repository) / link).string();
}

bool is_checkout_root(const fs::path& folder) {
    std::error_code error;
    return fs::exists(folder / ".git", error);
}

}  // namespace host::git
