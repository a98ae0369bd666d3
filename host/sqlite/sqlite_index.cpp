#include "host/sqlite/sqlite_index.h"

#include "host/index/sanitized_database.h"
#include "host/sqlite/checking_vfs.h"
#include "host/sqlite/new_sqlite_index.h"
#include "host/sqlite/schema.h"
#include "host/sqlite/sqlite_connection.h"
#include "host/sqlite/sqlite_database.h"
#include "host/text/utc.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <utility>

namespace host {

namespace {

// What is at a path; what tells one file from another is in the state. All empty when there is no file.
IndexOrigin origin_of(const std::string& path) {
    struct stat file {};
    if (stat(path.c_str(), &file) != 0) {
        return {};
    }
    std::string state;
    for (const auto part : {static_cast<std::int64_t>(file.st_dev), static_cast<std::int64_t>(file.st_ino),
                            static_cast<std::int64_t>(file.st_size), static_cast<std::int64_t>(file.st_mtim.tv_sec),
                            static_cast<std::int64_t>(file.st_mtim.tv_nsec)}) {
        state += std::to_string(part) + " ";
    }
    return {.state = std::move(state),
            .bytes = file.st_size,
            .made = in_utc(file.st_mtim.tv_sec),
            .is_users_own = file.st_uid == geteuid() && (file.st_mode & S_IWOTH) == 0};
}

class SqliteIndexConnection : public IndexConnection {
  public:
    explicit SqliteIndexConnection(const std::string& path) : origin_(origin_of(path)), connection_(open_index(path)) {
        while (!is_there()) {  // it was replaced while it was opened
            origin_ = origin_of(path);
            connection_ = open_index(path);
        }
    }

    void watch(CheckInterrupt check_interrupt) override { connection_.watch(std::move(check_interrupt)); }
    [[nodiscard]] std::unique_ptr<storage::Database> read() override {
        origin_.has_checksums = has_checksums(connection_.handle());
        return std::make_unique<SanitizedDatabase>(std::make_unique<SqliteDatabase>(connection_, origin_));
    }
    [[nodiscard]] bool is_current() override { return is_there(); }

  private:
    [[nodiscard]] bool is_there() const { return origin_of(connection_.path()).state == origin_.state; }

    IndexOrigin origin_;
    SqliteConnection connection_;
};

}  // namespace

std::unique_ptr<IndexConnection> SqliteIndex::connect() const {
    return std::make_unique<SqliteIndexConnection>(path_);
}

std::unique_ptr<NewIndex> SqliteIndex::replace(CheckInterrupt check_interrupt) const {
    auto made = std::make_unique<NewSqliteIndex>(path_);
    made->watch(std::move(check_interrupt));
    return made;
}

}  // namespace host
