#include "host/text/control_characters.h"

#include <algorithm>

namespace host {

namespace {

bool is_between(unsigned char byte, unsigned char first, unsigned char last) {
    return first <= byte && byte <= last;
}

}  // namespace

std::size_t control_character_bytes(std::string_view text) {
    const auto byte = [text](std::size_t place) {
        return static_cast<unsigned char>(place < text.size() ? text[place] : ' ');
    };
    if (byte(0) < 0x20 || byte(0) == 0x7F) {
        return 1;
    }
    if (byte(0) == 0xC2 && is_between(byte(1), 0x80, 0x9F)) {
        return 2;
    }
    const bool separates_or_turns = byte(1) == 0x80 && is_between(byte(2), 0xA8, 0xAE);
    const bool isolates = byte(1) == 0x81 && is_between(byte(2), 0xA6, 0xA9);
    return byte(0) == 0xE2 && (separates_or_turns || isolates) ? 3 : 0;
}

bool has_control_character(std::string_view text) {
    for (std::size_t place = 0; place < text.size(); ++place) {
        if (control_character_bytes(text.substr(place)) > 0) {
            return true;
        }
    }
    return false;
}

std::string without_control_characters(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        const std::size_t bytes = control_character_bytes(text);
        shown += bytes > 0 ? REPLACEMENT_CHARACTER : text.substr(0, 1);
        text.remove_prefix(std::max<std::size_t>(bytes, 1));
    }
    return shown;
}

std::string lines_without_control_characters(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        const std::string_view run = text.substr(0, text.find_first_of("\t\n"));
        text.remove_prefix(run.size());
        const bool ends_in_return = run.ends_with('\r') && text.starts_with('\n');
        shown += without_control_characters(run.substr(0, run.size() - (ends_in_return ? 1 : 0)));
        shown += text.substr(0, 1);
        text.remove_prefix(std::min<std::size_t>(text.size(), 1));
    }
    return shown;
}

}  // namespace host
