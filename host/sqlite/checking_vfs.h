// A file system for SQLite that compares each page it reads with its checksum.
#pragma once

struct sqlite3;

namespace host {

/// The name of a VFS that reads as the default one, and checks the pages of a database that states checksums: a page
/// without its own, and a file of another size than its header says, are SQLITE_IOERR_DATA. It does not write
/// checksums, so it is for reading.
const char* checking_vfs();

/// Whether a database that was opened so states checksums.
bool has_checksums(sqlite3* database);

}  // namespace host
