// tests/packet/callback_test.cpp - external keywords: registration, what callbacks see, and what they may do.

#include "packet_helpers.h"

#include "support/failing_malloc.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using namespace murv;
using namespace murv::tests;

/// What the last callback saw.
struct tSeen
{
    int m_iCalls;
    unsigned short m_usIndex;
    unsigned char m_ucOption;
    std::string m_strPacket;
    unsigned int m_uiPacketLen;
    unsigned int m_uiOffset;
    bool m_bMemo;
};

tSeen s_tSeen;

int recordMade(unsigned short index, unsigned char option, CFields& node)
{
    const tInnerSupportedArgs4ESK& args = node.pkt_GetISA4ESK();
    s_tSeen = {s_tSeen.m_iCalls + 1,   index, option, *args.madePacket(), args.m_uiPacketLen, args.m_uiOffset,
               args.m_pMemo != nullptr};
    return 1;
}

int recordGiven(unsigned short index, unsigned char option, CFields& node)
{
    const tInnerSupportedArgs4ESK& args = node.pkt_GetISA4ESK();
    s_tSeen = {s_tSeen.m_iCalls + 1, index, option, {}, args.m_uiPacketLen, args.m_uiOffset, args.m_pMemo != nullptr};
    if (args.givenPacket() != nullptr)
        s_tSeen.m_strPacket.assign(args.givenPacket(), args.m_uiPacketLen);
    return 1;
}

int refuse(unsigned short, unsigned char, CFields&)
{
    return 0;
}

int refuseHard(unsigned short, unsigned char, CFields&)
{
    return -1;
}

int throwUp(unsigned short, unsigned char, CFields&)
{
    throw std::runtime_error("from the callback");
}

int fillText(unsigned short, unsigned char, CFields& node)
{
    node = "filled";
    return 1;
}

int giveThree(unsigned short, unsigned char, CFields& node)
{
    tPacketExpInfo pei = node.pkt_GetExp();
    pei.m_uiLength = 3;
    node.pkt_SetExp(pei);
    return 1;
}

class PacketCallback : public testing::Test
{
protected:
    PacketCallback()
    {
        s_tSeen = {};
    }

    /// The callback of a sample's "b" was called once, with this packet and this place in it.
    static void expectSeen(std::string_view packet, unsigned int packetLength, unsigned int offset)
    {
        EXPECT_EQ(s_tSeen.m_iCalls, 1);
        EXPECT_EQ(s_tSeen.m_usIndex, 7);
        EXPECT_EQ(s_tSeen.m_ucOption, 2);
        EXPECT_EQ(s_tSeen.m_strPacket, packet);
        EXPECT_EQ(s_tSeen.m_uiPacketLen, packetLength);
        EXPECT_EQ(s_tSeen.m_uiOffset, offset);
        EXPECT_TRUE(s_tSeen.m_bMemo);
    }

    /// A plain leaf "a", a leaf "b" with keyword 7 option 2 of kind 3, a plain leaf "c".
    static CFields sample(const tPacketExpInfo& pei = pei4("ACF", 4))
    {
        CFields tree(DT_fields);
        addLeaf(tree, "a", "AA", pei4("ACF", 2));
        addLeaf(tree, "b", "bb", withKeyword(pei, 3, 7, 2));
        addLeaf(tree, "c", "CC", pei4("ACF", 2));
        return tree;
    }

private:
    tCleanRegistries m_tClean;
};

TEST_F(PacketCallback, kindsFrom1To15AreStored)
{
    for (unsigned int kind = 0; kind <= 255; ++kind)
    {
        const auto byte = static_cast<unsigned char>(kind);
        const bool known = kind >= 1 && kind <= 15;
        EXPECT_EQ(CFields::setAllotPktFP4ESK(byte, &refuse), known) << kind;
        EXPECT_EQ(CFields::getAllotPktFP4ESK(byte), known ? &refuse : nullptr) << kind;
        EXPECT_EQ(CFields::getParsePktFP4ESK(byte), nullptr) << kind;
    }
}

