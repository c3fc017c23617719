// Stands before the C library's allocator for the whole program, so that what libcurl and the C++ library
// allocate is seen too.
#include "tests/support/memory_gauge.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include <malloc.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define KOINE_SANITIZED 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define KOINE_SANITIZED 1
#endif

namespace {

struct Account {
    bool open = false;
    std::ptrdiff_t taken = 0;
    std::ptrdiff_t most = 0;
};
thread_local Account t_account;

#ifndef KOINE_SANITIZED
void take(std::ptrdiff_t bytes) noexcept {
    Account& account = t_account;
    if (!account.open)
        return;
    account.taken += bytes;
    account.most = std::max(account.most, account.taken);
}

std::ptrdiff_t sizeOf(void* memory) noexcept {
    return static_cast<std::ptrdiff_t>(::malloc_usable_size(memory));
}

void* taken(void* memory) noexcept {
    take(sizeOf(memory));
    return memory;
}
#endif

} // namespace

namespace koine::test {

#ifdef KOINE_SANITIZED
bool memoryIsMeasured() noexcept { return false; }
#else
bool memoryIsMeasured() noexcept { return true; }
#endif

MemoryGauge::MemoryGauge() noexcept { t_account = {true, 0, 0}; }
MemoryGauge::~MemoryGauge() { t_account.open = false; }
std::size_t MemoryGauge::peak() const noexcept { return static_cast<std::size_t>(t_account.most); }

} // namespace koine::test

#ifndef KOINE_SANITIZED
extern "C" {

// The C library's own names for what is replaced here.
// NOLINTBEGIN(bugprone-reserved-identifier)
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);
// NOLINTEND(bugprone-reserved-identifier)

__attribute__((visibility("default"))) void* malloc(std::size_t size) { return taken(__libc_malloc(size)); }

__attribute__((visibility("default"))) void* calloc(std::size_t count, std::size_t size) {
    return taken(__libc_calloc(count, size));
}

__attribute__((visibility("default"))) void* realloc(void* memory, std::size_t size) {
    const std::ptrdiff_t before = sizeOf(memory);
    void* const larger = __libc_realloc(memory, size);
    if (larger == memory) {
        take(sizeOf(larger) - before);
    } else if (larger != nullptr) {
        taken(larger);
        take(-before);
    }
    return larger;
}

__attribute__((visibility("default"))) void* memalign(std::size_t alignment, std::size_t size) {
    return taken(__libc_memalign(alignment, size));
}

__attribute__((visibility("default"))) void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return taken(__libc_memalign(alignment, size));
}

__attribute__((visibility("default"))) int posix_memalign(void** memory, std::size_t alignment,
                                                          std::size_t size) {
    *memory = taken(__libc_memalign(alignment, size));
    return *memory == nullptr ? ENOMEM : 0;
}

__attribute__((visibility("default"))) void free(void* memory) {
    take(-sizeOf(memory));
    __libc_free(memory);
}

} // extern "C"
#endif
