// The index of the sources that a commit holds, for as long as somebody reads it.
#pragma once

#include "host/index/index.h"
#include "host/indexing/progress.h"
#include "host/revisions/commits.h"

#include <filesystem>
#include <memory>
#include <string>

namespace host::revisions {

/// A checkout of a commit, and the index of its sources. Both lie in the cache folder of the checkout, and go with the
/// object; what a killed process leaves goes with the next one.
class RevisionIndex {
  public:
    /// `root` is the root of the checkout; `commit` is a hash that `commits` has found in it. `on_progress` is called
    /// while the index is made. Throws what `Commits::check_out`, `import_sources` and `cache_folder` throw.
    RevisionIndex(const std::filesystem::path& root, const Commits& commits, const std::string& commit,
                  const indexing::OnProgress& on_progress);
    ~RevisionIndex();
    RevisionIndex(const RevisionIndex&) = delete;
    RevisionIndex& operator=(const RevisionIndex&) = delete;

    [[nodiscard]] const Index& index() const { return *index_; }

  private:
    class Folder;
    std::unique_ptr<Folder> folder_;
    std::unique_ptr<Index> index_;
};

}  // namespace host::revisions
