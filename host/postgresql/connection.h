// A connection to a server that owns its resources and throws its failures.
#pragma once

#include "host/index/index.h"
#include "host/index/index_error.h"
#include "host/postgresql/address.h"
#include "host/postgresql/values.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct pg_conn;
struct pg_result;

namespace host::postgresql {

/// A failure of the server, or on the way to it. `what()` is one line that names the server, gives its own words and,
/// where that helps, says what to do.
class PostgresqlError : public IndexError {
  public:
    PostgresqlError(const std::string& server, const std::string& reason, const std::string& state);

    /// The server's code (SQLSTATE) of what is wrong; "08006" for a connection that is lost.
    [[nodiscard]] const std::string& state() const { return state_; }
    [[nodiscard]] bool is_about_content() const override;

  private:
    std::string state_;
};

/// A connection. Every function throws `PostgresqlError`, and what the watch throws, which is called every few
/// milliseconds while the server is waited for. A statement that fails, or is not read to its end, takes its
/// connection with it: the server then undoes what was not committed.
class Connection {
  public:
    /// Waits for as long as "connect_timeout" says, by default 10 seconds.
    explicit Connection(
        const Address& address, CheckInterrupt check_interrupt = [] {});
    ~Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void watch(CheckInterrupt check_interrupt) { check_interrupt_ = std::move(check_interrupt); }

    /// Runs statements without parameters; rows that they return are dropped.
    void execute(const std::string& sql);
    /// Runs a statement with parameters. How many rows it has changed.
    std::int64_t execute(const std::string& sql, const Parameters& parameters);
    /// Runs a statement without parameters. What the server warns of first; empty for nothing.
    std::string warning_of(const std::string& sql);

    /// Begins a transaction of this mode, and runs `settings` in it. Every statement belongs in one: names are looked
    /// up in the system's own schema there, so that nothing that other users of the database have made is called,
    /// whatever the settings of the database and the role say. It ends with "COMMIT", and leaves nothing behind in the
    /// session, which a pool may give to others.
    void begin(const std::string& mode, const std::string& settings = "");

    [[nodiscard]] bool is_lost() const;
    /// Whether it is lost by now: the server may have ended it while nobody asked for anything.
    [[nodiscard]] bool has_ended();
    [[nodiscard]] const std::string& server() const { return server_; }

    /// Begins a statement "COPY ... FROM STDIN", which `put` gives its data, some at a time.
    void begin_copy(const std::string& sql);
    void put(std::string_view data);
    /// How many rows were copied.
    std::int64_t end_copy();

  private:
    friend class Rows;

    struct Finisher {
        void operator()(pg_conn* connection) const;
        void operator()(pg_result* result) const;
    };
    using Result = std::unique_ptr<pg_result, Finisher>;

    void connect(const Address& address);
    /// Why the server could not be connected to.
    [[nodiscard]] PostgresqlError refusal() const;
    void send(const std::string& sql, const Parameters& parameters);
    /// Waits a few milliseconds for the server; `can_send` asks too whether it takes more.
    void wait(bool can_send);
    /// The next result of the statement that runs, whose success it checks; null at its end.
    Result next_result();
    /// Takes the results that are left; how many rows the last of them has changed.
    std::int64_t finish();
    [[noreturn]] void fail(const pg_result* result);
    void lose() { handle_.reset(); }

    std::string server_;
    CheckInterrupt check_interrupt_;
    std::string warning_;  // the first since this was emptied; the connection writes it as long as it lives
    std::unique_ptr<pg_conn, Finisher> handle_;
    std::size_t unsent_ = 0;  // bytes of a copy that the server may not have taken yet
};

/// The rows of a query, one at a time as they come in. Columns are counted from 0.
///
///     Rows files(connection, "SELECT id, path FROM files WHERE language = $1", Parameters().bytes("cpp"));
///     while (files.step()) { use(files.integer(0), files.bytes(1)); }
class Rows {
  public:
    /// The connection must outlive it, and runs no other statement as long as there are rows left.
    Rows(Connection& connection, const std::string& sql, const Parameters& parameters);
    ~Rows();
    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;

    /// Goes to the next row; false when there is none.
    bool step();

    /// How many columns the current row has.
    [[nodiscard]] int columns() const;
    /// The column of the current row. NULL reads as 0 or as no bytes. Bytes are valid until the next step.
    [[nodiscard]] bool is_null(int column) const;
    [[nodiscard]] std::int64_t integer(int column) const;
    [[nodiscard]] std::string_view bytes(int column) const;

  private:
    Connection& connection_;
    Connection::Result row_;
    bool is_at_end_ = false;
};

}  // namespace host::postgresql
