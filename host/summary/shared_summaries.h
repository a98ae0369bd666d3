// Summaries that many files share, and that therefore describe none of them.
#pragma once

#include <functional>
#include <set>
#include <span>
#include <string>
#include <string_view>

namespace host {

/// Returns the summaries that more than three files have, in alphabetical order, each ended by "\n". `summaries` holds
/// one for each file; empty ones do not count. Returns at most 500, those of the most files.
std::string shared_summaries(std::span<const std::string> summaries);

/// While an object of this class lives, `wiki::file_summary` on this thread returns no summary that is among its texts.
/// Objects nest; only the innermost one applies.
class SharedSummariesInForce {
  public:
    /// `texts` is a result of `shared_summaries`.
    explicit SharedSummariesInForce(std::string_view texts);
    ~SharedSummariesInForce();
    SharedSummariesInForce(const SharedSummariesInForce&) = delete;
    SharedSummariesInForce& operator=(const SharedSummariesInForce&) = delete;

    /// Returns whether a summary is among the texts.
    [[nodiscard]] bool contain(std::string_view summary) const { return texts_.contains(summary); }

  private:
    std::set<std::string, std::less<>> texts_;
    const SharedSummariesInForce* outer_;
};

/// Returns whether a summary is among the texts in force on this thread.
bool is_shared_summary(std::string_view summary);

}  // namespace host
