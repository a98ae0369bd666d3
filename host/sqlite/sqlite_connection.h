// A connection to SQLite that owns its resources and throws its failures.
#pragma once

#include "host/index/index_error.h"

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace host {

/// A failure of SQLite. `what()` is one line that names the database file, gives SQLite's own words and, where the
/// machine is at fault, says what to do.
class SqliteError : public IndexError {
  public:
    /// `reason` is in SQLite's own words.
    SqliteError(const std::string& path, const std::string& reason, int code);

    /// The primary result code (SQLITE_FULL, SQLITE_NOTADB, ...).
    [[nodiscard]] int code() const { return code_; }
    /// Whether the file is damaged, or no database at all.
    [[nodiscard]] bool is_damage() const;
    [[nodiscard]] bool is_about_content() const override;

  private:
    int code_;
};

/// A connection to one database file. Every function throws `SqliteError`.
///
/// No statement costs more than the size of the file explains: one that does reads a crafted file, as one whose pages
/// lead back to themselves, and ends as of a damaged one. A file that is empty at first is being made, and has no such
/// limit.
class SqliteConnection {
  public:
    enum class Mode { READ, CREATE };

    /// To read, pages are compared with their checksums when the file states any: one that has not its own is damage.
    /// The path is taken as it stands: "file:x" and ":memory:" are names of files like any other.
    SqliteConnection(const std::string& path, Mode mode);

    /// Runs statements that take no parameters; rows that they return are dropped.
    void execute(const std::string& sql) const;

    /// Has `check_interrupt` called every few milliseconds while a statement runs. What it throws ends the statement,
    /// and comes out of the function that ran it.
    void watch(std::function<void()> check_interrupt);

    /// Begins to count what a statement costs.
    void begin_statement() const;
    /// Lets the statement cost more, for what is bound to it.
    void allow_for(std::size_t bound_bytes) const;
    /// Counts what the statement has given.
    void count(std::size_t given_bytes) const;

    /// Throws what SQLite last said of this connection, for the result code `code`, or what a watch has thrown.
    [[noreturn]] void fail(int code) const;

    [[nodiscard]] sqlite3* handle() const { return handle_.get(); }
    [[nodiscard]] const std::string& path() const { return path_; }

  private:
    struct Closer {
        void operator()(sqlite3* handle) const;
    };
    struct Progress {
        std::function<void()> check_interrupt = [] {};
        std::exception_ptr thrown = nullptr;
        std::int64_t steps_left = 0;
    };
    void distrust(Mode mode) const;
    void follow_progress() const;

    std::string path_;
    std::int64_t most_steps_;
    std::unique_ptr<Progress> progress_ = std::make_unique<Progress>();
    std::unique_ptr<sqlite3, Closer> handle_;
};

/// One prepared statement. The connection must outlive it. Parameters are counted from 1, columns from 0.
///
///     Statement files(connection, "SELECT id, path FROM files WHERE language = ?1");
///     files.bind(1, "cpp");
///     while (files.step()) { use(files.integer(0), files.text(1)); }
class Statement {
  public:
    Statement(const SqliteConnection& connection, std::string_view sql);

    /// The text is copied.
    void bind(int parameter, std::string_view text);
    void bind(int parameter, std::int64_t integer);
    /// None binds NULL.
    void bind(int parameter, const std::optional<std::int64_t>& integer);

    /// Goes to the next row; false when there is none.
    bool step();
    /// Runs a statement that returns no rows, and makes it ready to be bound and run again.
    void run();
    /// Runs a statement that returns no rows with these values of its parameters, in order. Texts are not copied.
    template <class... Values>
    void run_with(const Values&... values) {
        int parameter = 0;
        (bind_in_place(++parameter, values), ...);
        run();
    }
    /// Makes the statement ready to be bound and run again.
    void reset();

    [[nodiscard]] int column_count() const;

    /// The column of the current row. NULL reads as 0 or as the empty text. A text is valid until the next step.
    [[nodiscard]] bool is_null(int column) const;
    [[nodiscard]] std::int64_t integer(int column) const;
    [[nodiscard]] std::string_view text(int column) const;

  private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const;
    };

    // A text must outlive the run.
    void bind_in_place(int parameter, std::string_view text);
    void bind_in_place(int parameter, const std::optional<std::int64_t>& integer) { bind(parameter, integer); }
    void bind(int parameter, std::string_view text, bool is_copied);

    const SqliteConnection& connection_;
    std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
};

/// A transaction that is rolled back unless it is committed. Reading inside of one, all statements see one state of
/// the database.
class Transaction {
  public:
    explicit Transaction(const SqliteConnection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit();

  private:
    const SqliteConnection& connection_;
    bool open_ = true;
};

}  // namespace host
