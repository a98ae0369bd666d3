#include "embedded/lookup/declarations.h"

#include "embedded/text/ascii.h"

#include <algorithm>
#include <array>
#include <compare>
#include <cstddef>
#include <optional>

namespace embedded {

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

void add_by_name(const Connection& index, std::string_view name, Best& best) {
    const Wanted wanted(name);
    Statement rows(index, "SELECT name, uses, id FROM symbols INDEXED BY symbols_by_name");
    while (rows.step()) {
        if (std::optional<Rank> rank = wanted.rank(rows.text(0))) {
            rank->unused = -rows.integer(1);
            rank->id = rows.integer(2);
            best.add(*rank);
        }
    }
}

// "Subject.next" is the end of a whole name.
void add_by_end_of_whole_name(const Connection& index, std::string_view name, Best& best) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos) {
        return;
    }
    const std::string end = "." + std::string(name);
    Statement rows(index, "SELECT fqn, uses, id FROM symbols WHERE name = ?1");
    rows.bind(1, name.substr(dot + 1));
    while (rows.step()) {
        if (rows.text(0) == name || rows.text(0).ends_with(end)) {
            best.add({.unused = -rows.integer(1), .id = rows.integer(2)});
        }
    }
}

}  // namespace

std::string_view name_of(NameMatch match) {
    constexpr std::array<std::string_view, 3> NAMES{"exact", "prefix", "part"};
    return NAMES.at(static_cast<std::size_t>(match));
}

std::string said_of_none(std::string_view name) {
    return std::string(name) + ": no declaration of the index is called so, not even in part";
}

FoundDeclarations find_declarations(const Connection& index, std::string_view name, std::int64_t limit) {
    FoundDeclarations found;
    if (name.empty()) {
        return found;
    }
    Best best(limit);
    add_by_name(index, name, best);
    add_by_end_of_whole_name(index, name, best);
    found.count = best.count();
    Statement row(index, "SELECT name, fqn, kind, path, start_line, end_line, uses "
                         "FROM symbols JOIN files ON files.id = file_id WHERE symbols.id = ?1");
    for (const Rank& rank : best.finish()) {
        row.bind(1, rank.id);
        if (row.step()) {
            found.best.push_back({.match = rank.match,
                                  .name = std::string(row.text(0)),
                                  .fqn = std::string(row.text(1)),
                                  .kind = std::string(row.text(2)),
                                  .path = std::string(row.text(3)),
                                  .first_line = row.integer(4),
                                  .last_line = row.integer(5),
                                  .uses = row.integer(6)});
        }
        row.reset();
    }
    return found;
}

}  // namespace embedded
