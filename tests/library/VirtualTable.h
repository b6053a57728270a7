#pragma once

#include <cstddef>
#include <cstring>
#include <vector>

/// Looks into an object's virtual table as the Itanium C++ ABI lays it out: callers on the phone were compiled against
/// fixed slots. A virtual destructor takes two slots, the complete one and the deleting one.

/// Returns the entries of the first `count` slots. `object` may be any base part that has a table of its own.
inline std::vector<const void*> slotsOf(const void* object, std::size_t count) {
    const void* const* table = nullptr;
    std::memcpy(&table, object, sizeof table);
    std::vector<const void*> slots;
    for (std::size_t index = 0; index < count; ++index) {
        slots.push_back(table[index]);
    }
    return slots;
}

/// Returns the slots in which the two tables differ.
inline std::vector<std::size_t> changedSlots(const void* first, const void* second, std::size_t count) {
    const std::vector<const void*> slots = slotsOf(first, count);
    const std::vector<const void*> others = slotsOf(second, count);
    std::vector<std::size_t> changed;
    for (std::size_t index = 0; index < count; ++index) {
        if (slots[index] != others[index]) {
            changed.push_back(index);
        }
    }
    return changed;
}

/// Returns the slot that a pointer to a virtual member function calls through.
template <class Function>
std::size_t slotOf(Function function) {
    struct {
        std::ptrdiff_t pointer;
        std::ptrdiff_t adjustment;
    } parts;
    static_assert(sizeof parts == sizeof function, "a pointer to a member function has two parts");
    std::memcpy(&parts, &function, sizeof parts);
#if defined(__arm__) || defined(__aarch64__)
    const bool isVirtual = (parts.adjustment & 1) != 0;
    const std::ptrdiff_t offset = parts.pointer;
#else
    const bool isVirtual = (parts.pointer & 1) != 0;
    const std::ptrdiff_t offset = parts.pointer - 1;
#endif
    return isVirtual ? static_cast<std::size_t>(offset) / sizeof(void*) : static_cast<std::size_t>(-1);
}

/// The slot of the comparison with an `Other`, as `Object` declares or inherits it.
template <class Object, class Other>
std::size_t slotOfEquality() {
    return slotOf(static_cast<bool (Object::*)(const Other&) const>(&Object::operator==));
}
