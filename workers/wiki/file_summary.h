// What a file says it is for.
//
// A declaration only: whoever links the component defines the function.
#pragma once

#include "utils/language_version.h"

#include <span>
#include <string>

namespace wiki {

/// The summary of a file that consists of `lines` (without their line ends): what the file itself says it is for, on
/// one line; empty when it says nothing.
std::string file_summary(std::span<const std::string> lines);

}  // namespace wiki
