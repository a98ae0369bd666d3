// Rules about texts, asked once for each text instead of once for each reference.
#pragma once

#include "models/text.h"

#include <array>
#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

namespace wiki::scope {

/// A rule about texts that remembers its last few verdicts, by the identity of the texts. A page has a million
/// references but few distinct kinds and resolutions, and the references of one file mostly stand together, so the
/// rule itself is seldom asked. The texts must outlive this object.
template <class Rule>
class Remembered {
  public:
    using Verdict = std::invoke_result_t<Rule&, const models::Text&>;

    explicit Remembered(Rule rule) : rule_(std::move(rule)) {}

    Verdict operator()(const models::Text& text) {
        Memory& memory = memories_[place_of(text.identity())];
        if (memory.identity != text.identity()) {
            memory = {text.identity(), rule_(text)};
        }
        return memory.verdict;
    }

  private:
    static constexpr char NO_TEXT = 0;  // its address is the identity of no text; that of an empty one is null

    struct Memory {
        const void* identity = &NO_TEXT;
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

}  // namespace wiki::scope
