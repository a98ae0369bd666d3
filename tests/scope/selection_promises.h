// What every selection of declarations must be, whatever the page and the numbers.
#pragma once

#include "workers/wiki/scope/ranking.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <tuple>

namespace wiki::scope {

/// A selection among `ranked`, to be held against its promises.
class CheckedSelection {
  public:
    CheckedSelection(const RankedFiles& ranked, const FanIn& fan_in, std::int64_t total, std::int64_t floor,
                     double max_share)
        : ranked_(ranked), fan_in_(fan_in), total_(total), files_(static_cast<std::int64_t>(ranked.size())),
          floor_each_(files_ == 0 ? 1 : std::max<std::int64_t>(1, std::min(floor, total / files_))),
          share_(std::max(static_cast<double>(floor_each_), std::ceil(static_cast<double>(total) * max_share))) {}

    /// The first promise of `select_with_quota` that its result breaks; empty when it keeps them all.
    std::string_view broken_promise(std::span<const ScopeSymbol* const> selected) {
        if (static_cast<std::int64_t>(selected.size()) != std::clamp<std::int64_t>(total_, 0, declarations())) {
            return "as many declarations as the total allows";
        }
        if (!takes_from_the_front(selected)) {
            return "the best declarations of each file, every file's first by rank and path, then every second";
        }
        for (const Entry& file : ranked_) {
            if (files_ <= total_ && taken_[file.key] < floor_each_ && has_more(file)) {
                return "the floor of each file";
            }
            if (!selected.empty() && taken_[file.key] > floor_each_ && !deserves_its_last(file)) {
                return "the rest by rank and path, to no file beyond its share while another has some left";
            }
        }
        return {};
    }

  private:
    using Entry = RankedFiles::Entry;

    [[nodiscard]] std::int64_t declarations() const {
        std::int64_t count = 0;
        for (const Entry& file : ranked_) {
            count += static_cast<std::int64_t>(file.value.size());
        }
        return count;
    }

    // Walks the selection, and notes how many declarations each file gives.
    bool takes_from_the_front(std::span<const ScopeSymbol* const> selected) {
        const Entry* before = nullptr;
        std::int64_t level = 0;
        for (const ScopeSymbol* symbol : selected) {
            const Entry& file = *std::find_if(ranked_.begin(), ranked_.end(),
                                              [&](const Entry& each) { return each.key == symbol->path; });
            const std::int64_t index = taken_[file.key];
            if (!has_more(file) || declaration(file, index) != symbol) {
                return false;
            }
            if (before != nullptr && (index < level || (index == level && rank(file, index) < rank(*before, index)))) {
                return false;
            }
            taken_.add(file.key, 1);
            before = &file;
            level = index;
        }
        return true;
    }

    // Whether no other file had the better claim to what this one got last.
    [[nodiscard]] bool deserves_its_last(const Entry& file) const {
        const std::int64_t last = taken_[file.key] - 1;
        return std::all_of(ranked_.begin(), ranked_.end(), [&](const Entry& other) {
            const std::int64_t next = taken_[other.key];
            const bool is_held_back = is_beyond_share(next + 1);
            if (!has_more(other) || (is_held_back && !is_beyond_share(last + 1))) {
                return true;
            }
            return is_held_back == is_beyond_share(last + 1) && rank(file, last) <= rank(other, next);
        });
    }

    [[nodiscard]] bool is_beyond_share(std::int64_t count) const { return static_cast<double>(count) > share_; }
    [[nodiscard]] bool has_more(const Entry& file) const { return std::cmp_less(taken_[file.key], file.value.size()); }

    [[nodiscard]] static const ScopeSymbol* declaration(const Entry& file, std::int64_t index) {
        return file.value[static_cast<std::size_t>(index)];
    }
    [[nodiscard]] std::tuple<RankKey, Text> rank(const Entry& file, std::int64_t index) const {
        return {rank_key(*declaration(file, index), fan_in_), file.key};
    }

    const RankedFiles& ranked_;
    const FanIn& fan_in_;
    std::int64_t total_;
    std::int64_t files_;
    std::int64_t floor_each_;
    double share_;  // of one file, while others have declarations left
    Counter<Text> taken_;
};

}  // namespace wiki::scope
