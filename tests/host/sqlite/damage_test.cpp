// A damaged index answers as the sound one does, or fails: never otherwise.

#include "host/lookup/listings.h"
#include "host/page/requested_page.h"
#include "host/sqlite/checking_vfs.h"
#include "host/sqlite/page_checksums.h"
#include "host/sqlite/revised_sqlite_index.h"
#include "tests/host/scip/import_fixture.h"

#include <algorithm>
#include <functional>
#include <random>
#include <sstream>

namespace host {
namespace {

using scip::ScipDocument;

class DamagedIndex : public scip::ScipImport {
  protected:
    DamagedIndex() {
        std::vector<ScipDocument> documents;
        for (const std::string below : {"src", "src/lib", "test", "docs"}) {
            for (int file = 0; file < 12; ++file) {
                ScipDocument& document = documents.emplace_back(below + "/" + std::to_string(file) + ".ts");
                for (int line = 0; line < 12; ++line) {
                    const std::string name = std::to_string(line) + below + std::to_string(file);
                    document.defines(scip::symbol("`a name that takes its place " + name + "`()."), {line, 0, 1});
                    document.refers(scip::symbol("`a name that takes its place " + std::to_string(line) + "src" +
                                                 std::to_string((file + line) % 12) + "`()."));
                }
            }
        }
        import(documents);
    }

    // What a command would print, or that it fails.
    using Command = std::function<void(storage::Database&, std::ostream&)>;
    [[nodiscard]] std::string outcome(const Command& command) const {
        try {
            const std::unique_ptr<IndexConnection> connection = SqliteIndex(index).connect();
            std::ostringstream out;
            command(*connection->read(), out);
            return out.str();
        } catch (const std::runtime_error&) {
            return FAILURE;
        }
    }

    // Those of a page, a look for names, a list of files and statistics.
    [[nodiscard]] std::vector<std::string> outcomes() const {
        return {
            outcome([&](storage::Database& db, std::ostream& out) {
                const PageRequest request{.paths = {"src", "test/1.ts"}, .checkout = folder / ""};
                RequestedPage(request, db).write(out);
            }),
            outcome([](storage::Database& db, std::ostream& out) { write_text(out, find_declarations(db, "a", 99)); }),
            outcome([](storage::Database& db, std::ostream& out) { write_text(out, list_files(db, {}).files); }),
            outcome([](storage::Database& db, std::ostream& out) { write_text(out, index_stats(db)); })};
    }

    [[nodiscard]] bool passes_check() const {
        return outcome([](storage::Database& db, std::ostream&) { db.check(); }) != FAILURE;
    }

    // Puts bytes in the place of the index, as if they had always been there.
    void put(const std::string& bytes) const {
        folder.write("index.db", bytes);
        std::filesystem::last_write_time(index, {});
    }