TEST_F(PacketCallback, sixRegistriesAreSeparate)
{
    const CFields::tCheckIdxFP checkIdx = [](unsigned short, unsigned char) { return 1; };
    const CFields::tGetIdxFP getIdx = [](const char*, unsigned char) { return 1; };
    const CFields::tGetTxtFP getTxt = [](unsigned short, unsigned char) { return "x"; };
    EXPECT_TRUE(CFields::setCheckIdxFP4ESK(1, checkIdx));
    EXPECT_TRUE(CFields::setGetIdxFP4ESK(2, getIdx));
    EXPECT_TRUE(CFields::setGetTxtFP4ESK(3, getTxt));
    EXPECT_TRUE(CFields::setAllotPktFP4ESK(4, &refuse));
    EXPECT_TRUE(CFields::setParsePktFP4ESK(5, &refuseHard));
    EXPECT_TRUE(CFields::setCheckPktFP4ESK(6, &throwUp));
    for (unsigned char kind = 1; kind <= 6; ++kind)
    {
        EXPECT_EQ(CFields::getCheckIdxFP4ESK(kind), kind == 1 ? checkIdx : nullptr);
        EXPECT_EQ(CFields::getGetIdxFP4ESK(kind), kind == 2 ? getIdx : nullptr);
        EXPECT_EQ(CFields::getGetTxtFP4ESK(kind), kind == 3 ? getTxt : nullptr);
        EXPECT_EQ(CFields::getAllotPktFP4ESK(kind), kind == 4 ? &refuse : nullptr);
        EXPECT_EQ(CFields::getParsePktFP4ESK(kind), kind == 5 ? &refuseHard : nullptr);
        EXPECT_EQ(CFields::getCheckPktFP4ESK(kind), kind == 6 ? &throwUp : nullptr);
    }
    EXPECT_FALSE(CFields::setCheckIdxFP4ESK(0, checkIdx) || CFields::setGetIdxFP4ESK(16, getIdx) ||
                 CFields::setGetTxtFP4ESK(0, getTxt) || CFields::setParsePktFP4ESK(16, &refuse) ||
                 CFields::setCheckPktFP4ESK(255, &refuse));
}

TEST_F(PacketCallback, nullClears)
{
    EXPECT_TRUE(CFields::setAllotPktFP4ESK(15, &refuse));
    EXPECT_TRUE(CFields::setAllotPktFP4ESK(15, nullptr));
    EXPECT_EQ(CFields::getAllotPktFP4ESK(15), nullptr);
}

TEST_F(PacketCallback, missingCallbackThrows)
{
    CFields tree = sample();
    EXPECT_EQ(thrown([&tree] { tree.pkt_Make4Children(true); }),
              "[murv::CFields::pkt_allotValue4SKI#0] Found not allocation event for ESK(external supporting keyword)");
    EXPECT_EQ(thrown([&tree] { parsedTree(tree, "AAbbbbCC", false); }),
              "[murv::CFields::pkt_parsePrepare4SKI#0] Found not parsing event for ESK(external supporting keyword)");
    EXPECT_EQ(
        thrown([&tree] { failedLeaves(tree, "AAbbbbCC"); }),
        "[murv::CFields::pkt_detailCheckValue4SKI#0] Found not checking event for ESK(external supporting keyword)");
    EXPECT_EQ(thrown([&tree] { failedLeaves(tree, "AA"); }).substr(0, 5), "[murv");
    EXPECT_EQ(tree.pkt_Make4Children(false), "AAbb  CC");
}

TEST_F(PacketCallback, makingShowsThePacketSoFar)
{
    CFields::setAllotPktFP4ESK(3, &recordMade);
    CFields tree = sample();
    EXPECT_EQ(tree.pkt_Make4Children(true), "AAbb  CC");
    expectSeen("AA", 0, 0);
    EXPECT_TRUE(isCallbackRecordZero(tree["b"]));
}

