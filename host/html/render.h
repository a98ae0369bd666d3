// Fills the templates of this room.
#pragma once

#include "host/html/view.h"

#include <iosfwd>
#include <string_view>

namespace host::html {

/// Writes a template filled with a view, to which it adds what all files have: the top with the style sheet, the script
/// and the policy that allows these two alone. The view has the members "title", "stamp" and "extent". Throws
/// `std::logic_error` when the template is faulty.
void render(std::ostream& out, std::string_view text, View view);

}  // namespace host::html
