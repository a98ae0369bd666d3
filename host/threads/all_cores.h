// Work on many things at once, on all cores.
#pragma once

#include <cstddef>
#include <functional>

namespace host {

/// Calls `work` once for each number below `count`, in any order and on several threads: one for each core, fewer where
/// the system gives no more, and the calling one where it gives none.
///
/// Calls `on_done` every few milliseconds on the calling thread, with the number of calls that have ended since the
/// last time. When `work` or `on_done` throws, no further work begins, and one of the exceptions comes out.
void on_all_cores(std::size_t count, const std::function<void(std::size_t)>& work,
                  const std::function<void(std::size_t)>& on_done);

}  // namespace host
