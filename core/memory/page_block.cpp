// core/memory/page_block.cpp - pages of the system that begin where large ones can.
#include "core/memory/page_block.h"

#ifdef MURV_HAS_LARGE_PAGES
#include <sys/mman.h>

#include <atomic>
#include <cerrno>
#include <cstdint>

// Of LeakSanitizer, when the application is built with it but this library is not: it has to be told of memory that is
// not of the heap, or takes what only trees point to for lost.
extern "C" [[gnu::weak]] void __lsan_register_root_region(const void* begin, std::size_t size);    // NOLINT
extern "C" [[gnu::weak]] void __lsan_unregister_root_region(const void* begin, std::size_t size);  // NOLINT
#endif

namespace murv::detail
{

#ifdef MURV_HAS_LARGE_PAGES

namespace
{

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

void giveBack(void* block, std::size_t size) noexcept
{
    if (__lsan_unregister_root_region != nullptr)
        __lsan_unregister_root_region(block, size);
    munmap(block, size);
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
    if (__lsan_register_root_region != nullptr)
        __lsan_register_root_region(block, size);
    errno = before;
    return block;
}

}  // namespace

void* mapPages(std::size_t size) noexcept
{
    void* const kept = size == s_cnLargePage ? takeKept() : nullptr;
    void* const block = kept != nullptr ? kept : mapNewPages(size);
    countMapped(block == nullptr ? 0 : static_cast<std::ptrdiff_t>(size));
    return block;
}

void unmapPages(void* block, std::size_t size) noexcept
{
    const int before = errno;
    if (size != s_cnLargePage || !keep(block))
        giveBack(block, size);
    errno = before;
    countMapped(-static_cast<std::ptrdiff_t>(size));
}

void countMapped(std::ptrdiff_t bytes) noexcept
{
    s_nMapped.fetch_add(static_cast<std::size_t>(bytes), std::memory_order_relaxed);
}

void dropKeptPages() noexcept
{
    while (void* const block = takeKept())
        giveBack(block, s_cnLargePage);
}

std::size_t mappedBytes() noexcept
{
    return s_nMapped.load(std::memory_order_relaxed);
}

#else

void* mapPages(std::size_t /*size*/) noexcept
{
    return nullptr;
}

void unmapPages(void* /*block*/, std::size_t /*size*/) noexcept
{
}

void dropKeptPages() noexcept
{
}

void countMapped(std::ptrdiff_t /*bytes*/) noexcept
{
}

std::size_t mappedBytes() noexcept
{
    return 0;
}

#endif

}  // namespace murv::detail
