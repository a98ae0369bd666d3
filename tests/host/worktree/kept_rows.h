// The rows of the index that is kept for a checkout, and those of a new one.
#pragma once

#include "fixtures/temporary_folder.h"
#include "host/sqlite/schema.h"
#include "host/sqlite/sqlite_index.h"
#include "host/worktree/checkout_index.h"
#include "host/worktree/import.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

namespace host::worktree {

// Gives up the right of root to read and write everything.
class AsAnybody {
  public:
    AsAnybody() : user_(geteuid()) { EXPECT_TRUE(user_ != 0 || seteuid(NOBODY) == 0); }
    ~AsAnybody() { EXPECT_TRUE(user_ != 0 || seteuid(user_) == 0); }
    AsAnybody(const AsAnybody&) = delete;
    AsAnybody& operator=(const AsAnybody&) = delete;

  private:
    static constexpr uid_t NOBODY = 65'534;
    const uid_t user_;
};

// All rows of an index. A declaration is known by its file and its place among those of that, in the order of ids.
inline std::string rows_in(const std::string& path) {
    const SqliteConnection connection = open_index(path);
    connection.execute("CREATE TEMP TABLE places AS SELECT id, file_id || '/' || row_number() OVER "
                       "(PARTITION BY file_id ORDER BY id) AS place FROM symbols; "
                       "CREATE UNIQUE INDEX temp.places_by_id ON places(id)");
    std::string rows;
    Statement tables(connection,
                     "SELECT name, (SELECT group_concat('quote(' || iif(name IN ('symbol_id', 'target_id') OR "
                     "(name = 'id' AND t.name = 'symbols'), '(SELECT place FROM places p WHERE p.id = t.' || name || "
                     "')', name) || ')', ' || '' '' || ') FROM pragma_table_info(t.name)) "
                     "FROM sqlite_schema t WHERE type = 'table' ORDER BY name");
    while (tables.step()) {
        const std::string table(tables.text(0));
        Statement row(connection, "SELECT " + std::string(tables.text(1)) + " FROM " + table + " AS t ORDER BY 1");
        while (row.step()) {
            rows += table + " " + std::string(row.text(0)) + "\n";
        }
    }
    Statement misplaced(connection, "SELECT count(*) FROM (SELECT file_id < max(file_id) OVER (ORDER BY id) AS is_low "
                                    "FROM symbols) WHERE is_low");
    misplaced.step();
    EXPECT_EQ(misplaced.integer(0), 0) << "ids ascend with the file";
    return rows;
}

class KeptRows : public testing::Test {
  protected:
    KeptRows() {
        setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);  // NOLINT(concurrency-mt-unsafe): no other thread runs
        std::filesystem::create_directory(folder / "checkout");
        write("go.mod", "module example.org/m\n");
        write("a/a.go", "package a\n\nfunc A() {}\n");
        write("b/b.go", "package b\n\nimport \"example.org/m/a\"\n\nfunc B() { a.A() }\n");
    }

    void write(const std::string& path, const std::string& text) const { folder.write("checkout/" + path, text); }

    [[nodiscard]] std::string kept_rows(const indexing::OnProgress& on_progress = {}) const {
        const CheckoutIndex index(folder / "checkout", on_progress);
        static_cast<void>(index.connect()->read());
        return rows_in(index.name());
    }
    [[nodiscard]] std::string new_rows() const {
        import_sources({.folder = folder / "checkout"}, *SqliteIndex(folder / "new.db").replace(), {});
        return rows_in(folder / "new.db");
    }
    [[nodiscard]] std::filesystem::path kept_folder() const {
        return std::filesystem::path(CheckoutIndex(folder / "checkout", {}).name()).parent_path();
    }

    // The exit code of a process that does this.
    static int in_child(const std::function<void()>& work) {
        const pid_t child = fork();
        if (child == 0) {
            work();
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // Kills a process that refreshes the index at each of its callbacks in turn. Before its last the index keeps its
    // rows, behind it the process ends. Returns how many were killed.
    [[nodiscard]] int times_killed() const {
        constexpr int KILLED = 9;
        const std::string index = kept_folder() / "index.db";
        const std::string old_rows = rows_in(index);
        int killed = 0;
        const auto refresh = [&] {
            static_cast<void>(kept_rows([left = killed](std::int64_t, std::int64_t) mutable {
                if (left-- == 0) {
                    _exit(KILLED);
                }
            }));
        };
        for (; in_child(refresh) == KILLED; ++killed) {
            EXPECT_EQ(rows_in(index), old_rows) << killed;
        }
        return killed;
    }

    const AsAnybody anybody;
    TemporaryFolder folder;
};

}  // namespace host::worktree
