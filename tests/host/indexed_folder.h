// A folder with an index in it, which a test fills, and a shell to run the command in.
#pragma once

#include "fixtures/temporary_folder.h"
#include "host/sqlite/row_writer.h"
#include "host/sqlite/schema.h"
#include "host/sqlite/sqlite_index.h"
#include "tests/host/locations.h"
#include "tests/host/server.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <string>

namespace host {

/// What a command has said, and how it has ended.
struct Outcome {
    int exit_code;
    std::string out;
    std::string err;
};

class IndexedFolder : public testing::Test {
  protected:
    IndexedFolder() {
        const SqliteConnection connection(index, SqliteConnection::Mode::CREATE);
        create_schema(connection);
        create_indexes(connection);
        add<ResolutionRow>({{IMPORT, "import"}, {LOCAL, "local"}, {UNIQUE, "unique"}});
    }

    /// The resolutions that the index knows.
    static constexpr RowId IMPORT = 1;
    static constexpr RowId LOCAL = 2;
    static constexpr RowId UNIQUE = 3;

    template <class Row>
    void add(std::initializer_list<Row> rows) const {
        const SqliteConnection connection(index, SqliteConnection::Mode::CREATE);
        SqliteRowWriter writer(connection);
        for (const Row& row : rows) {
            writer.add(row);
        }
    }

    /// Changes the index as no import would.
    void change(const std::string& sql) const { SqliteConnection(index, SqliteConnection::Mode::CREATE).execute(sql); }

    /// Runs a line of shell in the folder; there the command is wiki-scope.
    [[nodiscard]] Outcome shell(const std::string& line) const {
        const std::string all = finding_command("cd '" + folder / "" + "' && exec >out 2>err; " + line);
        const int status = std::system(all.c_str());  // NOLINT(cert-env33-c): a test of a command
        constexpr int OF_SIGNALS = 128;               // as shells count
        const int exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : OF_SIGNALS + WTERMSIG(status);
        return {exit_code, folder.read("out"), folder.read("err")};
    }
    [[nodiscard]] Outcome run(const std::string& arguments) const {
        return shell("wiki-scope " + with_served_index(arguments));
    }

    /// The index as it is read: the file, or a copy of it in the server that tests use.
    [[nodiscard]] std::unique_ptr<Index> served_index() const {
        if (test_server().empty()) {
            return index_at(index);
        }
        std::unique_ptr<Index> served = index_at(test_server(), folder / "");
        copy_index(SqliteIndex(index), *served);
        return served;
    }

    TemporaryFolder folder;
    std::string index = folder / "index.db";

  private:
    [[nodiscard]] std::string with_served_index(std::string arguments) const {
        const std::string of_file = "--index index.db";
        if (const std::size_t at = arguments.find(of_file); at != std::string::npos && !test_server().empty()) {
            arguments.replace(at, of_file.size(), served_index()->options());
        }
        return arguments;
    }
};

}  // namespace host
