// tests/io/member_builder_test.cpp - filling a container on the stack and putting it into its final place.
#include "io/member_builder.h"

#include <gtest/gtest.h>

#include <new>

using namespace murv;
using namespace murv::detail;

namespace
{

struct tSite
{
    explicit tSite(E_DataType type = DT_fields, std::size_t documentSize = 100000)
    {
        m_tNode.setValue(type);
        m_tStack.prepare(documentSize);
    }

    CNodeStack m_tStack;
    CFields m_tNode;
    CFields* m_pFollow = nullptr;
};

std::string name(unsigned int i)
{
    return "n" + std::to_string(i);
}

}  // namespace

TEST(MemberBuilder, theContainerIsAnOrdinaryNodeAllTheTime)
{
    tSite site;
    CMemberBuilder builder(site.m_tStack, site.m_tNode, site.m_pFollow, 1);
    EXPECT_EQ(site.m_tNode.getChildCount(), 0u);
    builder.append("a", 1) = 5;
    builder.append("", 0) = 6;
    EXPECT_EQ(site.m_tNode.getChildCount(), 2u);
    EXPECT_EQ(site.m_tNode["a"].asSint32(), 5);
    EXPECT_EQ(site.m_tNode.findID(1), &site.m_tNode["a"]);
    builder.close();
    EXPECT_EQ(site.m_tNode.getChildCount(), 2u);
    EXPECT_EQ(site.m_tNode["a"].asSint32(), 5);
    EXPECT_EQ(site.m_tNode.getChildAt(1).asSint32(), 6);
}

TEST(MemberBuilder, anEmptyContainerClosesEmpty)
{
    tSite site;
    {
        CMemberBuilder builder(site.m_tStack, site.m_tNode, site.m_pFollow, 1);
        builder.close();
    }
    EXPECT_EQ(site.m_tNode.getChildCount(), 0u);
    site.m_tNode.addChildRef("a") = 1;
    EXPECT_EQ(site.m_tNode.getChildCount(), 1u);
}

TEST(MemberBuilder, findsTheFirstOfANameAtEverySize)
{
    for (const unsigned int count : {1u, 8u, 9u, 64u, 65u, 4096u, 4097u, 6000u})
    {
        tSite site;
        CMemberBuilder builder(site.m_tStack, site.m_tNode, site.m_pFollow, 1);
        for (unsigned int i = 0; i < count; ++i)
        {
            ASSERT_EQ(builder.find(name(i)), CNameIndex::s_cuiNone);
            builder.append(name(i), 0);
        }
        builder.append(name(0), 0);
        for (unsigned int i = 0; i < count; ++i)
            ASSERT_EQ(builder.find(name(i)), i);
        EXPECT_EQ(builder.find("other"), CNameIndex::s_cuiNone);
        builder.close();
    }
}

TEST(MemberBuilder, findsNamesBetweenMembersWithoutNames)
{
    tSite site;
    CMemberBuilder builder(site.m_tStack, site.m_tNode, site.m_pFollow, 1);
    for (int i = 0; i < 100; ++i)
        builder.append("", 0);
    EXPECT_EQ(builder.find("a"), CNameIndex::s_cuiNone);
    builder.append("a", 0);
    EXPECT_EQ(builder.find("a"), 100u);
    builder.append("b", 0);
    EXPECT_EQ(builder.find("b"), 101u);
    builder.close();
}

TEST(MemberBuilder, leavesOutNamesBeyond255Bytes)
{
    tSite site;
    CMemberBuilder builder(site.m_tStack, site.m_tNode, site.m_pFollow, 1);
    EXPECT_EQ(builder.append(std::string(255, 'n'), 0).getNameLen(), 255u);
    EXPECT_EQ(builder.append(std::string(256, 'n'), 0).getNameLen(), 0u);
    EXPECT_EQ(builder.find(std::string(255, 'n')), 0u);
    EXPECT_EQ(builder.find(std::string(256, 'n')), CNameIndex::s_cuiNone);
    builder.close();
}

TEST(MemberBuilder, containersNest)
{
    tSite site;
    CMemberBuilder outer(site.m_tStack, site.m_tNode, site.m_pFollow, 1);
    outer.append("before", 0) = 1;
    CFields& inner = outer.append("inner", 0);
    inner.setValue(DT_array);
    {
        CMemberBuilder builder(site.m_tStack, inner, site.m_pFollow, 2);
        for (int i = 0; i < 10; ++i)
            builder.appendElement() = i;
        builder.close();
    }
    outer.append("after", 0) = 2;
    outer.close();
    EXPECT_EQ(site.m_tNode["before"].asSint32(), 1);
    EXPECT_EQ(site.m_tNode["inner"].getChildCount(), 10u);
    EXPECT_EQ(site.m_tNode["inner"].getChildAt(9).asSint32(), 9);
    EXPECT_EQ(site.m_tNode["after"].asSint32(), 2);
}

