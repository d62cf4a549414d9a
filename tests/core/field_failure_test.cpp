// tests/core/field_failure_test.cpp - running out of memory leaves whole objects and no leaks.
//
// Each scenario runs again and again, with the first, second, third... allocation failing, until none is left to fail.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>

#include "murv/error.h"
#include "murv/fields.h"
#include "tests/support/failing_malloc.h"
#include "tests/support/thrown.h"
#include "tests/support/tree_text.h"

namespace
{

using namespace murv;
using murv::tests::CFailingMalloc;
using murv::tests::CNoFailure;
using murv::tests::describe;
using murv::tests::withoutLine;

constexpr const char* s_cpStream = "[murv::duplicateStream#0] Failed to allocate string a_cpSrc buffer";
constexpr const char* s_cpPrefixed = "[murv::duplicatePrefixedStream#0] Failed to allocate string a_cpSrc buffer";

/// A tree with every kind of block: names, strings, comments, second values, several blocks, a name index.
CFields sample(int members = 70)
{
    CFields root;
    root.setName("root");
    root.setComment("// root", CP_before);
    for (int i = 0; i < members; ++i)
    {
        CFields& member = root.addChildRef("name" + std::to_string(i));
        if (i % 3 == 0)
            member = "text";
        else if (i % 3 == 1)
        {
            member.addArrayAt(i);
            member.addArrayAt("element");
        }
        else
        {
            member = "dual";
            member.setVK(VK_fix);
            member.setComment("// member", CP_after);
        }
    }
    return root;
}

/// Fails each allocation of the action on a fresh tree in turn; whatever comes out must be whole and leak nothing.
///
/// \param unchanged  after a failure the tree must be what it was
void failEach(const std::function<CFields()>& make, const std::function<void(CFields&)>& action, bool unchanged = false)
{
    if (!CFailingMalloc::isMallocReached() || !CFailingMalloc::isNewReached())
        GTEST_SKIP() << "NOT TESTED: another allocator is in the way";
    for (long failAt = 1;; ++failAt)
    {
        ASSERT_LT(failAt, 100000);
        const long before = CFailingMalloc::liveBlocks();
        bool failed = false;
        {
            std::string message;
            CFields tree = make();
            const std::string expected = describe(tree);
            {
                const CFailingMalloc fail(failAt);
                try
                {
                    action(tree);
                }
                catch (const CLogicError& error)
                {
                    const CNoFailure calm;
                    message = withoutLine(error.what());
                }
                catch (const std::bad_alloc&)
                {
                    const CNoFailure calm;
                    message = "bad_alloc";
                }
                failed = fail.hasFailed();
            }
            if (unchanged && !message.empty())
            {
                EXPECT_EQ(expected, describe(tree)) << "allocation " << failAt;
            }
            // Whole: it can be described, copied, compared, changed.
            const CFields copy(tree);
            EXPECT_TRUE(copy == tree) << "allocation " << failAt;
            if (tree.isField())
            {
                for (const CFields& member : tree)
                {
                    const auto length = member.getNameLen();
                    EXPECT_EQ(length != 0, tree.findChildAt(member.getName(), length) != nullptr);
                }
                tree.addChildRef("after") = 1;
                EXPECT_EQ(1, tree["after"].asSint32());
            }
            tree = "usable";
            EXPECT_EQ("usable", tree.asString());
            EXPECT_TRUE(message.empty() || message == s_cpStream || message == s_cpPrefixed || message == "bad_alloc")
                << message;
        }
        ASSERT_EQ(before, CFailingMalloc::liveBlocks()) << "blocks are left behind, allocation " << failAt;
        if (!failed)
            return;
    }
}

CFields empty()
{
    return {};
}

CFields largeSample()
{
    return sample(70);
}

CFields smallSample()
{
    return sample(9);
}

TEST(Failure, ofNothingLeavesNoBlock)
{
    const long before = CFailingMalloc::liveBlocks();
    {
        const CFields node("text");
        EXPECT_EQ("text", node.asString());
        EXPECT_EQ(CFailingMalloc::liveBlocks() != before, CFailingMalloc::isMallocReached());
    }
    EXPECT_EQ(before, CFailingMalloc::liveBlocks());
}

TEST(Failure, building)
{
    failEach(empty, [](CFields& tree) {
        for (const char* const name : {"a", "b", "c", "d", "e", "f", "g"})
            tree.addChildRef(name) = "value";
        tree["a"].setValue(DT_array);
        for (int i = 0; i < 20; ++i)
            tree["a"].addArrayAt("element");
        tree["a"].addArrayAt(CFields(DT_fields)).addChildRef("x") = "text";
    });
}

TEST(Failure, buildingALargeSet)
{
    failEach(empty, [](CFields& tree) {
        char name[] = "n00";
        for (int i = 0; i < 100; ++i)
        {
            name[1] = static_cast<char>('0' + i / 10);
            name[2] = static_cast<char>('0' + i % 10);
            tree.addChildRef(name) = i;
        }
    });
}

TEST(Failure, copyConstruction)
{
    failEach(
        largeSample, [](CFields& tree) { const CFields copy(tree); }, true);
}

TEST(Failure, setValueAndSetField)
{
    failEach(
        largeSample, [](CFields& tree) { tree.setValue(tree[1]); }, true);
    failEach(
        largeSample, [](CFields& tree) { tree.setField(tree[2]); }, true);
    failEach(
        largeSample, [](CFields& tree) { tree[1].setField(tree); }, true);
}

TEST(Failure, assignment)
{
    failEach(
        smallSample, [](CFields& tree) { tree = tree[2]; }, true);
    failEach(
        smallSample, [](CFields& tree) { tree[0] = "other"; }, true);
    failEach(
        smallSample, [](CFields& tree) { tree[0] = CFields(tree[1]); }, true);
}

TEST(Failure, moveAssignment)
{
    failEach(
        [] {
            CFields tree;
            tree.addChildRef("to") = 1;
            tree.addChildRef("from") = "moved";
            tree["from"].setComment("// c", CP_before);
            return tree;
        },
        [](CFields& tree) { tree["to"] = std::move(tree["from"]); }, true);
}

TEST(Failure, strings)
{
    failEach(
        smallSample, [](CFields& tree) { tree.setValue("text"); }, true);
    failEach(smallSample, [](CFields& tree) { tree[0].setValue("text", VK_fix); });
    failEach(
        smallSample, [](CFields& tree) { tree[0].setVK(VK_valid); }, true);
    failEach(
        smallSample, [](CFields& tree) { tree[1].setValue(5, VK_fix); }, true);
    failEach(
        smallSample, [](CFields& tree) { tree[0].setValue(DT_codelist, VK_fix); }, true);
}

TEST(Failure, renaming)
{
    for (const auto& make : {smallSample, largeSample})
    {
        failEach(
            make, [](CFields& tree) { tree[3].setName("other"); }, true);
        failEach(
            make, [](CFields& tree) { tree[3].setName(tree[4].getName()); }, true);
        failEach(
            make, [](CFields& tree) { tree.setName("other"); }, true);
        failEach(make, [](CFields& tree) {
            tree[3].setID(5);
            tree.setChildName4ID(5, "other");
        });
        failEach(make, [](CFields& tree) {
            tree[3].setName(tree[7].getName());
            tree[3].clearName();
            tree[7].clearName();
            tree[4].swapField(tree[5], true);
            tree[4].setName("other");
        });
    }
}

TEST(Failure, renamingEqualNames)
{
    const auto make = [] {
        CFields tree;
        for (int i = 0; i < 70; ++i)
            tree.addChildRef(i % 2 == 0 ? "even" : "odd", 0, true) = i;
        return tree;
    };
    failEach(make, [](CFields& tree) {
        tree[0].setName("odd");
        EXPECT_EQ(2, tree["even"].asSint32());
        EXPECT_EQ(0, tree["odd"].asSint32());
        tree.addChildRef("even", 0, true);
        tree[2].setName("other");
        EXPECT_EQ(4, tree["even"].asSint32());
        tree[0].setName("other");
        EXPECT_EQ(1, tree["odd"].asSint32());
    });
}

TEST(Failure, commenting)
{
    failEach(smallSample, [](CFields& tree) {
        tree[0].setComment("// one", CP_before);
        tree[0].setComment("// two", CP_after);
    });
    failEach(smallSample, [](CFields& tree) { tree.setComment("// other", CP_before); });
}

TEST(Failure, addingToArrays)
{
    failEach(
        [] {
            CFields array;
            for (int i = 0; i < 12; ++i)
                array.addArrayAt("element");
            return array;
        },
        [](CFields& tree) { tree.addArrayAt(tree[0]); }, true);
    failEach(
        smallSample, [](CFields& tree) { tree[1].addArrayAt(tree); }, true);
    failEach(
        smallSample, [](CFields& tree) { tree[1].addArrayAt(CFields(tree[2])); }, true);
}

TEST(Failure, removing)
{
    for (const auto& make : {smallSample, largeSample})
    {
        failEach(
            make,
            [](CFields& tree) {
                CFields out;
                tree.removeChildAt(2, &out);
            },
            true);
        failEach(
            make, [](CFields& tree) { tree.removeChildAt(1, &tree); }, true);
        failEach(make, [](CFields& tree) {
            tree[3].setName(tree[5].getName());
            tree.removeChildAt(3);
            tree.removeChildAt(0);
        });
    }
}

TEST(Failure, swapping)
{
    failEach(smallSample, [](CFields& tree) {
        CFields other;
        other.setName("other");
        other.swapField(tree[2], true);
    });
    failEach(smallSample, [](CFields& tree) {
        tree[0].pkt_SetOSA4User(&tree);
        tree[1].swapValue(tree[0], true);
    });
}

TEST(Failure, searchingDeepTrees)
{
    const auto deep = [] {
        CFields root;
        CFields* node = &root;
        for (int i = 0; i < 100; ++i)
            node = &node->addChildRef("n");
        node->setID(5);
        return root;
    };
    failEach(
        deep, [](CFields& tree) { tree.findID(5); }, true);
    failEach(
        deep, [](CFields& tree) { tree.getMemberCount(); }, true);
    failEach(
        deep,
        [](CFields& tree) {
            const CFields& same = tree;
            static_cast<void>(tree == same);
        },
        true);
    failEach(
        deep, [](CFields& tree) { const CFields copy(tree); }, true);
    failEach(
        deep, [](CFields& tree) { tree.addChildRef("m", 7); }, true);
}

TEST(Failure, resizeKeepsTheOldStringAndStillSaysTrue)
{
    if (!CFailingMalloc::isMallocReached())
        GTEST_SKIP() << "NOT TESTED: another allocator is in the way";
    CFields node("abc");
    {
        const CFailingMalloc fail(1);
        EXPECT_TRUE(node.resizeCodes(1000, 'x'));
        EXPECT_TRUE(fail.hasFailed());
    }
    EXPECT_EQ("abc", node.asString());
}

TEST(Failure, messages)
{
    if (!CFailingMalloc::isMallocReached())
        GTEST_SKIP() << "NOT TESTED: another allocator is in the way";
    const auto failing = [](const std::function<void()>& action) {
        const CFailingMalloc fail(1);
        try
        {
            action();
        }
        catch (const CLogicError& error)
        {
            const CNoFailure calm;
            return withoutLine(error.what());
        }
        return std::string("nothing was thrown");
    };
    CFields node(1);
    node.setComment("//", CP_before);
    EXPECT_EQ(s_cpPrefixed, failing([&] { node = "text"; }));
    EXPECT_EQ(s_cpStream, failing([&] { node.setName("a name that has a block of its own"); }));
    EXPECT_EQ(s_cpStream, failing([&] { node.setComment("// text", CP_before); }));
    EXPECT_FALSE(node.hasComment(CP_before));
    EXPECT_EQ(s_cpStream, failing([] { const CAllotString name("name"); }));
}

}  // namespace
