/// @file
/// Which slot of the virtual table an operation has, in the Itanium C++ ABI.
#pragma once

#include <cstddef>
#include <cstring>

namespace koine::test {

inline constexpr int kNotVirtual = -1;

/// The slot that a pointer to a member function calls, counted in the table of the class that it is of.
template <typename Class, typename Result, typename... Arguments>
int slotOf(Result (Class::*operation)(Arguments...)) {
    struct {
        std::ptrdiff_t function;
        std::ptrdiff_t adjustment;
    } parts;
    static_assert(sizeof parts == sizeof operation, "not this ABI");
    std::memcpy(&parts, &operation, sizeof parts);
#if defined(__arm__) || defined(__aarch64__)
    const bool isVirtual = (parts.adjustment & 1) != 0;
    const std::ptrdiff_t offset = parts.function;
#else
    const bool isVirtual = (parts.function & 1) != 0;
    const std::ptrdiff_t offset = parts.function - 1;
#endif
    return isVirtual ? static_cast<int>(offset / static_cast<std::ptrdiff_t>(sizeof(void*))) : kNotVirtual;
}

template <typename Class, typename Result, typename... Arguments>
int slotOf(Result (Class::*operation)(Arguments...) const) {
    return slotOf(reinterpret_cast<Result (Class::*)(Arguments...)>(operation));
}

/// An entry of an object's virtual table; the object begins with the pointer to it.
inline void* tableEntry(const void* object, int slot) {
    void* const* table = nullptr;
    std::memcpy(&table, object, sizeof table);
    return table[slot];
}

} // namespace koine::test
