#include "host/revisions/revision_index.h"

#include "host/files/file_descriptor.h"
#include "host/sqlite/sqlite_index.h"
#include "host/worktree/cache_folder.h"
#include "host/worktree/import.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <system_error>

namespace host::revisions {

namespace fs = std::filesystem;

// A new folder, which its owner has locked as long as it is in use.
class RevisionIndex::Folder {
  public:
    // One process at a time makes such a folder, or looks for those that are left.
    explicit Folder(const fs::path& all) : Folder(all, LockedFolder(all)) {}
    ~Folder() {
        std::error_code error;
        fs::remove_all(path_, error);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    [[nodiscard]] const fs::path& path() const { return path_; }

  private:
    // A folder that other processes wait for.
    struct LockedFolder {
        explicit LockedFolder(const fs::path& folder) : file(made_folder(folder), O_RDONLY | O_DIRECTORY | O_CLOEXEC) {
            flock(file.number(), LOCK_EX);
        }
        static std::string made_folder(const fs::path& folder) {
            std::error_code error;
            fs::create_directory(folder, error);
            return folder;
        }
        FileDescriptor file;
    };

    Folder(const fs::path& all, const LockedFolder& /*locked*/) : path_(made(all)), lock_(open_lock(path_)) {
        remove_left(all);
        flock(lock_.number(), LOCK_EX | LOCK_NB);
    }

    // Removes the folders whose owners are gone.
    void remove_left(const fs::path& all) const {
        std::error_code error;
        for (const fs::directory_entry& each : fs::directory_iterator(all, error)) {
            const FileDescriptor lock = open_lock(each.path());
            if (each.path() != path_ && lock.is_open() && flock(lock.number(), LOCK_EX | LOCK_NB) == 0) {
                fs::remove_all(each.path(), error);
            }
        }
    }

    static fs::path made(const fs::path& all) {
        std::string path = all / "XXXXXX";
        if (mkdtemp(path.data()) == nullptr) {
            throw std::runtime_error(all.string() + ": cannot be written (" + last_system_error().message() +
                                     "); make room on its disk, or set XDG_CACHE_HOME");
        }
        return path;
    }
    static FileDescriptor open_lock(const fs::path& folder) {
        return {folder / "lock", O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR};
    }

    fs::path path_;
    FileDescriptor lock_;
};

RevisionIndex::RevisionIndex(const fs::path& root, const Commits& commits, const std::string& commit,
                             const indexing::OnProgress& on_progress) {
    const fs::path all = worktree::cache_folder(root) / "revisions";
    folder_ = std::make_unique<Folder>(all);
    const fs::path checkout = folder_->path() / "checkout";
    fs::create_directory(checkout);
    commits.check_out(commit, checkout, [&] {
        if (on_progress) {
            on_progress(0, 0);
        }
    });
    index_ = std::make_unique<SqliteIndex>(folder_->path() / "index.db");
    worktree::import_sources({.folder = checkout}, *index_->replace(), on_progress);
}

RevisionIndex::~RevisionIndex() = default;

}  // namespace host::revisions
