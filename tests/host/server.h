// The server in which tests keep their indexes when they are told to, instead of in files.
#pragma once

#include "host/location/index_at.h"

#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace host {

/// Its address; empty for files. The database is prepared.
inline std::string test_server() {
    const char* const address = std::getenv("WIKI_SCOPE_TEST_SERVER");
    return address == nullptr ? "" : address;
}

/// Makes a new index of what another holds.
inline void copy_index(const Index& from, const Index& to) {
    const std::unique_ptr<IndexConnection> connection = from.connect();
    const std::unique_ptr<storage::Database> db = connection->read();
    const std::unique_ptr<NewIndex> copy = to.replace();
    copy->claim("");
    RowWriter& out = copy->rows();
    RowCounts counts;
    std::vector<RowId> files;
    std::set<models::Text> languages;
    db->read_files_below("", [&](const FileRow& row) {
        out.add(row);
        files.push_back(row.id);
        languages.insert(models::Text(row.language.value_or("")));
    });
    counts.files = std::ssize(files);
    db->read_resolved_languages(std::vector<models::Text>(languages.begin(), languages.end()),
                                [&](std::string_view name) {
                                    out.add(LanguageRow{name, true});
                                });
    std::vector<RowId> declarations;
    db->read_declarations_in(files, [&](const DeclarationRow& row) {
        out.add(row);
        declarations.push_back(row.id);
    });
    counts.declarations = std::ssize(declarations);
    db->read_descriptions(declarations, [&](const DescriptionRow& row) { out.add(row); });
    db->read_resolutions([&](const ResolutionRow& row) { out.add(row); });
    db->read_edges_out_of(files, [&](const EdgeRow& row) {
        out.add(row);
        ++counts.edges;
    });
    for (const char* const key : {"checkout", "commit", "test_rules", "shared_summaries", "damaged", "report"}) {
        if (const std::string value = db->noted(key); !value.empty()) {
            out.note(key, value);
        }
    }
    copy->complete(counts);
    copy->commit();
}

}  // namespace host
