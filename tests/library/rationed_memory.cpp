#include "library/rationed_memory.hpp"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace vialto::test {

long granted = -1;
bool refused = false;

} // namespace vialto::test

using vialto::test::granted;
using vialto::test::refused;

void* operator new(std::size_t size) {
    if (granted == 0) {
        refused = true;
        throw std::bad_alloc();
    }
    if (granted > 0) {
        --granted;
    }
    if (void* memory = std::malloc(size == 0 ? 1 : size); memory != nullptr) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
