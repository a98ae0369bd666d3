// Symbols: what declarations are known by from one file to another.
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

/// Stands, among the symbols that a token names, for those that only their own file knows.
inline constexpr SymbolNumber LOCAL_SYMBOL = 0xFFFF'FFFF;

/// What a token names: a symbol's number, or that of a combination of symbols.
using TokenNames = std::uint32_t;

/// The combinations of symbols that tokens name, each kept once.
class TokenTable {
  public:
    TokenTable() = default;
    ~TokenTable() = default;
    TokenTable(TokenTable&&) = default;
    TokenTable& operator=(TokenTable&&) = default;
    TokenTable(const TokenTable&) = delete;
    TokenTable& operator=(const TokenTable&) = delete;

    /// The number for what a token names: at least one symbol, in ascending order, `LOCAL_SYMBOL` maybe among them.
    TokenNames number(std::vector<SymbolNumber> symbols);

    /// The symbols behind a number, ascending; valid as long as the table and the number.
    [[nodiscard]] std::span<const SymbolNumber> symbols(const TokenNames& names) const;

  private:
    std::map<std::vector<SymbolNumber>, TokenNames> numbers_;
    std::vector<const std::vector<SymbolNumber>*> combinations_;  // the keys of `numbers_`
};

/// What a declaration is called.
struct DeclarationName {
    std::string name;
    std::string fqn;
};

/// Where a symbol is declared that no file of the extraction declares.
struct Elsewhere {
    std::string name;            ///< of the package; where the repository itself lacks it, of the module
    bool is_repository = false;  ///< whether it is a module of the repository, which was not extracted
};

/// What a front end knows of the symbols that it has numbered. For any number of threads.
class Symbols {
  public:
    Symbols() = default;
    virtual ~Symbols() = default;
    Symbols(const Symbols&) = delete;
    Symbols& operator=(const Symbols&) = delete;

    [[nodiscard]] virtual std::size_t size() const = 0;

    /// The name of a declaration or a module of the file at a place. Names are made when they are written: kept, they
    /// would be the largest part of what an import holds in memory.
    [[nodiscard]] virtual DeclarationName name_of(SymbolNumber symbol, std::uint32_t file) const = 0;

    /// Where a symbol is declared that leads to no declaration of an extracted file; none when that is not worth a
    /// word, as of a parameter.
    [[nodiscard]] virtual std::optional<Elsewhere> declared_elsewhere(SymbolNumber symbol) const = 0;
};

}  // namespace host::indexing
