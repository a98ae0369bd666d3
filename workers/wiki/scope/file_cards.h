// What a reader should know of each file of a page at a glance: its size, its purpose, its most used declarations, and
// who uses and tests it.
#pragma once

#include "models/excerpt.h"
#include "workers/wiki/scope/facts.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace wiki::scope {

/// A declaration that production code uses.
struct UsedDeclaration {
    const ScopeSymbol* declaration = nullptr;  ///< a record of the `ScopeFacts`, and lives as long
    std::int64_t references = 0;               ///< positive
    friend bool operator==(const UsedDeclaration&, const UsedDeclaration&) = default;
};

/// A production file that uses another file.
struct FileUser {
    Text path;
    std::int64_t references = 0;
    friend bool operator==(const FileUser&, const FileUser&) = default;
};

/// One file of a page. Of a file that the index does not hold only the path is known. Each excerpt shows three at most.
struct FileCard {
    Text path;
    bool is_indexed = false;
    std::optional<std::int64_t> lines = {};  ///< none when the file could not be read
    std::size_t declarations = 0;            ///< how many the file has
    Text summary = {};  ///< what the file says it is for; empty when it says nothing or was not read

    /// The declarations used from outside the page; if there are none, those that the page's own files use. Most
    /// references first, equal counts in the order of `facts.symbols`.
    models::Excerpt<UsedDeclaration> most_used = {};
    bool is_used_inside_only = false;  ///< whether `most_used` counts the references of the page's own files

    /// The other production files that use the file, those of the page too (`file_users`). Most references first,
    /// equal counts in the order of their first use.
    models::Excerpt<FileUser> users = {};

    /// The tests that reach the file, in the order of `tests_reaching`.
    models::Excerpt<Text> tests = {};

    friend bool operator==(const FileCard&, const FileCard&) = default;
};

/// A card for each file of `facts.files`, in their order, then one for each path of `missing`, the files of the page
/// that the index does not hold. `fan_in` is the page's. Calls `tests_reaching`, whose failures pass unchanged to the
/// caller.
std::vector<FileCard> file_cards(const ScopeFacts& facts, const FanIn& fan_in,
                                 std::span<const std::string> missing = {});
std::vector<FileCard> file_cards(const ScopeFacts&& facts, const FanIn& fan_in,
                                 std::span<const std::string> missing = {}) = delete;  // the result would dangle

}  // namespace wiki::scope
