// tests/ser/saver_memory_test.cpp - text savers that run out of memory: they throw, leak nothing and can be used again.
#include <gtest/gtest.h>

#include <new>
#include <sstream>
#include <string>

#include "murv/saver.h"
#include "tests/ser/deep_tree.h"
#include "tests/ser/saver_helpers.h"
#include "tests/support/failing_malloc.h"

namespace
{

using namespace murv;
using namespace murv::tests;

/// Deep enough for the walk's stack, wide enough for a few growths of the buffer.
CFields largeTree()
{
    CFields tree(DT_fields);
    add(tree, "deep", nestedArrays(100));
    add(tree, "text", std::string(3000, 'x'));
    add(tree, "short", arrayOf({1, 2, "three"}));
    return tree;
}

/// Saves with the n-th allocation failing, for every n that is reached, and expects the text at last.
template <typename tSave>
void tryEveryAllocation(tSave save, const std::string& expected)
{
    if (!CFailingMalloc::isMallocReached() || !CFailingMalloc::isNewReached())
        GTEST_SKIP() << "NOT TESTED: another allocator is at work";
    const long blocks = CFailingMalloc::liveBlocks();
    for (long n = 1;; ++n)
    {
        bool hasFailed = false;
        std::string text;
        {
            CFailingMalloc failing(n);
            try
            {
                text = save();
            }
            catch (const std::bad_alloc&)
            {
                text.clear();
            }
            hasFailed = failing.hasFailed();
        }
        if (!hasFailed)
        {
            EXPECT_EQ(text, expected);
            EXPECT_GT(n, 2);
            break;
        }
        ASSERT_EQ(text, "") << n;
        ASSERT_EQ(CFailingMalloc::liveBlocks(), blocks) << n;
    }
}

TEST(SaverMemory, indentedTextSurvivesEveryFailedAllocation)
{
    const CFields tree = largeTree();
    const auto save = [&] {
        CSaver4SER_HFW saver;
        saver.setSCBC(SCBC_ONE_LINE_ARRAY);
        return saver.saving(tree);
    };
    tryEveryAllocation(save, save());
}

TEST(SaverMemory, compactTextSurvivesEveryFailedAllocation)
{
    const CFields tree = largeTree();
    const auto save = [&] { return CSaver4SER_PKT().saving(tree); };
    tryEveryAllocation(save, save());
}

TEST(SaverMemory, theSameSaverWorksAgain)
{
    const CFields tree = largeTree();
    CSaver4SER_HFW saver;
    const std::string expected = CSaver4SER_HFW().saving(tree);
    for (long n = 1; n < 20; ++n)
    {
        {
            CFailingMalloc failing(n);
            try
            {
                saver.saving(tree);
            }
            catch (const std::bad_alloc&)
            {
                continue;
            }
        }
        break;
    }
    EXPECT_EQ(saver.saving(tree), expected);
}

}  // namespace