    const std::string FAILURE = "failure";
};

void flip(std::string& bytes, std::size_t bit) {
    bytes[bit / 8] = static_cast<char>(static_cast<unsigned char>(bytes[bit / 8]) ^ (1U << bit % 8));
}

// Bytes in which one thing is amiss: a byte, a bit, a sector, the order of pages, or the length.
std::string damaged(std::string bytes, std::mt19937& random) {
    constexpr std::size_t SECTOR = 512;
    constexpr std::size_t PAGE = 4096;
    const std::size_t at = random() % bytes.size();
    const std::size_t sector = at / SECTOR * SECTOR;
    const std::size_t page = at / PAGE * PAGE;
    const std::size_t other_page = random() % (bytes.size() / PAGE) * PAGE;
    switch (random() % 8) {
    case 0:
        bytes[at] = static_cast<char>(static_cast<unsigned char>(bytes[at]) + 1 + random() % 255);
        break;
    case 1:
    case 2:
        flip(bytes, at * 8 + random() % 8);
        break;
    case 3:
        bytes.replace(sector, SECTOR, SECTOR, '\0');
        break;
    case 4:
        bytes.replace(sector, SECTOR, bytes, random() % (bytes.size() - SECTOR), SECTOR);
        break;
    case 5:
        std::swap_ranges(&bytes[page], &bytes[page] + PAGE, &bytes[other_page]);
        break;
    case 6:
        bytes.resize(random() % 2 == 0 ? at : page);
        break;
    default:
        bytes.append(random() % 2 == 0 ? 1 : PAGE, 'x');
    }
    return bytes;
}

TEST_F(DamagedIndex, AnswersAsTheSoundOneOrFails) {
    const std::string sound = folder.read("index.db");
    put(sound);
    const std::vector<std::string> answers = outcomes();
    ASSERT_EQ(std::ranges::count(answers, FAILURE), 0);
    ASSERT_TRUE(passes_check());
    std::mt19937 random(22);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same damages each time
    int failures = 0;
    for (int copy = 0; copy < 250; ++copy) {
        const std::string bytes = damaged(sound, random);
        put(bytes);
        const std::vector<std::string> found = outcomes();
        for (std::size_t command = 0; command < answers.size(); ++command) {
            failures += found[command] == FAILURE ? 1 : 0;
            EXPECT_TRUE(found[command] == FAILURE || found[command] == answers[command]) << copy << ' ' << command;
        }
        EXPECT_EQ(passes_check(), bytes == sound) << copy;
    }
    EXPECT_LT(failures, 900);  // what a command does not read does not keep it from answering
}

TEST_F(DamagedIndex, NoticesEveryBitOfItsHeader) {
    const std::string sound = folder.read("index.db");
    for (std::size_t bit = 0; bit < DATABASE_HEADER_BYTES * 8; ++bit) {
        std::string bytes = sound;
        flip(bytes, bit);
        put(bytes);
        EXPECT_EQ(outcome([](storage::Database&, std::ostream&) {}), FAILURE) << bit;
    }
}

TEST_F(DamagedIndex, IsNotRevised) {
    const std::string sound = folder.read("index.db");
    EXPECT_NO_THROW(RevisedSqliteIndex(index, [] {}));
    std::mt19937 random(23);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same damages each time
    for (int copy = 0; copy < 100; ++copy) {
        const std::string bytes = damaged(sound, random);
        put(bytes);
        if (bytes != sound) {
            EXPECT_THROW(RevisedSqliteIndex(index, [] {}), SqliteError) << copy;
        }
        EXPECT_EQ(folder.read("index.db"), bytes) << copy;
    }
}

TEST_F(DamagedIndex, IsReplacedByAnImportWhateverIsLeftOfIt) {
    std::string bytes = folder.read("index.db");
    for (std::size_t at = 0; (at = bytes.find("schema_version", at)) != std::string::npos;) {
        bytes[at] = 'S';
    }
    put(bytes);
    import({ScipDocument("a.ts")});
    EXPECT_TRUE(passes_check());
}

TEST(PageChecksums, AreOfPagesOfAnySizeAndNotPassedByThroughAMemoryMap) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.db";
    for (const std::string page_size : {"512", "65536"}) {
        folder.write("a.db", "");
        {
            const SqliteConnection connection(path, SqliteConnection::Mode::CREATE);
            connection.execute("PRAGMA page_size = " + page_size);
            leave_room_for_checksums(connection);
            connection.execute("CREATE TABLE t(x); INSERT INTO t VALUES(zeroblob(200000))");
        }
        ASSERT_TRUE(write_checksums(path));
        const auto read = [&] {
            const SqliteConnection connection(path, SqliteConnection::Mode::READ);
            EXPECT_TRUE(has_checksums(connection.handle()));
            connection.execute("PRAGMA mmap_size = 1000000; SELECT sum(hex(x)) FROM t");
        };
        EXPECT_NO_THROW(read()) << page_size;
        std::string bytes = folder.read("a.db");
        bytes[100'000] = 'x';
        folder.write("a.db", bytes);
        EXPECT_THROW(read(), SqliteError) << page_size;
    }
}

}  // namespace
}  // namespace host
