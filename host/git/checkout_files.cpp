#include "host/git/checkout_files.h"

#include "host/text/control_characters.h"
#include "host/text/utf8.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <string_view>

namespace host::git {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

std::int64_t nanoseconds(const timespec& time) {
    constexpr std::int64_t A_SECOND = 1'000'000'000;
    return (std::int64_t{time.tv_sec} * A_SECOND) + time.tv_nsec;
}

FileStamp stamp_of(const struct stat& status) {
    return {.size = status.st_size,
            .modified = nanoseconds(status.st_mtim),
            .changed = nanoseconds(status.st_ctim),
            .number = status.st_ino};
}

// Whether an index can hold a path with this segment.
bool is_usable(std::string_view name) {
    return !has_control_character(name) && is_utf8(name);
}

class Walk {
  public:
    explicit Walk(const std::filesystem::path& root) : root_(root) {}

    std::vector<CheckoutFile> files() {
        while (!open_.empty()) {
            const std::string folder = std::move(open_.back());
            open_.pop_back();
            read(folder);
        }
        std::ranges::sort(files_, {}, &CheckoutFile::path);
        return std::move(files_);
    }

  private:
    void read(const std::string& path) {
        const Folder folder(opendir((root_ / path).c_str()));
        if (folder == nullptr) {
            return;
        }
        // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread reads this folder's stream
        while (const dirent* const entry = readdir(folder.get())) {
            const std::string_view name = entry->d_name;
            struct stat status {};
            if (name.starts_with('.') || !is_usable(name) ||
                fstatat(dirfd(folder.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
                continue;
            }
            std::string below = path.empty() ? std::string(name) : path + "/" + std::string(name);
            if (S_ISDIR(status.st_mode)) {
                open_.push_back(std::move(below));
            } else if (S_ISREG(status.st_mode)) {
                files_.push_back({std::move(below), stamp_of(status)});
            }
        }
    }

    const std::filesystem::path& root_;
    std::vector<std::string> open_{""};  // folders
    std::vector<CheckoutFile> files_;
};

}  // namespace

std::vector<CheckoutFile> checkout_files(const std::filesystem::path& root) {
    return Walk(root).files();
}

}  // namespace host::git
