#include "host/scip/callable_types.h"

#include <algorithm>
#include <map>
#include <vector>

namespace host::scip {

CallableTypes::CallableTypes(const sources::Sources& sources) {
    using sources::SourceDeclaration;
    std::map<std::string, std::vector<const SourceDeclaration*>> types;
    for (const auto& [path, source] : sources) {
        if (source.outline) {
            for (const SourceDeclaration& each : source.outline->declarations) {
                if (each.kind == "type" || each.kind == "interface") {
                    types[each.name].push_back(&each);
                }
            }
        }
    }
    const auto can_be_called = [&](const SourceDeclaration* type) {
        return type->is_callable || hold_one_of(type->type_names);
    };
    constexpr int DEEPEST = 16;  // from type to type; nobody's come that far
    bool has_grown = true;
    for (int depth = 0; has_grown && depth < DEEPEST; ++depth) {
        has_grown = false;
        std::erase_if(types, [&](const auto& named) {
            const bool can = std::ranges::all_of(named.second, can_be_called);
            if (can) {
                names_.insert(named.first);
            }
            has_grown = has_grown || can;
            return can;
        });
    }
}

bool CallableTypes::hold_one_of(std::span<const std::string> names) const {
    return std::ranges::any_of(names, [&](const std::string& name) { return names_.contains(name); });
}

}  // namespace host::scip
