#include "host/revisions/commits.h"

#include "host/files/checkout.h"
#include "host/git/repository_folder.h"
#include "host/git/tracked_files.h"
#include "host/revisions/owned.h"
#include "host/revisions/revision_name.h"
#include "host/text/ascii.h"

#include <git2.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <vector>

namespace host::revisions {

namespace {

namespace fs = std::filesystem;

std::string last_error() {
    const git_error* const error = git_error_last();
    return error == nullptr || error->message == nullptr ? "unknown error" : error->message;
}

// The text of a file of a repository, which leads nowhere else.
std::optional<std::string> text_of(const std::string& folder, const std::string& path) {
    constexpr std::size_t LARGEST = 67'108'864;  // bytes; of packed references a million
    const std::optional<FileContent> file = Checkout(folder).read(path, LARGEST);
    return file ? file->text : std::nullopt;
}

std::string without_line_end(std::string text) {
    text.erase(std::min(text.find_last_not_of(" \r\n") + 1, text.size()));
    return text;
}

// The value of a reference among those that are packed into one file.
std::optional<std::string> packed(const std::string& folder, std::string_view reference) {
    std::istringstream lines(text_of(folder, "packed-refs").value_or(""));
    for (std::string line; std::getline(lines, line);) {
        const std::size_t blank = line.find(' ');
        if (blank != std::string::npos && line.substr(blank + 1) == reference) {
            return line.substr(0, blank);
        }
    }
    return std::nullopt;
}

// The hash that a reference leads to.
std::optional<std::string> hash_of(const std::string& own_folder, const std::string& shared, std::string reference) {
    constexpr int LONGEST_CHAIN = 5;  // as Git has it
    constexpr std::string_view SYMBOLIC = "ref: ";
    for (int length = 0; length <= LONGEST_CHAIN && revision_name(reference); ++length) {
        std::optional<std::string> value = text_of(own_folder, reference);
        value = value ? value : text_of(shared, reference);
        value = value ? value : packed(shared, reference);
        if (!value || !value->starts_with(SYMBOLIC)) {
            return value ? std::optional(without_line_end(*value)) : std::nullopt;
        }
        reference = without_line_end(value->substr(SYMBOLIC.size()));
    }
    return std::nullopt;
}

// Whether a part of a path names a file that a system may check out.
bool is_file_name(std::string_view name) {
    constexpr std::size_t LONGEST = 255;  // bytes
    return !name.empty() && name.size() <= LONGEST && name != "." && name != ".." &&
           name.find('/') == std::string_view::npos && lowered(name) != ".git";
}

}  // namespace

// What a repository holds.
class Commits::Objects {
  public:
    explicit Objects(const std::string& folder) {
        git_libgit2_init();
        git_odb* database = nullptr;
        git_repository* repository = nullptr;
        if (git_odb_open(&database, (folder + "/objects").c_str()) == 0) {
            database_.reset(database);
            if (git_repository_wrap_odb(&repository, database) == 0) {
                repository_.reset(repository);
            }
        }
        if (repository_ == nullptr) {
            throw std::runtime_error(folder + ": its objects cannot be read (" + last_error() + ")");
        }
    }
    ~Objects() {
        repository_.reset();
        database_.reset();
        git_libgit2_shutdown();
    }
    Objects(const Objects&) = delete;
    Objects& operator=(const Objects&) = delete;

    // The commit that a hash, or the beginning of one, stands for; null for none.
    [[nodiscard]] Object commit(std::string_view hash) const {
        constexpr std::size_t SHORTEST = 4;
        git_oid id{};
        git_object* object = nullptr;
        if (hash.size() < SHORTEST || git_oid_fromstrn(&id, hash.data(), hash.size()) != 0 ||
            git_object_lookup_prefix(&object, repository_.get(), &id, hash.size(), GIT_OBJECT_ANY) != 0) {
            return nullptr;
        }
        const Object found(object);
        git_object* commit = nullptr;
        return git_object_peel(&commit, found.get(), GIT_OBJECT_COMMIT) == 0 ? Object(commit) : nullptr;
    }

    // The commit that a step leads to; null for none.
    static Object after(Object commit, const Step& step) {
        for (std::size_t generation = 0; generation < step.generations && commit != nullptr; ++generation) {
            git_commit* parent = nullptr;
            const auto* const child = reinterpret_cast<const git_commit*>(commit.get());
            const bool is_there = git_commit_parent(&parent, child, static_cast<unsigned>(step.parent - 1)) == 0;
            commit.reset(is_there ? reinterpret_cast<git_object*>(parent) : nullptr);
        }
        return commit;
    }

    [[nodiscard]] Tree tree_of(const git_object* commit) const {
        git_tree* tree = nullptr;
        require(git_commit_tree(&tree, reinterpret_cast<const git_commit*>(commit)) == 0);
        return Tree(tree);
    }
    [[nodiscard]] Tree tree(const git_oid& id) const {
        git_tree* tree = nullptr;
        require(git_tree_lookup(&tree, repository_.get(), &id) == 0);
        return Tree(tree);
    }
    [[nodiscard]] Blob blob(const git_oid& id) const {
        git_blob* blob = nullptr;
        require(git_blob_lookup(&blob, repository_.get(), &id) == 0);
        return Blob(blob);
    }
    [[nodiscard]] std::size_t size_of(const git_oid& id) const {
        std::size_t size = 0;
        git_object_t type{};
        require(git_odb_read_header(&size, &type, database_.get(), &id) == 0);
        return size;
    }

  private:
    static void require(bool is_read) {
        if (!is_read) {
            throw std::runtime_error("an object of the repository cannot be read (" + last_error() +
                                     "); fetch what is missing");
        }
    }

    Database database_;
    Repository repository_;
};

namespace {

// Writes the files of one tree after another.
template <class Objects>
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

Commits::Commits(const fs::path& root) : root_(root) {
    const std::string folder = git::repository_folder(root_);
    if (folder.empty()) {
        throw std::runtime_error(root_.string() + ": not a checkout of a Git repository; name two indexes instead");
    }
    objects_ = std::make_unique<Objects>(git::shared_folder(folder));
}

Commits::~Commits() = default;

std::optional<std::string> Commits::find(std::string_view name) const {
    constexpr std::array<std::string_view, 5> PLACES{"", "refs/", "refs/tags/", "refs/heads/", "refs/remotes/"};
    const std::optional<RevisionName> revision = revision_name(name);
    if (!revision) {
        return std::nullopt;
    }
    const std::string folder = git::repository_folder(root_);
    std::optional<std::string> hash;
    for (const std::string_view place : PLACES) {
        hash = hash ? hash : hash_of(folder, git::shared_folder(folder), std::string(place) + revision->base);
    }
    Object commit = objects_->commit(hash.value_or(revision->base));
    commit = commit != nullptr ? std::move(commit) : objects_->commit(revision->base);
    for (const Step& step : revision->steps) {
        commit = Objects::after(std::move(commit), step);
    }
    if (commit == nullptr) {
        return std::nullopt;
    }
    std::array<char, GIT_OID_HEXSZ + 1> text{};
    return git_oid_tostr(text.data(), text.size(), git_object_id(commit.get()));
}

void Commits::check_out(const std::string& commit, const fs::path& folder,
                        const std::function<void()>& check_interrupt) const {
    const Object found = objects_->commit(commit);
    if (found == nullptr) {
        throw std::runtime_error(root_.string() + ": has no commit " + commit);
    }
    CheckingOut files(*objects_, folder, check_interrupt);
    files.write(objects_->tree_of(found.get()).get(), "", 0);
    files.write_index();
}

}  // namespace host::revisions