TEST(MemberBuilder, membersStayWhereTheyAreOncePinned)
{
    tSite site;
    CMemberBuilder builder(site.m_tStack, site.m_tNode, site.m_pFollow, 1);
    builder.append("a", 0) = 1;
    builder.pin();
    CFields* const a = &site.m_tNode["a"];
    CFields* const b = &builder.append("b", 0);
    for (unsigned int i = 0; i < 1000; ++i)
        builder.append(name(i), 0);
    builder.close();
    EXPECT_EQ(&site.m_tNode["a"], a);
    EXPECT_EQ(&site.m_tNode["b"], b);
}

TEST(MemberBuilder, thePointerThatFollowsStaysRight)
{
    tSite site;
    CMemberBuilder builder(site.m_tStack, site.m_tNode, site.m_pFollow, 1);
    for (unsigned int i = 0; i < 5; ++i)
        builder.append(name(i), 0) = i;
    site.m_pFollow = &site.m_tNode["n3"];
    builder.close();
    EXPECT_EQ(site.m_pFollow, &site.m_tNode["n3"]);
    CFields elsewhere;
    site.m_pFollow = &elsewhere;
    CFields other(DT_array);
    CMemberBuilder second(site.m_tStack, other, site.m_pFollow, 2);
    second.appendElement();
    second.close();
    EXPECT_EQ(site.m_pFollow, &elsewhere);
}

TEST(MemberBuilder, aContainerLeftOpenKeepsItsMembers)
{
    tSite site;
    {
        CMemberBuilder builder(site.m_tStack, site.m_tNode, site.m_pFollow, 1);
        builder.append("a", 0) = "text";
    }
    EXPECT_EQ(site.m_tNode.getChildCount(), 1u);
    EXPECT_EQ(site.m_tNode["a"].asString(), "text");
}

TEST(MemberBuilder, worksWithoutAnyStack)
{
    CNodeStack none;
    CFields node(DT_fields);
    CFields* follow = nullptr;
    CMemberBuilder builder(none, node, follow, 1);
    for (unsigned int i = 0; i < 100; ++i)
        builder.append(name(i), 0) = i;
    builder.close();
    EXPECT_EQ(node["n99"].asUint32(), 99u);
}

TEST(MemberBuilder, goesOnElsewhereWhenTheStackIsFull)
{
    tSite site(DT_fields, 0);
    CMemberBuilder builder(site.m_tStack, site.m_tNode, site.m_pFollow, 1);
    for (unsigned int i = 0; i < 1000; ++i)
        builder.append(name(i), 0) = i;
    builder.close();
    for (unsigned int i = 0; i < 1000; ++i)
        EXPECT_EQ(site.m_tNode.getChildAt(i).asUint32(), i);
}

TEST(MemberBuilder, theStackIsReusedFromItsBottom)
{
    tSite site;
    const char* const bottom = site.m_tStack.top();
    for (int round = 0; round < 3; ++round)
    {
        CFields node(DT_array);
        CMemberBuilder builder(site.m_tStack, node, site.m_pFollow, 1);
        builder.appendElement() = 1;
        EXPECT_NE(site.m_tStack.top(), bottom);
        builder.close();
        EXPECT_EQ(site.m_tStack.top(), bottom);
    }
}

TEST(MemberBuilder, numbersItsContainerAndThoseAroundItOnDemand)
{
    CIdIndex index;
    tSite site;
    CMemberBuilder outer(site.m_tStack, site.m_tNode, site.m_pFollow, 1);
    CFields& inner = outer.append("inner", 0);
    inner.setValue(DT_fields);
    CMemberBuilder builder(site.m_tStack, inner, site.m_pFollow, 2);
    builder.setPlace(&outer, {s_cuiNoPlace, 0});
    EXPECT_EQ(builder.number(), s_cuiNoPlace);
    const std::uint32_t set = builder.makeNumber(index);
    EXPECT_EQ(builder.makeNumber(index), set);
    EXPECT_NE(outer.number(), s_cuiNoPlace);
    EXPECT_NE(outer.number(), set);
    builder.close();
    outer.close();
}
