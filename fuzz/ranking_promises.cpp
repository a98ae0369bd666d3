#include "fixtures/plain_selection.h"
#include "fuzz/page_promises.h"
#include "fuzz/promise.h"
#include "workers/wiki/scope/fan_in.h"
#include "workers/wiki/scope/selection.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace fuzz {

namespace {

using namespace wiki::scope;

using Declarations = std::vector<const ScopeSymbol*>;

void check_ranked_files(const ScopeFacts& facts, const FanIn& fan_in, const RankedFiles& ranked) {
    std::size_t count = 0;
    const ScopeSymbol* first_of_file_before = nullptr;
    for (const RankedFiles::Entry& file : ranked) {
        const Declarations& declarations = file.value;
        // The records lie in one array, so their addresses tell their order in it.
        const ScopeSymbol* const first = *std::ranges::min_element(declarations);
        promise(first_of_file_before == nullptr || first_of_file_before < first,
                "the files stand in the order of their first declarations");
        first_of_file_before = first;
        count += declarations.size();
        promise(std::ranges::all_of(declarations, [&](auto* each) { return each->path == file.key; }),
                "a declaration is ranked among those of its file");
        const auto is_before = [&](const ScopeSymbol* left, const ScopeSymbol* right) {
            const auto order = rank_key(*left, fan_in) <=> rank_key(*right, fan_in);
            return std::is_lt(order) || (std::is_eq(order) && left < right);
        };
        promise(std::ranges::adjacent_find(declarations, std::not_fn(is_before)) == declarations.end(),
                "the declarations of a file stand by rank, each once");
    }
    promise(count == facts.symbols.size(), "every declaration is ranked");
}

void check_seeds(const ScopeFacts& facts, const FanIn& fan_in, const RankedFiles& ranked) {
    OrderedMap<Text, LineRange> expected;
    for (const auto& [path, declarations] : ranked) {
        for (const ScopeSymbol* declaration : declarations) {
            if (declaration->start_line >= 1 && !expected.contains(path)) {
                expected[path] = {declaration->start_line, std::max(declaration->start_line, declaration->end_line)};
            }
        }
    }
    for (const ScopeFile& file : facts.files) {
        if (const std::int64_t lines = facts.line_counts.get(file.path, 0);
            lines > 0 && !expected.contains(file.path)) {
            expected[file.path] = {1, lines};
        }
    }
    promise(file_seeds(facts, fan_in) == expected, "the seed is the best declaration on a line, or the file");
}

void check_selection(const FanIn& fan_in, const RankedFiles& ranked, const Numbers& numbers) {
    const auto select = [&](const RankedFiles& files) {
        return select_with_quota(files, fan_in, numbers.total, numbers.floor, numbers.max_share);
    };
    const Declarations selected = select(ranked);
    promise(selected == plain_selection(ranked, fan_in, numbers.total, numbers.floor, numbers.max_share),
            "the selection is that of the plain rules");

    RankedFiles backwards;
    for (auto file = ranked.end(); file != ranked.begin();) {
        --file;
        backwards[file->key] = file->value;
    }
    promise(select(backwards) == selected, "the selection does not depend on the order of the files");
}

// Names each declaration by its place, so that what is picked can be told apart.
void check_spread(const ScopeFacts& facts, const Numbers& numbers) {
    std::vector<NamedPath> scored;
    std::map<Text, std::int64_t> available;
    for (const ScopeSymbol& symbol : facts.symbols) {
        scored.push_back({std::to_string(scored.size()), symbol.path});
        ++available[symbol.path];
    }
    std::int64_t most = 0;
    for (const auto& [path, count] : available) {
        most += std::clamp<std::int64_t>(numbers.per_file, 0, count);
    }
    const std::vector<Text> picked = pick_spread(scored, numbers.limit, numbers.per_file);
    promise(std::cmp_equal(picked.size(), std::clamp<std::int64_t>(numbers.limit, 0, most)),
            "as many names are picked as the limits allow");
    std::map<Text, std::int64_t> taken;
    std::size_t next = 0;
    for (const Text& name : picked) {
        const std::size_t place = std::stoul(std::string(name));
        promise(place >= next, "the names are picked in their order");
        next = place + 1;
        promise(++taken[scored[place].path] <= numbers.per_file, "no file gives more names than its limit");
    }
}

}  // namespace

void check_ranking(const ScopeFacts& facts, const Numbers& numbers) {
    const FanIn fan_in = production_fan_in(facts);
    const RankedFiles ranked = ranked_by_file(facts, fan_in);
    check_ranked_files(facts, fan_in, ranked);
    check_seeds(facts, fan_in, ranked);
    check_selection(fan_in, ranked, numbers);
    check_spread(facts, numbers);
}

}  // namespace fuzz
