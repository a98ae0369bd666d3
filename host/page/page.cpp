#include "host/page/page.h"

#include "workers/wiki/scope/kinds.h"

#include <utility>

namespace host {

std::vector<wiki::scope::NamedPath> deep_candidates(std::span<const storage::ScopeSymbol* const> selection,
                                                    const ScopedNames& names) {
    std::vector<wiki::scope::NamedPath> candidates;
    for (const storage::ScopeSymbol* symbol : selection) {
        if (wiki::scope::is_callable_or_type(symbol->kind)) {
            candidates.push_back({models::Text(names.of(*symbol)), symbol->path});
        }
    }
    return candidates;
}

Page load_page(storage::Database& db, const Checkout& checkout, std::span<const std::string> named,
               const PageOptions& options, SourceAccess access, const BeforeReading& before_reading) {
    FoundPaths paths = find_paths(db, &checkout, named);
    if (before_reading) {
        before_reading(paths.indexed);
    }
    PageSources sources(db, checkout, access, paths.indexed);
    WatchfulReader reader(db, sources, paths.indexed);
    const auto read_lines = [&reader](const models::Text& path) { return reader.read(path); };
    return {.options = options,
            .missing = std::move(paths.missing),
            .suggestions = std::move(paths.suggestions),
            .facts = wiki::scope::load_scope_facts(db, paths.indexed, read_lines),
            .inbound_lines = db.take_inbound_lines(),
            .caveats = reader.caveats(),
            .sources = std::move(sources)};
}

wiki::scope::Consumers consumers_of(const Page& page) {
    return wiki::scope::consumers(page.facts, page.fan_in, wiki::scope::Unproven::MAY_BE_USE);
}

}  // namespace host
