// The facts of a page: what the index and the checkout say about the files that a wiki page is anchored on.
//
// A page is one pass. `load_scope_facts` is the only function of the component that asks the index or reads a file; it
// returns a `ScopeFacts`. `production_fan_in` (fan_in.h) derives from it how production code uses the page's
// declarations, as a `FanIn`. Everything else is a pure function of these two records. They never change once they are
// built, so any number of threads may read them at once, as long as `is_test_path` and `tests_reaching`, which some of
// the functions call, can be called by several threads and always give the same answer.
//
// Results point at the records inside the caller's `ScopeFacts` and stay valid as long as it lives.
#pragma once

#include "models/constant_set.h"
#include "models/edge.h"
#include "models/ordered_map.h"
#include "models/record.h"
#include "models/text.h"
#include "storage/database.h"
#include "storage/grounding_queries.h"
#include "workers/wiki/scope_tests.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace wiki::scope {

using models::Counter;
using models::MUST_BE_GIVEN;
using models::OrderedMap;
using models::OrderedSet;
using models::Text;
using models::TextSet;
using storage::InboundReference;
using storage::NAME_MATCH_KINDS;
using storage::OutboundReference;
using storage::ScopeFile;
using storage::ScopeSymbol;
using storage::SymbolId;

/// The resolutions that are evidence of a use: the indexer followed the name to its declaration.
inline constexpr models::ConstantSet EVIDENCE_RESOLUTIONS{models::LOCAL, models::IMPORT};

/// A page's files as the index and the checkout describe them. Frozen: no field can be assigned, no container changed,
/// and the record can be neither copied nor moved, as results point into it. Built by position or by name; only
/// `test_imports` may be left out.
struct ScopeFacts {
    /// Those that the index holds, in the page's order.
    const std::vector<ScopeFile> files = MUST_BE_GIVEN;
    /// The declarations of those files, in query order.
    const std::vector<ScopeSymbol> symbols = MUST_BE_GIVEN;
    /// References to those declarations, in query order.
    const std::vector<InboundReference> inbound = MUST_BE_GIVEN;
    /// References from those files to others, in query order.
    const std::vector<OutboundReference> outbound = MUST_BE_GIVEN;
    /// The files whose language has its imports resolved.
    const TextSet import_resolved_paths = MUST_BE_GIVEN;
    /// The source paths of `inbound` that are tests.
    const TextSet test_sources = MUST_BE_GIVEN;
    /// Path -> lines, of each file that could be read.
    const OrderedMap<Text, std::int64_t> line_counts = MUST_BE_GIVEN;
    /// Path -> what it is for, of each file that could be read.
    const OrderedMap<Text, Text> summaries = MUST_BE_GIVEN;
    /// What `importing_tests` said of the files.
    const TestImports test_imports = {};
    [[no_unique_address]] const models::Pinned pinned = {};

    /// The page's indexed files, as a set of their paths. Built anew by each call.
    [[nodiscard]] TextSet paths() const;

    /// Whether the indexer resolves imports for the language of this file of the page; false for other paths.
    [[nodiscard]] bool import_resolved(const Text& path) const { return import_resolved_paths.contains(path); }
};

/// How production code uses a page's declarations, by symbol id. Frozen like `ScopeFacts`; it belongs to the one from
/// which it was derived. An id without an entry counts 0. Only `outside` must be given.
struct FanIn {
    const OrderedMap<SymbolId, std::int64_t> outside = MUST_BE_GIVEN;  ///< references from files outside the page
    const OrderedMap<SymbolId, std::int64_t> inside = {};              ///< references from the page's own files
    const OrderedSet<SymbolId> entry = {};  ///< public top-level callables and types without any
    [[no_unique_address]] const models::Pinned pinned = {};

    /// Whether a declaration is the page's API: used from outside, or an entry point.
    [[nodiscard]] bool api(SymbolId symbol_id) const {
        return outside.get(symbol_id, 0) > 0 || entry.contains(symbol_id);
    }
};

/// Reads one file of the checkout: its lines without their ends, or none when it cannot be read.
using LineReader = std::function<std::optional<std::vector<std::string>>(const Text& path)>;

/// Gathers the facts about the files `paths`: every query of the index once for the whole page, every file that the
/// index holds read once. Calls, in this order: `scope_files`, `inbound_references`, `import_resolved_languages`; for
/// each file `read_lines` and, if it gave lines, `file_summary`; then `scope_symbols`, `outbound_references`,
/// `is_test_path` once for each source of `inbound`, `importing_tests`. A file that cannot be read is in no way an
/// error: it has no line count and no summary. Whatever a collaborator throws passes unchanged to the caller.
ScopeFacts load_scope_facts(storage::Database& db, std::span<const std::string> paths, const LineReader& read_lines);

}  // namespace wiki::scope
