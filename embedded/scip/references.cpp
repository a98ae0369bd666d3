#include "embedded/scip/references.h"

#include "embedded/scip/symbol.h"

#include <algorithm>
#include <map>
#include <utility>

namespace embedded::scip {

References::References(const Contents& contents, const std::vector<FileRows>& rows)
    : contents_(contents), own_(rows.size()) {
    for (std::uint32_t place = 0; place < rows.size(); ++place) {
        const FileRows& file = rows[place];
        for (const DeclaredSymbol& declared : file.declared) {
            own_[place].emplace(declared.symbol, declared.row);
            declare(declared.symbol, {{place, declared.row}, declared.line_count, declared.is_described}, rows_);
        }
        for (const SymbolNumber module : file.modules) {
            declare(module, {{place, 0}, file.line_count, false}, modules_);
        }
    }
    for (const auto& [symbol, target] : rows_) {
        are_led_to_.insert(target.place);
    }
    add_modules_named_by_their_end();
}

// scip-python names a module that is imported relative to another one by what the import says, without its dots. Where
// one module alone ends so, that is the one.
void References::add_modules_named_by_their_end() {
    constexpr std::string_view MODULE_OF_PYTHON = "/__init__:";
    struct Module {
        Target target;
        bool is_only_one;
    };
    std::map<std::pair<std::string_view, std::string>, Module> by_end;  // by release and end of the name
    for (const auto& [number, target] : modules_) {
        const Symbol symbol = parse_symbol(contents_.symbols.symbol(number)).value();
        const std::string name = module_name(symbol.descriptors).value_or("");
        for (std::size_t dot = name.find('.'); dot != std::string::npos; dot = name.find('.', dot + 1)) {
            const auto [end, is_new] = by_end.try_emplace({symbol.head, name.substr(dot + 1)}, Module{target, true});
            end->second.is_only_one = is_new;
        }
    }
    for (SymbolNumber number = 0; number < contents_.symbols.size(); ++number) {
        const std::string_view text = contents_.symbols.symbol(number);
        if (text.ends_with(MODULE_OF_PYTHON) && !modules_.contains(number)) {
            const Symbol symbol = parse_symbol(text).value();
            const auto found = by_end.find({symbol.head, module_name(symbol.descriptors).value_or("")});
            if (found != by_end.end() && found->second.is_only_one) {
                modules_.emplace(number, found->second.target);
            }
        }
    }
}

void References::declare(SymbolNumber symbol, const Target& target, Targets& targets) {
    const auto [known, is_new] = targets.try_emplace(symbol, target);
    const auto worth = [](const Target& each) { return std::pair(each.line_count, each.is_described); };
    if (!is_new && worth(target) > worth(known->second)) {
        known->second = target;
    }
}

std::optional<RowPlace> References::row_of(SymbolNumber symbol, std::uint32_t from) const {
    if (const auto own = own_[from].find(symbol); own != own_[from].end()) {
        return RowPlace{from, own->second};
    }
    const auto declared = rows_.find(symbol);
    return declared == rows_.end() ? std::nullopt : std::optional(declared->second.place);
}

References::Lead References::follow(std::span<const SymbolNumber> symbols, std::uint32_t from) const {
    Lead lead;
    for (const SymbolNumber symbol : symbols) {
        if (const auto row = symbol == LOCAL_SYMBOL ? std::nullopt : row_of(symbol, from)) {
            lead.rows.push_back(*row);
        }
    }
    const bool are_all_declared = lead.rows.size() == symbols.size();
    std::ranges::sort(lead.rows);
    lead.rows.erase(std::unique(lead.rows.begin(), lead.rows.end()), lead.rows.end());
    lead.is_clear = are_all_declared && lead.rows.size() == 1;
    return lead;
}

// The file that a token names as a module, if it names nothing else.
std::optional<std::uint32_t> References::module_of(std::span<const SymbolNumber> symbols) const {
    const auto module = symbols.size() == 1 ? modules_.find(symbols.front()) : modules_.end();
    return module == modules_.end() ? std::nullopt : std::optional(module->second.place.file);
}

FileReferences References::of(std::uint32_t place, const FileContents& file) const {
    std::map<std::pair<RowPlace, std::string_view>, std::int64_t> edges;
    std::map<std::uint32_t, std::int64_t> modules;
    FileReferences references;
    for (const auto& [names, count] : file.references) {
        const std::span<const SymbolNumber> symbols = contents_.tokens.symbols(names);
        const Lead lead = follow(symbols, place);
        for (const RowPlace& row : lead.rows) {
            edges[{row, !lead.is_clear ? "ambiguous" : row.file == place ? "local" : "import"}] += count;
        }
        const std::optional<std::uint32_t> module = module_of(symbols);
        if (module && *module != place) {
            modules[*module] += count;
        }
        if (lead.rows.empty() && !module && symbols.front() != LOCAL_SYMBOL) {
            references.nowhere.emplace_back(symbols.front(), count);
        }
    }
    for (const auto& [target, count] : edges) {
        modules.erase(target.first.file);
        references.edges.push_back({target.first, target.second, count});
    }
    references.modules.assign(modules.begin(), modules.end());
    return references;
}

}  // namespace embedded::scip
