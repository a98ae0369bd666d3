// The objects of a repository of Git, by libgit2.
#pragma once

#include "host/git/revision_name.h"
#include "host/revisions/owned.h"

#include <git2.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace host::revisions {

/// For one thread at a time. Every function that reads throws `std::runtime_error` with one line for an object that is
/// not there, is damaged or is of another kind.
class Objects {
  public:
    /// `folder` is that of a repository. Objects elsewhere, which a repository can name, are not read. Throws
    /// `std::runtime_error` with one line when there are none, or files among them that are neither plain files nor
    /// folders.
    explicit Objects(const std::string& folder);
    ~Objects();
    Objects(const Objects&) = delete;
    Objects& operator=(const Objects&) = delete;

    /// Returns the commit that a hash stands for, or the beginning of one of at least four characters, or a tag of such
    /// a hash; null for none.
    [[nodiscard]] Commit commit(std::string_view hash) const;
    /// Returns the commit that a step leads to from a commit, which may be null; null for none.
    static Commit after(Commit commit, const git::Step& step);
    [[nodiscard]] static Tree tree_of(const git_commit* commit);
    [[nodiscard]] Tree tree(const git_oid& id) const;
    [[nodiscard]] Blob blob(const git_oid& id) const;
    /// Returns how many bytes an object has, without reading it.
    [[nodiscard]] std::size_t size_of(const git_oid& id) const;

  private:
    Database database_;
    Repository repository_;
};

}  // namespace host::revisions
