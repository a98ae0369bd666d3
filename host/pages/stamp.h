// The stamp of a wiki's file: what tells that the file is one, what it states, and whether somebody has changed it.
//
//     wiki-scope page 9f3c1d6a0b52e847 41d0c7aa913e5f02
//
// The first number is the digest of the facts, the second that of the whole text, with zeros in its own place.
#pragma once

#include <string>
#include <string_view>

namespace host::pages {

/// Returns a stamp without the digest of a text, which `sealed` puts in.
std::string open_stamp(std::string_view digest_of_facts);

/// Returns the text with the digest in its stamp, which is the first one in it.
std::string sealed(std::string text);

/// Returns whether a text has a stamp, and is as it was sealed.
bool is_as_sealed(std::string_view text);

}  // namespace host::pages
