// What several promises count with, as plainly as it can be written.
#pragma once

#include "utils/saturating.h"
#include "workers/wiki/scope/facts.h"
#include "workers/wiki/scope/kinds.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace fuzz {

/// A list of keys with their counts, searched from the front.
template <class Key>
class PlainCounter {
  public:
    void add(const Key& key, std::int64_t amount) {
        auto known = std::ranges::find(counts_, key, &std::pair<Key, std::int64_t>::first);
        if (known == counts_.end()) {
            known = counts_.insert(known, {key, 0});
        }
        known->second = utils::saturating_sum(known->second, amount);
    }

    [[nodiscard]] bool equals(const wiki::scope::OrderedMap<Key, std::int64_t>& counter) const {
        return std::ranges::equal(counts_, counter, [](const auto& plain, const auto& entry) {
            return plain.first == entry.key && plain.second == entry.value;
        });
    }

    [[nodiscard]] const auto& counts() const { return counts_; }

  private:
    std::vector<std::pair<Key, std::int64_t>> counts_;
};

/// Whether the page has the file.
inline bool is_of_page(const wiki::scope::Text& path, const wiki::scope::ScopeFacts& facts) {
    return std::ranges::find(facts.files, path, &wiki::scope::ScopeFile::path) != facts.files.end();
}

/// Whether a declaration lies within a type.
inline bool is_in_type(const wiki::scope::ScopeSymbol& symbol, const wiki::scope::ScopeFacts& facts) {
    return std::ranges::any_of(facts.symbols, [&](const wiki::scope::ScopeSymbol& type) {
        return wiki::scope::TYPE_KINDS.contains(type.kind) && type.path == symbol.path && type.id != symbol.id &&
               type.start_line <= symbol.start_line && type.end_line >= symbol.end_line;
    });
}

}  // namespace fuzz