TEST_F(PacketCallback, parsingShowsPacketAndOffset)
{
    CFields::setParsePktFP4ESK(3, &recordGiven);
    CFields tree = sample();
    EXPECT_EQ(parsedTree(tree, "AAxyzwCC"), 0);
    expectSeen("AAxyzwCC", 8, 2);
    EXPECT_EQ(tree["b"], CFields("xyzw"));
    EXPECT_TRUE(isCallbackRecordZero(tree["b"]));
}

TEST_F(PacketCallback, checkingShowsPacketAndOffset)
{
    CFields::setCheckPktFP4ESK(3, &recordGiven);
    CFields tree = sample();
    EXPECT_EQ(failedLeaves(tree, "AAxyzwCC"), 0u);
    expectSeen("AAxyzwCC", 8, 2);
    EXPECT_TRUE(isCallbackRecordZero(tree["b"]));
}

TEST_F(PacketCallback, checkingIsNotAskedAboutAnItemOutsideThePacket)
{
    CFields::setCheckPktFP4ESK(3, &recordGiven);
    CFields tree = sample();
    EXPECT_EQ(failedLeaves(tree, "AAxyz"), 1u);
    EXPECT_EQ(s_tSeen.m_iCalls, 0);
    // Nor about one without length whose place is outside.
    CFields unsized = sample(pei4("ACD", 0));
    EXPECT_EQ(failedLeaves(unsized, "A"), 1u);
    EXPECT_EQ(unsized.pkt_DetailCheck4Children(nullptr, 4), 1u);
    EXPECT_EQ(s_tSeen.m_iCalls, 0);
    EXPECT_EQ(failedLeaves(unsized, "AA"), 0u);
    EXPECT_EQ(s_tSeen.m_iCalls, 1);
}

TEST_F(PacketCallback, valueFilledInIsLaidOut)
{
    CFields::setAllotPktFP4ESK(3, &fillText);
    CFields tree = sample(pei4("ACV", 2));
    EXPECT_EQ(tree.pkt_Make4Children(true), "AA08filledCC");
    EXPECT_EQ(tree["b"].pkt_Make4OneSelf(true), "08filled");
}

TEST_F(PacketCallback, refusalSkipsTheItemWhileMaking)
{
    for (const CFields::tAllotPktFP callback : {&refuse, &refuseHard})
    {
        CFields::setAllotPktFP4ESK(3, callback);
        EXPECT_EQ(sample().pkt_Make4Children(true), "AACC");
    }
}

TEST_F(PacketCallback, refusalLeavesTheValueWhileParsingAndGoesOnAfterIt)
{
    CFields::setParsePktFP4ESK(3, &refuse);
    CFields tree = sample();
    EXPECT_EQ(parsedTree(tree, "aaxyzwcc"), 0);
    EXPECT_EQ(tree["a"], CFields("aa"));
    EXPECT_EQ(tree["b"], CFields("bb"));
    EXPECT_EQ(tree["c"], CFields("cc"));
}

TEST_F(PacketCallback, refusalCountsAsFailedWhileChecking)
{
    CFields::setCheckPktFP4ESK(3, &refuse);
    CFields tree = sample();
    EXPECT_EQ(failedLeaves(tree, "AAxyzwCC"), 1u);
    EXPECT_FALSE(tree["b"].pkt_DetailCheck4OneSelf("xyzw", 4));
}

