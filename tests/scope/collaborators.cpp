#include "tests/scope/collaborators.h"

#include "utils/path_filter.h"
#include "workers/wiki/file_summary.h"
#include "workers/wiki/scope/facts.h"

#include <algorithm>
#include <functional>
#include <sstream>

namespace storage {

Database* listening = nullptr;

namespace {

template <class Range, class Projection = std::identity>
std::string joined(const Range& elements, Projection projection = {}) {
    std::ostringstream text;
    for (const auto& element : elements) {
        text << (text.tellp() > 0 ? "," : "") << std::invoke(projection, element);
    }
    return text.str();
}

}  // namespace

void Database::note(const std::string& call, const std::string& arguments) {
    calls.push_back(call + "(" + arguments + ")");
    if (call == throws_at) {
        throw Refusal{call};
    }
}

std::vector<ScopeFile> scope_files(Database& db, std::span<const std::string> paths) {
    db.note("scope_files", joined(paths));
    return db.files;
}

std::vector<ScopeSymbol> scope_symbols(Database& db, std::span<const FileId> file_ids) {
    db.note("scope_symbols", joined(file_ids));
    return db.symbols;
}

std::vector<InboundReference> inbound_references(Database& db, std::span<const FileId> file_ids) {
    db.note("inbound_references", joined(file_ids));
    return db.inbound;
}

std::vector<OutboundReference> outbound_references(Database& db, std::span<const FileId> file_ids) {
    db.note("outbound_references", joined(file_ids));
    return db.outbound;
}

std::vector<models::Text> import_resolved_languages(Database& db, std::span<const models::Text> languages) {
    db.note("import_resolved_languages", joined(languages));
    return db.resolved_languages;
}

}  // namespace storage

namespace utils {

bool is_test_path(std::string_view path) {
    if (storage::listening != nullptr) {
        storage::listening->note("is_test_path", std::string(path));
    }
    return path.starts_with("test/") || path == "test.ts";
}

}  // namespace utils

namespace wiki {

std::string file_summary(std::span<const std::string> lines) {
    if (storage::listening != nullptr) {
        storage::listening->note("file_summary", storage::joined(lines));
    }
    return lines.empty() ? "nothing" : lines.front();
}

TestImports importing_tests(storage::Database& db, std::span<const storage::ScopeFile> files) {
    db.note("importing_tests", storage::joined(files, &storage::ScopeFile::path));
    return db.test_imports;
}

// The tests that `importing_tests` found, sorted.
TestsReaching tests_reaching(const scope::ScopeFacts& facts) {
    TestsReaching reaching;
    for (const auto& [path, tests] : facts.test_imports) {
        std::vector<models::Text> sorted(tests.begin(), tests.end());
        std::sort(sorted.begin(), sorted.end());
        reaching.tests_by_file[path] = sorted;
    }
    return reaching;
}

}  // namespace wiki
