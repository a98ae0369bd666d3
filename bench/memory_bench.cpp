// How much memory the facts of the large page take, and how much more the whole pass over them takes at its peak.

#include "bench/functions.h"
#include "bench/generated_page.h"

#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace {

std::size_t in_use = 0;  // bytes, as the allocator rounds them
std::size_t peak = 0;

void* counted_allocation(std::size_t size) {
    void* const memory = std::malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    in_use += malloc_usable_size(memory);
    peak = std::max(peak, in_use);
    return memory;
}

void counted_release(void* memory) {
    in_use -= malloc_usable_size(memory);
    std::free(memory);
}

double megabytes(std::size_t bytes) {
    constexpr double MEGABYTE = 1e6;
    return static_cast<double>(bytes) / MEGABYTE;
}

}  // namespace

void* operator new(std::size_t size) {
    return counted_allocation(size);
}
void operator delete(void* memory) noexcept {
    counted_release(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    counted_release(memory);
}

int main() {
    const std::size_t before = in_use;
    const wiki::scope::ScopeFacts facts = bench::generated_page(bench::LARGE);
    const std::size_t of_facts = in_use - before;
    peak = in_use;
    bench::whole_pass(facts);
    const std::size_t of_pass = peak - before - of_facts;
    std::printf(
        "\nFacts of the large page: %.0f MB. The whole pass takes %.0f MB more at its peak, %.2f times the facts.\n",
        megabytes(of_facts), megabytes(of_pass), static_cast<double>(of_pass) / static_cast<double>(of_facts));
}
