// tests/core/field_static_test.cpp - the static nodes, also before main begins.
//
// The initialisers below run in an unknown order with those of other files, so the static nodes must be ready always.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "murv/fields.h"

namespace
{

using namespace murv;

struct tEarly
{
    bool m_bNull = CFields::null.isNull();
    bool m_bSame = &CFields::null == &CFields::nullRef;
    bool m_bFree = CFields::freeNull.isNull() && &CFields::freeNull != &CFields::null;
    bool m_bPei = CFields::pkt_IsNullExp(CFields::nullPktExp);
    CFields m_tCopy = CFields::null;
    const CFields& m_tMissing;
    CFields m_tTree;

    tEarly() : m_tMissing(static_cast<const CFields&>(m_tTree)["missing"])
    {
        m_tTree.addChildRef("a") = 5;
    }
    ~tEarly()
    {
        // The static nodes outlive this, and can be used to the very end.
        CFields::freeNull = "used while the process ends";
        CFields::freeNull = CFields();
    }
};

tEarly s_tEarly;

TEST(StaticNodes, areReadyBeforeMain)
{
    EXPECT_TRUE(s_tEarly.m_bNull);
    EXPECT_TRUE(s_tEarly.m_bSame);
    EXPECT_TRUE(s_tEarly.m_bFree);
    EXPECT_TRUE(s_tEarly.m_bPei);
    EXPECT_TRUE(s_tEarly.m_tCopy.isNull());
    EXPECT_EQ(5, s_tEarly.m_tTree["a"].asSint32());
}

TEST(StaticNodes, nullIsANullNode)
{
    EXPECT_EQ(DT_null, CFields::null.getDT());
    EXPECT_EQ(&CFields::null, &CFields::nullRef);
    EXPECT_TRUE(!CFields::null);
    EXPECT_EQ(0u, CFields::null.getChildCount());
    EXPECT_EQ(&CFields::nullRef, &CFields::null["a"]);
}

TEST(StaticNodes, freeNullIsWritableAndShared)
{
    CFields one;
    CFields other(5);
    one["missing"] = "shared";
    EXPECT_EQ("shared", other["missing"].asString());
    EXPECT_EQ(&CFields::freeNull, &other["missing"]);
    EXPECT_EQ(DT_null, one.getDT());
    EXPECT_TRUE(CFields::null.isNull());
    CFields::freeNull.removeAll(DT_null);
    EXPECT_TRUE(other["missing"].isNull());
}

TEST(StaticNodes, freeNullMayHoldATree)
{
    CFields::freeNull.addChildRef("a").addChildRef("b") = 1;
    EXPECT_EQ(2u, CFields::freeNull.getMemberCount());
    CFields::freeNull.removeAll(DT_null);
    CFields::freeNull.clearName();
    EXPECT_TRUE(CFields::freeNull.isNull());
}

TEST(StaticNodes, nullPacketExpressionIsAllZero)
{
    const unsigned char zeros[sizeof(tPacketExpInfo)] = {};
    EXPECT_EQ(0, std::memcmp(zeros, &CFields::nullPktExp, sizeof zeros));
}

}  // namespace
