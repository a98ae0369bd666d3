#include "host/sqlite/checking_vfs.h"

#include "host/sqlite/page_checksums.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <span>

namespace host {

namespace {

// What is known of a file that is checked. It lies behind the file of the default VFS, which stays what it is, but for
// its table of methods.
struct CheckedFile {
    PageLayout layout;
    const sqlite3_io_methods* default_methods = nullptr;
    sqlite3_io_methods methods = {};
};

constexpr std::size_t LARGEST_PAGE = 65'536;

sqlite3_vfs& default_vfs() {
    return *sqlite3_vfs_find(nullptr);
}

// Where it begins, as a multiple of what its members have to be aligned to.
int checked_file_offset() {
    constexpr int ALIGNMENT = alignof(CheckedFile);
    return (default_vfs().szOsFile + ALIGNMENT - 1) / ALIGNMENT * ALIGNMENT;
}

CheckedFile& checked_file(sqlite3_file* file) {
    static const int OFFSET = checked_file_offset();
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
    return *reinterpret_cast<CheckedFile*>(reinterpret_cast<char*>(file) + OFFSET);
}

// Reads a page whole.
int read_page(sqlite3_file* file, std::size_t number, std::span<unsigned char> page) {
    const sqlite3_int64 place = static_cast<sqlite3_int64>(number - 1) * std::ssize(page);
    const int code = checked_file(file).default_methods->xRead(file, page.data(), static_cast<int>(page.size()), place);
    if (code == SQLITE_IOERR_SHORT_READ || (code == SQLITE_OK && !has_its_checksum(page, number))) {
        return SQLITE_IOERR_DATA;
    }
    return code;
}

// SQLite reads whole pages, and parts of the header, which is on the first.
int read_checked(sqlite3_file* file, void* to, int bytes, sqlite3_int64 offset) {
    const std::size_t page_size = checked_file(file).layout.page_size;
    const std::size_t number = static_cast<std::size_t>(offset) / page_size + 1;
    const std::size_t begin = static_cast<std::size_t>(offset) % page_size;
    const std::span wanted(static_cast<unsigned char*>(to), static_cast<std::size_t>(bytes));
    if (begin == 0 && wanted.size() == page_size) {
        return read_page(file, number, wanted);
    }
    if (begin + wanted.size() > page_size) {
        return SQLITE_IOERR_READ;
    }
    std::array<unsigned char, LARGEST_PAGE> page;  // NOLINT(cppcoreguidelines-pro-type-member-init): it is read into
    const int code = read_page(file, number, std::span(page).first(page_size));
    if (code == SQLITE_OK) {
        std::ranges::copy(std::span(page).subspan(begin, wanted.size()), wanted.begin());
    }
    return code;
}

// Has a file that states checksums checked from now on.
int check_from_now_on(sqlite3_file* file) {
    std::array<unsigned char, DATABASE_HEADER_BYTES> header{};
    if (file->pMethods->xRead(file, header.data(), header.size(), 0) != SQLITE_OK) {
        return SQLITE_OK;  // SQLite will find that out, too
    }
    const std::optional<PageLayout> layout = layout_with_checksums(header);
    if (!layout) {
        return SQLITE_OK;
    }
    sqlite3_int64 size = 0;
    if (const int code = file->pMethods->xFileSize(file, &size); code != SQLITE_OK) {
        return code;
    }
    if (!is_possible(*layout, static_cast<std::size_t>(size))) {
        return SQLITE_IOERR_DATA;
    }
    CheckedFile& checked = checked_file(file);
    checked = {.layout = *layout, .default_methods = file->pMethods, .methods = *file->pMethods};
    checked.methods.iVersion = 1;  // no memory map, which would be read past the checks, and no write-ahead log
    checked.methods.xRead = read_checked;
    file->pMethods = &checked.methods;
    return SQLITE_OK;
}

int open_file(sqlite3_vfs* /*vfs*/, const char* name, sqlite3_file* file, int flags, int* flags_out) {
    int code = default_vfs().xOpen(&default_vfs(), name, file, flags, flags_out);
    if (code == SQLITE_OK && (flags & SQLITE_OPEN_MAIN_DB) != 0) {
        code = check_from_now_on(file);
        if (code != SQLITE_OK) {
            file->pMethods->xClose(file);
            file->pMethods = nullptr;  // so that SQLite does not close it again
        }
    }
    return code;
}

sqlite3_vfs checking_version_of(const sqlite3_vfs& vfs) {
    sqlite3_vfs checking = vfs;
    checking.pNext = nullptr;
    checking.zName = "wiki-scope";
    checking.szOsFile = checked_file_offset() + static_cast<int>(sizeof(CheckedFile));
    checking.xOpen = open_file;
    return checking;
}

}  // namespace

const char* checking_vfs() {
    static sqlite3_vfs vfs = checking_version_of(default_vfs());
    static const int registered = sqlite3_vfs_register(&vfs, 0);
    return registered == SQLITE_OK ? vfs.zName : "";
}

bool has_checksums(sqlite3* database) {
    sqlite3_file* file = nullptr;
    sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, static_cast<void*>(&file));
    return file != nullptr && file->pMethods != nullptr && file->pMethods->xRead == read_checked;
}

}  // namespace host
