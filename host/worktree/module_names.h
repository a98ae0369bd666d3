// The names of files as modules, with which the fully qualified names of their declarations begin.
#pragma once

#include "host/resolve/repository.h"

#include <string>
#include <vector>

namespace host::worktree {

/// Returns the name of each file as a module, in the order of the files:
///
///     src/rich/console.py           rich.console         below the outermost folder with an __init__.py
///     src/internal/Subject.ts       src.internal.Subject.ts
///     a/Foo.java, "package p.q;"    p.q
///     cmd/run/main.go               example.org/m/cmd/run    where go.mod says "module example.org/m"
///     src/date/mod.rs               date                 below the outermost folder "src"
///
/// Empty for a file that is no module: of C, C++, and the root of a crate.
std::vector<std::string> module_names(const resolve::Repository& repository);

}  // namespace host::worktree
