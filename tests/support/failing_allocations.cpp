// Replaces the allocation functions of a test program. The C functions are caught where our objects are
// linked (--wrap), so that a sanitizer's own ones stay underneath; `operator new` is replaced as a whole,
// because the C++ library calls it from inside as well.
#include "failing_allocations.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

using koine::test::FailAllocations;

struct State {
    bool armed = false;
    bool stayOut = false;
    bool onlyTexts = false;
    bool failed = false;
    unsigned int left = 0;
    unsigned int spared = 0;
};

thread_local State t_state;

std::atomic<std::ptrdiff_t> g_live{0};

template <typename Text>
Text* counted(Text* memory) noexcept {
    if (memory != nullptr)
        g_live.fetch_add(1, std::memory_order_relaxed);
    return memory;
}

bool fails(bool isText) noexcept {
    State& state = t_state;
    if (!state.armed || state.spared > 0 || (state.onlyTexts && !isText))
        return false;
    if (state.left > 0)
        --state.left;
    if (state.left > 0 || (state.failed && !state.stayOut))
        return false;
    state.failed = true;
    return true;
}

} // namespace

namespace koine::test {

FailAllocations::FailAllocations(unsigned int n, Then then, Which which) noexcept {
    t_state.stayOut = then == Then::stayOut;
    t_state.onlyTexts = which == Which::texts;
    t_state.failed = false;
    t_state.left = n;
    t_state.armed = n > 0;
}

FailAllocations::~FailAllocations() { stop(); }

bool FailAllocations::stop() noexcept {
    if (running_) {
        t_state.armed = false;
        failed_ = t_state.failed;
        running_ = false;
    }
    return failed_;
}

std::ptrdiff_t liveAllocations() noexcept { return g_live.load(std::memory_order_relaxed); }

SpareAllocations::SpareAllocations() noexcept { ++t_state.spared; }
SpareAllocations::~SpareAllocations() { --t_state.spared; }

} // namespace koine::test

extern "C" {

// The linker's names.
// NOLINTBEGIN(bugprone-reserved-identifier)
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* memory, std::size_t size);
char* __real_strdup(const char* text);
void __real_free(void* memory);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* memory, std::size_t size);
char* __wrap_strdup(const char* text);
void __wrap_free(void* memory);

void* __wrap_malloc(std::size_t size) { return fails(true) ? nullptr : counted(__real_malloc(size)); }
void* __wrap_calloc(std::size_t count, std::size_t size) {
    return fails(true) ? nullptr : counted(__real_calloc(count, size));
}
void* __wrap_realloc(void* memory, std::size_t size) {
    if (fails(true))
        return nullptr;
    void* const larger = __real_realloc(memory, size);
    return memory == nullptr ? counted(larger) : larger;
}
char* __wrap_strdup(const char* text) { return fails(true) ? nullptr : counted(__real_strdup(text)); }
void __wrap_free(void* memory) {
    if (memory != nullptr)
        g_live.fetch_sub(1, std::memory_order_relaxed);
    __real_free(memory);
}
// NOLINTEND(bugprone-reserved-identifier)

} // extern "C"

namespace {

void* allocate(std::size_t size) noexcept {
    return fails(false) ? nullptr : counted(__real_malloc(size == 0 ? 1 : size));
}

} // namespace

void* operator new(std::size_t size) {
    if (void* const memory = allocate(size))
        return memory;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept { return allocate(size); }
void operator delete(void* memory) noexcept { __wrap_free(memory); }
void operator delete[](void* memory) noexcept { __wrap_free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { __wrap_free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { __wrap_free(memory); }
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept { __wrap_free(memory); }
void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept { __wrap_free(memory); }
