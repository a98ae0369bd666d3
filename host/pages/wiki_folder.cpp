#include "host/pages/wiki_folder.h"

#include "host/files/whole_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <stdexcept>
#include <system_error>

namespace host::pages {

namespace {

namespace fs = std::filesystem;

void make_folder(const fs::path& path) {
    std::error_code error;
    fs::create_directories(path, error);
    if (error) {
        throw cannot_be_written(path, error);
    }
}

FileDescriptor locked(const fs::path& root) {
    FileDescriptor folder(root, O_RDONLY | O_DIRECTORY);
    if (!folder.is_open()) {
        throw cannot_be_written(root, last_system_error());
    }
    if (flock(folder.number(), LOCK_EX | LOCK_NB) != 0) {
        throw std::runtime_error(root.string() + ": another run writes to it; wait for that to end");
    }
    return folder;
}

}  // namespace

WikiFolder::WikiFolder(const std::string& path, Access access) : root_(path) {
    if (access == Access::WRITE) {
        make_folder(root_);
        lock_.emplace(locked(root_));
    }
}

fs::path WikiFolder::place_of(const std::string& file) const {
    fs::path place = root_;
    const fs::path below(file);
    for (const fs::path& part : below) {
        place /= part;
        std::error_code error;
        if (fs::is_symlink(place, error)) {
            throw std::runtime_error(place.string() + ": a symbolic link, which is not followed; remove it");
        }
    }
    return place;
}

std::optional<std::string> WikiFolder::read(const std::string& file) const {
    constexpr std::size_t LARGEST = std::size_t{1} << 30U;  // bytes
    return whole_file(place_of(file), LARGEST);
}

void WikiFolder::stage(const std::string& file, std::string_view text) {
    const fs::path place = place_of(file);
    make_folder(place.parent_path());
    staged_.emplace_back(place, text);
}

void WikiFolder::commit() {
    if (!staged_.empty() && syncfs(lock_->number()) != 0) {
        throw cannot_be_written(root_, last_system_error());
    }
    for (StagedFile& file : staged_) {
        file.commit();
    }
    staged_.clear();
}

void WikiFolder::remove(const std::string& file) const {
    const fs::path place = place_of(file);
    if (unlink(place.c_str()) != 0 && errno != ENOENT) {
        throw cannot_be_written(place, last_system_error());
    }
    for (fs::path folder = place.parent_path(); folder != root_ && rmdir(folder.c_str()) == 0;
         folder = folder.parent_path()) {
    }
}

}  // namespace host::pages
