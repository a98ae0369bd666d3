#include "workers/wiki/scope/selection.h"

#include <algorithm>
#include <cmath>
#include <compare>
#include <limits>
#include <queue>
#include <utility>

namespace wiki::scope {

namespace {

struct File {
    const Text* path;
    const std::vector<const ScopeSymbol*>* declarations;
    std::int64_t taken = 0;  // its first so many declarations are picked

    [[nodiscard]] std::int64_t count() const { return static_cast<std::int64_t>(declarations->size()); }
};

// A declaration that can be picked.
struct Candidate {
    RankKey key;
    File* file;
    std::int64_t index;  // among the declarations of its file, from 0
};

// Of candidates of different files, which have different paths.
bool by_rank(const Candidate& left, const Candidate& right) {
    const auto by_key = left.key <=> right.key;
    return std::is_neq(by_key) ? std::is_lt(by_key) : *left.file->path < *right.file->path;
}

bool by_index_then_rank(const Candidate& left, const Candidate& right) {
    return left.index != right.index ? left.index < right.index : by_rank(left, right);
}

// The nearest 64-bit integer; the smallest one for what is no number.
std::int64_t to_integer(double number) {
    constexpr double BEYOND = 9223372036854775808.0;  // 2^63
    if (number >= BEYOND) {
        return std::numeric_limits<std::int64_t>::max();
    }
    return number >= -BEYOND ? static_cast<std::int64_t>(number) : std::numeric_limits<std::int64_t>::min();
}

// total * max_share rounded up, as the double-precision product has it: 25 * 0.28 gives 8, not 7.
std::int64_t share_of(std::int64_t total, double max_share) {
    return to_integer(std::ceil(static_cast<double>(total) * max_share));
}

// One selection: the files, what is picked of each, and the blocks not yet given out.
class Selection {
  public:
    Selection(const RankedFiles& ranked, const FanIn& fan_in, std::int64_t total) : fan_in_(fan_in), budget_(total) {
        files_.reserve(ranked.size());
        for (const auto& [path, declarations] : ranked) {
            if (!declarations.empty()) {
                files_.push_back({&path, &declarations});
            }
        }
    }

    [[nodiscard]] std::int64_t file_count() const { return static_cast<std::int64_t>(files_.size()); }

    // Gives each file its best `floor_each` declarations, as long as the budget lasts.
    void give_floors(std::int64_t floor_each) {
        std::vector<Candidate> best;
        for (File& file : files_) {
            best.push_back(candidate_at(file, 0));
        }
        std::sort(best.begin(), best.end(), by_rank);
        for (const Candidate& candidate : best) {
            File& file = *candidate.file;
            file.taken = std::min({floor_each, file.count(), budget_});
            budget_ -= file.taken;
        }
    }

    // Shares the rest of the budget out by rank, no file growing beyond `limit`. Each file's declarations stand best
    // first, so the next to go is the best among the next ones of the files.
    void share_out(std::int64_t limit) {
        const auto is_worse = [](const Candidate& one, const Candidate& other) { return by_rank(other, one); };
        std::priority_queue<Candidate, std::vector<Candidate>, decltype(is_worse)> next(is_worse);
        const auto offer_next = [&](File& file) {
            if (file.taken < std::min(limit, file.count())) {
                next.push(candidate_at(file, file.taken));
            }
        };
        for (File& file : files_) {
            offer_next(file);
        }
        for (; budget_ > 0 && !next.empty(); --budget_) {
            File& file = *next.top().file;
            next.pop();
            ++file.taken;
            offer_next(file);
        }
    }

    [[nodiscard]] std::vector<const ScopeSymbol*> interleaved() {
        std::vector<Candidate> picked;
        for (File& file : files_) {
            for (std::int64_t index = 0; index < file.taken; ++index) {
                picked.push_back(candidate_at(file, index));
            }
        }
        std::sort(picked.begin(), picked.end(), by_index_then_rank);
        std::vector<const ScopeSymbol*> symbols;
        symbols.reserve(picked.size());
        for (const Candidate& candidate : picked) {
            symbols.push_back(symbol_of(candidate));
        }
        return symbols;
    }

  private:
    static const ScopeSymbol* symbol_of(const Candidate& candidate) {
        return (*candidate.file->declarations)[static_cast<std::size_t>(candidate.index)];
    }

    [[nodiscard]] Candidate candidate_at(File& file, std::int64_t index) const {
        Candidate candidate{{}, &file, index};
        candidate.key = rank_key(*symbol_of(candidate), fan_in_);
        return candidate;
    }

    std::vector<File> files_;
    const FanIn& fan_in_;
    std::int64_t budget_;
};

}  // namespace

std::vector<const ScopeSymbol*> select_with_quota(const RankedFiles& ranked, const FanIn& fan_in, std::int64_t total,
                                                  std::int64_t floor, double max_share) {
    Selection selection(ranked, fan_in, total);
    if (selection.file_count() == 0 || total <= 0) {
        return {};
    }
    const std::int64_t floor_each = std::max<std::int64_t>(1, std::min(floor, total / selection.file_count()));
    const std::int64_t cap = std::max(floor_each, share_of(total, max_share));
    selection.give_floors(floor_each);
    selection.share_out(cap);
    selection.share_out(total);
    return selection.interleaved();
}

std::vector<Text> pick_spread(std::span<const NamedPath> scored, std::int64_t limit, std::int64_t per_file) {
    std::vector<Text> picked;
    Counter<Text> of_path;
    for (const auto& [name, path] : scored) {
        if (std::cmp_greater_equal(picked.size(), limit)) {
            break;
        }
        if (of_path[path] < per_file) {
            picked.push_back(name);
            of_path.add(path, 1);
        }
    }
    return picked;
}

}  // namespace wiki::scope
