// Replaces the global allocation functions of the session target.
#include "fuzz/memory_shortage.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local unsigned int untilFailure = 0; // 0: none fails

void* allocate(std::size_t size) {
    if (untilFailure > 0 && --untilFailure == 0)
        return nullptr;
    return std::malloc(size == 0 ? 1 : size);
}

} // namespace

namespace koine::fuzz {

MemoryShortage::MemoryShortage(unsigned int n) noexcept { untilFailure = n; }
MemoryShortage::~MemoryShortage() { untilFailure = 0; }

} // namespace koine::fuzz

void* operator new(std::size_t size) {
    if (void* const memory = allocate(size))
        return memory;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept { std::free(memory); }