TEST_F(PacketCallback, exceptionPassesAndTheRecordIsZeroAgain)
{
    CFields::setAllotPktFP4ESK(3, &throwUp);
    CFields::setParsePktFP4ESK(3, &throwUp);
    CFields::setCheckPktFP4ESK(3, &throwUp);
    CFields tree = sample();
    EXPECT_THROW(tree.pkt_Make4Children(true), std::runtime_error);
    EXPECT_TRUE(isCallbackRecordZero(tree["b"]));
    EXPECT_THROW(parsedTree(tree, "aaxyzwcc"), std::runtime_error);
    EXPECT_TRUE(isCallbackRecordZero(tree["b"]));
    EXPECT_EQ(tree["a"], CFields("aa"));
    EXPECT_THROW(failedLeaves(tree, "aaxyzwcc"), std::runtime_error);
    EXPECT_TRUE(isCallbackRecordZero(tree["b"]));
}

TEST_F(PacketCallback, makingDoesNotAskAboutItemsWithoutLength)
{
    CFields::setAllotPktFP4ESK(3, &recordMade);
    for (const char* letters : {"ACF", "BNV", "ACD"})
    {
        EXPECT_EQ(sample(pei4(letters, 0)).pkt_Make4Children(true), "AACC");
        EXPECT_EQ(s_tSeen.m_iCalls, 0) << letters;
    }
}

TEST_F(PacketCallback, parsingAndCheckingAskAboutItemsWithoutLength)
{
    CFields::setParsePktFP4ESK(3, &recordGiven);
    CFields::setCheckPktFP4ESK(3, &recordGiven);
    tPacketExpInfo unknown = pei4("ACF", 4);
    unknown.m_eLengthExp = static_cast<E_LengthExpCode>(3);
    for (const tPacketExpInfo& pei : {pei4("ACF", 0), pei4("BNV", 0), pei4("ACD", 0), unknown})
    {
        s_tSeen = {};
        CFields tree = sample(pei);
        EXPECT_EQ(parsedTree(tree, "aacc"), 0);
        EXPECT_EQ(s_tSeen.m_iCalls, 1);
        EXPECT_EQ(s_tSeen.m_uiOffset, 2u);
        EXPECT_EQ(tree["b"], CFields("bb"));
        EXPECT_EQ(tree["c"], CFields("cc"));
        EXPECT_EQ(failedLeaves(tree, "aacc"), 0u);
        EXPECT_EQ(s_tSeen.m_iCalls, 2);
        CFields::setCheckPktFP4ESK(3, &refuse);
        EXPECT_EQ(failedLeaves(tree, "aacc"), 1u);
        CFields::setCheckPktFP4ESK(3, &recordGiven);
    }
}

TEST_F(PacketCallback, missingCallbackThrowsForAnItemWithoutLength)
{
    CFields tree = sample(pei4("ACD", 0));
    EXPECT_EQ(tree.pkt_Make4Children(true), "AACC");
    EXPECT_EQ(thrown([&tree] { parsedTree(tree, "aacc"); }),
              "[murv::CFields::pkt_parsePrepare4SKI#0] Found not parsing event for ESK(external supporting keyword)");
    EXPECT_EQ(
        thrown([&tree] { failedLeaves(tree, "aacc"); }),
        "[murv::CFields::pkt_detailCheckValue4SKI#0] Found not checking event for ESK(external supporting keyword)");
}

TEST_F(PacketCallback, offsetIsNeverAboveTheLengthOfThePacket)
{
    CFields::setParsePktFP4ESK(3, &recordGiven);
    CFields::setCheckPktFP4ESK(3, &recordGiven);
    for (const unsigned int length : {0u, 1u, 3u, 100u, 0xFFFFFFFFu})
    {
        CFields tree(DT_fields);
        addLeaf(tree, "a", CFields(), pei4("ACF", length));
        addLeaf(tree, "b", CFields(), pei4("ACF", length));
        addLeaf(tree, "mine", CFields(), withKeyword(pei4("ACD", 0), 3, 7));
        s_tSeen = {};
        parsedTree(tree, "xyz");
        EXPECT_EQ(s_tSeen.m_iCalls, 1) << length;
        EXPECT_LE(s_tSeen.m_uiOffset, 3u) << length;
        s_tSeen = {};
        EXPECT_EQ(failedLeaves(tree, "xyz"), length < 3 ? 0u : 1u) << length;
        EXPECT_LE(s_tSeen.m_uiOffset, 3u) << length;
    }
}

