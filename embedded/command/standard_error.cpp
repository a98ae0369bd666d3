#include "embedded/command/standard_error.h"

#include "embedded/text/printable.h"

#include <iostream>

namespace embedded {

void say(std::string_view message) {
    // At once: other programs may write to the same file.
    std::cerr << "wiki-scope: " + printable(message) + "\n";
}

}  // namespace embedded
