// tests/support/failing_malloc.cpp - the replaced allocation functions.
//
// With glibc the originals are reached under their internal names. The address sanitizer offers its own under another
// name; where that is not known, only operator new fails, and the sanitizer keeps malloc to itself.
#include "tests/support/failing_malloc.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>

#include <gtest/gtest.h>

#include "tests/support/sanitized.h"

#if defined(__has_feature)
#if __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define MURV_TEST_FOREIGN_MALLOC 1
#endif
#endif
#if defined(__SANITIZE_THREAD__) || !defined(__GLIBC__)
#define MURV_TEST_FOREIGN_MALLOC 1
#endif

#if defined(MURV_TEST_SANITIZED) && !(defined(__clang__) && __clang_major__ <= 16)
#define MURV_TEST_FOREIGN_MALLOC 1
#endif

namespace
{
thread_local bool s_bActive = false;
thread_local int s_iPaused = 0;
thread_local long s_lAsked = 0;
thread_local long s_lFailAt = 0;
thread_local long s_lLive = 0;
thread_local murv::tests::CFreedBlocks* s_pFreed = nullptr;

/// valgrind puts its own operators in the place of ours, and must be given back what came from them.
bool isUnderValgrind()
{
    const char* const preloaded = std::getenv("LD_PRELOAD");
    return preloaded != nullptr && std::strstr(preloaded, "vgpreload") != nullptr;
}

/// libc++ keeps a block from the first exception of a thread on, which no test must take for a leak.
[[maybe_unused]] const bool s_bHasThrown = [] {
    try
    {
        throw 0;
    }
    catch (int)
    {
        return true;
    }
}();

/// Counts a request; false when it is the one to fail.
bool mayPass() noexcept
{
    if (!s_bActive || s_iPaused != 0)
        return true;
    return ++s_lAsked != s_lFailAt;
}
}  // namespace

#ifndef MURV_TEST_FOREIGN_MALLOC

#include <malloc.h>

#ifdef MURV_TEST_SANITIZED
#define MURV_TEST_ORIGINAL(name) __interceptor_##name
#else
#define MURV_TEST_ORIGINAL(name) __libc_##name
#endif

extern "C"
{
    void* MURV_TEST_ORIGINAL(malloc)(std::size_t size);
    void* MURV_TEST_ORIGINAL(calloc)(std::size_t count, std::size_t size);
    void* MURV_TEST_ORIGINAL(realloc)(void* block, std::size_t size);
    void* MURV_TEST_ORIGINAL(memalign)(std::size_t alignment, std::size_t size);
    void MURV_TEST_ORIGINAL(free)(void* block);

    void* malloc(std::size_t size) noexcept
    {
        void* const block = mayPass() ? MURV_TEST_ORIGINAL(malloc)(size) : nullptr;
        s_lLive += block != nullptr ? 1 : 0;
        return block;
    }

    void* calloc(std::size_t count, std::size_t size) noexcept
    {
        void* const block = mayPass() ? MURV_TEST_ORIGINAL(calloc)(count, size) : nullptr;
        s_lLive += block != nullptr ? 1 : 0;
        return block;
    }

    void* realloc(void* before, std::size_t size) noexcept
    {
        void* const block = mayPass() ? MURV_TEST_ORIGINAL(realloc)(before, size) : nullptr;
        s_lLive += block != nullptr && before == nullptr ? 1 : 0;
        return block;
    }

    /// What libc++ takes the memory of exceptions from.
    int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept
    {
        *block = mayPass() ? MURV_TEST_ORIGINAL(memalign)(alignment, size) : nullptr;
        s_lLive += *block != nullptr ? 1 : 0;
        return *block != nullptr ? 0 : ENOMEM;
    }

    void free(void* block) noexcept
    {
        s_lLive -= block != nullptr ? 1 : 0;
        if (s_pFreed != nullptr && block != nullptr)
            s_pFreed->note(block, malloc_usable_size(block));
        MURV_TEST_ORIGINAL(free)(block);
    }
}

namespace
{
void* allot(std::size_t size) noexcept
{
    return std::malloc(size == 0 ? 1 : size);  // counted there
}
}  // namespace

#else

