#include "host/summary/shared_summaries.h"

#include "host/text/split_lines.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>
#include <vector>

namespace host {

namespace {

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): `wiki::file_summary` takes nothing but lines
thread_local const SharedSummariesInForce* shared_in_force = nullptr;

}  // namespace

std::string shared_summaries(std::span<const std::string> summaries) {
    constexpr std::ptrdiff_t FEW = 3;  // files that may have the same text by chance
    constexpr std::size_t MOST = 500;  // texts
    std::map<std::string_view, std::ptrdiff_t> counts;
    for (const std::string& summary : summaries) {
        ++counts[summary];
    }
    counts.erase("");
    std::vector<std::pair<std::ptrdiff_t, std::string_view>> shared;  // by descending number of files, then by text
    for (const auto& [text, count] : counts) {
        if (count > FEW) {
            shared.emplace_back(-count, text);
        }
    }
    std::ranges::sort(shared);
    shared.resize(std::min(shared.size(), MOST));
    std::ranges::sort(shared, {}, &std::pair<std::ptrdiff_t, std::string_view>::second);
    std::string lines;
    for (const auto& [count, text] : shared) {
        lines.append(text).append("\n");
    }
    return lines;
}

SharedSummariesInForce::SharedSummariesInForce(std::string_view texts) : outer_(shared_in_force) {
    for (const std::string_view text : split_lines(texts)) {
        texts_.emplace(text);
    }
    shared_in_force = this;
}

SharedSummariesInForce::~SharedSummariesInForce() {
    shared_in_force = outer_;
}

bool is_shared_summary(std::string_view summary) {
    return shared_in_force != nullptr && shared_in_force->contain(summary);
}

}  // namespace host