TEST_F(PacketCallback, lengthMayBeGivenWhileParsing)
{
    CFields::setParsePktFP4ESK(3, &giveThree);
    for (const char* letters : {"ACD", "ACF"})
    {
        CFields tree(DT_fields);
        addLeaf(tree, "mine", CFields(), withKeyword(pei4(letters, 0), 3, 7));
        addLeaf(tree, "next", CFields(), pei4("ACF", 1));
        EXPECT_EQ(parsedTree(tree, "abcde"), 1);
        EXPECT_EQ(tree["mine"], CFields("abc"));
        EXPECT_EQ(recorded4(tree["mine"]), 3u);
        EXPECT_EQ(tree["next"], CFields("d"));
        tree["mine"].pkt_SetExp(withKeyword(pei4(letters, 0), 3, 7));
        EXPECT_EQ(parsedTree(tree, "ab"), -1 - 1);
        EXPECT_EQ(tree["mine"], CFields("abc"));
        tree["mine"].pkt_SetExp(withKeyword(pei4(letters, 0), 3, 7));
        EXPECT_EQ(parsedTree(tree, "abcde", false), 1);
    }
}

TEST_F(PacketCallback, lengthMayBeGivenWhileChecking)
{
    CFields::setCheckPktFP4ESK(3, &giveThree);
    const tPacketExpInfo without = withKeyword(pei4("ACD", 0), 3, 7);
    CFields tree(DT_fields);
    addLeaf(tree, "mine", CFields(), without);
    addLeaf(tree, "month", CFields(), withKeyword(pei4("ANF", 2), 0, 15));
    EXPECT_EQ(failedLeaves(tree, "abc12"), 0u);
    tree["mine"].pkt_SetExp(without);
    EXPECT_EQ(failedLeaves(tree, "abc13"), 1u);
    tree["mine"].pkt_SetExp(without);
    EXPECT_EQ(failedLeaves(tree, "12"), 2u);
}

TEST_F(PacketCallback, lengthMayBeGivenAtRunTimeOnceASizeIsKnown)
{
    CFields::setAllotPktFP4ESK(3, &giveThree);
    CFields::setParsePktFP4ESK(3, &giveThree);
    CFields tree(DT_fields);
    addLeaf(tree, "len", 0, withKeyword(pei4("ANF", 1), 0, 4, 1));
    CFields& body = addLeaf(tree, "body", "x", withKeyword(pei4("ACD", 0), 3, 7));
    EXPECT_EQ(tree.pkt_Make4Children(true), "0x  ");
    body.pkt_SetExp(withKeyword(pei4("ACD", 0), 3, 7));
    EXPECT_EQ(parsedTree(tree, "5abcd"), 1);
    EXPECT_EQ(body, CFields("abc"));
}

TEST_F(PacketCallback, nodeMayBecomeAContainerMeanwhile)
{
    const CFields::tAllotPktFP grow = [](unsigned short, unsigned char, CFields& node) {
        const tPacketExpInfo pei = node.pkt_GetExp();
        node.setValue(DT_fields);
        node.addChildRef("inside") = "text";
        node.pkt_SetExp(pei);
        return 1;
    };
    CFields::setAllotPktFP4ESK(3, grow);
    CFields::setParsePktFP4ESK(3, grow);
    CFields made = sample();
    EXPECT_EQ(made.pkt_Make4Children(true), "AACC");
    CFields read = sample();
    EXPECT_EQ(parsedTree(read, "aacc"), 0);
    EXPECT_EQ(read["c"], CFields("cc"));
    EXPECT_EQ(read["b"]["inside"], CFields("text"));
}

