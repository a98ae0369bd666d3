#include "host/scip/modules_of.h"

#include "host/scip/symbol.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host::scip {

namespace {

using indexing::Module;

std::vector<Module> defined_modules(const Contents& contents) {
    std::vector<Module> modules;
    for (const auto& [path, file] : contents.files) {
        for (const Definition& definition : file.definitions) {
            if (!contents.symbols.is_module(definition.symbol)) {
                continue;
            }
            const Symbol symbol = parse_symbol(contents.symbols.symbol(definition.symbol)).value();
            if (is_module_of(symbol.descriptors, path)) {
                std::string name = indexing::is_python(path) ? module_name(symbol.descriptors).value_or("") : "";
                modules.push_back({path, definition.symbol, symbol.head, std::move(name)});
            }
        }
    }
    return modules;
}

std::vector<std::pair<std::string, SymbolNumber>> names_at_top(const Module& module, const Contents& contents) {
    const std::string_view scope = scope_of_module(contents.symbols.symbol(module.symbol));
    std::vector<std::pair<std::string, SymbolNumber>> names;
    for (const Definition& definition : contents.files.find(std::string(module.path))->second.definitions) {
        const Symbol symbol = parse_symbol(contents.symbols.symbol(definition.symbol)).value();
        if (symbol.scope == scope && definition.symbol != module.symbol) {
            names.emplace_back(symbol.descriptors.back().name, definition.symbol);
        }
    }
    return names;
}

}  // namespace

indexing::Modules modules_of(const Contents& contents, const sources::Sources& sources) {
    return {defined_modules(contents), [&contents](const Module& module) { return names_at_top(module, contents); },
            sources};
}

}  // namespace host::scip
