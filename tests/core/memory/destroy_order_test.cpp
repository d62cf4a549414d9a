// tests/core/memory/destroy_order_test.cpp - trees are destroyed in the order in which they lie in memory.
//
// The wrong order gives the same results, only later: a tree that is larger than the caches takes three times as long.
// So what is looked at here is the order in which the pieces of a tree are freed.
#include <gtest/gtest.h>

#include <string>

#include "murv/murv.h"
#include "tests/support/failing_malloc.h"

using namespace murv;
using namespace murv::tests;

namespace
{
constexpr unsigned int s_cuiRecords = 400;  // with more the pieces would be parts of large pages

CFields records(const std::string& begin, const std::string& end)
{
    std::string text = begin;
    for (unsigned int i = 0; i < s_cuiRecords; ++i)
        text += (i == 0 ? "" : ",") + std::string("{\"name\"=\"some text\"}");
    CLoader4SER loader;
    CFields tree;
    EXPECT_TRUE(loader.loading(text + end, tree)) << loader.getLastErrMsg();
    return tree;
}

/// Which of two records was freed first. The last records are none of them: the block of the root may lie in their
/// piece, and that one goes last.
enum E_Order
{
    OR_forward,
    OR_backward,
    OR_notSeen,
};

/// \param list  a member of the tree, or the tree
E_Order destroy(CFields& tree, const CFields& list)
{
    const char* const early = list.getChildAt(s_cuiRecords / 3)["name"].getValueRef().m_pData;
    const char* const late = list.getChildAt(s_cuiRecords / 3 * 2)["name"].getValueRef().m_pData;
    const CFreedBlocks freed;
    tree.removeAll(DT_null);
    const long early4Order = freed.positionOf(early);
    const long late4Order = freed.positionOf(late);
    if (early4Order < 0 || late4Order < 0 || early4Order == late4Order)
        return OR_notSeen;
    return early4Order < late4Order ? OR_forward : OR_backward;
}
}  // namespace

// A container that was loaded lies after what it holds, and so the last one lies last.
TEST(DestroyOrder, aLoadedTreeGoesBackward)
{
    if (!CFailingMalloc::isMallocReached())
        GTEST_SKIP() << "NOT TESTED: another allocator is in the way";
    CFields tree = records("[", "]");
    EXPECT_EQ(destroy(tree, tree), OR_backward);
}

TEST(DestroyOrder, soDoContainersInsideIt)
{
    if (!CFailingMalloc::isMallocReached())
        GTEST_SKIP() << "NOT TESTED: another allocator is in the way";
    CFields tree = records("{\"number\"=1,\"list\"=[", "]}");
    EXPECT_EQ(destroy(tree, tree["list"]), OR_backward);
}

TEST(DestroyOrder, aCopyAndATreeFromABinaryFileGoForward)
{
    if (!CFailingMalloc::isMallocReached())
        GTEST_SKIP() << "NOT TESTED: another allocator is in the way";
    const CFields tree = records("[", "]");
    CFields copy(tree);
    EXPECT_EQ(destroy(copy, copy), OR_forward);
    CFields loaded;
    ASSERT_TRUE(CLoader4BER().loading(CSaver4BER_BASIC().saving(tree), loaded));
    EXPECT_EQ(destroy(loaded, loaded), OR_forward);
}
