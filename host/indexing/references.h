// Resolves references: from the symbols that the tokens of a file name to declarations.
#pragma once

#include "host/indexing/extraction.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace host::indexing {

/// The position of a declaration in an extraction.
struct DeclarationPlace {
    std::uint32_t file = 0;         ///< index in `Extraction::files`
    std::uint32_t declaration = 0;  ///< index in the file's declarations

    // NOLINTNEXTLINE(modernize-use-nullptr,readability-implicit-bool-conversion): it misreads the default
    friend auto operator<=>(const DeclarationPlace&, const DeclarationPlace&) = default;
};

/// How a reference is resolved, in alphabetical order.
enum class Resolution : std::uint8_t {
    AMBIGUOUS,  ///< it may mean any of several declarations
    IMPORT,     ///< its declaration is in another file
    LOCAL,      ///< its declaration is in the same file
    UNIQUE,     ///< no binding leads to its declaration, but nothing else bears the name
};

/// "ambiguous", "import", "local", "unique"
std::string_view name_of(Resolution resolution);

/// All references from one file to one declaration with one resolution.
struct Edge {
    DeclarationPlace target;
    Resolution resolution = Resolution::AMBIGUOUS;
    Occurrences references;
};

/// The references of one file.
struct FileReferences {
    std::vector<Edge> edges;  ///< by target, then resolution
    /// The files that it names as modules and has no edge into, with the tokens. By index, ascending.
    std::vector<std::pair<std::uint32_t, Occurrences>> modules;
    /// The symbols that no file declares, with the number of tokens.
    std::vector<std::pair<SymbolNumber, std::int64_t>> nowhere;
};

/// Resolves the symbols of an extraction to their declarations.
///
/// When several files declare a symbol, a reference from one of these files resolves to that file's own declaration. A
/// reference from any other file resolves to the declaration with the most lines; of equals, to one that the front end
/// describes, then to the first by path.
///
/// A token that resolves to one declaration is one reference. A token is an ambiguous reference to each of its targets
/// when it resolves to several, or when it also names a symbol that no file declares.
class References {
  public:
    /// `extraction` must outlive this object.
    explicit References(const Extraction& extraction);

    /// Returns whether references from other files resolve to this declaration. They do not where it is shadowed:
    /// another file has a larger declaration of the same symbol, such as the implementation of a stub.
    [[nodiscard]] bool lead_to(const DeclarationPlace& place) const { return !shadowed_.contains(place); }

    /// Returns whether a token of the file may name another file as a module. Much cheaper than `from`.
    [[nodiscard]] bool may_name_modules(std::uint32_t file) const;

    /// Returns the references of the file at this index of `Extraction::files`.
    [[nodiscard]] FileReferences from(std::uint32_t file) const;

  private:
    struct Target {
        DeclarationPlace place;
        std::int32_t line_count = 0;
        bool is_described = false;
        bool is_one_of_several = false;  ///< whether several files declare the symbol
    };

    /// The target of each symbol for files that do not declare it.
    class Targets {
      public:
        explicit Targets(std::size_t symbols) : places_(symbols, NONE) {}

        /// Returns null for a symbol without a target.
        [[nodiscard]] const Target* find(SymbolNumber symbol) const {
            return places_[symbol] == NONE ? nullptr : &targets_[places_[symbol]];
        }
        [[nodiscard]] const std::vector<Target>& all() const { return targets_; }

        /// Adds a declaration of a symbol. The best one becomes the target.
        void add(SymbolNumber symbol, const Target& target);

      private:
        static constexpr std::uint32_t NONE = 0xFFFF'FFFF;
        std::vector<std::uint32_t> places_;  // by symbol: the index of its target
        std::vector<Target> targets_;
    };

    /// The declarations that one token resolves to.
    struct ResolvedTargets {
        std::vector<DeclarationPlace> places;  ///< each once, ascending
        bool is_clear = false;  ///< whether there is one target, and every symbol of the token is declared
    };

    [[nodiscard]] std::optional<DeclarationPlace> target_of(SymbolNumber symbol, std::uint32_t from) const;
    [[nodiscard]] ResolvedTargets resolve(std::span<const SymbolNumber> symbols, std::uint32_t from) const;
    static Resolution resolution(const ResolvedTargets& targets, const DeclarationPlace& target, std::uint32_t from);
    [[nodiscard]] std::optional<std::uint32_t> module_of(std::span<const SymbolNumber> symbols) const;

    const Extraction& extraction_;
    Targets declarations_;
    Targets modules_;
    // For symbols that several files declare: the declaration in each of these files.
    std::map<std::pair<SymbolNumber, std::uint32_t>, DeclarationPlace> own_;
    std::set<DeclarationPlace> shadowed_;  // those that no reference from another file resolves to
};

}  // namespace host::indexing
