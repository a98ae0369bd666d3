// What each file of a page declares.
#pragma once

#include "host/index/database.h"
#include "host/page/page.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host {

struct OutlinedDeclaration {
    const storage::ScopeSymbol* symbol;  ///< a record of the page, and lives as long
    std::string signature;               ///< as the index has it; empty when it has none
};

struct FileOutline {
    models::Text path;
    std::optional<std::int64_t> lines;              ///< how many; none when the checkout does not give the file
    std::vector<OutlinedDeclaration> declarations;  ///< all, what matters most first
};

/// The outlines of the page's files, in their order. `db` is the page's. Throws `IndexError`.
std::vector<FileOutline> file_outlines(const Page& page, storage::Database& db);

/// The `most` declarations of a file that matter most, in the order of their lines. The outline must outlive them.
std::vector<const OutlinedDeclaration*> by_lines(const FileOutline& file, std::size_t most);

}  // namespace host
