// The allocation functions of the program and of every library in it, counted on the way to glibc's own.

#include "bench/heap_meter.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <malloc.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* piece, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* piece);
}

namespace koine::bench {
namespace {

constexpr std::int64_t kHeaderBytes = sizeof(std::size_t); // glibc's, in front of each piece

std::atomic<bool> g_counting{false};
std::atomic<std::int64_t> g_allocations{0};
std::atomic<std::int64_t> g_bytes{0};

bool isCounting() { return g_counting.load(std::memory_order_relaxed); }

std::int64_t bytesOf(void* piece) {
    return static_cast<std::int64_t>(malloc_usable_size(piece)) + kHeaderBytes;
}

void* taken(void* piece) {
    if (isCounting() && piece != nullptr) {
        g_allocations.fetch_add(1, std::memory_order_relaxed);
        g_bytes.fetch_add(bytesOf(piece), std::memory_order_relaxed);
    }
    return piece;
}

void given(void* piece) {
    if (isCounting() && piece != nullptr)
        g_bytes.fetch_sub(bytesOf(piece), std::memory_order_relaxed);
}

} // namespace

HeapMeter::HeapMeter() {
    g_allocations = 0;
    g_bytes = 0;
    g_counting = true;
}

HeapUse HeapMeter::stop() {
    g_counting = false;
    return {g_allocations, g_bytes};
}

} // namespace koine::bench

using koine::bench::given;
using koine::bench::taken;

// Visible, so that the libraries find these instead of glibc's.
#pragma GCC visibility push(default)
extern "C" {

void* malloc(std::size_t size) { return taken(__libc_malloc(size)); }

void* calloc(std::size_t count, std::size_t size) { return taken(__libc_calloc(count, size)); }

void* realloc(void* piece, std::size_t size) {
    given(piece);
    void* const moved = __libc_realloc(piece, size);
    if (moved == nullptr && size != 0)
        taken(piece); // it failed, and the piece is still there
    return taken(moved);
}

void* memalign(std::size_t alignment, std::size_t size) { return taken(__libc_memalign(alignment, size)); }

void* aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }

int posix_memalign(void** piece, std::size_t alignment, std::size_t size) {
    *piece = memalign(alignment, size);
    return *piece == nullptr ? ENOMEM : 0;
}

void free(void* piece) {
    given(piece);
    __libc_free(piece);
}

} // extern "C"
#pragma GCC visibility pop
