#include "host/postgresql/connection.h"

#include "host/postgresql/client_options.h"

#include <libpq-fe.h>
#include <poll.h>

#include <array>
#include <charconv>
#include <chrono>
#include <new>
#include <regex>
#include <utility>
#include <vector>

namespace host::postgresql {

namespace {

constexpr const char* LOST = "08006";
constexpr std::chrono::milliseconds LOOK_AGAIN(20);

// What to do about a failure, by the beginning of its code; empty when the server's words are enough.
std::string_view advice(const std::string& state) {
    struct Advice {
        std::string_view state;
        std::string_view text;
    };
    constexpr std::array ADVICE{
        Advice{"08001", "; check that the server runs, its address, and whether it may be reached from here"},
        Advice{"08", "; the connection is lost: try again"},
        Advice{"57P05", "; raise idle_session_timeout"},
        Advice{"57P", "; try again when the server is back"},
        Advice{"57014", "; ask for less, or raise statement_timeout"},
        Advice{"25P03", "; raise idle_in_transaction_session_timeout"},
        Advice{"28", "; check the user and the password"},
        Advice{"3D000", "; check the name of the database, or create it"},
        Advice{"42501", "; have its owner grant that"},
        Advice{"25006", "; name the server that may be written to"},
        Advice{"53100", "; make room on the server's disk"},
        Advice{"53300", "; try again when fewer are connected"},
        Advice{"40", "; try again"},
    };
    for (const auto& [beginning, text] : ADVICE) {
        if (state.starts_with(beginning)) {
            return text;
        }
    }
    return "";
}

// The client library writes several lines, of which the first says what is wrong.
std::string first_line(std::string_view text) {
    return std::string(text.substr(0, text.find('\n')));
}

// Keeps the first warning of the server. Of other notices nothing is kept.
void note_warning(void* first, const PGresult* notice) {
    auto& kept = *static_cast<std::string*>(first);
    const char* const severity = PQresultErrorField(notice, PG_DIAG_SEVERITY_NONLOCALIZED);
    const char* const words = PQresultErrorField(notice, PG_DIAG_MESSAGE_PRIMARY);
    if (kept.empty() && severity != nullptr && std::string_view(severity) == "WARNING" && words != nullptr) {
        kept = first_line(words);
    }
}

std::chrono::seconds patience(PGconn* connection) {
    constexpr std::chrono::seconds USUAL(10);
    for (const auto& [keyword, value] : taken_from(PQconninfo(connection))) {
        if (keyword == "connect_timeout") {
            int seconds = 0;
            std::from_chars(value.data(), value.data() + value.size(), seconds);
            return seconds > 0 ? std::chrono::seconds(seconds) : std::chrono::hours(24);
        }
    }
    return USUAL;
}

}  // namespace

PostgresqlError::PostgresqlError(const std::string& server, const std::string& reason, const std::string& state)
    : IndexError((server + ": " + reason).append(advice(state)), reason), state_(state) {}

bool PostgresqlError::is_about_content() const {
    return state_.starts_with("XX") || state_ == "42P01" || state_ == "42703" || state_ == "3F000";
}

void Connection::Finisher::operator()(pg_conn* connection) const {
    PQfinish(connection);
}

void Connection::Finisher::operator()(pg_result* result) const {
    PQclear(result);
}

Connection::Connection(const Address& address, CheckInterrupt check_interrupt)
    : server_(address.name()), check_interrupt_(std::move(check_interrupt)) {
    connect(address);
    PQsetnonblocking(handle_.get(), 1);
}

void Connection::connect(const Address& address) {
    std::vector<const char*> keywords{"fallback_application_name"};
    std::vector<const char*> values{"wiki-scope"};
    for (const auto& [keyword, value] : address.parameters()) {
        keywords.push_back(keyword.c_str());
        values.push_back(value.c_str());
    }
    // The words of a failure, and names of repositories, whatever the environment says.
    keywords.push_back("client_encoding");
    values.push_back("UTF8");
    keywords.push_back(nullptr);
    values.push_back(nullptr);
    handle_.reset(PQconnectStartParams(keywords.data(), values.data(), 0));
    if (handle_ == nullptr) {
        throw std::bad_alloc();
    }
    PQsetNoticeReceiver(handle_.get(), note_warning, &warning_);  // which else prints them
    PQsetErrorVerbosity(handle_.get(), PQERRORS_VERBOSE);
    const auto deadline = std::chrono::steady_clock::now() + patience(handle_.get());
    PostgresPollingStatusType status = PGRES_POLLING_WRITING;
    while (status != PGRES_POLLING_OK) {
        if (status == PGRES_POLLING_FAILED || PQstatus(handle_.get()) == CONNECTION_BAD) {
            throw refusal();
        }
        pollfd socket{PQsocket(handle_.get()), static_cast<short>(status == PGRES_POLLING_READING ? POLLIN : POLLOUT),
                      0};
        while (poll(&socket, 1, static_cast<int>(LOOK_AGAIN.count())) <= 0) {
            check_interrupt_();
            if (std::chrono::steady_clock::now() > deadline) {
                throw PostgresqlError(server_, "no answer", "08001");
            }
        }
        status = PQconnectPoll(handle_.get());
    }
}

// The client library tells the server's code only as a part of its words: "FATAL:  28P01: password authentication ...".
PostgresqlError Connection::refusal() const {
    std::string reason = first_line(PQerrorMessage(handle_.get()));
    std::string state = PQconnectionNeedsPassword(handle_.get()) != 0 ? "28P01" : "08001";
    if (std::smatch code; std::regex_search(reason, code, std::regex(":  ([0-9A-Z]{5}): "))) {
        state = code[1];
        reason.erase(static_cast<std::size_t>(code.position(1)), static_cast<std::size_t>(code.length(1)) + 2);
    }
    return {server_, reason, state};
}

bool Connection::is_lost() const {
    return handle_ == nullptr || PQstatus(handle_.get()) != CONNECTION_OK;
}

bool Connection::has_ended() {
    // Its last words come in first, then the end.
    while (!is_lost()) {
        pollfd socket{PQsocket(handle_.get()), POLLIN, 0};
        if (poll(&socket, 1, 0) <= 0) {
            return false;
        }
        PQconsumeInput(handle_.get());
    }
    return true;
}

void Connection::execute(const std::string& sql) {
    if (is_lost() || PQsendQuery(handle_.get(), sql.c_str()) == 0) {
        fail(nullptr);
    }
    finish();
}

std::int64_t Connection::execute(const std::string& sql, const Parameters& parameters) {
    send(sql, parameters);
    return finish();
}

std::string Connection::warning_of(const std::string& sql) {
    warning_.clear();
    execute(sql);
    return warning_;
}

void Connection::begin(const std::string& mode, const std::string& settings) {
    execute("BEGIN " + mode + "; SET LOCAL search_path = pg_catalog, pg_temp; " + settings);
}

void Connection::send(const std::string& sql, const Parameters& parameters) {
    std::vector<Oid> types;
    std::vector<const char*> values;
    std::vector<int> lengths;
    const std::vector<int> formats(parameters.values().size(), 1);
    for (const auto& [type, bytes] : parameters.values()) {
        types.push_back(type);
        values.push_back(bytes.data());
        lengths.push_back(static_cast<int>(bytes.size()));
    }
    if (is_lost() || PQsendQueryParams(handle_.get(), sql.c_str(), static_cast<int>(types.size()), types.data(),
                                       values.data(), lengths.data(), formats.data(), 1) == 0) {
        fail(nullptr);
    }
}

void Connection::wait(bool can_send) {
    try {
        check_interrupt_();
    } catch (...) {
        lose();
        throw;
    }
    pollfd socket{PQsocket(handle_.get()), static_cast<short>(can_send ? POLLIN | POLLOUT : POLLIN), 0};
    if (poll(&socket, 1, static_cast<int>(LOOK_AGAIN.count())) > 0 && (socket.revents & ~POLLOUT) != 0 &&
        PQconsumeInput(handle_.get()) == 0) {
        fail(nullptr);
    }
}

Connection::Result Connection::next_result() {
    if (handle_ == nullptr) {
        fail(nullptr);
    }
    while (true) {
        const int unsent = PQflush(handle_.get());
        if (unsent < 0) {
            fail(nullptr);
        }
        if (PQisBusy(handle_.get()) == 0) {
            break;
        }
        wait(unsent != 0);
    }
    Result result(PQgetResult(handle_.get()));
    const ExecStatusType status = PQresultStatus(result.get());
    if (result != nullptr && (status == PGRES_FATAL_ERROR || status == PGRES_BAD_RESPONSE)) {
        fail(result.get());
    }
    return result;
}

std::int64_t Connection::finish() {
    std::int64_t changed = 0;
    while (const Result result = next_result()) {
        const std::string_view count = PQcmdTuples(result.get());
        std::from_chars(count.data(), count.data() + count.size(), changed);
    }
    return changed;
}

void Connection::begin_copy(const std::string& sql) {
    if (is_lost() || PQsendQuery(handle_.get(), sql.c_str()) == 0) {
        fail(nullptr);
    }
    next_result();
    unsent_ = 0;
}

void Connection::put(std::string_view data) {
    constexpr std::size_t MOST_UNSENT = 8'000'000;
    if (is_lost() || PQputCopyData(handle_.get(), data.data(), static_cast<int>(data.size())) != 1) {
        fail(nullptr);
    }
    unsent_ += data.size();
    int unsent = PQflush(handle_.get());
    while (unsent > 0 && unsent_ > MOST_UNSENT) {
        wait(true);
        unsent = PQflush(handle_.get());
    }
    if (unsent < 0) {
        fail(nullptr);
    }
    unsent_ = unsent == 0 ? 0 : unsent_;
}

std::int64_t Connection::end_copy() {
    if (is_lost() || PQputCopyEnd(handle_.get(), nullptr) != 1) {
        fail(nullptr);
    }
    return finish();
}

void Connection::fail(const pg_result* result) {
    const char* const state = PQresultErrorField(result, PG_DIAG_SQLSTATE);
    const char* const words = PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
    const bool is_the_servers = state != nullptr && words != nullptr;
    const std::string reason = is_the_servers ? words : handle_ == nullptr ? "" : PQerrorMessage(handle_.get());
    const std::string code = is_the_servers ? state : is_lost() ? LOST : "";
    lose();
    throw PostgresqlError(server_, reason.empty() ? "the connection is lost" : first_line(reason), code);
}

Rows::Rows(Connection& connection, const std::string& sql, const Parameters& parameters) : connection_(connection) {
    connection_.send(sql, parameters);
    PQsetSingleRowMode(connection_.handle_.get());
}

Rows::~Rows() {
    if (!is_at_end_) {
        connection_.lose();
    }
}

bool Rows::step() {
    if (is_at_end_) {
        return false;
    }
    row_ = connection_.next_result();
    if (PQresultStatus(row_.get()) != PGRES_SINGLE_TUPLE) {
        connection_.finish();
        is_at_end_ = true;
    }
    return !is_at_end_;
}

int Rows::columns() const {
    return PQnfields(row_.get());
}

bool Rows::is_null(int column) const {
    return PQgetisnull(row_.get(), 0, column) != 0;
}

std::int64_t Rows::integer(int column) const {
    return integer_of(bytes(column));
}

std::string_view Rows::bytes(int column) const {
    return {PQgetvalue(row_.get(), 0, column), static_cast<std::size_t>(PQgetlength(row_.get(), 0, column))};
}

}  // namespace host::postgresql
