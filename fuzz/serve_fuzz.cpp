// Arbitrary bytes as what a client sends: whatever is answered is a message, and the server still answers when they
// have ended.

#include "fixtures/temporary_folder.h"
#include "fuzz/promise.h"
#include "host/serve/server.h"
#include "host/sqlite/row_writer.h"
#include "host/sqlite/schema.h"
#include "host/sqlite/sqlite_index.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace host;
using namespace host::serve;
using fuzz::promise;

constexpr std::size_t LONGEST = 2'000;
constexpr const char* LAST = "the last request";

// An index of one declaration, and the source of it.
class Repository {
  public:
    Repository() {
        folder_.write("a.ts", "export function add() {}\n");
        const SqliteConnection connection(index(), SqliteConnection::Mode::CREATE);
        create_schema(connection);
        create_indexes(connection);
        connection.execute("INSERT INTO meta VALUES('checkout', '" + folder_ / "" + "')");
        SqliteRowWriter writer(connection);
        writer.add(FileRow{.id = 1, .path = "a.ts"});
        writer.add(DeclarationRow{1, 1, "add", "add", "function", true, 1, 1, 0});
    }
    [[nodiscard]] std::string index() const { return folder_ / "index.db"; }

  private:
    TemporaryFolder folder_;
};

// Checks what the server sends.
class Client : public MessageSink {
  public:
    void send(std::string_view message) override {
        const Received received = Received::parse(message, nullptr, false);
        promise(!received.is_discarded() && message.find('\n') == std::string_view::npos,
                "a message is a line of JSON");
        const std::scoped_lock lock(mutex_);
        for (const Received& each : received.is_array() ? received : Received::array({received})) {
            check(each);
        }
    }
    void check_end() const { promise(has_answered_last_, "the last request is answered"); }

  private:
    void check(const Received& message) {
        promise(message["jsonrpc"] == "2.0", "a message says its version");
        if (!message.contains("method")) {
            promise(message.contains("result") != message.contains("error"), "an answer is a result or an error");
            has_answered_last_ = has_answered_last_ || message["id"] == LAST;
        }
    }

    std::mutex mutex_;
    bool has_answered_last_ = false;
};

class MemoryFile {
  public:
    explicit MemoryFile(std::string_view bytes) : descriptor_(memfd_create("input", 0)) {
        const bool is_written = write(descriptor_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
        promise(is_written && lseek(descriptor_, 0, SEEK_SET) == 0, "memory takes the input");
    }
    ~MemoryFile() { close(descriptor_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    [[nodiscard]] int descriptor() const { return descriptor_; }

  private:
    int descriptor_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Repository repository;
    const auto client = std::make_shared<Client>();
    {
        Server server({std::make_shared<SqliteIndex>(repository.index()), "", "1",
                       [](const std::exception& failure) { return failure.what(); }},
                      client);
        server.take(R"({"jsonrpc":"2.0","id":0,"method":"initialize","params":{"protocolVersion":"2025-11-25"}})");
        const MemoryFile input(std::string(data, data + size) + "\n" + R"({"jsonrpc":"2.0","method":"ping","id":")" +
                               LAST + "\"}");
        MessageReader reader(input.descriptor(), LONGEST);
        promise(server.run(reader), "no call is left when the input has ended");
    }
    client->check_end();
    return 0;
}
