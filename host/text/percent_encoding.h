// The percent-encoding of URIs.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// The text with each "%20" and the like as the byte that it stands for; none where a "%" has no two hexadecimal digits
/// behind it. The bytes may be any, also NUL.
std::optional<std::string> percent_decoded(std::string_view text);

/// The text with "%20" and the like for each byte that a path of a URI cannot hold as it is: all but letters, digits
/// and "-._~/".
std::string percent_encoded(std::string_view text);

}  // namespace host
