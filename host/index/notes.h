// The notes of an index: texts by key, about the index as a whole. A file keeps them in its table `meta`, a server in
// its table `notes`.
#pragma once

#include <string_view>

namespace host::notes {

inline constexpr std::string_view CHECKOUT = "checkout";  ///< the folder that sources were read from; may be empty
/// The hash of the commit that was checked out there when the import wrote the index; none where there was none.
inline constexpr std::string_view COMMIT = "commit";
inline constexpr std::string_view TEST_RULES = "test_rules";  ///< what is a test (rules/path_rules.h)
/// What several files say that they are for, which is of none of them (summary/shared_summaries.h).
inline constexpr std::string_view SHARED_SUMMARIES = "shared_summaries";
/// Paths of files that do not parse as a whole, each ended by "\n".
inline constexpr std::string_view DAMAGED = "damaged";
inline constexpr std::string_view REPORT = "report";  ///< what the import made (indexing/report_json.h)

}  // namespace host::notes
