// The declarations of an index, by their names.
#pragma once

#include "host/index/database.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// How a name fits what somebody looks for, best first.
enum class NameMatch : std::uint8_t {
    EXACT,   ///< it is that, or is so with the names of what it stands in: `Subject.next`
    PREFIX,  ///< it begins with that
    PART,    ///< it holds that
};

/// "exact", "prefix", "part"
std::string_view name_of(NameMatch match);

/// Lines are 1-based and inclusive.
struct FoundDeclaration {
    NameMatch match = NameMatch::EXACT;
    std::string name;
    std::string fqn;
    std::string kind;
    std::string path;
    std::int64_t first_line = 0;
    std::int64_t last_line = 0;
    std::int64_t uses = 0;  ///< by production code, from wherever: on a page those outside and inside of it together
};

struct FoundDeclarations {
    std::vector<FoundDeclaration> best;  ///< as many as were asked for
    std::int64_t count = 0;              ///< of all that were found
};

/// What is said when nothing is found by a name.
std::string nothing_found(std::string_view name);

/// Finds declarations by name: what fits best first, of that what has the same capitals, then what is used most; then
/// by path and line. Capitals A to Z and small letters count as the same; nothing is found for the empty name. At most
/// `limit` are given. One pass over the names of the index. Throws `IndexError`.
FoundDeclarations find_declarations(storage::Database& db, std::string_view name, std::int64_t limit);

}  // namespace host
