// What a fuzz target does about a promise that is not kept.
#pragma once

#include <cstdlib>
#include <iostream>
#include <string_view>

namespace fuzz {

/// Ends the program with the text of the promise, unless it is kept.
inline void promise(bool is_kept, std::string_view text) {
    if (!is_kept) {
        std::cerr << "not kept: " << text << '\n';
        std::abort();
    }
}

}  // namespace fuzz
