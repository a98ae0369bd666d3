#include "host/scip/built_in_names.h"

#include "host/scip/symbol.h"

#include <string_view>

namespace host::scip {

std::unordered_map<SymbolNumber, std::string> built_in_names(const SymbolTable& symbols) {
    std::unordered_map<SymbolNumber, std::string> names;
    for (SymbolNumber symbol = 0; symbol < symbols.size(); ++symbol) {
        if (const std::string_view text = symbols.symbol(symbol); is_built_in(text)) {
            names.emplace(symbol, parse_symbol(text).value().descriptors.back().name);
        }
    }
    return names;
}

}  // namespace host::scip
