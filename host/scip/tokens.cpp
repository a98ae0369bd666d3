#include "host/scip/tokens.h"

#include "host/scip/symbol.h"
#include "host/text/control_characters.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace host::scip {

namespace {

std::vector<SymbolNumber> without_augmentations(const std::vector<SymbolNumber>& symbols, const SymbolTable& table) {
    std::vector<SymbolNumber> meant;
    std::ranges::copy_if(symbols, std::back_inserter(meant),
                         [&](SymbolNumber symbol) { return symbol == LOCAL_SYMBOL || !table.is_augmentation(symbol); });
    return meant.empty() ? symbols : meant;
}

}  // namespace

std::optional<SymbolNumber> SymbolTable::number(std::string_view symbol) {
    if (symbol.empty()) {
        return std::nullopt;
    }
    if (is_local(symbol)) {
        return LOCAL_SYMBOL;
    }
    symbol = symbol.substr(0, LONGEST_SYMBOL + 1);  // enough to tell that it is too long
    if (const auto known = numbers_.find(symbol); known != numbers_.end()) {
        return known->second;
    }
    const auto added = numbers_.emplace(symbol, std::nullopt).first;
    const auto parts = parse_symbol(symbol);
    if (parts && !has_control_character(parts->descriptors.back().name)) {
        added->second = static_cast<SymbolNumber>(symbols_.size());
        symbols_.push_back(added->first);
        augmentations_.push_back(scip::is_augmentation(parts->descriptors));
        const Descriptor& last = parts->descriptors.back();
        modules_.push_back(last.suffix == Suffix::NAMESPACE ||
                           (last.suffix == Suffix::META && last.name == "__init__"));
    }
    return added->second;
}

std::optional<SymbolNumber> SymbolTable::find(std::string_view symbol) const {
    const auto known = numbers_.find(symbol);
    return known == numbers_.end() ? std::nullopt : known->second;
}

TokenNames TokenReader::number(const std::vector<SymbolNumber>& symbols, const SymbolTable& table) {
    if (symbols.size() == 1) {
        return symbols.front();
    }
    const auto [known, is_new] = numbers_.try_emplace(symbols);
    if (is_new) {
        add_groups(symbols, table);
        std::vector<SymbolNumber> meant = without_augmentations(symbols, table);
        known->second = meant.size() < symbols.size() ? number(meant, table) : combinations_.number(std::move(meant));
    }
    return known->second;
}

void TokenReader::add_groups(std::span<const SymbolNumber> symbols, const SymbolTable& table) {
    std::map<std::pair<std::string_view, std::string>, std::vector<SymbolNumber>> by_name;
    for (const SymbolNumber symbol : symbols) {
        if (symbol != LOCAL_SYMBOL) {
            const Symbol parts = parse_symbol(table.symbol(symbol)).value();
            by_name[{parts.scope, written(parts.descriptors.back().name)}].push_back(symbol);
        }
    }
    for (const auto& [name, group] : by_name) {
        if (group.size() > 1 && known_groups_.insert(group).second) {
            for (const SymbolNumber symbol : group) {
                groups_[symbol].push_back(static_cast<std::uint32_t>(known_groups_.size()));
            }
        }
    }
}

std::span<const std::uint32_t> TokenReader::groups(SymbolNumber symbol) const {
    const auto found = groups_.find(symbol);
    return found == groups_.end() ? std::span<const std::uint32_t>() : found->second;
}

}  // namespace host::scip
