// The tokens of a SCIP file: a token is one range of a document, and names every symbol that occurs there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace embedded::scip {

/// A global symbol that parses, counted from 0 in the order of first mention.
using SymbolNumber = std::uint32_t;

/// Stands, among the symbols that a token names, for those that are local to the document.
inline constexpr SymbolNumber LOCAL_SYMBOL = 0xFFFF'FFFF;

/// The global symbols of a SCIP file.
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

    [[nodiscard]] std::size_t size() const { return symbols_.size(); }

    /// How many distinct symbols do not parse.
    [[nodiscard]] std::size_t unparsed() const { return numbers_.size() - symbols_.size(); }

  private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view symbol) const { return std::hash<std::string_view>()(symbol); }
    };
    std::unordered_map<std::string, std::optional<SymbolNumber>, Hash, std::equal_to<>> numbers_;
    std::vector<std::string_view> symbols_;  // the keys of `numbers_`
    std::vector<bool> augmentations_;
};

/// What a token names: a symbol's number, or that of a combination of symbols.
using TokenNames = std::uint32_t;

/// The combinations of symbols that tokens name, each kept once.
class TokenTable {
  public:
    /// The number for these symbols, at least one, in ascending order, `LOCAL_SYMBOL` maybe among them.
    TokenNames number(const std::vector<SymbolNumber>& symbols);

    /// The symbols behind a number; valid as long as the table and the number.
    [[nodiscard]] std::span<const SymbolNumber> symbols(const TokenNames& names) const;

  private:
    std::map<std::vector<SymbolNumber>, TokenNames> numbers_;
    std::vector<std::span<const SymbolNumber>> combinations_;  // the keys of `numbers_`
};

}  // namespace embedded::scip
