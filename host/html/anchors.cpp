#include "host/html/anchors.h"

#include "host/text/percent_encoding.h"

#include <algorithm>
#include <cstdint>
#include <tuple>
#include <vector>

namespace host::html {

namespace {

// The qualified name without the path of the file in front of it: "src.a.ts.One.run" is "One.run".
std::string_view name_in_file(const storage::ScopeSymbol& symbol) {
    const std::string_view name = symbol.fqn.view().empty() ? symbol.name.view() : symbol.fqn.view();
    std::string path(symbol.path);
    std::ranges::replace(path, '/', '.');
    return name.starts_with(path + ".") ? name.substr(path.size() + 1) : name;
}

}  // namespace

std::string file_anchor(std::string_view path) {
    return "file:" + percent_encoded(path);
}

DeclarationAnchors::DeclarationAnchors(std::span<const storage::ScopeSymbol> declarations) {
    std::vector<const storage::ScopeSymbol*> in_order;
    for (const storage::ScopeSymbol& symbol : declarations) {
        in_order.push_back(&symbol);
    }
    std::ranges::sort(in_order, {}, [](const storage::ScopeSymbol* symbol) {
        return std::tuple(symbol->start_line, symbol->end_line, symbol->id);
    });
    std::unordered_map<std::string, std::int64_t> namesakes;
    for (const storage::ScopeSymbol* const symbol : in_order) {
        const std::string anchor = percent_encoded(symbol->path) + ":" + percent_encoded(name_in_file(*symbol));
        const std::int64_t number = ++namesakes[anchor];
        anchors_[symbol->id] = number == 1 ? anchor : anchor + ":" + std::to_string(number);
    }
}

const std::string& DeclarationAnchors::of(const storage::ScopeSymbol& declaration) const {
    return anchors_.at(declaration.id);
}

}  // namespace host::html
