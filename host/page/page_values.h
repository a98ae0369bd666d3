// What the JSON of a page states beside its facts, as values.
#pragma once

#include "host/page/outline.h"
#include "host/page/page.h"
#include "host/page/section.h"
#include "host/page/use_sites.h"
#include "models/excerpt.h"
#include "workers/wiki/scope/consumers.h"
#include "workers/wiki/scope/fan_in.h"
#include "workers/wiki/scope/file_cards.h"
#include "workers/wiki/scope/neighbours.h"
#include "workers/wiki/scope/ranking.h"
#include "workers/wiki/scope_tests.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// What the index says of a declaration in words.
struct Description {
    storage::SymbolId declaration = 0;
    std::string signature;
    std::string documentation;
};

/// The values of the chosen sections; those of the others are empty. They point at records of the page, and live as
/// long.
struct PageValues {
    // files
    models::OrderedMap<models::Text, std::vector<models::Text>> tests_by_file = {};
    std::vector<wiki::scope::FileCard> file_cards = {};
    std::string file_cards_text = {};

    // consumers
    wiki::scope::FileUsers file_users = {};
    wiki::scope::Consumers consumers = {};
    std::vector<std::optional<std::int32_t>> first_uses = {};  ///< of the consumers, in their order
    std::string consumers_text = {};

    // declarations
    std::vector<std::string_view> import_resolved_paths = {};  ///< sorted, as `test_sources`
    std::vector<std::string_view> test_sources = {};
    std::vector<Description> descriptions = {};       ///< of the declarations that have one, in their order
    std::vector<storage::SymbolId> entry = {};        ///< sorted
    std::vector<models::Excerpt<UseSite>> uses = {};  ///< of the selected declarations, in their order

    // dependencies
    models::OrderedMap<wiki::scope::FilePair, std::int64_t> name_matches = {};

    // graph, seeds, outline
    std::string graph = {};
    models::OrderedMap<models::Text, wiki::scope::LineRange> seeds = {};
    std::vector<FileOutline> outline = {};
};

/// `db` is the page's. Throws `IndexError`, and what `tests_reaching` throws.
PageValues page_values(const Page& page, storage::Database& db, const SectionChoice& sections = {});

}  // namespace host
