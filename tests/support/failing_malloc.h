// tests/support/failing_malloc.h - makes the n-th allocation of a scenario fail, and sees in which order blocks go.
//
// A program that uses this has malloc, calloc, realloc and operator new replaced; outside a guarded scenario they
// behave as usual. Where a tool brings its own allocator (valgrind, some sanitizers) the replacement of malloc may not
// be reached; the tests ask first.
#pragma once

#include <cstddef>
#include <vector>

namespace murv::tests
{

/// While one lives, allocations of this thread are counted, and the chosen one fails.
class CFailingMalloc
{
public:
    /// \param failAt  1 for the first allocation from now on; 0 for none
    explicit CFailingMalloc(long failAt);
    CFailingMalloc(const CFailingMalloc&) = delete;
    CFailingMalloc& operator=(const CFailingMalloc&) = delete;
    ~CFailingMalloc();

    /// Whether the chosen allocation was asked for, and so failed.
    bool hasFailed() const;
    /// Allocations asked for so far.
    long asked() const;

    /// Whether calls of malloc reach the replacement in this process.
    static bool isMallocReached();
    /// Whether operator new reaches it.
    static bool isNewReached();
    /// Blocks of this thread that are allocated and not freed, where malloc and free are reached; else always 0.
    static long liveBlocks();
};

/// Takes everything out of reach of an active CFailingMalloc, for what is not the code under test.
class CNoFailure
{
public:
    CNoFailure();
    CNoFailure(const CNoFailure&) = delete;
    CNoFailure& operator=(const CNoFailure&) = delete;
    ~CNoFailure();
};

/// While one lives, the blocks that this thread frees are noted, where isMallocReached() says so.
class CFreedBlocks
{
public:
    CFreedBlocks();
    CFreedBlocks(const CFreedBlocks&) = delete;
    CFreedBlocks& operator=(const CFreedBlocks&) = delete;
    ~CFreedBlocks();

    /// How many blocks were freed before the one that a byte lay in; -1 when that one is not among the first 10,000.
    long positionOf(const void* byte) const;
    /// For the replacement of free.
    void note(const void* block, std::size_t size) noexcept;

private:
    struct tBlock
    {
        const char* m_pBegin;
        std::size_t m_nSize;
    };

    std::vector<tBlock> m_vBlocks;  // has its memory from the beginning
};

}  // namespace murv::tests
