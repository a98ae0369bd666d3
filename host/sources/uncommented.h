// Code without its comments.
#pragma once

#include "host/sources/captures.h"

#include <span>
#include <string>
#include <string_view>

namespace host::sources {

/// The part `whole` of a text without the comments in it, which are in order, and without the lines that hold nothing
/// else. A blank on either side of a comment becomes one.
///
///     const f: {                             const f: {
///       /** Adds. */                           (a: A, b: B): C
///       (a: A, /* second */ b: B): C  // so  }
///     }
std::string without_comments(std::string_view text, Bytes whole, std::span<const Bytes> comments);

}  // namespace host::sources
