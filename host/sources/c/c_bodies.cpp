#include "host/sources/c/c_bodies.h"

#include <algorithm>
#include <array>

namespace host::sources {

namespace {

// What may stand before the first brace of a function; ";" behind the types of parameters that the list only names.
constexpr auto C_BEFORE_BODIES =
    std::to_array<std::string_view>({")", ";", "const", "final", "noexcept", "override", "try"});

bool may_stand_before_body(std::string_view word) {
    return std::ranges::find(C_BEFORE_BODIES, word) != C_BEFORE_BODIES.end();
}

}  // namespace

std::vector<CBody> bodies_of_functions(std::string_view text, const CTokens& scanned, std::span<const CSplit> splits) {
    std::vector<CBody> bodies;
    std::string_view before;
    std::size_t depth = 0;  // of braces in the body
    for (const CToken& token : scanned.tokens) {
        while (!splits.empty() && splits.front().end <= token.begin) {
            splits = splits.subspan(1);
        }
        if (!splits.empty() && splits.front().begin <= token.begin) {
            continue;
        }
        const std::string_view word = text.substr(token.begin, token.end - token.begin);
        if (depth == 0 && word == "{" && may_stand_before_body(before)) {
            bodies.push_back({.begin = token.end, .end = text.size()});
            depth = 1;
        } else if (depth > 0) {
            depth += word == "{" ? 1 : 0;
            depth -= word == "}" ? 1 : 0;
            bodies.back().end = depth == 0 ? token.begin : text.size();
        }
        before = word;
    }
    return bodies;
}

}  // namespace host::sources
