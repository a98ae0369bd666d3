#include "host/indexing/references.h"

#include "models/edge.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace host::indexing {

std::string_view name_of(Resolution resolution) {
    constexpr std::array<std::string_view, 4> NAMES{models::AMBIGUOUS, models::IMPORT, models::LOCAL, models::UNIQUE};
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

References::References(const Extraction& extraction)
    : extraction_(extraction), declarations_(extraction.symbols->size()), modules_(extraction.symbols->size()) {
    const std::vector<ExtractedFile>& files = extraction.files;
    for (std::uint32_t file = 0; file < files.size(); ++file) {
        for (const DeclaredSymbol& declared : files[file].declared.symbols) {
            declarations_.add(declared.symbol,
                              {{file, declared.declaration}, declared.line_count, declared.is_described});
        }
        for (const SymbolNumber module : files[file].declared.modules) {
            modules_.add(module, {{file, 0}, files[file].declared.line_count});
        }
    }
    for (std::uint32_t file = 0; file < files.size(); ++file) {
        for (const DeclaredSymbol& declared : files[file].declared.symbols) {
            if (declarations_.find(declared.symbol)->is_one_of_several) {
                own_.emplace(std::pair(declared.symbol, file), DeclarationPlace{file, declared.declaration});
                shadowed_.insert({file, declared.declaration});
            }
        }
    }
    for (const Target& target : declarations_.all()) {
        shadowed_.erase(target.place);
    }
}

std::optional<DeclarationPlace> References::target_of(SymbolNumber symbol, std::uint32_t from) const {
    const Target* const target = declarations_.find(symbol);
    if (target == nullptr) {
        return std::nullopt;
    }
    const auto own = target->is_one_of_several ? own_.find({symbol, from}) : own_.end();
    return own == own_.end() ? target->place : own->second;
}

References::ResolvedTargets References::resolve(std::span<const SymbolNumber> symbols, std::uint32_t from) const {
    ResolvedTargets targets;
    for (const SymbolNumber symbol : symbols) {
        if (const auto place = symbol == LOCAL_SYMBOL ? std::nullopt : target_of(symbol, from)) {
            targets.places.push_back(*place);
        }
    }
    const bool are_all_declared = targets.places.size() == symbols.size();
    std::ranges::sort(targets.places);
    targets.places.erase(std::unique(targets.places.begin(), targets.places.end()), targets.places.end());
    targets.is_clear = are_all_declared && targets.places.size() == 1;
    return targets;
}

// The file that a token names as a module, if it names that alone.
std::optional<std::uint32_t> References::module_of(std::span<const SymbolNumber> symbols) const {
    const bool is_one = symbols.size() == 1 && symbols.front() != LOCAL_SYMBOL;
    const Target* const module = is_one ? modules_.find(symbols.front()) : nullptr;
    return module == nullptr ? std::nullopt : std::optional(module->place.file);
}

Resolution References::resolution(const ResolvedTargets& targets, const DeclarationPlace& target, std::uint32_t from) {
    if (!targets.is_clear) {
        return Resolution::AMBIGUOUS;
    }
    return target.file == from ? Resolution::LOCAL : Resolution::IMPORT;
}

bool References::may_name_modules(std::uint32_t file) const {
    return !modules_.all().empty() &&
           std::ranges::any_of(extraction_.files[file].references, [&](const auto& reference) {
               return module_of(extraction_.tokens.symbols(reference.first)).has_value();
           });
}

FileReferences References::from(std::uint32_t file) const {
    std::map<std::pair<DeclarationPlace, Resolution>, Occurrences> edges;
    std::map<std::uint32_t, Occurrences> modules;
    FileReferences references;
    for (const auto& [names, tokens] : extraction_.files[file].references) {
        const std::span<const SymbolNumber> symbols = extraction_.tokens.symbols(names);
        const ResolvedTargets targets = resolve(symbols, file);
        for (const DeclarationPlace& target : targets.places) {
            edges[{target, resolution(targets, target, file)}].add(tokens);
        }
        const std::optional<std::uint32_t> module = module_of(symbols);
        if (module && *module != file) {
            modules[*module].add(tokens);
        }
        if (targets.places.empty() && !module && symbols.front() != LOCAL_SYMBOL) {
            references.nowhere.emplace_back(symbols.front(), tokens.count);
        }
    }
    for (const auto& [symbol, tokens] : extraction_.files[file].unique_references) {
        if (const auto target = target_of(symbol, file)) {
            edges[{*target, Resolution::UNIQUE}].add(tokens);
        }
    }
    for (const auto& [target, tokens] : edges) {
        modules.erase(target.first.file);
        references.edges.push_back({target.first, target.second, tokens});
    }
    references.modules.assign(modules.begin(), modules.end());
    return references;
}

}  // namespace host::indexing
