// Imports of SCIP files into an index in a folder of its own.
#pragma once

#include "fixtures/scip_builder.h"
#include "fixtures/temporary_folder.h"
#include "host/imports/import.h"
#include "host/sqlite/schema.h"
#include "host/sqlite/sqlite_index.h"
#include "tests/host/server.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <stdexcept>

namespace host::scip {

using imports::import_scip;
using imports::ImportRequest;
using indexing::Examples;
using indexing::ImportReport;

class ScipImport : public testing::Test {
  protected:
    /// Imports into the file; or into the server that tests use, of which the file then holds a copy.
    ImportReport import_as(const ImportRequest& request, const indexing::OnProgress& progress = {}) const {
        const SqliteIndex file(index);
        if (test_server().empty()) {
            return import_scip(request, *file.replace(), progress);
        }
        const std::unique_ptr<Index> served = index_at(test_server(), folder / "");
        try {
            ImportReport report = import_scip(request, *served->replace(), progress);
            copy_index(*served, file);
            return report;
        } catch (const std::runtime_error&) {
            if (std::filesystem::remove(index)) {
                copy_index(*served, file);
            }
            throw;
        }
    }

    ImportReport import(const std::vector<ScipDocument>& documents, const indexing::OnProgress& progress = {}) const {
        return import_as({{folder.write("in.scip", scip_file(documents))}, std::nullopt}, progress);
    }

    /// Imports with the sources that the folder "checkout" holds.
    ImportReport import_with_sources(const std::vector<ScipDocument>& documents) const {
        return import_as({{folder.write("in.scip", scip_file(documents))}, folder / "checkout"});
    }

    /// Imports SCIP files that were made in these folders below "/repository".
    using Projects = std::vector<std::pair<std::string, std::vector<ScipDocument>>>;
    ImportReport import_all(const Projects& projects) const {
        std::vector<std::string> paths;
        for (const auto& [name, documents] : projects) {
            const std::string root = "file:///repository/" + name;
            paths.push_back(folder.write(std::to_string(paths.size()) + ".scip", scip_file(documents, root)));
        }
        return import_as({paths, std::nullopt});
    }

    /// Imports a document; the bytes of its index.
    [[nodiscard]] std::string import_old() const {
        import({ScipDocument("old.ts").defines(F)});
        return folder.read("index.db");
    }

    /// The message of the failure to import a file.
    [[nodiscard]] std::string failure(const std::string& scip, const indexing::OnProgress& progress = {}) const {
        try {
            import_as({{scip}, std::nullopt}, progress);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "no failure";
    }

    /// The rows that a query of the index gives: columns separated by a space, rows by "; ".
    [[nodiscard]] std::string rows(const std::string& query) const {
        const SqliteConnection connection = open_index(index);
        Statement statement(connection, "SELECT group_concat(row, '; ') FROM (" + query + ")");
        statement.step();
        return std::string(statement.text(0));
    }

    /// The declarations as "name kind first-last", followed by "public" where the file makes them so.
    [[nodiscard]] std::string declarations() const {
        return rows(
            "SELECT name || ' ' || kind || ' ' || start_line || '-' || end_line || iif(is_export, ' public', '') "
            "AS row FROM symbols ORDER BY id");
    }

    /// The edges as "source target resolution references", by source.
    [[nodiscard]] std::string edges() const {
        return rows("SELECT path || ' ' || target_id || ' ' || resolutions.name || ' ' || refs AS row "
                    "FROM edges JOIN files ON files.id = source_file_id "
                    "JOIN resolutions ON resolutions.id = resolution_id "
                    "ORDER BY source_file_id, target_id, resolution_id");
    }

    /// Whether the index is the one with these bytes, and nothing else lies beside it and the input.
    [[nodiscard]] bool stands_alone(const std::string& bytes) const {
        const std::filesystem::directory_iterator entries(folder / "");
        return folder.read("index.db") == bytes && std::distance(entries, {}) == 2;
    }

    TemporaryFolder folder;
    std::string index = folder / "index.db";
};

}  // namespace host::scip
