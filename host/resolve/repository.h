// What is resolved: the files of a repository with what they state, and the packages that it is made of.
#pragma once

#include "host/syntax/syntax.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace host::resolve {

/// Index in `Repository::files`.
using FileId = std::uint32_t;

struct File {
    std::string path;           ///< relative to the root, segments separated by "/"
    std::string_view language;  ///< "c", "cpp", "go", "java", "javascript", "python", "rust", "tsx", "typescript"
    const syntax::Syntax* syntax = nullptr;  ///< outlives the repository; null for a file that states nothing
};

/// A package by its manifest: package.json, tsconfig.json, pyproject.toml, go.mod, Cargo.toml, pom.xml.
struct Package {
    std::string folder;  ///< of the manifest, relative to the root; "" for the root
    std::string name;    ///< by which others import it; empty when none is stated
    /// The folder whose files can import it by `name`: that of a workspace of npm, or its own.
    std::string visible_below;
    std::string entry;  ///< the file that stands for it, relative to the folder; empty when none is stated
    /// Subpaths that others can import ("." or "./a"), and where they lead, relative to the folder: to a source, where
    /// the manifest states what is built from it. One "*" in both stands for the same text. From exports of
    /// package.json.
    std::map<std::string, std::string> exports;
    /// The same for names that the package's own files import, the likeliest target first: `paths` of tsconfig.json,
    /// `imports` of package.json. Of Cargo.toml, the names of dependencies that it renames.
    std::map<std::string, std::vector<std::string>> aliases;
    /// Relative to the folder: the folders below which its modules lie ("src", `baseUrl`); of Cargo.toml, the files
    /// that it states as roots of crates beside `entry`.
    std::vector<std::string> roots;
    std::set<std::string> dependencies;  ///< names of other packages, of this repository or from elsewhere
    std::string_view language;           ///< whose manifest it is: "javascript", "python", "go", "rust", "java"
};

struct Repository {
    std::vector<File> files;  ///< by path, each once
    std::vector<Package> packages;
};

}  // namespace host::resolve
