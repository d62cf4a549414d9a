// tests/core/field_assign_test.cpp - assignment, and of operations whose source is part of their target.
//
// Whatever the source is (the node itself, a member, the parent), the result is the one that a copy made beforehand
// would give.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "murv/fields.h"
#include "tests/support/thrown.h"
#include "tests/support/tree_text.h"

namespace
{

using namespace murv;
using murv::tests::describe;
using murv::tests::thrown;

/// A named member that holds 1, with ID 3, a packet expression, a comment.
CFields member()
{
    CFields node(1);
    node.setName("member");
    node.setID(3);
    node.setComment("// kept", CP_before);
    tPacketExpInfo pei{};
    pei.m_ucSkKind = 1;
    node.pkt_SetExp(pei);
    return node;
}

void expectStillMember(const CFields& node)
{
    EXPECT_STREQ("member", node.getName());
    EXPECT_EQ(3u, node.getID());
    EXPECT_EQ("// kept", node.getCommentCopy(CP_before));
    EXPECT_EQ(1, node.pkt_GetExp().m_ucSkKind);
}

TEST(Assign, aBareValueReplacesValuesOnly)
{
    CFields node = member();
    node = CFields(5);
    EXPECT_EQ(5, node.asSint32());
    expectStillMember(node);
}

TEST(Assign, aBareValueMayBeATreeAndHaveTwoValues)
{
    CFields tree;
    tree.addChildRef("a") = 1;
    CFields node = member();
    node = tree;
    EXPECT_EQ(1, node["a"].asSint32());
    expectStillMember(node);
    CFields dual(1);
    dual.setValue(2, VK_fix);
    dual.setVK(VK_fix);
    node = dual;
    EXPECT_EQ(VK_fix, node.getVK());
    EXPECT_EQ(2, node.asSint64(VK_fix));
    expectStillMember(node);
}

TEST(Assign, commentsDoNotMakeAValueMore)
{
    CFields source(5);
    source.setComment("// dropped", CP_after);
    tPacketExpInfo pei{};
    pei.m_ePacketExp = PEC_B;
    pei.m_usSkIndex = 4;
    source.pkt_SetExp(pei);
    CFields node = member();
    node = source;
    EXPECT_EQ(5, node.asSint32());
    EXPECT_FALSE(node.hasComment(CP_after));
    expectStillMember(node);
}

TEST(Assign, anythingMoreIsTakenWhole)
{
    static const int user = 0;
    const std::function<void(CFields&)> makers[] = {
        [](CFields& node) { node.setName("other"); },
        [](CFields& node) { node.setID(9); },
        [](CFields& node) {
            tPacketExpInfo pei{};
            pei.m_ucPrefixSize = 1;
            node.pkt_SetExp(pei);
        },
        [](CFields& node) {
            tPacketExpInfo pei{};
            pei.m_uiLength = 1;
            node.pkt_SetExp(pei);
        },
        [](CFields& node) { node.pkt_SetOSA4User(&user); },
        [](CFields& node) { node.setOffsetStart(1); },
        [](CFields& node) { node.setOffsetEnd(1); },
    };
    for (const auto& make : makers)
    {
        CFields source(5);
        make(source);
        CFields node = member();
        node = source;
        EXPECT_EQ(5, node.asSint32());
        EXPECT_STREQ(source.getName(), node.getName());
        EXPECT_EQ(source.getID() != 0 ? source.getID() : 3u, node.getID());
        EXPECT_FALSE(node.hasComment(CP_before));
        const tPacketExpInfo a = source.pkt_GetExp();
        const tPacketExpInfo b = node.pkt_GetExp();
        EXPECT_TRUE(a.m_ucPrefixSize == b.m_ucPrefixSize && a.m_uiLength == b.m_uiLength);
        EXPECT_EQ(source.pkt_GetOSA4User(), node.pkt_GetOSA4User());
        EXPECT_EQ(source.getOffsetStart(), node.getOffsetStart());
        EXPECT_EQ(source.getOffsetEnd(), node.getOffsetEnd());
    }
}

TEST(Assign, aMovedNodeGivesTheSame)
{
    CFields source(5);
    source.setName("other");
    CFields node = member();
    node = std::move(source);
    EXPECT_STREQ("other", node.getName());
    EXPECT_EQ(5, node.asSint32());
    EXPECT_EQ(3u, node.getID());
}

TEST(Assign, aMovedNodeCarriesItsMarkedSecondValue)
{
    CFields source("first");
    source.setValue(7, VK_fix);
    source.setVK(VK_fix);
    CFields node = member();
    node = std::move(source);
    EXPECT_EQ("first", node.asString());
    EXPECT_EQ(DT_sint, node.getDT(VK_fix));
    EXPECT_EQ(VK_fix, node.getVK());
}

TEST(Assign, plainValues)
{
    CFields node = member();
    EXPECT_EQ(&node, &(node = true));
    EXPECT_EQ(DT_bool, node.getDT());
    EXPECT_EQ(&node, &(node = -5));
    EXPECT_EQ(DT_sint, node.getDT());
    EXPECT_EQ(&node, &(node = 5u));
    EXPECT_EQ(DT_uint, node.getDT());
    EXPECT_EQ(&node, &(node = -6L));
    EXPECT_EQ(-6, node.asSint64());
    EXPECT_EQ(&node, &(node = 6UL));
    EXPECT_EQ(DT_uint, node.getDT());
    EXPECT_EQ(&node, &(node = CFields::minSint64));
    EXPECT_EQ(CFields::minSint64, node.asSint64());
    EXPECT_EQ(&node, &(node = CFields::maxUint64));
    EXPECT_EQ(CFields::maxUint64, node.asUint64());
    EXPECT_EQ(&node, &(node = 0.5));
    EXPECT_EQ(DT_double, node.getDT());
    EXPECT_EQ(&node, &(node = "text"));
    EXPECT_EQ("text", node.asString());
    EXPECT_EQ(&node, &(node = std::string("a\0b", 3)));
    EXPECT_EQ(3u, node.getRawBytes());
    EXPECT_EQ(&node, &(node = std::string_view("view")));
    EXPECT_EQ("view", node.asString());
    static const char literal[] = "static";
    EXPECT_EQ(&node, &(node = CStaticString(literal)));
    EXPECT_EQ(literal, node.getValuePtr());
    expectStillMember(node);
}

TEST(Assign, nullTextThrowsAndChangesNothing)
{
    const char* const null = nullptr;
    CFields node("kept");
    EXPECT_EQ("[murv::CFields::setValue#0] Value paramter has NULL pointer", thrown([&] { node = null; }));
    EXPECT_EQ("kept", node.asString());
}

TEST(Assign, plainValuesKeepTheSecond)
{
    CFields node(1);
    node.setVK(VK_fix);
    node = 5;
    EXPECT_EQ(VK_fix, node.getVK());
    EXPECT_EQ(1, node.asSint64(VK_fix));
}

/// "root" (ID 1) holds "list" [10, {x: "deep"}, 30] and "set" {p: 1, q: [2, 3]}; every part has something to lose.
CFields sample()
{
    CFields root;
    root.setName("root");
    root.setID(1);
    root.setComment("// root", CP_before);
    CFields& list = root.addChildRef("list", 2);
    list.addArrayAt(10);
    list.addArrayAt(CFields(DT_fields)).addChildRef("x", 3) = "deep";
    list[1].setComment("/* element */", CP_trailing);
    list.addArrayAt(30);
    CFields& set = root.addChildRef("set");
    set.addChildRef("p") = 1;
    CFields& q = set.addChildRef("q", 4);
    q.addArrayAt(2);
    q.addArrayAt(3);
    set["p"].setValue(7, VK_fix);
    set["p"].setVK(VK_valid);
    return root;
}

using tPick = std::function<CFields&(CFields&)>;

/// Every node of the sample, by a way that works for each copy of it.
std::vector<std::pair<const char*, tPick>> picks()
{
    return {
        {"root", [](CFields& t) -> CFields& { return t; }},
        {"list", [](CFields& t) -> CFields& { return t["list"]; }},
        {"list0", [](CFields& t) -> CFields& { return t["list"][0]; }},
        {"list1", [](CFields& t) -> CFields& { return t["list"][1]; }},
        {"x", [](CFields& t) -> CFields& { return t["list"][1]["x"]; }},
        {"list2", [](CFields& t) -> CFields& { return t["list"][2]; }},
        {"set", [](CFields& t) -> CFields& { return t["set"]; }},
        {"p", [](CFields& t) -> CFields& { return t["set"]["p"]; }},
        {"q", [](CFields& t) -> CFields& { return t["set"]["q"]; }},
        {"q1", [](CFields& t) -> CFields& { return t["set"]["q"][1]; }},
    };
}

/// Runs the operation on every pair of nodes of one tree, and once more with a copy of the second in its place.
void expectAsWithACopy(const std::function<void(CFields& target, const CFields& source)>& operation)
{
    for (const auto& [targetName, target] : picks())
    {
        for (const auto& [sourceName, source] : picks())
        {
            CFields direct = sample();
            CFields careful = sample();
            const CFields copy(source(careful));
            operation(target(direct), source(direct));
            operation(target(careful), copy);
            EXPECT_EQ(describe(careful), describe(direct)) << targetName << " from " << sourceName;
        }
    }
}

TEST(Aliasing, setValue)
{
    expectAsWithACopy([](CFields& target, const CFields& source) { target.setValue(source); });
}

TEST(Aliasing, setField)
{
    expectAsWithACopy([](CFields& target, const CFields& source) { target.setField(source); });
}

TEST(Aliasing, assignment)
{
    expectAsWithACopy([](CFields& target, const CFields& source) { target = source; });
}

TEST(Aliasing, addArrayAt)
{
    for (const bool valueOnly : {false, true})
    {
        expectAsWithACopy([valueOnly](CFields& target, const CFields& source) {
            if (target.isArray() || target.isNull())
                target.addArrayAt(source, valueOnly);
        });
    }
}

TEST(Aliasing, addArrayAtWhileTheArrayGrows)
{
    CFields array;
    array.addArrayAt("first").setName("name");
    for (int i = 0; i < 200; ++i)
        array.addArrayAt(array[i / 2]);
    for (int i = 0; i <= 200; ++i)
    {
        ASSERT_EQ("first", array[i].asString());
        ASSERT_STREQ("name", array[i].getName());
    }
}

TEST(Aliasing, addArrayAtOfItsOwnMovedElement)
{
    CFields array;
    array.addArrayAt("a");
    array.addArrayAt("b");
    for (int i = 0; i < 20; ++i)
        array.addArrayAt(std::move(array[i]));
    EXPECT_EQ(22u, array.getChildCount());
    EXPECT_TRUE(array[0].isNull());
    EXPECT_EQ("a", array[20].asString());
    EXPECT_EQ("b", array[21].asString());
}

TEST(Aliasing, addArrayAtOfAMovedHolder)
{
    CFields root = sample();
    CFields careful = sample();
    const CFields copy(careful);
    root["list"].addArrayAt(std::move(root));
    careful["list"].addArrayAt(copy);
    EXPECT_EQ(describe(careful), describe(root));
    CFields self;
    self.addArrayAt(1);
    self.addArrayAt(std::move(self));
    EXPECT_EQ(2u, self.getChildCount());
    EXPECT_EQ(1u, self[1].getChildCount());
}

TEST(Aliasing, addArrayAtOfAHolderThatWasMovedAboutBefore)
{
    // Whether a node can lie below another must follow its place, not what it holds.
    CFields root;
    root.addArrayAt(CFields(DT_array));
    root.addArrayAt(CFields(DT_array)).addArrayAt(1);
    root[0].swapField(root[1], true);
    CFields out(std::move(root[0]));
    root[0] = std::move(out);
    root[1].setField(root[0]);
    root.addArrayAt(std::move(root[1]));
    root.removeChildAt(1);
    root[1].addArrayAt(std::move(root));
    ASSERT_EQ(2u, root.getChildCount());
    ASSERT_EQ(2u, root[1].getChildCount());
    EXPECT_EQ(2u, root[1][1].getChildCount());
    EXPECT_EQ("mismatched condition", thrown([&] { root.swapField(root[1][1][1], true); }));
    EXPECT_EQ("mismatched condition", thrown([&] { root[1][1].swapValue(root, true); }));
}

TEST(Aliasing, addArrayAtOfANullNodeItself)
{
    CFields node;
    node.addArrayAt(node);
    EXPECT_EQ(1u, node.getChildCount());
    EXPECT_TRUE(node[0].isNull());
    CFields other;
    other.addArrayAt(std::move(other));
    EXPECT_EQ(1u, other.getChildCount());
    EXPECT_TRUE(other[0].isNull());
}

TEST(Aliasing, assignmentOfAMovedMember)
{
    for (const auto& [name, pick] : picks())
    {
        CFields direct = sample();
        CFields careful = sample();
        CFields copy(pick(careful));
        direct = std::move(pick(direct));
        careful = std::move(copy);
        EXPECT_EQ(describe(careful), describe(direct)) << name;
    }
}

TEST(Aliasing, assignmentOfAMovedHolder)
{
    CFields root = sample();
    CFields careful = sample();
    const CFields copy(careful);
    root["list"] = std::move(root);
    careful["list"] = copy;
    EXPECT_EQ(describe(careful), describe(root));
    root = sample();
    careful = sample();
    root["list"][0] = std::move(root["list"]);
    const CFields list(careful["list"]);
    careful["list"][0] = list;
    EXPECT_EQ(describe(careful), describe(root));
}

TEST(Aliasing, assignmentOfALargeMovedHolder)
{
    CFields root;
    for (int i = 0; i < 1000; ++i)
        root.addChildRef("member " + std::to_string(i)).addArrayAt(i);
    CFields careful(root);
    const CFields copy(careful);
    root["member 999"] = std::move(root);
    careful["member 999"] = copy;
    EXPECT_EQ(describe(careful), describe(root));
}

TEST(Aliasing, assignmentOfAMovedHolderToANodeBelowItsFirstMember)
{
    CFields root;
    root.addChildRef("a").addChildRef("b").addChildRef("c") = 1;
    CFields careful(root);
    const CFields copy(careful);
    root["a"]["b"]["c"] = std::move(root);
    careful["a"]["b"]["c"] = copy;
    EXPECT_EQ(describe(careful), describe(root));
}

TEST(Aliasing, stdSwapOfAHolderAndItsMemberLosesNothingElse)
{
    CFields root;
    root.addChildRef("a").addChildRef("x") = 1;
    std::swap(root, root["a"]);
    EXPECT_EQ(1, root["x"].asSint32());
}

TEST(Aliasing, assignmentOfANodeMovedToItself)
{
    CFields node(5);
    node.setComment("// five", CP_before);
    tPacketExpInfo pei = {};
    pei.m_eLengthExp = LEC_D;
    pei.m_usSkIndex = 20;
    node.pkt_SetExp(pei);
    CFields& same = node;
    node = std::move(same);
    EXPECT_EQ(5, node.asSint32());
    EXPECT_EQ("// five", node.getCommentCopy(CP_before));
    EXPECT_EQ(20u, +node.pkt_GetExp().m_usSkIndex);
}

TEST(Aliasing, copyChildAtIntoItsHolder)
{
    CFields root = sample();
    const CFields expected(root["list"]);
    root = root.copyChildAt("list", root);
    EXPECT_TRUE(root == expected);
    EXPECT_STREQ("list", root.getName());
    CFields other = sample();
    other["set"] = other.copyChildAt("missing", other);
    EXPECT_EQ(2u, other["root"].getChildCount()) << "the fallback was the tree itself, with its name";
}

TEST(Aliasing, removeChildAtIntoAnyNode)
{
    // The member is copied, then removed, then put in place: that is what a separate `out` gives.
    for (const auto& [name, pick] : picks())
    {
        for (const char* const container : {"list", "set"})
        {
            for (unsigned int index = 0; index < 2; ++index)
            {
                CFields direct = sample();
                const CFields copy(direct[container][index]);
                CFields* const out = &pick(direct);
                const bool isHolder = out == &direct || out == &direct[container];
                const bool isGone = out == &direct[container][index] ||
                                    (std::string(name) == "x" && index == 1 && std::string(container) == "list") ||
                                    (std::string(name) == "q1" && index == 1 && std::string(container) == "set");
                CFields careful = sample();
                CFields apart;
                ASSERT_TRUE(careful[container].removeChildAt(index, &apart));
                ASSERT_EQ(describe(copy), describe(apart));
                ASSERT_TRUE(direct[container].removeChildAt(index, out));
                if (isHolder)
                {
                    CFields expected = sample();
                    pick(expected).setField(copy);
                    EXPECT_EQ(describe(expected), describe(direct)) << name;
                }
                else if (isGone)
                    EXPECT_EQ(describe(careful), describe(direct)) << name;
                else
                {
                    CFields expected = sample();
                    pick(expected).setField(copy);
                    expected[container].removeChildAt(index);
                    EXPECT_EQ(describe(expected), describe(direct)) << name;
                }
            }
        }
    }
}

TEST(Aliasing, removeChildAtByItsOwnName)
{
    CFields tree;
    tree.addChildRef("a") = 1;
    tree.addChildRef("b") = 2;
    CFields out;
    EXPECT_TRUE(tree.removeChildAt(tree[0].getName(), &out));
    EXPECT_EQ(1, out.asSint32());
    EXPECT_STREQ("b", tree[0].getName());
}

TEST(Aliasing, addChildByANameInTheTree)
{
    CFields tree;
    tree.addChildRef("a") = "name";
    const CFields& added = tree.addChildRef(static_cast<const char*>(tree[0].getValuePtr()));
    EXPECT_STREQ("name", added.getName());
    EXPECT_EQ(&tree[0], &tree.addChildRef(tree[0].getName()));
    EXPECT_TRUE(tree[1].setName(tree[0].getName()));
    EXPECT_STREQ("a", tree[1].getName());
    tree[0].setID(5);
    EXPECT_TRUE(tree.setChildName4ID(5, tree[0].getName()));
    EXPECT_STREQ("a", tree[0].getName());
}

TEST(Aliasing, commentsFromTheNodeItself)
{
    CFields node;
    node.setComment("// abc", CP_before);
    node.setComment(node.getCommentPtr(CP_before), CP_before);
    EXPECT_EQ("// abc", node.getCommentCopy(CP_before));
    node.setComment(node.getCommentPtr(CP_before) + 1, CP_before);
    EXPECT_EQ("/ abc", node.getCommentCopy(CP_before));
}

}  // namespace
