// Changes as Markdown for those who review them.
#pragma once

#include "host/changes/changes.h"

#include <cstddef>
#include <optional>
#include <ostream>

namespace host::changes {

/// Writes a line that counts what has changed, then a section for each kind of change that there is; of equal states
/// nothing at all. Lists of files are cut after twelve. What is longer than `most` bytes is shortened as `fitted`
/// (page/budget.h) does it, and throws what that throws.
void write_markdown(std::ostream& out, const Changes& changes, std::optional<std::size_t> most);

}  // namespace host::changes
