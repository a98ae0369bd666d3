// What an import leaves behind when it fails, is ended or meets another.

#include "tests/host/scip/import_fixture.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace host::scip {
namespace {

class ImportIntoFile : public ScipImport {};

TEST_F(ImportIntoFile, OneThatIsInterruptedOrKilledAtAnyPointLeavesTheOldIndex) {
    const std::string old = import_old();
    const std::string partial = ".index.db.wiki-scope-partial";
    const auto import_until = [&](int call, const std::function<void()>& end) {
        const indexing::OnProgress count_down = [&](std::int64_t done, std::int64_t total) {
            EXPECT_LE(done, total);
            if (--call == 0) {
                end();
            }
        };
        import({ScipDocument("a.ts").defines(F), ScipDocument("b.ts").refers(F)}, count_down);
    };
    const auto die = [] { raise(SIGKILL); };
    const auto is_killed_at = [&](int call) {
        const pid_t child = fork();
        if (child == 0) {
            import_until(call, die);
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFSIGNALED(status);
    };
    struct Interrupted {};
    int interrupted = 0;
    const auto interrupt = [&] {
        ++interrupted;
        throw Interrupted();
    };
    // Some of the calls come with time, so that there may be fewer than there were.
    const auto interrupt_at = [&](int call) {
        try {
            import_until(call, interrupt);
            static_cast<void>(import_old());
        } catch (const Interrupted&) {
        }
    };
    int calls = 0;
    while (is_killed_at(calls + 1)) {
        ++calls;
        EXPECT_EQ(folder.read("index.db"), old) << calls;
        EXPECT_TRUE(std::filesystem::exists(folder / partial)) << calls;
        interrupt_at(calls);
        EXPECT_TRUE(stands_alone(old)) << calls;  // what was killed is cleaned up, too
    }
    EXPECT_GE(interrupted, 4);
    std::string made;
    const auto look = [&](std::int64_t /*done*/, std::int64_t /*total*/) { made = folder.read(partial); };
    import({ScipDocument("a.ts").defines(F), ScipDocument("b.ts").refers(F)}, look);
    EXPECT_TRUE(stands_alone(made));  // at the last call nothing was left to do but to take the place
}

TEST_F(ImportIntoFile, AFullDiskLeavesTheOldIndexAndSaysSo) {
    const std::string old = import_old();
    const std::string name(60'000, 'a');
    const std::string scip = folder.write(
        "in.scip", scip_file({ScipDocument("a.ts").defines(symbol(name + "#")).defines(symbol(name + "."))}));
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{150'000, before.rlim_max};
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    const std::string said = failure(scip);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_TRUE(said.starts_with(index + ": cannot be written (")) << said;
    EXPECT_NE(said.find("is as it was before"), std::string::npos) << said;
    EXPECT_TRUE(stands_alone(old));
}

TEST_F(ImportIntoFile, WhatCannotTakeThePlaceOfTheOldIndexSaysSo) {
    import({ScipDocument("a.ts")});
    const auto block = [&](std::int64_t done, std::int64_t total) {
        if (done == total && std::filesystem::remove(index)) {
            std::filesystem::create_directory(index);
        }
    };
    EXPECT_EQ(failure(folder / "in.scip", block),
              index + ": cannot be written (Is a directory), and is as it was before; choose another place");
}

TEST_F(ImportIntoFile, RemovesWhatIsItsOwnAndNothingElse) {
    for (const char* const name : {"partial", "partial-journal", "partial-wal", "lock"}) {
        folder.write(std::string(".index.db.wiki-scope-") + name, "left behind");
    }
    EXPECT_TRUE(stands_alone(import_old()));
    folder.write("index.db.lock", "mine");
    folder.write("index.db.partial", "mine");
    import({ScipDocument("a.ts")});
    EXPECT_EQ(folder.read("index.db.lock") + folder.read("index.db.partial"), "minemine");
}

TEST_F(ImportIntoFile, AnIndexThatAKilledProgramLeftHalfWrittenIsReplaced) {
    const std::string alone = import_old();
    std::string half_written;
    std::string journal;
    {
        const SqliteConnection program(index, SqliteConnection::Mode::CREATE);
        program.execute("PRAGMA cache_size = 1; BEGIN; WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
                        "INSERT INTO files(path) SELECT i FROM n LIMIT 5000");
        half_written = folder.read("index.db");
        journal = folder.read("index.db-journal");
    }
    folder.write("index.db", half_written);
    folder.write("index.db-journal", journal);
    EXPECT_THROW(open_index(index), SqliteError);
    EXPECT_TRUE(import_old() == alone);
    EXPECT_TRUE(stands_alone(alone));
}

TEST_F(ImportIntoFile, AProgramThatIsWritingIntoTheIndexKeepsItAndItsJournal) {
    import({ScipDocument("a.ts")});
    for (const auto& [mode, journal] : {std::pair("DELETE", "index.db-journal"), std::pair("WAL", "index.db-wal")}) {
        const SqliteConnection writer(index, SqliteConnection::Mode::CREATE);
        writer.execute(std::string("PRAGMA journal_mode = ") + mode);
        writer.execute("BEGIN IMMEDIATE; INSERT INTO meta VALUES('a', 'b')");
        const std::string written = folder.read("index.db") + folder.read(journal);
        const std::string said = failure(folder / "in.scip");
        EXPECT_TRUE(said.starts_with(index + ": database is locked; another program is using it")) << said;
        EXPECT_TRUE(std::filesystem::exists(folder / journal));
        EXPECT_TRUE(folder.read("index.db") + folder.read(journal) == written) << mode;
    }
}

TEST_F(ImportIntoFile, AJournalOfTheOldIndexIsNotPlayedIntoTheNew) {
    const std::string alone = import_old();
    std::string journal;
    {
        const SqliteConnection writer(index, SqliteConnection::Mode::CREATE);
        writer.execute("PRAGMA journal_mode = WAL; INSERT INTO files VALUES(9, 'late.ts', NULL, NULL, 0, 0)");
        journal = folder.read("index.db-wal");
    }
    for (const bool old_is_there : {true, false}) {
        folder.write("index.db-wal", journal);
        if (!old_is_there) {
            std::filesystem::remove(index);
        }
        EXPECT_TRUE(import_old() == alone) << old_is_there;
        EXPECT_TRUE(stands_alone(alone)) << old_is_there;
    }
}

TEST_F(ImportIntoFile, ALinkToTheIndexAndItsPermissionsStayAndWhatIsPrivateDoesMeanwhile) {
    using std::filesystem::perms;
    const auto permissions_of = [&](const char* name) { return std::filesystem::status(folder / name).permissions(); };
    std::filesystem::create_symlink("real.db", index);
    import({ScipDocument("a.ts")});
    constexpr perms PRIVATE = perms::owner_read | perms::owner_write;
    std::filesystem::permissions(index, PRIVATE | perms::group_read);
    perms at_first = perms::unknown;
    const auto look = [&](std::int64_t done, std::int64_t) {
        at_first = done == 0 ? permissions_of(".real.db.wiki-scope-partial") : at_first;
    };
    import({ScipDocument("a.ts")}, look);
    EXPECT_EQ(at_first, PRIVATE);
    EXPECT_TRUE(std::filesystem::is_symlink(index));
    EXPECT_EQ(permissions_of("real.db"), PRIVATE | perms::group_read);
}

TEST_F(ImportIntoFile, ADamagedAnOlderAndAnEmptyIndexAreReplacedButNoneByAnEmptyOne) {
    import({});
    const std::string old = import_old();
    EXPECT_THROW(import({ScipDocument("/a.ts")}), std::runtime_error);
    EXPECT_TRUE(stands_alone(old));
    SqliteConnection(index, SqliteConnection::Mode::CREATE)
        .execute("UPDATE meta SET value = '0' WHERE key = 'schema_version'");
    for (const std::string& replaceable : {old.substr(0, 5000), folder.read("index.db"), std::string()}) {
        folder.write("index.db", replaceable);
        EXPECT_TRUE(import_old() == old) << replaceable.size();
        EXPECT_TRUE(stands_alone(old)) << replaceable.size();
    }
}

TEST_F(ImportIntoFile, TwoImportsIntoOneIndexDoNotRunAtOnce) {
    std::string inner;
    const std::string other = folder.write("other.scip", scip_file({}));
    const auto import_another = [&](std::int64_t done, std::int64_t) {
        if (done == 1) {
            inner = failure(other);
        }
    };
    import({ScipDocument("a.ts").defines(F)}, import_another);
    EXPECT_NE(inner.find("another import into this index is running"), std::string::npos) << inner;
    EXPECT_EQ(rows("SELECT name AS row FROM symbols"), "f");
}

}  // namespace
}  // namespace host::scip
