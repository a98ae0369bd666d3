#include "host/sqlite/sqlite_connection.h"

#include "host/sqlite/checking_vfs.h"

#include <sqlite3.h>

#include <filesystem>
#include <limits>
#include <system_error>
#include <utility>

namespace host {

namespace {

// What to do about a failure of the machine; empty when it is the database itself that is amiss.
std::string_view advice(int code) {
    switch (code) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return "; another program is using it: try again when that has ended";
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
        return "; check the permissions of the file, of its folder, and of the folder for temporary files";
    case SQLITE_READONLY:  // even to be read: its journal has to be played, or shared with a writer
        return "; make the file and its folder writable, then open it once with sqlite3";
    case SQLITE_FULL:  // also when it is only read: rows are sorted in a file of their own
        return "; make room on its disk, and where temporary files are kept";
    case SQLITE_IOERR:
        return "; check its disk, and where temporary files are kept";
    case SQLITE_NOMEM:
        return "; end other programs, or ask for less";
    default:  // SQLITE_CORRUPT, SQLITE_NOTADB, and SQLITE_ERROR for a table or a column that is not there
        return "";
    }
}

// What a statement costs is counted in instructions of SQLite's machine, and as many for each byte that it gives. A row
// has 6 bytes at least, and costs 30 instructions at most, as does an element of a list that is bound: 2 bytes.
constexpr int PERIOD = 10'000;  // instructions, some milliseconds
constexpr std::int64_t LEAST_LIMIT = 10'000'000;
constexpr std::int64_t MOST_STEPS_PER_BYTE = 20;
constexpr std::int64_t STEPS_PER_GIVEN_BYTE = 10;
constexpr std::int64_t UNLIMITED = std::numeric_limits<std::int64_t>::max();

std::int64_t most_steps(const std::string& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    return error || size == 0 ? UNLIMITED : LEAST_LIMIT + static_cast<std::int64_t>(size) * MOST_STEPS_PER_BYTE;
}

// SQLite gives some relative paths another meaning.
std::string literal(const std::string& path) {
    return std::filesystem::path(path).is_absolute() ? path : "./" + path;
}

}  // namespace

SqliteError::SqliteError(const std::string& path, const std::string& reason, int code)
    : IndexError((path + ": " + reason).append(advice(code)), reason), code_(code) {}

bool SqliteError::is_damage() const {
    return code_ == SQLITE_CORRUPT || code_ == SQLITE_NOTADB;
}

bool SqliteError::is_about_content() const {
    return is_damage() || code_ == SQLITE_ERROR;
}

void SqliteConnection::Closer::operator()(sqlite3* handle) const {
    sqlite3_close(handle);
}

SqliteConnection::SqliteConnection(const std::string& path, Mode mode) : path_(path), most_steps_(most_steps(path)) {
    const int flags = mode == Mode::READ ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    sqlite3* handle = nullptr;
    const char* const vfs = mode == Mode::READ ? checking_vfs() : nullptr;
    const int code =
        sqlite3_open_v2(literal(path).c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, vfs);
    handle_.reset(handle);
    if (code != SQLITE_OK) {
        fail(code);
    }
    distrust(mode);
    follow_progress();
    constexpr int PATIENCE = 2000;  // milliseconds, while another process holds the file
    sqlite3_busy_timeout(handle, PATIENCE);
    execute("PRAGMA cell_size_check = ON");  // notices more of what is damaged, at hardly any cost
}

