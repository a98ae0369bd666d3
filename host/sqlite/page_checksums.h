// Checksums of the pages of an SQLite file, which reveal damage.
//
// SQLite leaves the last bytes of each page alone when it is told so. There stands the XXH3 of the bytes before them,
// seeded with the number of the page, so that pages that have changed places are noticed too. The application id in the
// file's header states that. For every other program the file is an ordinary database.
#pragma once

#include "host/sqlite/sqlite_connection.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace host {

/// How many bytes the header of a database has, at the beginning of its first page.
inline constexpr std::size_t DATABASE_HEADER_BYTES = 100;

/// How a file is divided into pages.
struct PageLayout {
    std::size_t page_size = 0;
    std::size_t pages = 0;
};

/// The layout that the header of a file states, when it states checksums too. It may be an impossible one.
std::optional<PageLayout> layout_with_checksums(std::span<const unsigned char, DATABASE_HEADER_BYTES> header);

/// Whether a file of `file_size` bytes can have such a layout.
bool is_possible(const PageLayout& layout, std::size_t file_size);

/// Whether a page, the `number`th of its file from 1 on, has the checksum of what stands on it.
bool has_its_checksum(std::span<const unsigned char> page, std::size_t number);

/// Has an empty database leave room for checksums, and state them. Throws `SqliteError`.
void leave_room_for_checksums(const SqliteConnection& connection);

/// Copies a file with checksums over what is at another path. Throws `SqliteError` for a page that has not its own, and
/// returns false when a file cannot be read or written, with the reason in errno.
bool copy_with_checksums(const std::string& from, const std::string& to);

/// Writes the checksums of a file that has room for them, once it is complete and closed. False when that fails, with
/// the reason in errno.
bool write_checksums(const std::string& path);

}  // namespace host
