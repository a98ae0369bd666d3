// The tokens of a SCIP file: a token is one range of a document, and names every symbol that occurs there.
#pragma once

#include "host/indexing/symbols.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace host::scip {

using indexing::LOCAL_SYMBOL;
using indexing::SymbolNumber;
using indexing::TokenNames;

/// The global symbols of a SCIP file that parse, numbered in the order of first mention.
class SymbolTable {
  public:
    SymbolTable() = default;
    ~SymbolTable() = default;
    SymbolTable(SymbolTable&&) = default;
    SymbolTable& operator=(SymbolTable&&) = default;
    SymbolTable(const SymbolTable&) = delete;
    SymbolTable& operator=(const SymbolTable&) = delete;

    /// The number of a symbol, which is the next one for a new symbol; `LOCAL_SYMBOL` for one that is local; none for
    /// one that is empty or does not parse.
    std::optional<SymbolNumber> number(std::string_view symbol);

    /// The number of a global symbol that has one.
    [[nodiscard]] std::optional<SymbolNumber> find(std::string_view symbol) const;

    /// The symbol with this number, valid as long as the table.
    [[nodiscard]] std::string_view symbol(SymbolNumber number) const { return symbols_[number]; }

    /// Whether the symbol extends a declaration that stands elsewhere (symbol.h).
    [[nodiscard]] bool is_augmentation(SymbolNumber number) const { return augmentations_[number]; }

    /// Whether the symbol may be a module: a namespace, as a file of TypeScript is one, or what Python calls one.
    [[nodiscard]] bool is_module(SymbolNumber number) const { return modules_[number]; }

    [[nodiscard]] std::size_t size() const { return symbols_.size(); }

    /// How many distinct symbols do not parse, or have control characters in their name. Those that are too long are
    /// told apart by how they begin.
    [[nodiscard]] std::size_t unparsed() const { return numbers_.size() - symbols_.size(); }

  private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view symbol) const { return std::hash<std::string_view>()(symbol); }
    };
    std::unordered_map<std::string, std::optional<SymbolNumber>, Hash, std::equal_to<>> numbers_;
    std::vector<std::string_view> symbols_;  // the keys of `numbers_`
    std::vector<bool> augmentations_;
    std::vector<bool> modules_;
};

/// The combinations of symbols that tokens name, each looked into once.
class TokenReader {
  public:
    /// The number for what a token names: at least one symbol of this table, in ascending order, `LOCAL_SYMBOL` maybe
    /// among them. Augmentations are left out beside anything else: whoever names a declaration does not mean what
    /// extends it.
    TokenNames number(const std::vector<SymbolNumber>& symbols, const SymbolTable& table);

    /// The symbols behind a number, ascending; valid as long as this object and the number.
    [[nodiscard]] std::span<const SymbolNumber> symbols(const TokenNames& names) const {
        return combinations_.symbols(names);
    }

    /// The groups that a symbol is in. A group has one scope and one name, and there is a token that names all of it.
    [[nodiscard]] std::span<const std::uint32_t> groups(SymbolNumber symbol) const;

    /// Gives the combinations away; only `groups` may be asked for then.
    [[nodiscard]] indexing::TokenTable take() { return std::move(combinations_); }

  private:
    void add_groups(std::span<const SymbolNumber> symbols, const SymbolTable& table);

    std::map<std::vector<SymbolNumber>, TokenNames> numbers_;  // of combinations as they stand in documents
    indexing::TokenTable combinations_;                        // without what is left out
    std::set<std::vector<SymbolNumber>> known_groups_;
    std::unordered_map<SymbolNumber, std::vector<std::uint32_t>> groups_;
};

}  // namespace host::scip
