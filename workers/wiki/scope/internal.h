// The names that are private to the component: the pieces that its public functions share, and its limits. For the
// component's own sources and tests; it is not installed.
#pragma once

#include "models/edge.h"
#include "models/symbol.h"
#include "workers/wiki/scope/facts.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace wiki::scope {

inline constexpr models::ConstantSet TRUSTED = models::TRUSTED_RESOLUTIONS;
inline constexpr models::ConstantSet TYPE_KINDS{"struct", "interface", "class", "type", "enum"};
inline constexpr const auto& CALLABLE_KINDS = models::CALLABLE_KINDS;

inline constexpr std::size_t CARD_NAMES = 3;      // names in one cell of a file card
inline constexpr std::size_t CONSUMER_ROWS = 12;  // consumer files listed
inline constexpr std::size_t CONSUMER_NAMES = 4;  // names shown for each consumer file
inline constexpr std::size_t UNUSED_NAMES = 8;    // declarations named as unused from outside
inline constexpr std::int64_t SIZE_CAP = 40;      // lines: the size of a body beyond which size ranks no further

/// Whether declarations of this kind are callables or types: what a page's API consists of.
inline bool _is_callable_or_type(std::string_view kind) {
    return CALLABLE_KINDS.contains(kind) || TYPE_KINDS.contains(kind);
}

/// Whether a name is private by convention.
inline bool _is_private(std::string_view name) {
    return name.starts_with('_');
}

/// A rule about texts that remembers its last few verdicts, by the identity of the texts. A page has a million
/// references but few distinct kinds and resolutions, and the references of one file mostly stand together, so the
/// rule itself is seldom asked. The texts must outlive this object.
template <class Rule>
class Remembered {
  public:
    using Verdict = std::invoke_result_t<Rule&, const Text&>;

    explicit Remembered(Rule rule) : rule_(std::move(rule)) {}

    Verdict operator()(const Text& text) {
        Memory& memory = memories_[place_of(text.identity())];
        if (!memory.is_set || memory.identity != text.identity()) {
            memory = {true, text.identity(), rule_(text)};
        }
        return memory.verdict;
    }

  private:
    struct Memory {
        bool is_set = false;
        const void* identity = nullptr;
        Verdict verdict{};
    };

    static constexpr std::size_t MEMORIES = 64;

    static std::size_t place_of(const void* identity) {
        constexpr std::size_t ALIGNMENT = 16;  // of buffers: the lower bits of their addresses tell nothing
        return std::hash<const void*>{}(identity) / ALIGNMENT % MEMORIES;
    }

    Rule rule_;
    std::array<Memory, MEMORIES> memories_{};
};

/// What the resolution of a reference says of it being a use.
enum class Standing { NONE, BY_NAME, EVIDENCE };

inline Standing _standing(std::string_view resolution) {
    return EVIDENCE_RESOLUTIONS.contains(resolution) ? Standing::EVIDENCE
           : resolution == "unique"                  ? Standing::BY_NAME
                                                     : Standing::NONE;
}

/// The rule of `is_use`, which asks about the target only where the resolution leaves it open.
inline bool _is_use(Standing standing, auto is_import_resolved, auto matches_by_name) {
    return standing == Standing::EVIDENCE ||
           (standing == Standing::BY_NAME && !is_import_resolved() && !matches_by_name());
}

/// `is_use` for the references into a page, as a function of the reference.
inline auto _use_rule(const ScopeFacts& facts) {
    Remembered standing(_standing);
    Remembered import_resolved([&facts](const Text& path) { return facts.import_resolved(path); });
    Remembered name_match([](const Text& kind) { return NAME_MATCH_KINDS.contains(kind); });
    return [standing, import_resolved, name_match](const InboundReference& reference) mutable {
        return _is_use(
            standing(reference.resolution), [&] { return import_resolved(reference.target_path); },
            [&] { return name_match(reference.target_kind); });
    };
}

/// The ids of the page's declarations that lie within the lines of another declaration of their file, a type:
/// members, not top-level code. Both bounds are inclusive, so two types of equal lines are members of each other. n
/// declarations and t types of one file cost O((n + t) log t).
OrderedSet<SymbolId> _members(const ScopeFacts& facts);

/// The parts, one after the other.
std::string _concatenated(std::initializer_list<std::string_view> parts);

/// The last two segments of a path: enough to tell two files of one name apart.
std::string _short_path(std::string_view path);

/// A text made safe to stand in one cell of a Markdown table: bars escaped, line feeds turned into blanks.
std::string _cell(std::string_view text);

/// The shown names joined by ", ", then " +" and the number of the `total` names that are not shown, if any.
std::string _shown(std::span<const std::string> shown, std::size_t total);

/// The first `limit` names joined by ", ", then " +" and the number of names left out, if any. `names` is any list that
/// knows its size and gives what can be made a string.
template <class Names>
std::string _named(const Names& names, std::size_t limit = CARD_NAMES) {
    std::vector<std::string> shown;
    for (std::size_t i = 0; i < names.size() && i < limit; ++i) {
        shown.emplace_back(names[i]);
    }
    return _shown(shown, names.size());
}

/// A list of declarations that are used, each as "`name` L<line> (<label><references>)". A text is written when it is
/// asked for: of many declarations a card shows three.
class UsedDeclarations {
  public:
    /// Those of `declarations` that `counts` knows to be used: most references first, equal counts in the given order.
    UsedDeclarations(std::span<const ScopeSymbol* const> declarations, const OrderedMap<SymbolId, std::int64_t>& counts,
                     std::string_view label);

    [[nodiscard]] std::size_t size() const { return used_.size(); }
    [[nodiscard]] bool empty() const { return used_.empty(); }
    [[nodiscard]] std::string operator[](std::size_t place) const;

  private:
    struct Used {
        std::int64_t references;
        const ScopeSymbol* declaration;
    };
    std::vector<Used> used_;
    std::string_view label_;
};

/// How a file card lists the declarations of one file that production code uses most: those used from outside the
/// page, else those that the page's own files use, labelled "in-page ". The list is whole: the caller cuts it.
UsedDeclarations _most_used(std::span<const ScopeSymbol* const> declarations, const FanIn& fan_in);

/// The exported, public, top-level types and callables that are not among `used`, the ids of the declarations that
/// production files outside the page use: types first, then by rank, then by path.
std::vector<const ScopeSymbol*> _unused_outside(const ScopeFacts& facts, const OrderedSet<SymbolId>& used,
                                                const FanIn& fan_in);

}  // namespace wiki::scope
