// Summaries that say nothing of any one file, because many files of an index have them.
#pragma once

#include <functional>
#include <set>
#include <span>
#include <string>
#include <string_view>

namespace host {

/// The texts that more than three of the summaries are, in order, each ended by "\n"; empty texts are none. Of more than
/// 500 those that most files have; the others stay what their files say of themselves.
std::string shared_summaries(std::span<const std::string> summaries);

/// While one lives, `wiki::file_summary` leaves out its texts on this thread. Several live one within the other; the
/// innermost is asked alone.
class SharedSummariesInForce {
  public:
    /// `texts` are as `shared_summaries` gives them.
    explicit SharedSummariesInForce(std::string_view texts);
    ~SharedSummariesInForce();
    SharedSummariesInForce(const SharedSummariesInForce&) = delete;
    SharedSummariesInForce& operator=(const SharedSummariesInForce&) = delete;

    [[nodiscard]] bool contain(std::string_view summary) const { return texts_.contains(summary); }

  private:
    std::set<std::string, std::less<>> texts_;
    const SharedSummariesInForce* before_;
};

/// Whether a summary is among those in force on this thread.
bool is_shared_summary(std::string_view summary);

}  // namespace host