TEST_F(PacketCallback, nodeMayLoseValueAndExpressionMeanwhile)
{
    const CFields::tAllotPktFP clear = [](unsigned short, unsigned char, CFields& node) {
        node.removeAll();
        node.pkt_SetExp(CFields::nullPktExp);
        return 1;
    };
    CFields::setAllotPktFP4ESK(3, clear);
    CFields::setParsePktFP4ESK(3, clear);
    CFields::setCheckPktFP4ESK(3, clear);
    EXPECT_EQ(sample().pkt_Make4Children(true), "AACC");
    CFields read = sample();
    EXPECT_EQ(parsedTree(read, "aacc"), 0);
    EXPECT_EQ(read["c"], CFields("cc"));
    CFields checked = sample();
    EXPECT_EQ(failedLeaves(checked, "aaxyzwcc"), 0u);
}

TEST_F(PacketCallback, nodeMayBeMovedOutMeanwhile)
{
    const CFields::tAllotPktFP takeOut = [](unsigned short, unsigned char, CFields& node) {
        const CFields taken(std::move(node));
        return taken.isNull() ? 0 : 1;
    };
    CFields::setAllotPktFP4ESK(3, takeOut);
    CFields tree = sample();
    EXPECT_EQ(tree.pkt_Make4Children(true), "AACC");
    EXPECT_TRUE(isCallbackRecordZero(tree[1u]));
}

TEST_F(PacketCallback, registryMayChangeMeanwhile)
{
    CFields::setAllotPktFP4ESK(3, [](unsigned short, unsigned char, CFields& node) {
        node = "once";
        CFields::setAllotPktFP4ESK(3, &fillText);
        return 1;
    });
    CFields tree(DT_array);
    for (int i = 0; i < 2; ++i)
        addLeaf(tree, "", 0, withKeyword(pei4("ACF", 6), 3, 1));
    EXPECT_EQ(tree.pkt_Make4Children(true), "once  filled");
}

TEST_F(PacketCallback, packetsMayBeMadeMeanwhile)
{
    CFields::setAllotPktFP4ESK(3, [](unsigned short, unsigned char, CFields& node) {
        node = made(42, pei4("ACF", 4), true);
        return 1;
    });
    EXPECT_EQ(sample().pkt_Make4Children(true), "AA0042CC");
}

TEST_F(PacketCallback, longPacketIsSeenWhole)
{
    CFields::setAllotPktFP4ESK(3, &recordMade);
    CFields tree(DT_array);
    addLeaf(tree, "", std::string(2000, 'x'), pei4("ACF", 2000));
    addLeaf(tree, "", "y", withKeyword(pei4("ACF", 1), 3, 1));
    EXPECT_EQ(tree.pkt_Make4Children(true), std::string(2000, 'x') + "y");
    EXPECT_EQ(s_tSeen.m_strPacket, std::string(2000, 'x'));
}

// Memory.

TEST(PacketMemory, lengthThatCannotBeAllottedEndsInBadAlloc)
{
    if (!CFailingMalloc::isNewReached())
        GTEST_SKIP() << "NOT TESTED: operator new cannot be made to fail here";
    for (const char* letters : {"ACF", "ANF", "BCF", "BNF", "ACD"})
    {
        for (const CFields& value : {CFields("ab"), CFields(-5), CFields(), CFields(true), CFields(1.5)})
        {
            CFields tree(DT_fields);
            addLeaf(tree, "a", "AA", pei4("ACF", 2));
            addLeaf(tree, "b", value, pei4(letters, 0xFFFFFFFF));
            bool thrownBadAlloc = false;
            {
                const CFailingMalloc failing(1);
                try
                {
                    tree.pkt_Make4Children(true);
                }
                catch (const std::bad_alloc&)
                {
                    thrownBadAlloc = true;
                }
            }
            EXPECT_TRUE(thrownBadAlloc) << letters;
            EXPECT_EQ(tree["a"], CFields("AA"));
            EXPECT_EQ(tree["b"], value);
        }
    }
}

