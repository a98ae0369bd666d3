#include "host/lookup/declarations.h"

#include "host/text/ascii.h"

#include <algorithm>
#include <array>
#include <compare>
#include <cstddef>
#include <optional>
#include <unordered_map>
#include <utility>

namespace host {

namespace {

// How good a find is: the smaller, the better. Ids ascend with path and line.
struct Rank {
    NameMatch match = NameMatch::EXACT;
    bool has_other_capitals = false;
    std::int64_t unused = 0;  // the number of uses, negative
    std::int64_t id = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr,readability-implicit-bool-conversion): it misreads the default
    friend auto operator<=>(const Rank&, const Rank&) = default;
};

// What somebody looks for.
class Wanted {
  public:
    explicit Wanted(std::string_view name) : name_(name), lowered_(lowered(name)) {}

    // The rank of a name, without that of the declaration that bears it.
    [[nodiscard]] std::optional<Rank> rank(std::string_view name) const {
        const auto* const found = std::search(name.begin(), name.end(), lowered_.begin(), lowered_.end(),
                                              [](char one, char other) { return lower(one) == other; });
        if (found == name.end()) {
            return std::nullopt;
        }
        const bool begins = found == name.begin();
        const NameMatch match = !begins                       ? NameMatch::PART
                                : name.size() == name_.size() ? NameMatch::EXACT
                                                              : NameMatch::PREFIX;
        const bool has_same_capitals = begins ? name.starts_with(name_) : name.find(name_) != std::string_view::npos;
        return Rank{.match = match, .has_other_capitals = !has_same_capitals};
    }

  private:
    std::string_view name_;
    std::string lowered_;
};

// The best of all that was found.
class Best {
  public:
    explicit Best(std::int64_t limit) : limit_(static_cast<std::size_t>(std::max<std::int64_t>(limit, 0))) {}

    void add(const Rank& rank) {
        ++count_;
        if (ranks_.size() < limit_) {
            ranks_.push_back(rank);
            std::ranges::push_heap(ranks_);
        } else if (limit_ > 0 && rank < ranks_.front()) {
            std::ranges::pop_heap(ranks_);
            ranks_.back() = rank;
            std::ranges::push_heap(ranks_);
        }
    }

    [[nodiscard]] std::int64_t count() const { return count_; }

    std::vector<Rank> finish() {
        std::ranges::sort_heap(ranks_);
        return std::move(ranks_);
    }

  private:
    std::size_t limit_;
    std::int64_t count_ = 0;
    std::vector<Rank> ranks_;  // a heap, the worst in front
};

void add_by_name(storage::Database& db, std::string_view name, Best& best) {
    const Wanted wanted(name);
    db.read_names(name, [&](const NameRow& row) {
        if (std::optional<Rank> rank = wanted.rank(row.name)) {
            rank->unused = -row.uses;
            rank->id = row.declaration;
            best.add(*rank);
        }
    });
}

// "Subject.next" is the end of a whole name.
void add_by_end_of_whole_name(storage::Database& db, std::string_view name, Best& best) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos) {
        return;
    }
    const std::string end = "." + std::string(name);
    db.read_declarations_named(name.substr(dot + 1), [&](const DeclarationRow& row) {
        if (row.fqn == name || row.fqn.ends_with(end)) {
            best.add({.unused = -row.uses, .id = row.id});
        }
    });
}

std::vector<FoundDeclaration> declarations_of(const std::vector<Rank>& ranks, storage::Database& db) {
    struct Placed {
        RowId file = 0;
        FoundDeclaration declaration;
    };
    std::vector<RowId> ids(ranks.size());
    std::ranges::transform(ranks, ids.begin(), &Rank::id);
    std::unordered_map<RowId, Placed> placed;
    std::vector<RowId> files;
    db.read_declarations(ids, [&](const DeclarationRow& row) {
        files.push_back(row.file);
        placed[row.id] = {row.file,
                          {.name = std::string(row.name),
                           .fqn = std::string(row.fqn),
                           .kind = std::string(row.kind),
                           .path = {},
                           .first_line = row.first_line,
                           .last_line = row.last_line,
                           .uses = row.uses}};
    });
    db.read_paths(files);
    std::vector<FoundDeclaration> found;
    for (const Rank& rank : ranks) {
        auto& [file, declaration] = placed[rank.id];
        if (const models::Text* const path = db.path(file)) {
            found.push_back(declaration);
            found.back().match = rank.match;
            found.back().path = std::string(*path);
        }
    }
    return found;
}

}  // namespace

std::string_view name_of(NameMatch match) {
    constexpr std::array<std::string_view, 3> NAMES{"exact", "prefix", "part"};
    return NAMES.at(static_cast<std::size_t>(match));
}

std::string nothing_found(std::string_view name) {
    return std::string(name) + ": no declaration of the index is called so, not even in part";
}

FoundDeclarations find_declarations(storage::Database& db, std::string_view name, std::int64_t limit) {
    FoundDeclarations found;
    if (name.empty()) {
        return found;
    }
    Best best(limit);
    add_by_name(db, name, best);
    add_by_end_of_whole_name(db, name, best);
    found.count = best.count();
    found.best = declarations_of(best.finish(), db);
    return found;
}

}  // namespace host
