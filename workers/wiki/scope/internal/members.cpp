#include "workers/wiki/scope/internal/members.h"

#include "workers/wiki/scope/internal/remembered.h"
#include "workers/wiki/scope/kinds.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

namespace wiki::scope {

namespace {

// How far down the types of a growing group reach. A type never contains itself, so next to the farthest last line
// stands the farthest one of any type with another id; nothing else of the group is needed.
class Reach {
  public:
    void include(const ScopeSymbol& type) {
        if (type.id == farthest_id_) {
            farthest_ = std::max<std::int64_t>(farthest_, type.end_line);
        } else if (type.end_line > farthest_) {
            farthest_of_others_ = farthest_;
            farthest_ = type.end_line;
            farthest_id_ = type.id;
        } else {
            farthest_of_others_ = std::max<std::int64_t>(farthest_of_others_, type.end_line);
        }
    }

    [[nodiscard]] bool contains_end_of(const ScopeSymbol& declaration) const {
        return declaration.end_line <= (declaration.id == farthest_id_ ? farthest_of_others_ : farthest_);
    }

  private:
    static constexpr std::int64_t NOWHERE = std::numeric_limits<std::int64_t>::min();

    std::int64_t farthest_ = NOWHERE;
    std::int64_t farthest_of_others_ = NOWHERE;
    SymbolId farthest_id_ = 0;
};

// The types of one file by first line, each with the reach of the types up to it.
class TypesOfFile {
  public:
    void add(const ScopeSymbol& type) { types_.push_back({&type, {}}); }

    // To be called once all types have been added.
    void sort() {
        std::sort(types_.begin(), types_.end(), [](const Type& left, const Type& right) {
            return left.symbol->start_line < right.symbol->start_line;
        });
        Reach reach;
        for (Type& type : types_) {
            reach.include(*type.symbol);
            type.reach = reach;
        }
    }

    [[nodiscard]] bool contain(const ScopeSymbol& declaration) const {
        const auto after =
            std::upper_bound(types_.begin(), types_.end(), declaration.start_line,
                             [](std::int32_t line, const Type& type) { return line < type.symbol->start_line; });
        return after != types_.begin() && std::prev(after)->reach.contains_end_of(declaration);
    }

  private:
    struct Type {
        const ScopeSymbol* symbol;
        Reach reach;
    };
    std::vector<Type> types_;
};

}  // namespace

OrderedSet<SymbolId> _members(const ScopeFacts& facts) {
    OrderedMap<Text, TypesOfFile> types_by_file;
    for (const ScopeSymbol& symbol : facts.symbols) {
        if (TYPE_KINDS.contains(symbol.kind)) {
            types_by_file[symbol.path].add(symbol);
        }
    }
    types_by_file.update_each([](TypesOfFile& types) { types.sort(); });

    OrderedSet<SymbolId> members;
    members.reserve(facts.symbols.size());
    Remembered types_of([&](const Text& path) { return types_by_file.find(path); });
    for (const ScopeSymbol& symbol : facts.symbols) {
        if (const TypesOfFile* types = types_of(symbol.path); types != nullptr && types->contain(symbol)) {
            members.insert(symbol.id);
        }
    }
    return members;
}

}  // namespace wiki::scope
