#include "fuzz/rationed_memory.hpp"

#include <cstdlib>
#include <new>

namespace vialto::fuzz {

thread_local Ration ration;

} // namespace vialto::fuzz

using vialto::fuzz::largest_block;
using vialto::fuzz::ration;

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (ration.holds && (ration.allocations == 0 || size > largest_block)) {
        ration.refused = true;
        return nullptr;
    }
    ration.allocations -= ration.holds && ration.allocations > 0 ? 1 : 0;
    return std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size) {
    if (void* memory = operator new(size, std::nothrow); memory != nullptr) {
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
