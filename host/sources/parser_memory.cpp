#include "host/sources/parser_memory.h"

#include <tree_sitter/api.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace host::sources {

namespace {

// Stands before each block. Those of one `ParserMemory` are a ring.
struct alignas(std::max_align_t) Header {
    Header* before;
    Header* behind;
    std::uint64_t mark;   // while the block is in use, `mark_of` its address
    std::ptrdiff_t size;  // with this header
};

// The parser's functions take no context.
thread_local Header* ring = nullptr;           // NOLINT(*-avoid-non-const-global-variables)
thread_local ParserMemory* current = nullptr;  // NOLINT(*-avoid-non-const-global-variables)

// What the header of the block at an address says; by chance no other eight bytes do.
std::uint64_t mark_of(const void* block) {
    constexpr std::uint64_t SECRET = 0x9E37'79B9'7F4A'7C15;
    return reinterpret_cast<std::uintptr_t>(block) ^ SECRET;  // NOLINT(*-reinterpret-cast): it is the address
}

Header* header_of(void* block) {
    return static_cast<Header*>(block) - 1;
}

void count(std::ptrdiff_t bytes) {
    if (current != nullptr) {
        current->count(bytes);
    }
}

void insert(Header* header) {
    count(header->size);
    header->before = header->behind = header;
    if (ring != nullptr) {
        header->before = ring;
        header->behind = ring->behind;
        header->behind->before = header;
        ring->behind = header;
    }
}

void remove(const Header* header) {
    count(-header->size);
    header->before->behind = header->behind;
    header->behind->before = header->before;
}

// The block in memory of so many bytes.
void* as_block(void* memory, std::size_t size) {
    if (memory == nullptr) {
        std::abort();  // the parser could not go on either
    }
    auto* const header = static_cast<Header*>(memory);
    header->size = static_cast<std::ptrdiff_t>(size);
    insert(header);
    header->mark = mark_of(header + 1);
    return header + 1;
}

void* allocate(std::size_t size) {
    size += sizeof(Header);
    return as_block(std::malloc(size), size);  // NOLINT(*-no-malloc)
}

void* allocate_zeros(std::size_t count, std::size_t size) {
    void* const block = allocate(count * size);
    std::memset(block, 0, count * size);
    return block;
}

void* reallocate(void* block, std::size_t size) {
    if (block == nullptr) {
        return allocate(size);
    }
    remove(header_of(block));
    size += sizeof(Header);
    return as_block(std::realloc(header_of(block), size), size);  // NOLINT(*-no-malloc)
}

void release(void* block) {
    if (block != nullptr && header_of(block)->mark == mark_of(block)) {
        header_of(block)->mark = 0;
        remove(header_of(block));
        std::free(header_of(block));  // NOLINT(*-no-malloc)
    }
}

}  // namespace

ParserMemory::ParserMemory(std::ptrdiff_t most, const std::size_t& is_cancelled)
    : most_(most), is_cancelled_(is_cancelled) {
    current = this;
    ring = header_of(allocate(0));
}

ParserMemory::~ParserMemory() {
    current = nullptr;
    for (Header* header = ring->behind; header != ring;) {
        std::free(std::exchange(header, header->behind));  // NOLINT(*-no-malloc)
    }
    std::free(std::exchange(ring, nullptr));  // NOLINT(*-no-malloc)
}

void ParserMemory::count(std::ptrdiff_t bytes) {
    used_ += bytes;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): there is no atomic_ref to what is const
    const std::atomic_ref<std::size_t> is_cancelled(const_cast<std::size_t&>(is_cancelled_));
    if (used_ > most_ || is_cancelled.load(std::memory_order_relaxed) != 0) {
        must_stop_ = 1;
    }
}

void ParserMemory::set_up() {
    static const bool is_set_up = [] {
        ts_set_allocator(allocate, allocate_zeros, reallocate, release);
        return true;
    }();
    static_cast<void>(is_set_up);
}

}  // namespace host::sources
