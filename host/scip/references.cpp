#include "host/scip/references.h"

#include "host/scip/symbol.h"
#include "models/edge.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace host::scip {

std::string_view name_of(Resolution resolution) {
    constexpr std::array<std::string_view, 3> NAMES{models::AMBIGUOUS, models::IMPORT, models::LOCAL};
    return NAMES.at(static_cast<std::size_t>(resolution));
}

void References::Targets::add(SymbolNumber symbol, const Target& target) {
    if (places_[symbol] == NONE) {
        places_[symbol] = static_cast<std::uint32_t>(targets_.size());
        targets_.push_back(target);
        return;
    }
    Target& best = targets_[places_[symbol]];
    const auto worth = [](const Target& each) { return std::pair(each.line_count, each.is_described); };
    if (worth(target) > worth(best)) {
        best = target;
    }
    best.is_one_of_several = true;
}

References::References(const Contents& contents, const std::vector<FileRows>& rows)
    : contents_(contents), rows_(contents.symbols.size()), modules_(contents.symbols.size()) {
    for (std::uint32_t place = 0; place < rows.size(); ++place) {
        for (const DeclaredSymbol& declared : rows[place].declared) {
            rows_.add(declared.symbol, {{place, declared.row}, declared.line_count, declared.is_described});
        }
        for (const SymbolNumber module : rows[place].modules) {
            modules_.add(module, {{place, 0}, rows[place].line_count});
        }
    }
    for (std::uint32_t place = 0; place < rows.size(); ++place) {
        for (const DeclaredSymbol& declared : rows[place].declared) {
            if (rows_.find(declared.symbol)->is_one_of_several) {
                own_.emplace(std::pair(declared.symbol, place), RowPlace{place, declared.row});
                outdone_.insert({place, declared.row});
            }
        }
    }
    for (const Target& target : rows_.all()) {
        outdone_.erase(target.place);
    }
    add_modules_named_by_their_end(rows);
}

// scip-python names a module that is imported relative to another one by what the import says, without its dots. Where
// one module alone ends so, that is the one.
void References::add_modules_named_by_their_end(const std::vector<FileRows>& rows) {
    constexpr std::string_view MODULE_OF_PYTHON = "/__init__:";
    struct Module {
        Target target;
        bool is_only_one;
    };
    std::map<std::pair<std::string_view, std::string>, Module> by_end;  // by release and end of the name
    for (const FileRows& file : rows) {
        for (const SymbolNumber number : file.modules) {
            const Symbol symbol = parse_symbol(contents_.symbols.symbol(number)).value();
            const std::string name = module_name(symbol.descriptors).value_or("");
            for (std::size_t dot = name.find('.'); dot != std::string::npos; dot = name.find('.', dot + 1)) {
                const auto [end, is_new] =
                    by_end.try_emplace({symbol.head, name.substr(dot + 1)}, Module{*modules_.find(number), true});
                end->second.is_only_one = is_new;
            }
        }
    }
    for (SymbolNumber number = 0; number < contents_.symbols.size(); ++number) {
        const std::string_view text = contents_.symbols.symbol(number);
        if (text.ends_with(MODULE_OF_PYTHON) && modules_.find(number) == nullptr) {
            const Symbol symbol = parse_symbol(text).value();
            const auto found = by_end.find({symbol.head, module_name(symbol.descriptors).value_or("")});
            if (found != by_end.end() && found->second.is_only_one) {
                modules_.add(number, found->second.target);
            }
        }
    }
}

std::optional<RowPlace> References::row_of(SymbolNumber symbol, std::uint32_t from) const {
    const Target* const target = rows_.find(symbol);
    if (target == nullptr) {
        return std::nullopt;
    }
    const auto own = target->is_one_of_several ? own_.find({symbol, from}) : own_.end();
    return own == own_.end() ? target->place : own->second;
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
    const bool is_one = symbols.size() == 1 && symbols.front() != LOCAL_SYMBOL;
    const Target* const module = is_one ? modules_.find(symbols.front()) : nullptr;
    return module == nullptr ? std::nullopt : std::optional(module->place.file);
}

Resolution References::resolution(const Lead& lead, const RowPlace& target, std::uint32_t from) {
    if (!lead.is_clear) {
        return Resolution::AMBIGUOUS;
    }
    return target.file == from ? Resolution::LOCAL : Resolution::IMPORT;
}

bool References::may_name_modules(const FileContents& file) const {
    return !modules_.all().empty() && std::ranges::any_of(file.references, [&](const auto& reference) {
        return module_of(contents_.tokens.symbols(reference.first)).has_value();
    });
}

FileReferences References::of(std::uint32_t place, const FileContents& file) const {
    std::map<std::pair<RowPlace, Resolution>, std::int64_t> edges;
    std::map<std::uint32_t, std::int64_t> modules;
    FileReferences references;
    for (const auto& [names, count] : file.references) {
        const std::span<const SymbolNumber> symbols = contents_.tokens.symbols(names);
        const Lead lead = follow(symbols, place);
        for (const RowPlace& row : lead.rows) {
            edges[{row, resolution(lead, row, place)}] += count;
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

}  // namespace host::scip
