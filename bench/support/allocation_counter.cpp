#include "support/allocation_counter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<long long> gAllocations{0};

// Out of line, so that the compiler does not pair a visible malloc with a visible delete.
[[gnu::noinline]] void* allocate(std::size_t n) {
    gAllocations.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(n == 0 ? 1 : n)) return p;
    throw std::bad_alloc();
}
[[gnu::noinline]] void release(void* p) noexcept {
    std::free(p);
}
}  // namespace

namespace kova::bench {
long long AllocationCount() {
    return gAllocations.load(std::memory_order_relaxed);
}
}  // namespace kova::bench

void* operator new(std::size_t n) {
    return allocate(n);
}
void* operator new[](std::size_t n) {
    return allocate(n);
}
void operator delete(void* p) noexcept {
    release(p);
}
void operator delete[](void* p) noexcept {
    release(p);
}
void operator delete(void* p, std::size_t) noexcept {
    release(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    release(p);
}
