#include "host/resolve/definitions.h"

#include <algorithm>

namespace host::resolve {

std::vector<Symbol> definitions(const Catalog& catalog, std::span<const Symbol> symbols) {
    std::vector<Symbol> found;
    for (const Symbol symbol : symbols) {
        const syntax::Declaration& announced = catalog.declaration(symbol);
        const std::size_t before = found.size();
        if (!announced.is_definition) {
            for (const Symbol other : catalog.definitions(catalog.home_of(symbol), catalog.name_of(symbol))) {
                const syntax::Declaration& definition = catalog.declaration(other);
                const bool is_visible = !definition.is_private || catalog.file_of(other) == catalog.file_of(symbol);
                if (is_visible && may_define(definition, announced)) {
                    found.push_back(other);
                }
            }
        }
        if (found.size() == before) {
            found.push_back(symbol);
        }
    }
    // A definition that was found makes its announcements superfluous; those of nothing stay.
    std::ranges::sort(found);
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

}  // namespace host::resolve
