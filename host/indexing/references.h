// Where the references of an extraction lead: from what the tokens of a file name to declarations.
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

/// A declaration of a file, by their places in the extraction.
struct DeclarationPlace {
    std::uint32_t file = 0;
    std::uint32_t declaration = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr,readability-implicit-bool-conversion): it misreads the default
    friend auto operator<=>(const DeclarationPlace&, const DeclarationPlace&) = default;
};

/// How a reference leads to its target, in the order of the names.
enum class Resolution : std::uint8_t {
    AMBIGUOUS,  ///< it names several declarations
    IMPORT,     ///< of another file
    LOCAL,      ///< of the file itself
};

/// "ambiguous", "import", "local"
std::string_view name_of(Resolution resolution);

/// All references from one file to one declaration by one resolution.
struct Edge {
    DeclarationPlace target;
    Resolution resolution = Resolution::AMBIGUOUS;
    std::int64_t references = 0;
};

/// What the tokens of one file lead to.
struct FileReferences {
    std::vector<Edge> edges;  ///< by target, then resolution
    /// The files that it names as modules and has no edge into, by place, with the number of tokens; ascending.
    std::vector<std::pair<std::uint32_t, std::int64_t>> modules;
    std::vector<std::pair<SymbolNumber, std::int64_t>> nowhere;  ///< the symbols of tokens that lead nowhere
};

/// Knows where every symbol is declared.
///
/// From the file that declares it, too, a symbol leads to that file's declaration. From elsewhere it leads to its
/// largest declaration; of equals to one that its front end describes, then to the first by path. A token that leads to
/// one declaration is one reference; one that leads to several, or names something else besides that no file declares,
/// is an ambiguous one to each.
class References {
  public:
    /// `extraction` must outlive this object.
    explicit References(const Extraction& extraction);

    /// Whether references from other files lead to this declaration. They do not where another file's declaration of
    /// the same symbol is larger: what others use under that name is then the other one, as that of a stub.
    [[nodiscard]] bool lead_to(const DeclarationPlace& place) const { return !shadowed_.contains(place); }

    /// Whether a token of the file may name another file as a module; at a small part of the cost of `from`.
    [[nodiscard]] bool may_name_modules(std::uint32_t file) const;

    /// The references of the file at this place.
    [[nodiscard]] FileReferences from(std::uint32_t file) const;

  private:
    struct Target {
        DeclarationPlace place;
        std::int32_t line_count = 0;
        bool is_described = false;
        bool is_one_of_several = false;  ///< whether other files declare the symbol, too
    };

    /// What symbols lead to, from files that do not declare them.
    class Targets {
      public:
        explicit Targets(std::size_t symbols) : places_(symbols, NONE) {}

        /// Null for a symbol that leads nowhere.
        [[nodiscard]] const Target* find(SymbolNumber symbol) const {
            return places_[symbol] == NONE ? nullptr : &targets_[places_[symbol]];
        }
        [[nodiscard]] const std::vector<Target>& all() const { return targets_; }

        /// Adds one of the declarations of a symbol, which leads to the best of them.
        void add(SymbolNumber symbol, const Target& target);

      private:
        static constexpr std::uint32_t NONE = 0xFFFF'FFFF;
        std::vector<std::uint32_t> places_;  // by symbol: where its target is
        std::vector<Target> targets_;
    };

    /// The declarations that one token leads to.
    struct ResolvedTargets {
        std::vector<DeclarationPlace> places;  ///< each once, ascending
        bool is_clear = false;  ///< whether the token names one declaration, and nothing that is not declared
    };

    [[nodiscard]] std::optional<DeclarationPlace> target_of(SymbolNumber symbol, std::uint32_t from) const;
    [[nodiscard]] ResolvedTargets resolve(std::span<const SymbolNumber> symbols, std::uint32_t from) const;
    static Resolution resolution(const ResolvedTargets& targets, const DeclarationPlace& target, std::uint32_t from);
    [[nodiscard]] std::optional<std::uint32_t> module_of(std::span<const SymbolNumber> symbols) const;

    const Extraction& extraction_;
    Targets declarations_;
    Targets modules_;
    // The declarations of the symbols that several files declare, in those files.
    std::map<std::pair<SymbolNumber, std::uint32_t>, DeclarationPlace> own_;
    std::set<DeclarationPlace> shadowed_;  // those to which no reference from elsewhere leads
};

}  // namespace host::indexing
