#include "host/paths/nearest_path.h"

#include "host/text/ascii.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <tuple>
#include <vector>

namespace host {

namespace {

std::string_view name_of(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

// How many segments at the end two paths have in common.
std::ptrdiff_t common_segments(std::string_view left, std::string_view right) {
    const auto [left_rest, right_rest] = std::mismatch(left.rbegin(), left.rend(), right.rbegin(), right.rend());
    const bool is_whole =
        (left_rest == left.rend() || *left_rest == '/') && (right_rest == right.rend() || *right_rest == '/');
    return std::count(left.rbegin(), left_rest, '/') + (is_whole ? 1 : 0);
}

// The Damerau-Levenshtein distance of two texts, no character being edited twice; `limit + 1` when it is larger.
std::size_t edits_between(std::string_view left, std::string_view right, std::size_t limit) {
    const std::size_t too_many = limit + 1;
    if (std::max(left.size(), right.size()) - std::min(left.size(), right.size()) > limit) {
        return too_many;
    }
    const auto known = static_cast<std::size_t>(std::ranges::mismatch(left, right).in1 - left.begin());
    left.remove_prefix(known);
    right.remove_prefix(known);
    // row[j]: the edits that make the first j characters of `right` of the first i of `left`. Only cells near the
    // diagonal can be within the limit, so that no others are filled.
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    std::vector<std::size_t> above(row.size(), too_many);
    std::vector<std::size_t> two_above(row.size(), too_many);
    for (std::size_t i = 1; i <= left.size(); ++i) {
        two_above.swap(above);
        above.swap(row);
        const std::size_t first = i > limit ? i - limit : 1;
        const std::size_t last = std::min(i + limit, right.size());
        row[first - 1] = first == 1 ? i : too_many;
        std::size_t fewest = row[first - 1];
        for (std::size_t j = first; j <= last; ++j) {
            const std::size_t replaced = above[j - 1] + (left[i - 1] == right[j - 1] ? 0 : 1);
            row[j] = std::min({replaced, above[j] + 1, row[j - 1] + 1});
            if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1]) {
                row[j] = std::min(row[j], two_above[j - 2] + 1);
            }
            fewest = std::min(fewest, row[j]);
        }
        if (fewest > limit) {
            return too_many;
        }
    }
    return std::min(row[right.size()], too_many);
}

// How near a path is to the one that was named, the smaller the nearer: whether it has another name, the edits, minus
// the segments in common, the path.
using Nearness = std::tuple<bool, std::size_t, std::ptrdiff_t, std::string_view>;

}  // namespace

std::optional<std::string> nearest_path(std::string_view named, std::span<const std::string> paths) {
    constexpr std::size_t MOST_EDITS = 8;
    const std::string wanted = lowered(named);
    const std::size_t limit = std::min(name_of(wanted).size() / 3, MOST_EDITS);
    std::optional<Nearness> nearest;
    for (const std::string& path : paths) {
        const std::string candidate = lowered(path);
        const std::ptrdiff_t common = common_segments(wanted, candidate);
        const std::size_t edits = edits_between(wanted, candidate, limit);
        const Nearness nearness{common == 0, edits, -common, path};
        if ((common > 0 || edits <= limit) && (!nearest || nearness < *nearest)) {
            nearest = nearness;
        }
    }
    return nearest ? std::optional(std::string(std::get<std::string_view>(*nearest))) : std::nullopt;
}

}  // namespace host
