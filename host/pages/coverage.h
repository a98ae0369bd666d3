// Which files the pages of a wiki are about.
#pragma once

#include "host/index/database.h"
#include "host/pages/wiki.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace host::pages {

/// A production file that several pages are about.
struct SharedFile {
    std::string path;
    std::vector<std::size_t> pages;  ///< their places in the wiki, in its order
};

/// Both lists are in path order.
struct Coverage {
    std::vector<std::string> uncovered;  ///< the production files of the index that no page is about
    std::vector<SharedFile> shared;
};

/// Compares the files of each page with those of the index. `tests` are asked before the rules of the index. Throws
/// `IndexError`, and `std::runtime_error` with one line when the rules of the index cannot be read.
Coverage coverage_of(std::span<const std::vector<std::string>> files_of_pages, const std::vector<PathRule>& tests,
                     storage::Database& db);

/// Returns the files of each page, as its paths find them (find_paths.h). Throws `IndexError`.
std::vector<std::vector<std::string>> files_of_pages(const Wiki& wiki, storage::Database& db);

}  // namespace host::pages
