// The readers of manifests. Each adds what the manifest at `path` states to the package of its folder.
#pragma once

#include "host/manifests/manifest_files.h"
#include "host/resolve/repository.h"

#include <span>
#include <string_view>

namespace host::manifests {

void read_package_json(const ManifestFiles& files, std::string_view path, resolve::Package& package);
void read_tsconfig(const ManifestFiles& files, std::string_view path, resolve::Package& package);
void read_pyproject(const ManifestFiles& files, std::string_view path, resolve::Package& package);
void read_setup_cfg(const ManifestFiles& files, std::string_view path, resolve::Package& package);
void read_setup_py(const ManifestFiles& files, std::string_view path, resolve::Package& package);
void read_go_mod(const ManifestFiles& files, std::string_view path, resolve::Package& package);
void read_cargo(const ManifestFiles& files, std::string_view path, resolve::Package& package);
void read_pom(const ManifestFiles& files, std::string_view path, resolve::Package& package);

/// Sets who can import the packages of npm by their names: the files of the workspace that lists them.
void read_npm_workspaces(const ManifestFiles& files, std::span<resolve::Package> packages);

}  // namespace host::manifests
