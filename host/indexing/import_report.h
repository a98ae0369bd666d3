// The report of an import: what it wrote, and what it could not use.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace host::indexing {

/// The number of some things, and the first few of them.
struct Examples {
    std::int64_t count = 0;
    std::vector<std::string> first;  ///< in order, at most `MOST`

    static constexpr std::size_t MOST = 5;

    void add(const std::string& example) {
        if (++count <= static_cast<std::int64_t>(MOST)) {
            first.push_back(example);
        }
    }
};

/// A number of edges, and of the references that they hold.
struct EdgeCount {
    std::int64_t edges = 0;
    std::int64_t references = 0;
};

struct ImportReport {
    std::string source;    ///< the names of the SCIP files, joined by ", "
    std::string tool;      ///< the indexers with their versions, joined by ", "; empty when unknown
    std::string checkout;  ///< the folder that sources were read from; empty for none
    std::int64_t files = 0;
    std::int64_t declarations = 0;
    std::int64_t edges = 0;    ///< rows; each holds one or more references
    std::int64_t sources = 0;  ///< files whose source was read

    std::map<std::string, std::int64_t> files_by_language;  ///< "" for files of unknown language
    std::map<std::string, std::int64_t> declarations_by_kind;
    std::map<std::string, EdgeCount> edges_by_resolution;

    /// Distinct symbols that are skipped: they do not parse, are too long, or have control characters in their name.
    std::int64_t unparsed_symbols = 0;
    /// Documents that are skipped for their path: empty, absolute, too long, with ".." or control characters.
    std::int64_t unusable_documents = 0;
    std::int64_t unusable_definitions = 0;  ///< skipped: they have no range

    std::int64_t misnamed_references = 0;      ///< skipped: the source has another name at that place
    std::int64_t references_in_test_code = 0;  ///< skipped: their code is compiled for tests only

    /// Name tokens that lead to no declaration, by language: their names are of other packages, or the source does not
    /// say what they name. Empty for SCIP files.
    std::map<std::string, std::int64_t> unresolved_by_language;

    /// References to symbols that the index does not hold, by package: the five packages with the most.
    std::vector<std::pair<std::string, std::int64_t>> nowhere;
    Examples missing_modules;        ///< modules of the repository that are referenced but not in the index
    Examples excluded;               ///< files that a rule leaves out, and generated files
    Examples misnamed_tests;         ///< patterns for files that are no tests, in spite of their folder's name
    Examples lost_tests;             ///< test files whose references reach no other file
    Examples unread;                 ///< files whose source is missing or cannot be read
    Examples unparsed;               ///< files of a known language whose source has no outline (sources/outline.h)
    Examples damaged;                ///< files whose source parses only in part
    std::int64_t out_of_damage = 0;  ///< declarations in those parts, with lines and signature from the SCIP file
    Examples moved;                  ///< files whose source has changed since it was indexed
};

}  // namespace host::indexing
