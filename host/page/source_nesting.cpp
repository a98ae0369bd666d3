#include "host/page/source_nesting.h"

#include "host/page/citation.h"
#include "models/ordered_map.h"
#include "models/text.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace host {

SourceNesting::SourceNesting(std::span<const SelectedDeclaration> declarations) : declarations_(declarations.size()) {
    models::OrderedMap<models::Text, std::vector<PlacedSource>> by_file;
    for (std::size_t place = 0; place < declarations.size(); ++place) {
        if (!declarations[place].source.empty()) {
            const storage::ScopeSymbol& symbol = *declarations[place].symbol;
            by_file[symbol.path].push_back({cited_lines(symbol).value(), place});
        }
    }
    for (const auto& [path, sources] : by_file) {
        std::ranges::sort(by_file_.emplace_back(sources), {}, [](const PlacedSource& source) {
            return std::tuple(source.lines.first, -source.lines.last, source.place);
        });
    }
}

std::vector<std::optional<std::size_t>> SourceNesting::printed_around(std::size_t printed) const {
    std::vector<std::optional<std::size_t>> around(declarations_);
    const auto last = [](const PlacedSource& source) { return source.lines.last; };
    for (const std::vector<PlacedSource>& sources : by_file_) {
        std::vector<PlacedSource> outermost;  // those printed; each ends behind the one before it
        for (const PlacedSource& source : sources) {
            const auto outer = std::ranges::lower_bound(outermost, source.lines.last, {}, last);
            if (outer != outermost.end()) {
                around[source.place] = outer->place;
            } else if (source.place < printed) {
                outermost.push_back(source);
            }
        }
    }
    return around;
}

}  // namespace host
