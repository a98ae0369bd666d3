// The option that makes citations links, and the commit that these name.
#pragma once

#include "host/command/index_option.h"

#include <string>

namespace host {

/// Adds "--source-url URL", which refuses what is no `SourceUrl`.
void add_source_url_option(CLI::App& command, std::string& url);

/// Returns the commit that is checked out, for the index of a checkout; the empty string for any other one, which notes
/// its commit itself. Throws what `git::checked_out_commit` throws.
std::string commit_of_checkout(const IndexOption& index);

}  // namespace host
