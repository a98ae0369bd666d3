#include "workers/wiki/scope/facts.h"

#include "utils/path_filter.h"
#include "workers/wiki/file_summary.h"

#include <set>
#include <utility>

namespace wiki::scope {

namespace {

std::vector<storage::FileId> ids_of(const std::vector<ScopeFile>& files) {
    std::vector<storage::FileId> ids;
    ids.reserve(files.size());
    for (const ScopeFile& file : files) {
        ids.push_back(file.id);
    }
    return ids;
}

std::vector<Text> sorted_languages(const std::vector<ScopeFile>& files) {
    std::set<Text> languages;
    for (const ScopeFile& file : files) {
        if (file.language && !file.language->empty()) {
            languages.insert(*file.language);
        }
    }
    return {languages.begin(), languages.end()};
}

TextSet paths_of_languages(const std::vector<ScopeFile>& files, const std::vector<Text>& languages) {
    TextSet wanted;
    for (const Text& language : languages) {
        wanted.insert(language);
    }
    TextSet paths;
    for (const ScopeFile& file : files) {
        if (file.language && wanted.contains(*file.language)) {
            paths.insert(file.path);
        }
    }
    return paths;
}

TextSet tests_among_sources(const std::vector<InboundReference>& inbound) {
    OrderedSet<Text> sources;
    TextSet tests;
    for (const InboundReference& reference : inbound) {
        if (sources.insert(reference.source_path) && utils::is_test_path(reference.source_path)) {
            tests.insert(reference.source_path);
        }
    }
    return tests;
}

}  // namespace

TextSet ScopeFacts::paths() const {
    TextSet paths;
    paths.reserve(files.size());
    for (const ScopeFile& file : files) {
        paths.insert(file.path);
    }
    return paths;
}

ScopeFacts load_scope_facts(storage::Database& db, std::span<const std::string> paths, const LineReader& read_lines) {
    std::vector<ScopeFile> files = storage::scope_files(db, paths);
    const std::vector<storage::FileId> ids = ids_of(files);
    std::vector<InboundReference> inbound = storage::inbound_references(db, ids);
    const std::vector<Text> resolved = storage::import_resolved_languages(db, sorted_languages(files));

    OrderedMap<Text, std::int64_t> line_counts;
    OrderedMap<Text, Text> summaries;
    for (const ScopeFile& file : files) {
        if (const auto lines = read_lines(file.path)) {
            line_counts[file.path] = static_cast<std::int64_t>(lines->size());
            summaries[file.path] = file_summary(*lines);
        }
    }

    std::vector<ScopeSymbol> symbols = storage::scope_symbols(db, ids);
    std::vector<OutboundReference> outbound = storage::outbound_references(db, ids);
    TextSet import_resolved_paths = paths_of_languages(files, resolved);
    TextSet test_sources = tests_among_sources(inbound);
    TestImports test_imports = importing_tests(db, files);
    return {.files = std::move(files),
            .symbols = std::move(symbols),
            .inbound = std::move(inbound),
            .outbound = std::move(outbound),
            .import_resolved_paths = std::move(import_resolved_paths),
            .test_sources = std::move(test_sources),
            .line_counts = std::move(line_counts),
            .summaries = std::move(summaries),
            .test_imports = std::move(test_imports)};
}

}  // namespace wiki::scope
