// tests/core/packet_record_test.cpp - the packet expression that every node carries, and of the records beside it.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>

#include "murv/fields.h"
#include "tests/support/tree_text.h"

namespace
{

using namespace murv;

struct tBytes
{
    unsigned char m_uc[10] = {};
    bool operator==(const tBytes&) const = default;
};

tBytes bytes(const tPacketExpInfo& pei)
{
    static_assert(sizeof pei == sizeof(tBytes));
    tBytes result;
    std::memcpy(result.m_uc, &pei, sizeof pei);
    return result;
}

tPacketExpInfo pei(const tBytes& raw)
{
    tPacketExpInfo result;
    std::memcpy(&result, raw.m_uc, sizeof result);
    return result;
}

/// Ten different bytes, for tests that must not lose any.
tPacketExpInfo sample()
{
    return pei({{0xF5, 4, 0xFE, 0x93, 0x34, 0x12, 1, 2, 3, 4}});
}

TEST(PacketRecord, codesHaveTheirNumbers)
{
    EXPECT_EQ(0u, PEC_A);
    EXPECT_EQ(1u, PEC_B);
    EXPECT_EQ(0u, REC_C);
    EXPECT_EQ(1u, REC_N);
    EXPECT_EQ(0u, LEC_F);
    EXPECT_EQ(1u, LEC_V);
    EXPECT_EQ(2u, LEC_D);
}

TEST(PacketRecord, isTenBytesAndCopiedAsSuch)
{
    static_assert(sizeof(tPacketExpInfo) == 10);
    static_assert(alignof(tPacketExpInfo) == 1);
    static_assert(std::is_trivially_copyable_v<tPacketExpInfo>);
    EXPECT_TRUE(bytes(tPacketExpInfo{}) == tBytes{});
}

TEST(PacketRecord, eachFieldHasItsBits)
{
    tPacketExpInfo info{};
    info.m_ePacketExp = PEC_B;
    EXPECT_TRUE(bytes(info) == (tBytes{{0x01}}));
    info = {};
    info.m_eRuntimeExp = REC_N;
    EXPECT_TRUE(bytes(info) == (tBytes{{0x02}}));
    info = {};
    info.m_eLengthExp = LEC_V;
    EXPECT_TRUE(bytes(info) == (tBytes{{0x04}}));
    info.m_eLengthExp = LEC_D;
    EXPECT_TRUE(bytes(info) == (tBytes{{0x08}}));
    info.m_eLengthExp = static_cast<E_LengthExpCode>(3);
    EXPECT_TRUE(bytes(info) == (tBytes{{0x0C}}));
    info = {};
    info.m_uiReserved = 15;
    EXPECT_TRUE(bytes(info) == (tBytes{{0xF0}}));
    info = {};
    info.m_ucPrefixSize = 0xA5;
    EXPECT_TRUE(bytes(info) == (tBytes{{0, 0xA5}}));
    info = {};
    info.m_cCalibration = -2;
    EXPECT_TRUE(bytes(info) == (tBytes{{0, 0, 0xFE}}));
    info = {};
    info.m_ucSkKind = 15;
    EXPECT_TRUE(bytes(info) == (tBytes{{0, 0, 0, 0x0F}}));
    info = {};
    info.m_ucSkOption = 9;
    EXPECT_TRUE(bytes(info) == (tBytes{{0, 0, 0, 0x90}}));
}

TEST(PacketRecord, widerFieldsAreInTheHostsOrder)
{
    tBytes expected;
    const unsigned short index = 0x1234;
    const unsigned int length = 0x12345678;
    std::memcpy(expected.m_uc + 4, &index, sizeof index);
    std::memcpy(expected.m_uc + 6, &length, sizeof length);
    tPacketExpInfo info{};
    info.m_usSkIndex = index;
    info.m_uiLength = length;
    EXPECT_TRUE(bytes(info) == expected);
}

TEST(PacketRecord, aFreshNodeHasTheNullExpression)
{
    for (const CFields& node : {CFields(), CFields(5), CFields("x"), CFields(DT_array)})
        EXPECT_TRUE(CFields::pkt_IsNullExp(node.pkt_GetExp()));
}

TEST(PacketRecord, anySingleBitMakesItNotNull)
{
    EXPECT_TRUE(CFields::pkt_IsNullExp(tPacketExpInfo{}));
    for (unsigned int bit = 0; bit < 80; ++bit)
    {
        tBytes raw;
        raw.m_uc[bit / 8] = static_cast<unsigned char>(1u << (bit % 8));
        EXPECT_FALSE(CFields::pkt_IsNullExp(pei(raw))) << "bit " << bit;
    }
}

TEST(PacketRecord, isStoredAsGiven)
{
    CFields node(5);
    node.pkt_SetExp(sample());
    EXPECT_TRUE(bytes(node.pkt_GetExp()) == bytes(sample()));
    node.pkt_SetExp(CFields::nullPktExp);
    EXPECT_TRUE(CFields::pkt_IsNullExp(node.pkt_GetExp()));
}

TEST(PacketRecord, copiesAndMovesWithItsNode)
{
    CFields node(5);
    node.pkt_SetExp(sample());
    const CFields copy(node);
    EXPECT_TRUE(bytes(copy.pkt_GetExp()) == bytes(sample()));
    CFields field;
    field.setField(node);
    EXPECT_TRUE(bytes(field.pkt_GetExp()) == bytes(sample()));
    CFields value;
    value.setValue(node);
    EXPECT_TRUE(CFields::pkt_IsNullExp(value.pkt_GetExp()));
    const CFields moved(static_cast<CFields&&>(node));
    EXPECT_TRUE(bytes(moved.pkt_GetExp()) == bytes(sample()));
    CFields tree;
    tree.addChildRef("a").pkt_SetExp(sample());
    EXPECT_TRUE(bytes(CFields(tree)["a"].pkt_GetExp()) == bytes(sample()));
}

TEST(PacketRecord, staysWhenTheValueChanges)
{
    CFields node(5);
    node.pkt_SetExp(sample());
    node = "text";
    node.setValue(DT_fields);
    node.removeAll(DT_null);
    EXPECT_TRUE(bytes(node.pkt_GetExp()) == bytes(sample()));
}

TEST(PacketLength, theWordIsLengthTimesTwoPlusFlag)
{
    uPacketLengthExpression length{};
    length.m_uiLength31 = 7;
    EXPECT_EQ(14u, length.m_uiValue);
    length.m_bVariable = 1;
    EXPECT_EQ(15u, length.m_uiValue);
    length.m_uiValue = 0xFFFFFFFE;
    EXPECT_EQ(0x7FFFFFFFu, length.m_uiLength31);
    EXPECT_EQ(0u, length.m_bVariable);
    static_assert(sizeof length == 4);
}

TEST(UserPointer, isKeptAsGiven)
{
    const int user = 0;
    CFields node(5);
    EXPECT_EQ(nullptr, node.pkt_GetOSA4User());
    node.pkt_SetOSA4User(nullptr);
    EXPECT_EQ(nullptr, node.pkt_GetOSA4User());
    node.pkt_SetOSA4User(&user);
    EXPECT_EQ(&user, node.pkt_GetOSA4User());
    EXPECT_EQ(&user, CFields(node).pkt_GetOSA4User());
    node.pkt_SetOSA4User(nullptr);
    EXPECT_EQ(nullptr, node.pkt_GetOSA4User());
    EXPECT_EQ(5, node.asSint32());
}

TEST(CallbackArguments, areZeroAndWritable)
{
    CFields node(5);
    tInnerSupportedArgs4ESK& args = node.pkt_GetISA4ESK();
    EXPECT_EQ(nullptr, args.m_pPacket);
    EXPECT_EQ(0u, args.m_uiPacketLen);
    EXPECT_EQ(0u, args.m_uiOffset);
    EXPECT_EQ(nullptr, args.m_pMemo);
    args.m_uiOffset = 7;
    EXPECT_EQ(7u, node.pkt_GetISA4ESK().m_uiOffset);
    EXPECT_EQ(&args, &node.pkt_GetISA4ESK());
}

TEST(CallbackArguments, packetIsAStringOrBytes)
{
    const std::string made = "made";
    tInnerSupportedArgs4ESK args{};
    args.m_pPacket = &made;
    EXPECT_EQ(&made, args.madePacket());
    args.m_pPacket = made.data();
    EXPECT_EQ(made.data(), args.givenPacket());
}

}  // namespace
