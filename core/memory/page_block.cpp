// core/memory/page_block.cpp - pages of the system that begin where large ones can.
#include "core/memory/page_block.h"

#include <cstdlib>

#include "core/memory/heap_block.h"
#include "core/memory/poison.h"

#if defined(__linux__) && !defined(MURV_ADDRESS_SANITIZER)
#define MURV_HAS_LARGE_PAGES 1
#include <sys/mman.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#endif

namespace murv::detail
{

#ifdef MURV_HAS_LARGE_PAGES

namespace
{

constexpr std::uint64_t s_cullPagesFrom = s_cnLargePage;

/// Pages from anywhere; null without memory.
char* takePages(std::size_t size) noexcept
{
    void* const pages = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return pages == MAP_FAILED ? nullptr : static_cast<char*>(pages);
}

/// Blocks of one page that nobody uses.
std::atomic<void*> s_pKept[8];
std::atomic<std::size_t> s_nMapped;

void* takeKept() noexcept
{
    for (std::atomic<void*>& kept : s_pKept)
    {
        if (kept.load(std::memory_order_relaxed) == nullptr)
            continue;
        if (void* const block = kept.exchange(nullptr, std::memory_order_acquire))
            return block;
    }
    return nullptr;
}

bool keep(void* block) noexcept
{
    for (std::atomic<void*>& kept : s_pKept)
    {
        void* none = nullptr;
        if (kept.compare_exchange_strong(none, block, std::memory_order_release, std::memory_order_relaxed))
            return true;
    }
    return false;
}

void* mapNewPages(std::size_t size) noexcept
{
    const int before = errno;
    char* const pages = takePages(size + s_cnLargePage);
    if (pages == nullptr)
    {
        errno = before;
        return nullptr;
    }
    const std::size_t skipped =
        (s_cnLargePage - reinterpret_cast<std::uintptr_t>(pages) % s_cnLargePage) % s_cnLargePage;
    char* const block = pages + skipped;
    if (skipped != 0)
        munmap(pages, skipped);
    munmap(block + size, s_cnLargePage - skipped);
    madvise(block, size, MADV_HUGEPAGE);  // without such pages, small ones do as well
    errno = before;
    return block;
}

}  // namespace

void* mapPages(std::size_t size) noexcept
{
    void* const kept = size == s_cnLargePage ? takeKept() : nullptr;
    void* const block = kept != nullptr ? kept : mapNewPages(size);
    s_nMapped.fetch_add(block == nullptr ? 0 : size, std::memory_order_relaxed);
    return block;
}

void unmapPages(void* block, std::size_t size) noexcept
{
    const int before = errno;
    if (size != s_cnLargePage || !keep(block))
        munmap(block, size);
    errno = before;
    s_nMapped.fetch_sub(size, std::memory_order_relaxed);
}

std::size_t mappedBytes() noexcept
{
    return s_nMapped.load(std::memory_order_relaxed);
}

#else

namespace
{

constexpr std::uint64_t s_cullPagesFrom = UINT64_MAX;

}  // namespace

void* mapPages(std::size_t /*size*/) noexcept
{
    return nullptr;
}

void unmapPages(void* /*block*/, std::size_t /*size*/) noexcept
{
}

std::size_t mappedBytes() noexcept
{
    return 0;
}

#endif

namespace
{

std::uint64_t wholePages(std::uint64_t size)
{
    return (size + s_cnLargePage - 1) / s_cnLargePage * s_cnLargePage;
}

bool takesPages(std::uint64_t size)
{
    return s_cullPagesFrom != UINT64_MAX && size >= s_cullExactPagesFrom;
}

}  // namespace

void* allocateLarge(std::uint64_t size) noexcept
{
    const auto bytes = static_cast<std::size_t>(size);
    if (size < s_cullPagesFrom)
        return allocateBlock(size);
    return bytes == size ? mapPages(bytes) : nullptr;
}

void freeLarge(void* block, std::uint64_t size) noexcept
{
    if (size < s_cullPagesFrom)
        std::free(block);
    else if (block != nullptr)
        unmapPages(block, static_cast<std::size_t>(size));
}

void* allocateExact(std::uint64_t size) noexcept
{
    if (size > UINT64_MAX / 2)
        return nullptr;
    return takesPages(size) ? allocateLarge(wholePages(size)) : allocateBlock(size);
}

void freeExact(void* block, std::uint64_t size) noexcept
{
    if (takesPages(size))
        freeLarge(block, wholePages(size));
    else
        std::free(block);
}

}  // namespace murv::detail
