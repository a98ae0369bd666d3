// Objects of libgit2 that free themselves.
#pragma once

#include <git2.h>

#include <memory>

namespace host::revisions {

template <class Object, void (*FREE)(Object*)>
struct Free {
    void operator()(Object* object) const { FREE(object); }
};
template <class Object, void (*FREE)(Object*)>
using Owned = std::unique_ptr<Object, Free<Object, FREE>>;

using Database = Owned<git_odb, git_odb_free>;
using Repository = Owned<git_repository, git_repository_free>;
using Object = Owned<git_object, git_object_free>;
using Commit = Owned<git_commit, git_commit_free>;
using Tree = Owned<git_tree, git_tree_free>;
using Blob = Owned<git_blob, git_blob_free>;

}  // namespace host::revisions