// Has a file that somebody has crafted take no more than it needs, and do nothing.
void SqliteConnection::distrust(Mode mode) const {
    constexpr int LONGEST_VALUE = 64 << 20;           // what is bound to a statement may be as long: 3 million ranges
    constexpr int LONGEST_STATEMENT = 100'000;        // also of those that are in the file
    constexpr std::int64_t MOST_MEMORY = 1LL << 30U;  // of all connections together
    sqlite3_limit(handle(), SQLITE_LIMIT_LENGTH, LONGEST_VALUE);
    sqlite3_limit(handle(), SQLITE_LIMIT_SQL_LENGTH, LONGEST_STATEMENT);
    sqlite3_hard_heap_limit64(MOST_MEMORY);
    const int is_defensive = mode == Mode::READ ? 1 : 0;
    sqlite3_db_config(handle(), SQLITE_DBCONFIG_DEFENSIVE, is_defensive, nullptr);  // NOLINT(*-vararg): so declared
    sqlite3_db_config(handle(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);        // NOLINT(*-vararg): so declared
}

void SqliteConnection::execute(const std::string& sql) const {
    begin_statement();
    if (const int code = sqlite3_exec(handle(), sql.c_str(), nullptr, nullptr, nullptr); code != SQLITE_OK) {
        fail(code);
    }
}

void SqliteConnection::watch(std::function<void()> check_interrupt) {
    progress_->check_interrupt = std::move(check_interrupt);
}

void SqliteConnection::follow_progress() const {
    // No exception may pass through SQLite, which is C.
    const auto is_to_end = [](void* context) -> int {
        Progress& progress = *static_cast<Progress*>(context);
        progress.steps_left -= PERIOD;
        try {
            progress.check_interrupt();
            return progress.steps_left < 0 ? 1 : 0;
        } catch (...) {
            progress.thrown = std::current_exception();
            return 1;
        }
    };
    sqlite3_progress_handler(handle(), PERIOD, is_to_end, progress_.get());
}

void SqliteConnection::begin_statement() const {
    progress_->steps_left = most_steps_;
}

void SqliteConnection::allow_for(std::size_t bound_bytes) const {
    if (most_steps_ != UNLIMITED) {
        progress_->steps_left += static_cast<std::int64_t>(bound_bytes) * MOST_STEPS_PER_BYTE;
    }
}

void SqliteConnection::count(std::size_t given_bytes) const {
    progress_->steps_left -= static_cast<std::int64_t>(given_bytes) * STEPS_PER_GIVEN_BYTE;
    if (progress_->steps_left < 0) {
        fail(SQLITE_INTERRUPT);
    }
}

void SqliteConnection::fail(int code) const {
    if (progress_->thrown != nullptr) {
        std::rethrow_exception(std::exchange(progress_->thrown, nullptr));
    }
    if (progress_->steps_left < 0) {
        throw SqliteError(path_, "damaged: what it holds does not end", SQLITE_CORRUPT);
    }
    if (code == SQLITE_IOERR_DATA) {
        throw SqliteError(path_, "damaged, or changed by another program", SQLITE_CORRUPT);
    }
    const char* reason = handle_ == nullptr ? sqlite3_errstr(code) : sqlite3_errmsg(handle());
    constexpr int PRIMARY = 0xFF;
    throw SqliteError(path_, reason, code & PRIMARY);
}

void Statement::Finalizer::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

Statement::Statement(const SqliteConnection& connection, std::string_view sql) : connection_(connection) {
    connection.begin_statement();
    sqlite3_stmt* statement = nullptr;
    const int code =
        sqlite3_prepare_v2(connection.handle(), sql.data(), static_cast<int>(sql.size()), &statement, nullptr);
    statement_.reset(statement);
    if (code != SQLITE_OK) {
        connection.fail(code);
    }
}

void Statement::bind(int parameter, std::string_view text) {
    bind(parameter, text, true);
}

void Statement::bind_in_place(int parameter, std::string_view text) {
    bind(parameter, text, false);
}

void Statement::bind(int parameter, std::string_view text, bool is_copied) {
    connection_.allow_for(text.size());
    // An empty view may have no address, which SQLite would take for NULL.
    const char* characters = text.empty() ? "" : text.data();
    const int code = sqlite3_bind_text64(statement_.get(), parameter, characters, text.size(),
                                         is_copied ? SQLITE_TRANSIENT : SQLITE_STATIC, SQLITE_UTF8);
    if (code != SQLITE_OK) {
        connection_.fail(code);
    }
}

void Statement::bind(int parameter, std::int64_t integer) {
    if (const int code = sqlite3_bind_int64(statement_.get(), parameter, integer); code != SQLITE_OK) {
        connection_.fail(code);
    }
}

void Statement::bind(int parameter, const std::optional<std::int64_t>& integer) {
    if (integer) {
        bind(parameter, *integer);
    } else if (const int code = sqlite3_bind_null(statement_.get(), parameter); code != SQLITE_OK) {
        connection_.fail(code);
    }
}

bool Statement::step() {
    const int code = sqlite3_step(statement_.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) {
        connection_.fail(code);
    }
    return code == SQLITE_ROW;
}

void Statement::run() {
    step();
    reset();
}

void Statement::reset() {
    sqlite3_reset(statement_.get());
}

int Statement::column_count() const {
    return sqlite3_column_count(statement_.get());
}

bool Statement::is_null(int column) const {
    return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

std::int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(statement_.get(), column);
}

std::string_view Statement::text(int column) const {
    // The address must be asked for first: it may convert the value, and so set the size.
    const void* address = sqlite3_column_text(statement_.get(), column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
    connection_.count(size);
    return {static_cast<const char*>(address), size};
}

Transaction::Transaction(const SqliteConnection& connection) : connection_(connection) {
    connection_.execute("BEGIN");
}

Transaction::~Transaction() {
    if (open_) {
        // A failure here leaves nothing to be done: closing the connection rolls back too.
        sqlite3_exec(connection_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

void Transaction::commit() {
    connection_.execute("COMMIT");
    open_ = false;
}

}  // namespace host
