#include "host/index/edges.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <tuple>
#include <vector>

namespace host {

namespace {

auto by_target(const EdgeRow& edge) {
    return std::tie(edge.target, edge.source, edge.resolution, edge.references, edge.first_line);
}

// Deals edges out to piles, which are laid one behind the other. In each pile they keep their order.
template <class From, class To, class PileOf>
void deal(const From& from, To& to, std::size_t piles, PileOf pile_of) {
    std::vector<std::size_t> places(piles + 1);  // of the next edge of each pile
    for (const EdgeRow& edge : from) {
        ++places[pile_of(edge) + 1];
    }
    std::partial_sum(places.begin(), places.end(), places.begin());
    for (const EdgeRow& edge : from) {
        to[places[pile_of(edge)]++] = edge;
    }
}

std::uint64_t distance(RowId from, RowId to) {
    return static_cast<std::uint64_t>(to) - static_cast<std::uint64_t>(from);
}

// Sorts by source as a radix sort does, by the lower half of the bits and then by the upper one. Dealt out at once, to as
// many piles as there are sources, each edge would touch another page of memory.
void deal_to_sources(Edges& edges, RowId first, std::uint64_t span) {
    const auto bits = static_cast<unsigned>(std::bit_width(span));
    const std::size_t lower_piles = std::size_t{1} << (bits / 2);
    const std::size_t upper_piles = span / lower_piles + 1;
    const auto offset = [first](const EdgeRow& edge) { return distance(first, edge.source); };
    std::vector<EdgeRow> dealt(edges.size());
    deal(edges, dealt, lower_piles, [&](const EdgeRow& edge) { return offset(edge) % lower_piles; });
    deal(dealt, edges, upper_piles, [&](const EdgeRow& edge) { return offset(edge) / lower_piles; });
}

}  // namespace

void sort_edges(Edges& edges) {
    if (std::ranges::is_sorted(edges)) {
        return;
    }
    const auto [first, last] = std::ranges::minmax(edges, {}, &EdgeRow::source);
    const std::uint64_t span = distance(first.source, last.source);
    const bool are_close = span / edges.size() < edges.size();  // so that there are no more piles than edges
    if (are_close && std::ranges::is_sorted(edges, {}, by_target)) {
        deal_to_sources(edges, first.source, span);
    } else {
        std::ranges::sort(edges);
    }
}

}  // namespace host
