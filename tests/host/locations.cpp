#include "tests/host/locations.h"

namespace host {

std::string finding_command(const std::string& line) {
    return "PATH='" COMMAND_FOLDER "':\"$PATH\"; " + line;
}

std::string expected_pages() {
    return EXPECTED_PAGES;
}

}  // namespace host
