#include "host/pages/stamp.h"

#include "host/pages/digest.h"

#include <cstddef>

namespace host::pages {

namespace {

constexpr std::string_view BEGINNING = "wiki-scope page ";

// Where the digest of the text stands; npos where there is none.
std::size_t place_of_seal(std::string_view text) {
    const std::size_t stamp = text.find(BEGINNING);
    const std::size_t place = stamp + BEGINNING.size() + DIGEST_SIZE + 1;
    return stamp != std::string_view::npos && place + DIGEST_SIZE <= text.size() ? place : std::string_view::npos;
}

std::string seal_of(std::string text, std::size_t place) {
    text.replace(place, DIGEST_SIZE, DIGEST_SIZE, '0');
    return digest_of(text);
}

}  // namespace

std::string open_stamp(std::string_view digest_of_facts) {
    return std::string(BEGINNING).append(digest_of_facts).append(" ").append(DIGEST_SIZE, '0');
}

std::string sealed(std::string text) {
    const std::size_t place = place_of_seal(text);
    return text.replace(place, DIGEST_SIZE, seal_of(text, place));
}

bool is_as_sealed(std::string_view text) {
    const std::size_t place = place_of_seal(text);
    return place != std::string_view::npos && text.substr(place, DIGEST_SIZE) == seal_of(std::string(text), place);
}

}  // namespace host::pages
