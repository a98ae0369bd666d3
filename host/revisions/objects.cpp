#include "host/revisions/objects.h"

#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace host::revisions {

namespace {

namespace fs = std::filesystem;

std::string last_error() {
    const git_error* const error = git_error_last();
    return error == nullptr || error->message == nullptr ? "unknown error" : error->message;
}

// Throws where a file is a link, which leads elsewhere, or a pipe, at which reading waits.
void require_plain(const fs::path& folder) {
    std::error_code error;
    for (fs::recursive_directory_iterator each(folder, error); each != fs::recursive_directory_iterator();
         each.increment(error)) {
        if (!fs::is_regular_file(each->symlink_status()) && !fs::is_directory(each->symlink_status())) {
            throw std::runtime_error(each->path().string() + ": neither a file nor a folder; nothing of it is read");
        }
    }
    if (error || fs::is_symlink(folder)) {
        throw std::runtime_error(folder.string() + ": cannot be read" + (error ? " (" + error.message() + ")" : ""));
    }
}

// Takes the objects of one folder, without those elsewhere that it names.
int open_database(Database& database, const std::string& folder) {
    constexpr int PRIORITY = 1;
    constexpr int USUAL = -1;
    git_odb* opened = nullptr;
    git_odb_backend* loose = nullptr;
    git_odb_backend* packed = nullptr;
    int failure = git_odb_new(&opened);
    database.reset(opened);
    failure = failure != 0 ? failure : git_odb_backend_loose(&loose, folder.c_str(), USUAL, 0, 0, 0);
    failure = failure != 0 ? failure : git_odb_add_backend(opened, loose, PRIORITY);
    failure = failure != 0 ? failure : git_odb_backend_pack(&packed, folder.c_str());
    return failure != 0 ? failure : git_odb_add_backend(opened, packed, PRIORITY);
}

void require(bool is_read) {
    if (!is_read) {
        throw std::runtime_error("an object of the repository cannot be read (" + last_error() +
                                 "); fetch what is missing");
    }
}

}  // namespace

Objects::Objects(const std::string& folder) {
    const std::string objects = folder + "/objects";
    require_plain(objects);
    git_libgit2_init();
    git_repository* repository = nullptr;
    if (open_database(database_, objects) != 0 || git_repository_wrap_odb(&repository, database_.get()) != 0) {
        const std::string reason = last_error();
        database_.reset();
        git_libgit2_shutdown();
        throw std::runtime_error(objects + ": cannot be read (" + reason + ")");
    }
    repository_.reset(repository);
}

Objects::~Objects() {
    repository_.reset();
    database_.reset();
    git_libgit2_shutdown();
}

Commit Objects::commit(std::string_view hash) const {
    constexpr std::size_t SHORTEST = 4;
    git_oid id{};
    git_object* object = nullptr;
    if (hash.size() < SHORTEST || git_oid_fromstrn(&id, hash.data(), hash.size()) != 0 ||
        git_object_lookup_prefix(&object, repository_.get(), &id, hash.size(), GIT_OBJECT_ANY) != 0) {
        return nullptr;
    }
    const Object found(object);
    git_object* peeled = nullptr;
    if (git_object_peel(&peeled, found.get(), GIT_OBJECT_COMMIT) != 0) {
        return nullptr;
    }
    const Object tagged(peeled);
    git_commit* commit = nullptr;
    return git_commit_lookup(&commit, repository_.get(), git_object_id(tagged.get())) == 0 ? Commit(commit) : nullptr;
}

Commit Objects::after(Commit commit, const git::Step& step) {
    for (std::size_t generation = 0; generation < step.generations && commit != nullptr; ++generation) {
        git_commit* parent = nullptr;
        const bool is_there = git_commit_parent(&parent, commit.get(), static_cast<unsigned>(step.parent - 1)) == 0;
        commit.reset(is_there ? parent : nullptr);
    }
    return commit;
}

Tree Objects::tree_of(const git_commit* commit) {
    git_tree* tree = nullptr;
    require(git_commit_tree(&tree, commit) == 0);
    return Tree(tree);
}

Tree Objects::tree(const git_oid& id) const {
    git_tree* tree = nullptr;
    require(git_tree_lookup(&tree, repository_.get(), &id) == 0);
    return Tree(tree);
}

Blob Objects::blob(const git_oid& id) const {
    git_blob* blob = nullptr;
    require(git_blob_lookup(&blob, repository_.get(), &id) == 0);
    return Blob(blob);
}

std::size_t Objects::size_of(const git_oid& id) const {
    std::size_t size = 0;
    git_object_t type{};
    require(git_odb_read_header(&size, &type, database_.get(), &id) == 0);
    return size;
}

}  // namespace host::revisions
