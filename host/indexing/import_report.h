// What an import has made, and what it could not use.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace host::indexing {

/// Some of many: how many there are, and the first of them.
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

/// Edges, and the references that they stand for.
struct EdgeCount {
    std::int64_t edges = 0;
    std::int64_t references = 0;
};

struct ImportReport {
    std::string source;    ///< the names of the SCIP files, joined by ", "
    std::string tool;      ///< the indexers with their versions, joined by ", "; empty when the SCIP files do not say
    std::string checkout;  ///< the folder that sources were read from; empty without one
    std::int64_t files = 0;
    std::int64_t declarations = 0;
    std::int64_t edges = 0;    ///< rows; each stands for one or more references
    std::int64_t sources = 0;  ///< files whose source was read

    std::map<std::string, std::int64_t> files_by_language;  ///< "" for those of which the language is not known
    std::map<std::string, std::int64_t> declarations_by_kind;
    std::map<std::string, EdgeCount> edges_by_resolution;

    /// Distinct symbols that are passed over: they do not parse, are too long, or have control characters in their name.
    std::int64_t unparsed_symbols = 0;
    /// Documents that are passed over for their path: empty, absolute, too long, with ".." or control characters.
    std::int64_t unusable_documents = 0;
    std::int64_t unusable_definitions = 0;  ///< passed over for want of a range

    std::int64_t misnamed_references = 0;      ///< left out: the source has another name than the one that is stated
    std::int64_t references_in_test_code = 0;  ///< left out: a source compiles what holds them for its tests alone

    /// References to symbols that the index does not hold, by the package of these: the five packages with most.
    std::vector<std::pair<std::string, std::int64_t>> nowhere;
    Examples missing_modules;  ///< modules of the repository's own packages that are named but not held
    Examples excluded;         ///< files that were left out, by a rule or as generated
    Examples misnamed_tests;   ///< patterns of files that a folder's name takes for tests and uses do not
    Examples lost_tests;       ///< test files that refer to things, but to nothing in any other file
    Examples unread;           ///< files whose source is not there, or cannot be read
    Examples unparsed;  ///< files of a language that is understood whose source has no outline (sources/outline.h)
    Examples damaged;   ///< files of which a part of the source does not parse
    std::int64_t out_of_damage = 0;  ///< declarations there with the lines and signature that the SCIP file gives
    Examples moved;                  ///< files whose source is another one than that which was indexed
};

}  // namespace host::indexing
