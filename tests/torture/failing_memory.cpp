// Replaces `new` for the whole program, and by the linker's --wrap the C library's functions for everything
// that is linked into it.
#include "failing_memory.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

thread_local std::size_t untilFailure = 0; // 0: none fails
thread_local bool staysShort = false;
thread_local bool failed = false;
std::atomic<std::ptrdiff_t> live{0};

bool mayAllocate() {
    if (untilFailure == 0)
        return true;
    if (untilFailure > 1) {
        --untilFailure;
        return true;
    }
    if (!staysShort)
        untilFailure = 0;
    failed = true;
    errno = ENOMEM;
    return false;
}

void* counted(void* memory) {
    if (memory != nullptr)
        live.fetch_add(1, std::memory_order_relaxed);
    return memory;
}

} // namespace

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* memory, std::size_t size);
void __real_free(void* memory);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* memory, std::size_t size);
char* __wrap_strdup(const char* text);
void __wrap_free(void* memory);

void* __wrap_malloc(std::size_t size) { return mayAllocate() ? counted(__real_malloc(size)) : nullptr; }

void* __wrap_calloc(std::size_t count, std::size_t size) {
    return mayAllocate() ? counted(__real_calloc(count, size)) : nullptr;
}

void* __wrap_realloc(void* memory, std::size_t size) {
    if (!mayAllocate())
        return nullptr;
    void* const larger = __real_realloc(memory, size);
    return memory == nullptr ? counted(larger) : larger;
}

char* __wrap_strdup(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    void* const copy = __wrap_malloc(size);
    return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

void __wrap_free(void* memory) {
    if (memory != nullptr)
        live.fetch_sub(1, std::memory_order_relaxed);
    __real_free(memory);
}
}

void* operator new(std::size_t size) {
    if (void* const memory = __wrap_malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return __wrap_malloc(size == 0 ? 1 : size);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return operator new(size, tag); }
void operator delete(void* memory) noexcept { __wrap_free(memory); }
void operator delete[](void* memory) noexcept { __wrap_free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { __wrap_free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { __wrap_free(memory); }
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept { __wrap_free(memory); }
void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept { __wrap_free(memory); }

namespace koine::torture {

FailingMemory::FailingMemory(std::size_t k, Shortage shortage) noexcept {
    failed = false;
    staysShort = shortage == Shortage::fromThen;
    untilFailure = k;
}

FailingMemory::~FailingMemory() { untilFailure = 0; }

bool FailingMemory::hasFailed() const noexcept { return failed; }

std::ptrdiff_t liveAllocations() noexcept { return live.load(std::memory_order_relaxed); }

} // namespace koine::torture
