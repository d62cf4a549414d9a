// tests/core/field_deep_test.cpp - trees that nest a million levels, on a thread with a small stack.
#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <string>
#include <utility>

#include "core/tree_walk.h"
#include "murv/fields.h"
#include "tests/support/thrown.h"

namespace
{

using namespace murv;
using murv::tests::thrown;

constexpr unsigned int s_cuiLevels = 1000000;

/// Runs the action on a thread whose stack is one megabyte.
void onSmallStack(std::function<void()> action)
{
    pthread_attr_t attributes;
    ASSERT_EQ(0, pthread_attr_init(&attributes));
    ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, 1 << 20));
    pthread_t thread{};
    const auto start = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(0, pthread_create(&thread, &attributes, start, &action));
    ASSERT_EQ(0, pthread_join(thread, nullptr));
    pthread_attr_destroy(&attributes);
}

CFields& nest(CFields& root, bool arrays)
{
    CFields* node = &root;
    for (unsigned int i = 0; i < s_cuiLevels; ++i)
        node = arrays || i % 3 == 1 ? &node->addArrayAt(CFields()) : &node->addChildRef("n");
    *node = 42;
    node->setID(7);
    return *node;
}

TEST(DeepTree, isBuiltCopiedMovedAndDestroyed)
{
    onSmallStack([] {
        CFields root;
        nest(root, false);
        CFields copy(root);
        EXPECT_EQ(s_cuiLevels, copy.getMemberCount());
        CFields moved(std::move(root));
        EXPECT_EQ(s_cuiLevels, moved.getMemberCount());
        CFields assigned;
        assigned = moved;
        EXPECT_EQ(s_cuiLevels, assigned.getMemberCount());
        CFields array;
        array.addArrayAt(std::move(assigned));
        EXPECT_EQ(s_cuiLevels + 1, array.getMemberCount());
    });
}

TEST(DeepTree, isComparedAndSearched)
{
    onSmallStack([] {
        CFields root;
        CFields& leaf = nest(root, true);
        CFields copy(root);
        EXPECT_TRUE(copy == root);
        EXPECT_FALSE(copy < root);
        EXPECT_EQ(&leaf, root.findID(7));
        *copy.findID(7) = 43;
        EXPECT_TRUE(root < copy);
        EXPECT_EQ(-1, root.compare(copy));
        EXPECT_FALSE(root.emptyChild());
        EXPECT_FALSE(root.isConvertible(DT_null));
    });
}

TEST(DeepTree, isSwappedAndCheckedForNodesBelow)
{
    onSmallStack([] {
        CFields root;
        CFields& leaf = nest(root, false);
        CFields other;
        nest(other, true);
        root.swapField(other, true);
        EXPECT_EQ(s_cuiLevels, root.getMemberCount());
        EXPECT_TRUE(root.isArray());
        EXPECT_EQ("mismatched condition", thrown([&] { other.swapField(leaf, true); }));
        EXPECT_EQ("mismatched condition", thrown([&] { leaf.swapField(other, true); }));
        root.addArrayAt(std::move(other));
        EXPECT_EQ(2 * s_cuiLevels + 1, root.getMemberCount());
    });
}

TEST(DeepTree, losesItsLevelsByReplacementAndRemoval)
{
    onSmallStack([] {
        CFields root;
        nest(root, false);
        root = CFields(5);
        EXPECT_EQ(5, root.asSint32());
        root = CFields();
        nest(root, true);
        EXPECT_TRUE(root.removeChildAt(0));
        nest(root.addArrayAt(CFields()), false);
        root.resizeArray(0);
        nest(root.addArrayAt(CFields()), false);
        CFields out;
        EXPECT_TRUE(root.removeChildAt(0, &out));
        EXPECT_EQ(s_cuiLevels, out.getMemberCount());
        out.removeAll(DT_null);
        EXPECT_TRUE(out.isNull());
    });
}

TEST(DeepTree, isTakenApartThroughItsOwnMember)
{
    onSmallStack([] {
        CFields root;
        nest(root, true);
        root = root[0];
        EXPECT_EQ(s_cuiLevels - 1, root.getMemberCount());
        EXPECT_TRUE(root.removeChildAt(0, &root));
        EXPECT_EQ(s_cuiLevels - 2, root.getMemberCount());
        root[0].setValue(root);
        EXPECT_EQ(s_cuiLevels - 1, root.getMemberCount());
    });
}

/// A chain of arrays; the result is its innermost node.
CFields& chain(CFields& root, int levels)
{
    CFields* node = &root;
    for (int i = 0; i < levels; ++i)
        node = &node->addArrayAt(CFields(DT_array));
    return *node;
}

TEST(DeepTree, isCopiedWhenItIsMovedIntoANodeNearBelow)
{
    CFields root;
    CFields& below = chain(root, 256);
    below = std::move(root);
    EXPECT_EQ(512U, root.getMemberCount());
}

TEST(DeepTree, isNotMovedIntoANodeFarBelowWhereMovesAreChecked)
{
    if (!detail::s_cbMovesAreChecked)
        GTEST_SKIP() << "this build looks at the nearest nodes only";
    CFields root;
    CFields& below = chain(root, 1000);
    below = DT_fields;
    EXPECT_EQ("mismatched condition", thrown([&] { below.addChildRef("x") = std::move(root); }));
    EXPECT_EQ(1001U, root.getMemberCount()) << "nothing has moved";
    below["x"] = 5;
    EXPECT_EQ(5, below["x"].asSint32());
    CFields other;
    chain(other, 1000) = std::move(root);
    EXPECT_EQ(2001U, other.getMemberCount()) << "a node below another tree may take it";
}

}  // namespace
