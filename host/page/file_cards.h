// The table of a page's files.
#pragma once

#include "host/page/page.h"

#include <string>

namespace host {

/// The component's file cards under a heading, in which no path is more than its text: one that holds a bar
/// stays in its cell, and of those that stand beside the row's own what Markdown would interpret is escaped.
std::string file_cards(const Page& page, const std::string& heading = "## Files");

}  // namespace host
