#include "host/git/checkout_files.h"

#include "host/git/ignore_rules.h"
#include "host/git/repository_folder.h"
#include "host/git/tracked_files.h"
#include "host/text/control_characters.h"
#include "host/text/utf8.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace host::git {

namespace {

constexpr std::string_view GIT = ".git";

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

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

// What a folder holds.
struct Entries {
    std::vector<std::pair<std::string, FileStamp>> files;
    std::vector<std::string> folders;
    bool has_git = false;
    bool has_ignore_file = false;
    bool has_attributes_file = false;
};

Entries entries_of(const std::string& path) {
    Entries entries;
    const std::unique_ptr<DIR, CloseFolder> folder(opendir(path.c_str()));
    if (folder == nullptr) {
        return entries;
    }
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread reads this stream
    while (const dirent* const entry = readdir(folder.get())) {
        const std::string_view name = entry->d_name;
        struct stat status {};
        if (name == "." || name == ".." || !is_usable(name) ||
            fstatat(dirfd(folder.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
            continue;
        }
        if (name == GIT) {
            entries.has_git = true;
        } else if (S_ISDIR(status.st_mode)) {
            entries.folders.emplace_back(name);
        } else if (S_ISREG(status.st_mode)) {
            entries.has_ignore_file = entries.has_ignore_file || name == ".gitignore";
            entries.has_attributes_file = entries.has_attributes_file || name == ".gitattributes";
            entries.files.emplace_back(name, stamp_of(status));
        }
    }
    return entries;
}

// The rules in the files of a folder, and of those around it.
struct FolderRules {
    std::size_t folder_size = 0;  // of its path, with the "/" behind that
    std::optional<IgnoreRules> ignored;
    std::optional<AttributeRules> attributes;
    std::shared_ptr<const FolderRules> outer;
};

class Walk {
  public:
    Walk(const Checkout& checkout, const std::function<void()>& check_interrupt)
        : checkout_(checkout), check_interrupt_(check_interrupt), is_repository_(is_checkout_root(checkout.root())),
          tracked_(checkout.root()) {
        auto rules = std::make_shared<FolderRules>();
        rules->ignored = ignore_rules(".git/info/exclude");
        open_.push_back({"", std::move(rules), false});
    }

    std::vector<CheckoutFile> files() {
        while (!open_.empty()) {
            const Folder folder = std::move(open_.back());
            open_.pop_back();
            read(folder);
            check_interrupt_();
        }
        std::ranges::sort(files_, {}, &CheckoutFile::path);
        return std::move(files_);
    }

  private:
    struct Folder {
        std::string path;  // followed by "/", but for the root
        std::shared_ptr<const FolderRules> rules;
        bool is_ignored = false;
    };

    void read(const Folder& folder) {
        const Entries entries = entries_of(checkout_.root() / folder.path);
        if (entries.has_git && !folder.path.empty()) {
            return;  // another repository
        }
        const std::shared_ptr<const FolderRules> rules =
            entries.has_ignore_file || entries.has_attributes_file ? rules_of(folder, entries) : folder.rules;
        for (const auto& [name, stamp] : entries.files) {
            std::string path = folder.path + name;
            if (is_repository_ ? tracked_.hold(path) || !(folder.is_ignored || is_ignored(path, false, rules.get()))
                               : !name.starts_with('.')) {
                const Origin origin = origin_of(path, rules.get());
                files_.push_back({std::move(path), stamp, origin});
            }
        }
        for (const std::string& name : entries.folders) {
            std::string path = folder.path + name;
            const bool is_out =
                is_repository_ ? folder.is_ignored || is_ignored(path, true, rules.get()) : name.starts_with('.');
            if (!is_out || tracked_.hold_some_below(path)) {
                open_.push_back({path.append("/"), rules, is_out});
            }
        }
    }

    std::shared_ptr<const FolderRules> rules_of(const Folder& folder, const Entries& entries) {
        constexpr std::size_t LARGEST = 1'048'576;  // bytes
        auto rules = std::make_shared<FolderRules>();
        rules->folder_size = folder.path.size();
        rules->outer = folder.rules;
        if (entries.has_ignore_file) {
            rules->ignored = ignore_rules(folder.path + ".gitignore");
        }
        if (entries.has_attributes_file) {
            const std::optional<FileContent> file = checkout_.read(folder.path + ".gitattributes", LARGEST);
            if (file && file->text) {
                if (folder.path.empty()) {
                    macros_ = attribute_macros(*file->text);
                }
                rules->attributes.emplace(*file->text, macros_);
            }
        }
        return rules;
    }

    [[nodiscard]] std::optional<IgnoreRules> ignore_rules(const std::string& path) const {
        constexpr std::size_t LARGEST = 1'048'576;  // bytes
        const std::optional<FileContent> file = checkout_.read(path, LARGEST);
        return file && file->text ? std::optional(IgnoreRules(*file->text)) : std::nullopt;
    }

    // The rules nearest to a path decide.
    static bool is_ignored(std::string_view path, bool is_folder, const FolderRules* rules) {
        for (; rules != nullptr; rules = rules->outer.get()) {
            const std::optional<bool> decision =
                rules->ignored ? rules->ignored->decide(path.substr(rules->folder_size), is_folder) : std::nullopt;
            if (decision) {
                return *decision;
            }
        }
        return false;
    }

    [[nodiscard]] Origin origin_of(std::string_view path, const FolderRules* rules) const {
        FileAttributes attributes(macros_);
        for (; rules != nullptr; rules = rules->outer.get()) {
            if (rules->attributes) {
                rules->attributes->complete(path.substr(rules->folder_size), attributes);
            }
        }
        return attributes.origin();
    }

    const Checkout& checkout_;
    const std::function<void()>& check_interrupt_;
    const bool is_repository_;
    const TrackedFiles tracked_;
    AttributeMacros macros_;
    std::vector<Folder> open_;
    std::vector<CheckoutFile> files_;
};

}  // namespace

std::vector<CheckoutFile> checkout_files(const Checkout& checkout, const std::function<void()>& check_interrupt) {
    return Walk(checkout, check_interrupt).files();
}

}  // namespace host::git
