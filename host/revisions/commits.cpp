#include "host/revisions/commits.h"

#include "host/git/references.h"
#include "host/git/repository_folder.h"
#include "host/git/revision_name.h"
#include "host/git/tracked_files.h"
#include "host/revisions/objects.h"
#include "host/text/ascii.h"

#include <git2.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <vector>

namespace host::revisions {

namespace {

namespace fs = std::filesystem;

// Whether a part of a path names a file that a system may check out.
bool is_file_name(std::string_view name) {
    constexpr std::size_t LONGEST = 255;  // bytes
    return !name.empty() && name.size() <= LONGEST && name != "." && name != ".." &&
           name.find('/') == std::string_view::npos && lowered(name) != ".git";
}

// Writes the files of one tree after another.
class CheckingOut {
  public:
    CheckingOut(const Objects& objects, fs::path folder, const std::function<void()>& check_interrupt)
        : objects_(objects), folder_(std::move(folder)), check_interrupt_(check_interrupt) {}

    void write(const git_tree* tree, const std::string& above, std::size_t depth) {
        constexpr std::size_t DEEPEST = 1'000;
        constexpr std::size_t MOST_FILES = 5'000'000;  // a small tree can name itself many times over
        for (std::size_t at = 0; at < git_tree_entrycount(tree); ++at) {
            const git_tree_entry* const entry = git_tree_entry_byindex(tree, at);
            const std::string path = above + git_tree_entry_name(entry);
            if (!is_file_name(git_tree_entry_name(entry)) || depth > DEEPEST) {
                continue;
            }
            check_interrupt_();
            if (++entries_ > MOST_FILES) {
                throw std::runtime_error("the commit has more than 5,000,000 files; compare indexes instead");
            }
            if (git_tree_entry_type(entry) == GIT_OBJECT_TREE) {
                std::error_code error;
                if (fs::create_directory(folder_ / path, error)) {
                    write(objects_.tree(*git_tree_entry_id(entry)).get(), path + "/", depth + 1);
                }
            } else if (is_regular(git_tree_entry_filemode(entry))) {
                write_file(path, *git_tree_entry_id(entry));
            }
        }
    }

    // Ends the checkout.
    void write_index() {
        fs::create_directory(folder_ / ".git");
        std::ofstream index(folder_ / ".git/index", std::ios::binary);
        index << git::git_index_of(std::move(paths_)) << std::flush;
        require_written(index, ".git/index");
    }

  private:
    static bool is_regular(git_filemode_t mode) {
        return mode == GIT_FILEMODE_BLOB || mode == GIT_FILEMODE_BLOB_EXECUTABLE;
    }

    // What is too large to be read by anybody keeps its size alone.
    void write_file(const std::string& path, const git_oid& id) {
        constexpr std::size_t LARGEST = 67'108'864;  // bytes
        std::error_code error;
        if (fs::exists(folder_ / path, error) || error) {
            return;
        }
        std::ofstream file(folder_ / path, std::ios::binary);
        if (const std::size_t size = objects_.size_of(id); size > LARGEST) {
            fs::resize_file(folder_ / path, size);
        } else {
            const Blob blob = objects_.blob(id);
            file.write(static_cast<const char*>(git_blob_rawcontent(blob.get())),
                       static_cast<std::streamsize>(git_blob_rawsize(blob.get())));
            file.flush();
        }
        require_written(file, path);
        paths_.push_back(path);
    }

    void require_written(const std::ofstream& file, const std::string& path) const {
        if (!file) {
            throw std::runtime_error((folder_ / path).string() + ": cannot be written; make room on its disk");
        }
    }

    const Objects& objects_;
    const fs::path folder_;
    const std::function<void()>& check_interrupt_;
    std::size_t entries_ = 0;
    std::vector<std::string> paths_;
};

}  // namespace

Commits::Commits(fs::path root) : root_(std::move(root)) {
    const std::string folder = git::repository_folder(root_);
    if (folder.empty()) {
        throw std::runtime_error(root_.string() + ": not a checkout of a Git repository; name two indexes instead");
    }
    objects_ = std::make_unique<Objects>(git::shared_folder(folder));
}

Commits::~Commits() = default;

std::optional<std::string> Commits::find(std::string_view name) const {
    constexpr std::array<std::string_view, 5> PLACES{"", "refs/", "refs/tags/", "refs/heads/", "refs/remotes/"};
    const std::optional<git::RevisionName> revision = git::revision_name(name);
    if (!revision) {
        return std::nullopt;
    }
    const std::string folder = git::repository_folder(root_);
    std::optional<std::string> hash;
    for (const std::string_view place : PLACES) {
        hash = hash ? hash : git::hash_of(folder, git::shared_folder(folder), std::string(place) + revision->base);
    }
    Commit commit = objects_->commit(hash.value_or(revision->base));
    commit = commit != nullptr ? std::move(commit) : objects_->commit(revision->base);
    for (const git::Step& step : revision->steps) {
        commit = Objects::after(std::move(commit), step);
    }
    if (commit == nullptr) {
        return std::nullopt;
    }
    std::array<char, GIT_OID_HEXSZ + 1> text{};
    return git_oid_tostr(text.data(), text.size(), git_commit_id(commit.get()));
}

void Commits::check_out(const std::string& commit, const fs::path& folder,
                        const std::function<void()>& check_interrupt) const {
    const Commit found = objects_->commit(commit);
    if (found == nullptr) {
        throw std::runtime_error(root_.string() + ": has no commit " + commit);
    }
    CheckingOut files(*objects_, folder, check_interrupt);
    files.write(Objects::tree_of(found.get()).get(), "", 0);
    files.write_index();
}

}  // namespace host::revisions
