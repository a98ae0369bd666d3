// Where an index is stored: an SQLite file or a PostgreSQL database.
#pragma once

#include "host/index/database.h"
#include "host/index/index_error.h"
#include "host/index/row_writer.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

namespace host {

/// Called every few milliseconds while an index is read or written. What it throws ends the work, and passes unchanged
/// to the caller.
using CheckInterrupt = std::function<void()>;

/// A connection to an index, for one thread at a time.
class IndexConnection {
  public:
    IndexConnection() = default;
    virtual ~IndexConnection() = default;
    IndexConnection(const IndexConnection&) = delete;
    IndexConnection& operator=(const IndexConnection&) = delete;

    /// Has `check_interrupt` called while something is read.
    virtual void watch(CheckInterrupt check_interrupt) = 0;

    /// The index in the state that it is in now; one at a time, and not for longer than the connection. Throws
    /// `IndexError`, and `UnusableIndex` when there is no longer one that can be read.
    [[nodiscard]] virtual std::unique_ptr<storage::Database> read() = 0;

    /// Whether what would be read next is the index that lies there now. False too once the connection is lost.
    [[nodiscard]] virtual bool is_current() = 0;
};

/// How many rows an index is to have.
struct RowCounts {
    std::int64_t files = 0;
    std::int64_t declarations = 0;
    std::int64_t edges = 0;
};

/// A new index, which takes the place of the one that lies there at once and whole, or not at all.
///
///     fill(index.rows());
///     index.complete(counts);
///     index.commit();
///
/// Until `commit` the old one stays as it was, whatever happens; after it the new one is there, even if the machine
/// loses power. What one that was killed has left behind goes with the next.
class NewIndex {
  public:
    NewIndex() = default;
    /// Throws the new index away unless it was committed.
    virtual ~NewIndex() = default;
    NewIndex(const NewIndex&) = delete;
    NewIndex& operator=(const NewIndex&) = delete;

    /// The name of the index in messages.
    [[nodiscard]] virtual std::string name() const = 0;

    /// Has `check_interrupt` called while something is written.
    virtual void watch(CheckInterrupt check_interrupt) = 0;

    /// Where a file may lie while the index is made; `role` tells it from others.
    [[nodiscard]] virtual std::string scratch_path(const std::string& role) const = 0;

    /// Says in which folder the repository lies, "" for nobody knows; to be called once, before what follows. Throws
    /// `IndexError`, and `std::runtime_error` with one line when another import into this index is running, or nothing
    /// tells which index that is.
    virtual void claim(const std::string& folder) = 0;

    /// Whether an index lies there that would be replaced.
    [[nodiscard]] virtual bool would_replace() const = 0;

    /// Takes the rows. Throws `IndexError`.
    [[nodiscard]] virtual RowWriter& rows() = 0;

    /// Ends the writing, and makes certain that every row is there and durable, which takes its time. Throws
    /// `IndexError`, and `std::runtime_error` with one line when rows are missing.
    virtual void complete(const RowCounts& counts) = 0;

    /// Puts the new index into its place, at once. Throws `std::runtime_error` with one line when that cannot be done.
    virtual void commit() = 0;

    /// After `commit`: what of the old index could not be removed, and why, in one line; empty when nothing is left.
    [[nodiscard]] virtual std::string remark() const { return ""; }

    /// What is said of a failure to write: one line, which says too what has become of the old index.
    [[nodiscard]] virtual std::runtime_error failure(const IndexError& error) const = 0;
};

/// For any number of threads.
class Index {
  public:
    Index() = default;
    virtual ~Index() = default;
    Index(const Index&) = delete;
    Index& operator=(const Index&) = delete;

    /// The name of the index in messages. It never holds a password.
    [[nodiscard]] virtual std::string name() const = 0;

    /// Opens the index for reading. Throws `UnusableIndex`, `IndexError`, and `std::runtime_error` with one line that
    /// says what to do when it cannot be reached.
    [[nodiscard]] virtual std::unique_ptr<IndexConnection> connect() const = 0;

    /// The options of a command that name the index: "--index FILE.db". They never hold a password.
    [[nodiscard]] virtual std::string options() const = 0;

    /// Begins a new index in its place; `check_interrupt` is called as after `watch`. Throws `IndexError`,
    /// `UnusableIndex`, and `std::runtime_error` with one line when what lies there is not to be replaced, or another
    /// import into this index is running.
    [[nodiscard]] virtual std::unique_ptr<NewIndex> replace(CheckInterrupt check_interrupt = [] {}) const = 0;
};

}  // namespace host
