// core/memory/poison.h - tells AddressSanitizer which parts of our own memory are free.
//
// Blocks that are cut from larger pieces are then guarded as well as blocks of the heap. In builds without
// AddressSanitizer the functions here do nothing.
#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define MURV_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define MURV_ADDRESS_SANITIZER 1
#endif
#endif

#ifdef MURV_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

namespace murv::detail
{

#ifdef MURV_ADDRESS_SANITIZER
inline constexpr std::size_t s_cnRedZone = 16;  // bytes after a block that nobody may touch

inline void poison(const void* memory, std::size_t size) noexcept
{
    ASAN_POISON_MEMORY_REGION(memory, size);
}
inline void unpoison(const void* memory, std::size_t size) noexcept
{
    ASAN_UNPOISON_MEMORY_REGION(memory, size);
}
#else
inline constexpr std::size_t s_cnRedZone = 0;

inline void poison(const void* /*memory*/, std::size_t /*size*/) noexcept
{
}
inline void unpoison(const void* /*memory*/, std::size_t /*size*/) noexcept
{
}
#endif

}  // namespace murv::detail
