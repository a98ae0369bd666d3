// A folder with an index in it, which a test fills with SQL, and a shell to run the command in.
#pragma once

#include "embedded/sqlite/index.h"
#include "tests/embedded/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <string>

namespace embedded {

/// What a command has said, and how it has ended.
struct Outcome {
    int exit_code;
    std::string out;
    std::string err;
};

class IndexedFolder : public testing::Test {
  protected:
    IndexedFolder() {
        const Connection connection(index, Connection::Mode::CREATE);
        create_schema(connection);
        create_indexes(connection);
        connection.execute("INSERT INTO resolutions VALUES(1, 'import'), (2, 'local'), (3, 'unique')");
    }

    void fill(const std::string& sql) const { Connection(index, Connection::Mode::CREATE).execute(sql); }

    /// Adds edges, each as (source file, target, 'resolution', references).
    void fill_edges(const std::string& rows) const {
        fill("INSERT INTO edges SELECT column1, column2, id, column4 FROM (VALUES " + rows +
             ") JOIN resolutions ON name = column3");
    }

    /// Runs a line of shell in the folder.
    [[nodiscard]] Outcome shell(const std::string& line) const {
        const std::string all = "cd '" + folder / "" + "' && exec >out 2>err; " + line;
        const int status = std::system(all.c_str());  // NOLINT(cert-env33-c): a test of a command
        return {WEXITSTATUS(status), folder.read("out"), folder.read("err")};
    }
    [[nodiscard]] Outcome run(const std::string& arguments) const { return shell("'" WIKI_SCOPE "' " + arguments); }

    TemporaryFolder folder;
    std::string index = folder / "index.db";
};

}  // namespace embedded
