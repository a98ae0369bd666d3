#include "host/sources/parser_memory.h"

#include <tree_sitter/api.h>

#include <sanitizer/asan_interface.h>
#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

namespace host::sources {

namespace {

// Blocks are of so many sizes: multiples of a granule, and powers of two above the last of these.
constexpr std::size_t GRANULE = 16;
constexpr std::size_t SMALL_SIZES = 64;
constexpr std::size_t SIZES = SMALL_SIZES + 40;
constexpr std::size_t LARGEST_SMALL = GRANULE * SMALL_SIZES;

// The number of the smallest size that holds so many bytes.
constexpr std::size_t size_number(std::size_t bytes) {
    return bytes <= LARGEST_SMALL ? (std::max<std::size_t>(bytes, 1) - 1) / GRANULE
                                  : SMALL_SIZES + std::bit_width((bytes - 1) / LARGEST_SMALL) - 1;
}

constexpr std::size_t size_of_number(std::size_t number) {
    return number < SMALL_SIZES ? (number + 1) * GRANULE : LARGEST_SMALL << (number - SMALL_SIZES + 1);
}

// What stands in front of each block. It is as long as what a block is aligned to: the parser keeps nothing that needs
// more than a pointer does.
struct alignas(void*) Header {
    std::uint32_t size_number = 0;
    bool is_of_region = false;
};

Header& header_of(void* block) {
    return *(static_cast<Header*>(block) - 1);
}

void* checked(void* memory) {
    if (memory == nullptr) {
        std::abort();  // the parser could not go on either
    }
    return memory;
}

void* memory_of(std::size_t size) {
    return checked(std::malloc(size));  // NOLINT(*-no-malloc)
}

}  // namespace

// Memory that is carved off from chunks, and is released as a whole.
class ParserMemory::Region {
  public:
    void* allocate(std::size_t number) {
        FreeBlock*& first_free = free_.at(number);
        const std::size_t size = size_of_number(number);
        if (first_free != nullptr) {
            FreeBlock* const block = first_free;
            ASAN_UNPOISON_MEMORY_REGION(block, size);
            first_free = block->next;
            return block;
        }
        auto* const header = new (carve(sizeof(Header) + size)) Header{static_cast<std::uint32_t>(number), true};
        return header + 1;
    }

    void release(void* block) {
        const std::size_t number = header_of(block).size_number;
        FreeBlock*& first_free = free_.at(number);
        first_free = new (block) FreeBlock{first_free};
        ASAN_POISON_MEMORY_REGION(block, size_of_number(number));
    }

    // Releases all, but keeps some chunks, which the next text need not get from the system again.
    void clear() {
        constexpr std::size_t CHUNKS_KEPT = 8;
        free_.fill(nullptr);
        large_.clear();
        chunks_.resize(std::min(chunks_.size(), CHUNKS_KEPT));
        for (const auto& chunk : chunks_) {
            ASAN_POISON_MEMORY_REGION(chunk.get(), CHUNK);
        }
        taken_ = chunk_at_ = at_ = 0;
    }

    [[nodiscard]] std::size_t taken() const { return taken_; }

  private:
    static constexpr std::size_t CHUNK = 2'097'152;  // a large page of the system

    // A block that has been released, while it waits to be taken again.
    struct FreeBlock {
        FreeBlock* next = nullptr;
    };
    struct Freer {
        void operator()(void* memory) const {
            std::free(memory);  // NOLINT(*-no-malloc)
        }
    };
    using Memory = std::unique_ptr<void, Freer>;

    // In one page, so that few addresses have to be translated to walk through a tree, where the system has such pages.
    static Memory new_chunk() {
        Memory chunk(checked(std::aligned_alloc(CHUNK, CHUNK)));  // NOLINT(*-no-malloc)
        madvise(chunk.get(), CHUNK, MADV_HUGEPAGE);
        return chunk;
    }

    void* carve(std::size_t size) {
        taken_ += size;
        if (size > CHUNK / 4) {
            return large_.emplace_back(memory_of(size)).get();
        }
        if (at_ + size > CHUNK) {
            ++chunk_at_;
            at_ = 0;
        }
        if (chunk_at_ == chunks_.size()) {
            chunks_.push_back(new_chunk());
            ASAN_POISON_MEMORY_REGION(chunks_.back().get(), CHUNK);
        }
        void* const begin = static_cast<std::byte*>(chunks_[chunk_at_].get()) + at_;
        ASAN_UNPOISON_MEMORY_REGION(begin, size);
        at_ += size;
        return begin;
    }

    std::array<FreeBlock*, SIZES> free_{};  // by the number of their size
    std::vector<Memory> chunks_;
    std::vector<Memory> large_;
    std::size_t chunk_at_ = 0;  // of which the next block is carved
    std::size_t at_ = 0;        // in that chunk
    std::size_t taken_ = 0;
};

namespace {

// The parser's functions take no context.
thread_local ParserMemory::Region region_of_thread;  // NOLINT(*-avoid-non-const-global-variables)
// While the thread has a ParserMemory.
constinit thread_local ParserMemory::Region* region = nullptr;  // NOLINT(*-avoid-non-const-global-variables)

void* allocate(std::size_t size) {
    if (region != nullptr) {
        return region->allocate(size_number(size));
    }
    auto* const header = new (memory_of(sizeof(Header) + size)) Header;
    return header + 1;
}

void* allocate_zeros(std::size_t count, std::size_t size) {
    return std::memset(allocate(count * size), 0, count * size);
}

void release(void* block) {
    if (block == nullptr) {
        return;
    }
    if (header_of(block).is_of_region) {
        region->release(block);
    } else {
        std::free(&header_of(block));  // NOLINT(*-no-malloc)
    }
}

void* reallocate(void* block, std::size_t size) {
    if (block == nullptr) {
        return allocate(size);
    }
    Header& header = header_of(block);
    if (!header.is_of_region) {
        void* const memory = std::realloc(&header, sizeof(Header) + size);  // NOLINT(*-no-malloc)
        return static_cast<Header*>(checked(memory)) + 1;
    }
    const std::size_t former = size_of_number(header.size_number);
    if (size <= former) {
        return block;
    }
    void* const larger = std::memcpy(region->allocate(size_number(size)), block, former);
    region->release(block);
    return larger;
}

}  // namespace

void provide_parser_memory() {
    static const bool is_provided = [] {
        ts_set_allocator(allocate, allocate_zeros, reallocate, release);
        return true;
    }();
    static_cast<void>(is_provided);
}

ParserMemory::ParserMemory() : region_(region_of_thread) {
    provide_parser_memory();
    region = &region_;
}

ParserMemory::~ParserMemory() {
    region = nullptr;
    region_.clear();
}

std::size_t ParserMemory::size() const {
    return region_.taken();
}

}  // namespace host::sources
