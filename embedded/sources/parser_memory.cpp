#include "embedded/sources/parser_memory.h"

#include <tree_sitter/api.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace embedded::sources {

namespace {

// Stands before each block, as long as that is in use.
struct alignas(std::max_align_t) Header {
    std::uint64_t mark;
};

// What the header of the block at an address says; by chance no other eight bytes do.
std::uint64_t mark_of(const void* block) {
    constexpr std::uint64_t SECRET = 0x9E37'79B9'7F4A'7C15;
    return reinterpret_cast<std::uintptr_t>(block) ^ SECRET;  // NOLINT(*-reinterpret-cast): it is the address
}

Header* header_of(void* block) {
    return static_cast<Header*>(block) - 1;
}

void* as_block(void* memory) {
    if (memory == nullptr) {
        std::abort();  // the parser could not go on either
    }
    void* const block = static_cast<Header*>(memory) + 1;
    header_of(block)->mark = mark_of(block);
    return block;
}

// NOLINTBEGIN(*-no-malloc): these are what the parser calls so

void* allocate(std::size_t size) {
    return as_block(std::malloc(sizeof(Header) + size));
}

void* allocate_zeros(std::size_t count, std::size_t size) {
    void* const block = allocate(count * size);
    std::memset(block, 0, count * size);
    return block;
}

void* reallocate(void* block, std::size_t size) {
    return block == nullptr ? allocate(size) : as_block(std::realloc(header_of(block), sizeof(Header) + size));
}

void release(void* block) {
    if (block != nullptr && header_of(block)->mark == mark_of(block)) {
        header_of(block)->mark = 0;
        std::free(header_of(block));
    }
}

// NOLINTEND(*-no-malloc)

}  // namespace

void guard_parser_memory() {
    static const bool is_guarded = [] {
        ts_set_allocator(allocate, allocate_zeros, reallocate, release);
        return true;
    }();
    static_cast<void>(is_guarded);
}

}  // namespace embedded::sources
