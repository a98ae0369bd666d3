// Why a page differs from what it was.
#pragma once

#include "host/pages/stated_facts.h"

#include <string>

namespace host::pages {

/// Returns how the facts of a page have changed, on one line, what concerns its reader most first:
///
///     `Session.close` has another signature; 2 users fewer
///
/// What happened to several things is said once, with the first two of them. At most five changes are told, and how
/// many more there are. Of a page with other options only that and its title are told, since what it says then may differ
/// for no other reason. Empty when the facts are equal.
std::string changes_between(const StatedFacts& before, const StatedFacts& after);

}  // namespace host::pages
