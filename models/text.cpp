#include "models/text.h"

#include <cstring>
#include <limits>
#include <new>
#include <ostream>
#include <stdexcept>

namespace models {

Text::Buffer* Text::make_buffer(std::string_view characters) {
    if (characters.empty()) {
        return nullptr;
    }
    if (characters.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw std::length_error("a text holds fewer than 2^32 characters");
    }
    void* memory = ::operator new(sizeof(Buffer) + characters.size());
    char* copy = static_cast<char*>(memory) + sizeof(Buffer);
    std::memcpy(copy, characters.data(), characters.size());
    return new (memory) Buffer{1, copy, static_cast<std::uint32_t>(characters.size()), hash_of(characters)};
}

void Text::destroy(Buffer* buffer) noexcept {
    buffer->~Buffer();
    ::operator delete(buffer);
}

std::ostream& operator<<(std::ostream& out, const Text& text) {
    return out << text.view();
}

}  // namespace models
