// tests/ser/load_memory_test.cpp - memory that runs out during a load.
//
// Every allocation of a load is made to fail in turn. The load then fails or throws, nothing leaks, and loader and
// target can be used again.
#include <gtest/gtest.h>

#include <new>

#include "tests/ser/load_helpers.h"
#include "tests/support/failing_malloc.h"

using namespace murv;
using namespace murv::tests;

namespace
{

/// Names, escapes, IDs, comments, packet expressions with second values, members read again, a name index.
std::string document()
{
    std::string text =
        "/* head */ #5 \"root\" = { // t\n\"a\"=\"text\",\n// c\n\"b\\n\"=\"x\\ny\", #7 \"c\"=[1,2.5,[true]],"
        "\"d\"=(ACF8fix) \"f\", #8 {#9 \"in\"=5}, #7 {#10 6}, \"a\"={\"x\"=\"y\"}, #9 7 /*z*/,\n";
    for (int i = 0; i < 80; ++i)
        text += "\"a name that has a block of its own " + std::to_string(i) + "\"=" + std::to_string(i) + ",";
    return text + "\"a\"=[\"end\"]}\n// tail";
}

/// Loads into `tree` with the n-th allocation failing. \return false when there was none to fail.
bool loadFailing(CLoader4SER& loader, CFields& tree, const std::string& text, long failAt, bool& done)
{
    const CFailingMalloc fail(failAt);
    done = false;
    try
    {
        done = loader.loadit(text.data(), static_cast<unsigned int>(text.size()), tree);
    }
    catch (const std::bad_alloc&)
    {
    }
    catch (const CLogicError&)  // the stated message of a string that could not be copied
    {
    }
    return fail.hasFailed();
}

/// Loads the text again and again, with each allocation failing in turn, each time with a loader and a tree of its own
/// that `check(loader, tree, more, done)` then looks at. Nothing may leak. \return how many loads it took.
template <typename tCheck>
long loadWithEachFailing(const std::string& text, const tCheck& check)
{
    long failAt = 0;
    for (bool more = true; more && !testing::Test::HasFatalFailure();)
    {
        const testing::ScopedTrace trace(__FILE__, __LINE__, ++failAt);
        const long before = CFailingMalloc::liveBlocks();
        {
            CLoader4SER loader;
            CFields tree;
            bool done = false;
            more = loadFailing(loader, tree, text, failAt, done);
            check(loader, tree, more, done);
        }
        EXPECT_EQ(CFailingMalloc::liveBlocks(), before);
    }
    return failAt;
}

}  // namespace

TEST(LoadMemory, everyAllocationMayFail)
{
    if (!CFailingMalloc::isNewReached())
        GTEST_SKIP() << "NOT TESTED: allocations cannot be made to fail here";
    const std::string text = document();
    const std::string expected = loaded(text);
    ASSERT_EQ(expected.substr(0, 14), "#5 root={a=[\"e");
    const long loads = loadWithEachFailing(text, [&](CLoader4SER& loader, CFields& tree, bool more, bool done) {
        ASSERT_TRUE(more || done);
        ASSERT_TRUE(done || tree.getChildCount() == 0);
        ASSERT_TRUE(loader.loading(text, tree)) << loader.getLastErrMsg();
        ASSERT_EQ(show(tree), expected);
    });
    EXPECT_GE(loads, CFailingMalloc::isMallocReached() ? 50 : 20);
}

// The rest of the document is read on from after the "=", where the comment is.
TEST(LoadMemory, nameWithoutMemoryEndsTheLoadAfterItsAssign)
{
    if (!CFailingMalloc::isMallocReached())
        GTEST_SKIP() << "NOT TESTED: another allocator is in the way";
    const std::string text = "{\"a name that has a block of its own\"=/*c*/1}";
    bool met = false;
    bool more = true;
    for (long failAt = 1; more && !met; ++failAt)
    {
        CLoader4SER loader;
        CFields tree;
        bool done = false;
        more = loadFailing(loader, tree, text, failAt, done);
        met =
            loader.getLastErrMsg() == "* Line 1, Column 2\n  This field not allow the duplication or a error occured\n";
        if (met)
        {
            EXPECT_EQ(tree.getCommentCopy(CP_trailing), "/*c*/");
        }
    }
    EXPECT_TRUE(met);
}

TEST(LoadMemory, everyAllocationOfAFailingLoadMayFail)
{
    if (!CFailingMalloc::isNewReached())
        GTEST_SKIP() << "NOT TESTED: allocations cannot be made to fail here";
    std::string text = document();
    text.insert(text.size() - 20, "@");
    const std::string expected = loaded(text);
    ASSERT_EQ(expected.substr(0, 7), "* Line ");
    loadWithEachFailing(text, [&](CLoader4SER& loader, CFields& tree, bool, bool done) {
        ASSERT_FALSE(done);
        ASSERT_FALSE(loader.loading(text, tree));
        ASSERT_EQ(loader.getLastErrMsg(), expected);
    });
}
