// A page of the host: the files that somebody names, and everything the component states about them.
#pragma once

#include "host/files/checkout.h"
#include "host/index/database.h"
#include "host/page/caveats.h"
#include "host/page/page_sources.h"
#include "host/page/scoped_names.h"
#include "host/paths/find_paths.h"
#include "workers/wiki/scope/consumers.h"
#include "workers/wiki/scope/facts.h"
#include "workers/wiki/scope/fan_in.h"
#include "workers/wiki/scope/ranking.h"
#include "workers/wiki/scope/render.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace host {

/// How much of a page is chosen, as `select_with_quota`, `pick_spread` and `neighbours` take it; any value is accepted.
struct PageOptions {
    static constexpr double LARGEST_SHARE = 1;  ///< what whoever asks for a share may say at most

    std::int64_t total = 24;         ///< declarations that get a block
    std::int64_t floor = 2;          ///< best declarations that each file gets before the rest is shared out
    double max_share = 0.4;          ///< of `total`, for one file, while others have declarations left
    std::int64_t deep = 6;           ///< names for a deeper treatment
    std::int64_t deep_per_file = 2;  ///< of these from one file
    std::int64_t neighbours = 12;    ///< declarations of other files that the page leans on
};

/// What is done with the files of a page before their facts are read.
using BeforeReading = std::function<void(std::span<const std::string> files)>;

/// Name and file of the selected callables and types, in the order of the selection.
std::vector<wiki::scope::NamedPath> deep_candidates(std::span<const storage::ScopeSymbol* const> selection,
                                                    const ScopedNames& names);

/// The grounding of a page. Each field is derived from the ones before it, and points at the facts of this page, which
/// is therefore neither copied nor moved.
struct Page {
    const PageOptions options;
    const std::vector<std::string> missing;     ///< the named paths that the index does not hold
    const std::vector<Suggestion> suggestions;  ///< what some of these were most likely meant to be
    const wiki::scope::ScopeFacts facts;
    const std::vector<std::int32_t> inbound_lines;  ///< of `facts.inbound`, in its order: `EdgeRow::first_line`
    const Caveats caveats;
    const PageSources sources;

    const wiki::scope::FanIn fan_in = wiki::scope::production_fan_in(facts);
    const wiki::scope::RankedFiles ranked = wiki::scope::ranked_by_file(facts, fan_in);
    const std::vector<const storage::ScopeSymbol*> selection =
        wiki::scope::select_with_quota(ranked, fan_in, options.total, options.floor, options.max_share);
    const ScopedNames names{facts, selection};  ///< of the selected declarations
    const std::vector<wiki::scope::NamedPath> scored = deep_candidates(selection, names);
    const std::vector<models::Text> deep = wiki::scope::pick_spread(scored, options.deep, options.deep_per_file);
    const std::vector<wiki::scope::Neighbour> neighbours = wiki::scope::neighbours(facts, options.neighbours);
};

/// Grounds the page of the named files and folders, as `find_paths` reads them. A file that the checkout does not give,
/// or that `access` withholds, has no line count and no summary. Throws `IndexError`, and what `before_reading` throws.
Page load_page(storage::Database& db, const Checkout& checkout, std::span<const std::string> named,
               const PageOptions& options = {}, SourceAccess access = SourceAccess::ALL,
               const BeforeReading& before_reading = {});

/// Who uses a page, and what of it nothing outside uses: not even by a reference that may mean it. It points at records
/// of the page, and lives as long.
wiki::scope::Consumers consumers_of(const Page& page);
wiki::scope::Consumers consumers_of(const Page&& page) = delete;

}  // namespace host
