// core/memory/page_chunk.cpp - large pages that are shared by many trees.
//
// A page has one word of state: a bit for each chunk in use, and a mark while the page is open, which means that chunks
// are taken from it. Open pages stand in slots; who takes a page out of its slot has it for itself, but that others
// give chunks back. When all slots are taken the fullest page is closed; it is opened again when half of it is free. A
// page without chunks in use belongs to the one who left it so, and is given back.
#include "core/memory/page_chunk.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstdint>
#include <new>
#include <utility>

namespace murv::detail
{

namespace
{

constexpr std::uint32_t s_cuiOpen = 1;  // in place of the first chunk, where the page keeps its state
constexpr int s_ciEnoughFree = 16;      // chunks, for a page to be opened again
static_assert(s_cnMostChunks == 31);

struct tPage
{
    std::atomic<std::uint32_t> m_uiState;
};

std::atomic<tPage*> s_pOpen[16];

std::uint32_t bits4Chunks(std::size_t count)
{
    return (std::uint32_t{1} << count) - 1;
}

std::ptrdiff_t bytes4Chunks(std::size_t count)
{
    return static_cast<std::ptrdiff_t>(count * s_cnChunk);
}

/// The first of that many chunks side by side that are not in use; 0 for none.
std::size_t findRun(std::uint32_t state, std::size_t count)
{
    std::uint32_t begins = ~(state | s_cuiOpen);  // where a run of `length` begins
    for (std::size_t length = 1; length != count && begins != 0;)
    {
        const std::size_t more = std::min(length, count - length);
        begins &= begins >> more;
        length += more;
    }
    return begins == 0 ? 0 : static_cast<std::size_t>(std::countr_zero(begins));
}

tPage* takeOpenPage(std::atomic<tPage*>& slot)
{
    return slot.load(std::memory_order_relaxed) == nullptr ? nullptr
                                                           : slot.exchange(nullptr, std::memory_order_acquire);
}

/// Clears bits of the state, and gives the page back when nothing is left that keeps it. \return the state left
std::uint32_t clear(tPage* page, std::uint32_t bits)
{
    const std::uint32_t left = page->m_uiState.fetch_and(~bits, std::memory_order_acq_rel) & ~bits;
    if (left != 0)
        return left;
    countMapped(static_cast<std::ptrdiff_t>(s_cnLargePage));  // its chunks were taken off one by one
    unmapPages(page, s_cnLargePage);
    return 0;
}

bool isFuller(const tPage* page, const tPage* other)
{
    return std::popcount(page->m_uiState.load(std::memory_order_relaxed)) >
           std::popcount(other->m_uiState.load(std::memory_order_relaxed));
}

bool putInto(std::atomic<tPage*>& slot, tPage* page)
{
    tPage* none = nullptr;
    return slot.compare_exchange_strong(none, page, std::memory_order_release, std::memory_order_relaxed);
}

/// Puts an open page, which the caller has taken out of its slot, into a slot. When all are taken, the fullest page is
/// closed: what is open then serves longest.
void leaveOpen(tPage* page)
{
    for (std::atomic<tPage*>& slot : s_pOpen)
    {
        if (putInto(slot, page))
            return;
    }
    for (std::atomic<tPage*>& slot : s_pOpen)
    {
        tPage* other = takeOpenPage(slot);
        if (other == nullptr && putInto(slot, page))
            return;
        if (other == nullptr)
            continue;
        if (isFuller(other, page))
            std::swap(page, other);
        if (!putInto(slot, other))
            clear(other, s_cuiOpen);
    }
    clear(page, s_cuiOpen);
}

/// Gives an open page back, unless somebody has taken chunks of it. The caller has none: it looks at the page only when
/// it has taken it out of its slot.
void giveBackEmpty(tPage* page)
{
    for (std::atomic<tPage*>& slot : s_pOpen)
    {
        tPage* expected = page;
        if (!slot.compare_exchange_strong(expected, nullptr, std::memory_order_acquire, std::memory_order_relaxed))
            continue;
        if (page->m_uiState.load(std::memory_order_acquire) == s_cuiOpen)
            clear(page, s_cuiOpen);
        else
            leaveOpen(page);
        return;
    }
}

/// Takes a run of an open page that nobody else takes from, and leaves the page. \return null when it has none
void* takeRun(tPage* page, std::size_t count)
{
    // Others may give chunks back meanwhile.
    const std::uint32_t before = page->m_uiState.load(std::memory_order_acquire);
    const std::size_t first = findRun(before, count);
    if (first == 0)
    {
        leaveOpen(page);
        return nullptr;
    }
    const std::uint32_t bits = bits4Chunks(count) << first;
    countMapped(bytes4Chunks(count));
    if ((page->m_uiState.fetch_or(bits, std::memory_order_acq_rel) | bits) == ~std::uint32_t{0})
        clear(page, s_cuiOpen);
    else
        leaveOpen(page);
    return reinterpret_cast<char*>(page) + first * s_cnChunk;
}

void* takeFromNewPage(std::size_t count)
{
    void* const memory = mapPages(s_cnLargePage);
    if (memory == nullptr)
        return nullptr;
    countMapped(-static_cast<std::ptrdiff_t>(s_cnLargePage));
    return takeRun(new (memory) tPage{{s_cuiOpen}}, count);
}

}  // namespace

void* takeChunks(std::size_t count) noexcept
{
    for (std::atomic<tPage*>& slot : s_pOpen)
    {
        tPage* const page = takeOpenPage(slot);
        void* const block = page == nullptr ? nullptr : takeRun(page, count);
        if (block != nullptr)
            return block;
    }
    return takeFromNewPage(count);
}

void giveChunks(void* block, std::size_t count) noexcept
{
    const auto place = reinterpret_cast<std::uintptr_t>(block);
    tPage* const page = reinterpret_cast<tPage*>(place & ~std::uintptr_t{s_cnLargePage - 1});
    const std::uint32_t bits = bits4Chunks(count) << (place % s_cnLargePage / s_cnChunk);
    // The page is opened again while these chunks still keep it.
    const std::uint32_t after = page->m_uiState.load(std::memory_order_relaxed) & ~bits;
    if ((after & s_cuiOpen) == 0 && std::popcount(~after) >= s_ciEnoughFree &&
        (page->m_uiState.fetch_or(s_cuiOpen, std::memory_order_acq_rel) & s_cuiOpen) == 0)
        leaveOpen(page);
    countMapped(-bytes4Chunks(count));
    if (clear(page, bits) == s_cuiOpen)
        giveBackEmpty(page);
}

}  // namespace murv::detail
