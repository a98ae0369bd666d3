// Where the tests find what they use. What depends on the checkout stands in this one, so that all others compile the
// same in each.
#pragma once

#include <string>

namespace host {

/// That line of shell, in which the command under test is wiki-scope.
std::string finding_command(const std::string& line);

/// The folder of the pages that tests expect.
std::string expected_pages();

}  // namespace host
