// Which files of Go a build takes.
#pragma once

#include <string_view>

namespace host::resolve {

/// Returns whether a build for Linux on amd64, without tags, takes a Go file: by its path, `a_windows.go`, and by the
/// build constraint that it states, such as `linux && !cgo`. The same on every machine, so that an index is.
bool is_built(std::string_view path, std::string_view constraint);

}  // namespace host::resolve
