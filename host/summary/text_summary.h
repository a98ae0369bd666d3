// Summarizes a text by the comment at its head.
#pragma once

#include <string>
#include <string_view>

namespace host {

/// Returns what `wiki::file_summary` returns for the lines of a text. Splits off no more of them than it reads.
std::string text_summary(std::string_view text);

}  // namespace host
