#include "host/sources/parser_memory.h"

#include <tree_sitter/api.h>

#include <malloc.h>

#include <algorithm>
#include <cstdlib>

namespace host::sources {

namespace {

// The parser's functions take no context.
thread_local std::ptrdiff_t used = 0;  // NOLINT(*-avoid-non-const-global-variables)

std::ptrdiff_t size_of(void* block) {
    return static_cast<std::ptrdiff_t>(malloc_usable_size(block));
}

void* counted(void* block) {
    if (block == nullptr) {
        std::abort();  // the parser could not go on either
    }
    used += size_of(block);
    return block;
}

void* allocate(std::size_t size) {
    return counted(std::malloc(size));  // NOLINT(*-no-malloc)
}

void* allocate_zeros(std::size_t count, std::size_t size) {
    return counted(std::calloc(count, size));  // NOLINT(*-no-malloc)
}

void* reallocate(void* block, std::size_t size) {
    used -= size_of(block);
    // Of no bytes at all, realloc makes no block.
    return counted(std::realloc(block, std::max<std::size_t>(size, 1)));  // NOLINT(*-no-malloc)
}

void release(void* block) {
    used -= size_of(block);
    std::free(block);  // NOLINT(*-no-malloc)
}

}  // namespace

void count_parser_memory() {
    static const bool is_counted = [] {
        ts_set_allocator(allocate, allocate_zeros, reallocate, release);
        return true;
    }();
    static_cast<void>(is_counted);
}

std::ptrdiff_t parser_memory() {
    return used;
}

}  // namespace host::sources
