#include "embedded/page/page.h"

#include <utility>

namespace embedded {

std::vector<wiki::scope::NamedPath> deep_candidates(std::span<const storage::ScopeSymbol* const> selection,
                                                    const wiki::scope::FanIn& fan_in) {
    // Which kinds these are is known to the component alone; the sort key is where it tells.
    constexpr int CALLABLES_AND_TYPES = 0;
    std::vector<wiki::scope::NamedPath> candidates;
    for (const storage::ScopeSymbol* symbol : selection) {
        if (wiki::scope::rank_key(*symbol, fan_in).kind_group == CALLABLES_AND_TYPES) {
            candidates.push_back({symbol->name, symbol->path});
        }
    }
    return candidates;
}

Page load_page(storage::Database& db, const Checkout& checkout, std::span<const std::string> named,
               const PageOptions& options) {
    auto one_state = std::make_unique<const Transaction>(db.connection());
    db.forget();
    PagePaths paths = find_page_paths(db, named);
    WatchfulReader reader(db, checkout, paths.indexed);
    const auto read_lines = [&reader](const models::Text& path) { return reader.read(path); };
    return {.one_state = std::move(one_state),
            .options = options,
            .missing = std::move(paths.missing),
            .suggestions = std::move(paths.suggestions),
            .facts = wiki::scope::load_scope_facts(db, paths.indexed, read_lines),
            .caveats = reader.caveats()};
}

}  // namespace embedded
