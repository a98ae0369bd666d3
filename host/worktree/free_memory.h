// What the allocator keeps although nobody uses it.
#pragma once

#include <malloc.h>

namespace host::worktree {

/// Gives free memory back to the system, which the allocator keeps for each thread: others go on, and could not use it.
inline void release_free_memory() {
    malloc_trim(0);
}

}  // namespace host::worktree
