// The index in SQLite: one file that says what a repository's files declare and how they refer to one another.
//
// Rows are keyed by integers, which ascend in the order in which pages are read: files by path, declarations by file,
// resolutions by name. An edge stands for all the references that one file makes to one declaration by one resolution;
// edges lie together by source and, once more, by target. Whoever fills an index makes a new file with `create_schema`,
// inserts, and calls `create_indexes`.
#pragma once

#include "host/sqlite/sqlite_connection.h"

#include <string>
#include <string_view>

namespace host {

/// The version of the schema that this program writes and reads.
inline constexpr std::string_view SCHEMA_VERSION = "5";

/// What `meta` has a value for when the file has checksums (page_checksums.h), which its header states too.
inline constexpr std::string_view CHECKSUMS_NOTE = "checksums";

/// Creates the empty tables of an index in a new database, and notes the schema's version in `meta`. Throws
/// `SqliteError`, above all when the database has such tables already.
void create_schema(const SqliteConnection& connection);

/// Creates what the queries search by. Best done once all rows are inserted. Throws `SqliteError`.
void create_indexes(const SqliteConnection& connection);

/// Opens an index for reading: it has the tables and indexes that the two above create, word for word, and nothing
/// else. Throws `UnusableIndex`, and `std::runtime_error` with one line that says what to do when the file cannot be
/// read.
SqliteConnection open_index(const std::string& path);

/// Whether something is at `path` that is not an empty file. Throws `std::runtime_error` with one line when that
/// cannot be found out.
bool holds_something(const std::string& path);

/// Throws `std::runtime_error` with one line when `path` holds anything but an index (of whatever schema version), an
/// empty file or a database that is damaged: what else is there was hardly meant to be replaced. Throws so too when
/// that cannot be found out, as of an index that another program has locked.
void require_replaceable(const std::string& path);

}  // namespace host
