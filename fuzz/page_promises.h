// The promises of the component's functions, as far as they hold for every page. Each function here ends the program
// when one is not kept.
#pragma once

#include "fuzz/decoded_page.h"
#include "workers/wiki/scope/facts.h"

#include <span>
#include <string>

namespace fuzz {

/// The counts are those of the rules, in the order of first use: `production_fan_in`, `file_users`, `neighbours` and
/// `name_match_counts`.
void check_counting(const wiki::scope::ScopeFacts& facts, const Numbers& numbers);

/// The orders, the quotas and the seeds: `ranked_by_file`, `file_seeds`, `select_with_quota` and `pick_spread`.
void check_ranking(const wiki::scope::ScopeFacts& facts, const Numbers& numbers);

/// What the page states: `file_cards` and `consumers` show the first of all that the rules give.
void check_values(const wiki::scope::ScopeFacts& facts, std::span<const std::string> missing);

/// The form of the Markdown: `render_file_cards` and `render_consumers`.
void check_rendering(const wiki::scope::ScopeFacts& facts, std::span<const std::string> missing);

}  // namespace fuzz