namespace
{
void* allot(std::size_t size) noexcept
{
    return mayPass() ? std::malloc(size == 0 ? 1 : size) : nullptr;
}
}  // namespace

#endif

// Never inline: valgrind replaces these by their names, and a pair of which only one was replaced does not match.

[[gnu::noinline]] void* operator new(std::size_t size)
{
    void* const block = allot(size);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

[[gnu::noinline]] void* operator new[](std::size_t size)
{
    return operator new(size);
}

[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allot(size);
}

[[gnu::noinline]] void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return allot(size);
}

[[gnu::noinline]] void operator delete(void* block) noexcept
{
    std::free(block);
}

[[gnu::noinline]] void operator delete[](void* block) noexcept
{
    std::free(block);
}

[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

[[gnu::noinline]] void operator delete[](void* block, std::size_t) noexcept
{
    std::free(block);
}

[[gnu::noinline]] void operator delete(void* block, const std::nothrow_t&) noexcept
{
    std::free(block);
}

[[gnu::noinline]] void operator delete[](void* block, const std::nothrow_t&) noexcept
{
    std::free(block);
}

namespace murv::tests
{

CFailingMalloc::CFailingMalloc(long failAt)
{
    s_lAsked = 0;
    s_lFailAt = failAt;
    s_bActive = true;
}

CFailingMalloc::~CFailingMalloc()
{
    s_bActive = false;
}

bool CFailingMalloc::hasFailed() const
{
    return s_lFailAt != 0 && s_lAsked >= s_lFailAt;
}

long CFailingMalloc::asked() const
{
    return s_lAsked;
}

bool CFailingMalloc::isMallocReached()
{
    const CFailingMalloc fail(1);
    void* (*volatile ask)(std::size_t) = &std::malloc;
    void* const block = ask(8);
    std::free(block);
    return block == nullptr;
}

bool CFailingMalloc::isNewReached()
{
    if (isUnderValgrind())
        return false;
    const CFailingMalloc fail(1);
    void* (*volatile ask)(std::size_t, const std::nothrow_t&) = &operator new;
    void* const block = ask(8, std::nothrow);
    operator delete(block);
    return block == nullptr;
}

long CFailingMalloc::liveBlocks()
{
    return s_lLive;
}

CFreedBlocks::CFreedBlocks()
{
    m_vBlocks.reserve(10000);
    s_pFreed = this;
}

CFreedBlocks::~CFreedBlocks()
{
    s_pFreed = nullptr;
}

void CFreedBlocks::note(const void* block, std::size_t size) noexcept
{
    if (m_vBlocks.size() != m_vBlocks.capacity())
        m_vBlocks.push_back({static_cast<const char*>(block), size});
}

long CFreedBlocks::positionOf(const void* byte) const
{
    const std::less<> isBefore;
    for (std::size_t i = 0; i < m_vBlocks.size(); ++i)
    {
        const tBlock& block = m_vBlocks[i];
        if (!isBefore(byte, block.m_pBegin) && isBefore(byte, block.m_pBegin + block.m_nSize))
            return static_cast<long>(i);
    }
    return -1;
}

CNoFailure::CNoFailure()
{
    ++s_iPaused;
}

CNoFailure::~CNoFailure()
{
    --s_iPaused;
}

}  // namespace murv::tests

// Runs in every test program: what is skipped for want of the replacement is not skipped because it was lost.
TEST(FailingMalloc, isReachedWhereNoOtherAllocatorIsInTheWay)
{
    using murv::tests::CFailingMalloc;
    if (isUnderValgrind())
        GTEST_SKIP() << "NOT TESTED: valgrind brings its own allocator";
    EXPECT_TRUE(CFailingMalloc::isNewReached());
#ifndef MURV_TEST_FOREIGN_MALLOC
    EXPECT_TRUE(CFailingMalloc::isMallocReached());
    const long before = CFailingMalloc::liveBlocks();
    void* (*volatile ask)(std::size_t) = &std::malloc;
    void* const block = ask(8);
    EXPECT_EQ(CFailingMalloc::liveBlocks(), before + 1);
    std::free(block);
    EXPECT_EQ(CFailingMalloc::liveBlocks(), before);
#endif
}