CFields memorySample()
{
    CFields tree(DT_fields);
    addLeaf(tree, "len", 0, withKeyword(pei4("ANF", 4), 0, 4, 1));
    addLeaf(tree, "body", std::string(700, 'x'), withKeyword(pei4("ACD", 0), 0, 3, 1));
    addLeaf(tree, "esk", "e", withKeyword(pei4("ACF", 6), 3, 1));
    addLeaf(tree, "number", 5, pei4("ANV", 2));
    addLeaf(tree, "text", 5, pei4("ACF", 3));
    return tree;
}

/// Lets one allocation after the other fail until none is left; the tree must stay usable each time.
template <typename tWork>
void failEach(CFields& tree, tWork&& work)
{
    for (long n = 1; n < 100; ++n)
    {
        bool failed = false;
        {
            const CFailingMalloc failing(n);
            try
            {
                work(tree);
            }
            catch (const std::bad_alloc&)
            {
                failed = true;
            }
            catch (const CLogicError&)
            {
                failed = true;
            }
            if (!failing.hasFailed())
            {
                EXPECT_FALSE(failed);
                return;
            }
        }
        EXPECT_TRUE(isCallbackRecordZero(tree["esk"]));
        EXPECT_EQ(tree.getChildCount(), 5u);
    }
    ADD_FAILURE() << "allocations never end";
}

TEST(PacketMemory, everyAllocationMayFail)
{
    if (!CFailingMalloc::isNewReached())
        GTEST_SKIP() << "NOT TESTED: operator new cannot be made to fail here";
    const tCleanRegistries clean;
    CFields::setAllotPktFP4ESK(3, &fillText);
    CFields::setCheckPktFP4ESK(3, [](unsigned short, unsigned char, CFields&) { return 1; });
    CFields::setParsePktFP4ESK(3, [](unsigned short, unsigned char, CFields&) { return 1; });
    CFields tree = memorySample();
    failEach(tree, [](CFields& node) { node.pkt_Make4Children(true); });
    const std::string packet = tree.pkt_Make4Children(true);
    EXPECT_EQ(packet, "0700" + std::string(700, 'x') +
                          "filled"
                          "035"
                          "005");
    CFields read = memorySample();
    tPacketExpInfo number = pei4("ANV", 2);
    number.m_uiLength = 3;
    read["number"].pkt_SetExp(number);
    failEach(read, [&packet](CFields& node) {
        node.pkt_Parse4Children(packet.data(), static_cast<unsigned int>(packet.size()), true);
    });
    EXPECT_EQ(parsedTree(read, packet), 0);
    EXPECT_EQ(read["text"], CFields("005"));
    failEach(read, [&packet](CFields& node) {
        node.pkt_DetailCheck4Children(packet.data(), static_cast<unsigned int>(packet.size()));
    });
}

TEST_F(PacketCallback, aNodeThatIsMovedAwayDoesNotTakeTheViewOfThePacketAlong)
{
    const tCleanRegistries clean;
    CFields::setAllotPktFP4ESK(3, [](unsigned short, unsigned char, CFields& node) {
        CFields taken(std::move(node));
        EXPECT_EQ(nullptr, taken.pkt_GetISA4ESK().m_pPacket);
        node = "z";
        return 1;
    });
    CFields leaf("a");
    tPacketExpInfo pei = pei4("ACF", 1);
    pei.m_uiLength = 1;
    pei.m_ucPrefixSize = 0;
    pei.m_ucSkKind = 3;
    pei.m_usSkIndex = 1;
    leaf.pkt_SetExp(pei);
    leaf.pkt_Make4OneSelf(true);
    EXPECT_EQ(nullptr, leaf.pkt_GetISA4ESK().m_pPacket);
}

}  // namespace
