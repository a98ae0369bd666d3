// Symbols: the names by which files refer to each other's declarations, as numbers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace host::indexing {

/// A symbol, numbered by the front end from 0.
using SymbolNumber = std::uint32_t;

/// Stands for every symbol that only its own file can refer to.
inline constexpr SymbolNumber LOCAL_SYMBOL = 0xFFFF'FFFF;

/// What a token names: the number of a symbol, or of a combination of symbols.
using TokenNames = std::uint32_t;

/// The combinations of symbols that tokens name, each stored once.
class TokenTable {
  public:
    TokenTable() = default;
    ~TokenTable() = default;
    TokenTable(TokenTable&&) = default;
    TokenTable& operator=(TokenTable&&) = default;
    TokenTable(const TokenTable&) = delete;
    TokenTable& operator=(const TokenTable&) = delete;

    /// Returns the number for the symbols that a token names: one or more, ascending, possibly with `LOCAL_SYMBOL`.
    TokenNames number(std::vector<SymbolNumber> symbols);

    /// Returns the symbols for a number, ascending. Valid as long as both the table and `names`.
    [[nodiscard]] std::span<const SymbolNumber> symbols(const TokenNames& names) const {
        const bool is_combination = names != LOCAL_SYMBOL && (names & COMBINATION) != 0;
        return is_combination ? std::span(*combinations_[names & ~COMBINATION]) : std::span(&names, 1);
    }

  private:
    // The bit that marks a combination. Of symbols, only `LOCAL_SYMBOL` has it.
    static constexpr TokenNames COMBINATION = 0x8000'0000;

    std::map<std::vector<SymbolNumber>, TokenNames> numbers_;
    std::vector<const std::vector<SymbolNumber>*> combinations_;  // the keys of `numbers_`
};

/// The name of a declaration, and its fully qualified name.
struct DeclarationName {
    std::string name;
    std::string fqn;
};

/// Where a symbol is declared when no extracted file declares it.
struct Elsewhere {
    std::string name;            ///< of the package; of the module if `is_repository`
    bool is_repository = false;  ///< whether it is a module of this repository that was not extracted
};

/// What a front end knows about the symbols that it numbered. Safe to use from several threads.
class Symbols {
  public:
    Symbols() = default;
    virtual ~Symbols() = default;
    Symbols(const Symbols&) = delete;
    Symbols& operator=(const Symbols&) = delete;

    [[nodiscard]] virtual std::size_t size() const = 0;

    /// Returns the name of a declaration or module of the file at this index. Names are made on demand, because stored
    /// names would take most of an import's memory.
    [[nodiscard]] virtual DeclarationName name_of(SymbolNumber symbol, std::uint32_t file) const = 0;

    /// Returns whether a file says what the symbol is, though that may be no declaration.
    [[nodiscard]] virtual bool is_defined(SymbolNumber symbol) const = 0;

    /// Returns where a symbol is declared that no extracted file declares. None when that is not worth reporting, as
    /// for a parameter.
    [[nodiscard]] virtual std::optional<Elsewhere> declared_elsewhere(SymbolNumber symbol) const = 0;
};

}  // namespace host::indexing
