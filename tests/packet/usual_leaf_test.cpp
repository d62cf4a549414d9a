// tests/packet/usual_leaf_test.cpp - trees make and parse packets as slow walks over their leaves would.
//
// Usual leaves have a path of their own. Here they stand among all others, at every edge of it: lengths, values, types
// that the leaf had before, bytes that are missing, packets of about 512 bytes. Random trees are compared with models
// that know none of this.

#include "packet_helpers.h"
#include "packet_model.h"

#include "tests/support/same_tree.h"

#include "packet/item_make.h"
#include "packet/item_read.h"
#include "packet/usual_make.h"
#include "packet/usual_read.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <random>

namespace
{

using namespace murv;
using namespace murv::tests;

using tRandom = std::mt19937_64;

/// Mostly lengths at which something changes.
unsigned int randomLength(tRandom& random)
{
    constexpr unsigned int edges[] = {0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 18, 20, 31, 32, 33, 40};
    return random() % 4 == 0 ? static_cast<unsigned int>(random() % 20) : edges[random() % std::size(edges)];
}

/// A number that has between none and all of its bits, or is a power of ten or next to one.
std::uint64_t randomWord(tRandom& random)
{
    if (random() % 2 == 0)
        return random() >> (random() % 64);
    std::uint64_t power = 1;
    for (std::uint64_t i = random() % 20; i > 0; --i)
        power *= 10;
    return power - random() % 3;
}

std::string randomText(tRandom& random, std::size_t length)
{
    std::string text(length, '\0');
    for (char& byte : text)
        byte = static_cast<char>(random());
    return text;
}

/// A text that is a number or nearly one, or any bytes.
std::string randomItem(tRandom& random, std::size_t length)
{
    std::string text(length, '0');
    if (random() % 8 == 0)
        return randomText(random, length);
    for (std::size_t i = random() % (length + 1); i < length; ++i)
        text[i] = static_cast<char>('0' + random() % 10);
    if (length != 0 && random() % 3 == 0)
        text[0] = '-';
    if (length != 0 && random() % 6 == 0)
        text[random() % length] = "-+ ./:e\xB0"[random() % 8];
    return text;
}

/// A leaf with a value of any kind: owned, borrowed or no text, numbers, a container turned into a leaf.
CFields randomValue(tRandom& random)
{
    const std::uint64_t word = randomWord(random);
    switch (random() % 12)
    {
    case 0: return CFields();
    case 1: return CFields(random() % 2 == 0);
    case 2: return CFields(static_cast<double>(static_cast<std::int64_t>(word)) / 8);
    case 3: return CFields(CStaticString("a static text"));
    case 4: return CFields(DT_codelist);
    case 5:
    case 6:
    case 7: return CFields(randomText(random, randomLength(random)));
    case 8: return CFields(static_cast<unsigned long long>(word));
    case 9: return CFields(-static_cast<long long>(word >> 1));
    default: return CFields(static_cast<long long>(word));
    }
}

tPacketExpInfo randomExpression(tRandom& random)
{
    constexpr const char* letters[] = {"ACF", "ANF", "BCF", "BNF", "ACF", "ANF", "BCF",
                                       "BNF", "ACF", "ANF", "ACD", "AND", "ACV", "BCV"};
    const char* const chosen = letters[random() % std::size(letters)];
    const bool variable = chosen[2] == 'V';
    const tPacketExpInfo pei =
        pei4(chosen, variable ? 1 + static_cast<unsigned int>(random() % 3) : randomLength(random));
    return random() % 8 == 0 ? withKeyword(pei, 0, VK_fix) : pei;  // which says nothing about making and parsing
}

CFields randomLeaf(tRandom& random)
{
    CFields leaf = leaf4(randomValue(random), randomExpression(random));
    if (random() % 8 == 0)
    {
        leaf.setID(static_cast<unsigned int>(1 + random() % 1000));
        leaf.setComment("// comment", CP_before);
    }
    if (random() % 8 == 0)
    {
        leaf.setValue(7, VK_fix);
        leaf.setVK(VK_fix);
    }
    return leaf;
}

/// Leaves and, down to `depth`, arrays of leaves, some of them empty.
CFields randomTree(tRandom& random, unsigned int depth)
{
    CFields tree(DT_array);
    for (std::uint64_t i = random() % 9; i > 0; --i)
        tree.addChildRef("").setField(depth != 0 && random() % 5 == 0 ? randomTree(random, depth - 1)
                                                                      : randomLeaf(random));
    return tree;
}

/// The items of all leaves, one after the other; variable ones record their lengths.
std::string modelPacket(CFields& node)
{
    std::string packet;
    for (unsigned int i = 0; i < node.getChildCount(); ++i)
        packet += modelPacket(node[i]);
    if (node.getDT() == DT_array)
        return packet;
    tPacketExpInfo pei = node.pkt_GetExp();
    const bool ascii = pei.m_ePacketExp == PEC_A;
    if (pei.m_eLengthExp != LEC_V)
        return modelItem(node, ascii, false, pei.m_uiLength, 0);
    packet = modelItem(node, ascii, true, pei.m_ucPrefixSize, pei.m_cCalibration);
    pei.m_uiLength = static_cast<unsigned int>(packet.size());
    node.pkt_SetExp(pei);
    return packet;
}

TEST(UsualLeaf, treesMakeTheItemsOfTheirLeaves)
{
    tRandom random(1);
    for (int round = 0; round < 2000; ++round)
    {
        CFields tree = randomTree(random, 3);
        CFields model(tree);
        const std::string packet = modelPacket(model);
        for (const bool keywords : {false, true})
        {
            ASSERT_EQ(packet, tree.pkt_Make4Children(keywords)) << "round " << round;
            ASSERT_EQ("", difference(model, tree)) << "round " << round;
        }
    }
}

TEST(UsualLeaf, usualItemsAreThoseThatAllRulesMake)
{
    tRandom random(2);
    int usual = 0;
    for (int round = 0; round < 30000; ++round)
    {
        CFields leaf = leaf4(randomValue(random), randomExpression(random));
        char room[1 + 2 * detail::CPacketBuffer::s_cnSlack];
        std::memset(room, 'x', sizeof room);
        char* const end = detail::makeUsual(leaf, room + 1);
        ASSERT_EQ('x', room[0]);
        ASSERT_EQ('x', room[1 + detail::CPacketBuffer::s_cnSlack]) << "more is overwritten than allowed";
        if (end == nullptr)
            continue;
        ++usual;
        detail::CPacketBuffer packet;
        detail::makeOtherItem(leaf, packet);
        ASSERT_EQ(packet.take(), std::string(room + 1, static_cast<std::size_t>(end - room - 1))) << "round " << round;
    }
    EXPECT_GT(usual, 8000);
}

TEST(UsualLeaf, usualItemsAreReadAsAllRulesReadThem)
{
    tRandom random(3);
    int usual = 0;
    for (int round = 0; round < 30000; ++round)
    {
        CFields leaf = randomLeaf(random);
        const bool variable = leaf.pkt_GetExp().m_eLengthExp == LEC_V;
        const std::string item = randomItem(random, variable ? randomLength(random) : recorded4(leaf));
        const std::string rest = item + randomItem(random, random() % 3 == 0 ? 0 : random() % 20);
        const CExactBytes exact(rest);
        if (random() % 2 == 0)
            detail::storeOther(leaf, randomItem(random, item.size()));
        CFields other(leaf);
        CFields before(leaf);
        if (!detail::storeUsual(leaf, {exact.data(), item.size()}, exact.size()))
        {
            ASSERT_EQ("", difference(before, leaf)) << "round " << round;
            continue;
        }
        ++usual;
        ASSERT_TRUE(detail::storeOther(other, item)) << "round " << round;
        ASSERT_EQ("", difference(other, leaf)) << "round " << round << " " << item;
    }
    EXPECT_GT(usual, 8000);
}

/// Parsing as docs/packets.md tells it, on a tree of its own; items are read by all rules.
class CModelParser
{
public:
    CModelParser(std::string_view packet, bool store)
        : m_strvPacket(packet), m_llLength(static_cast<long long>(packet.size())), m_bStore(store)
    {
    }
    long long parse(CFields& node)
    {
        return node.getDT() == DT_array ? parseMembers(node) : parseLeaf(node);
    }

private:
    long long parseMembers(CFields& node)
    {
        long long result = m_llLength - m_llOffset;
        for (unsigned int i = 0; i < node.getChildCount(); ++i)
        {
            const long long got = parse(node[i]);
            if (got < 0)
            {
                m_llOffset = m_llLength;
                result = std::max<long long>(result < 0 ? result + got : got, INT_MIN);
            }
            else if (got > m_llLength - m_llOffset)
                break;
            else
                result = got;
        }
        return result;
    }
    long long parseLeaf(CFields& leaf)
    {
        const tPacketExpInfo pei = leaf.pkt_GetExp();
        const std::string_view rest =
            m_llOffset > m_llLength ? "" : m_strvPacket.substr(static_cast<std::size_t>(m_llOffset));
        const long long left = m_llLength - m_llOffset;
        m_llOffset += pei.m_uiLength;
        if (pei.m_eLengthExp == LEC_V)
            return left < 1 ? -pei.m_ucPrefixSize : parsed(leaf, rest, m_bStore);
        const long long length = pei.m_uiLength;
        if (left < 1)
            return -length;
        if (length == 0 || length > left || !m_bStore)
            return left - length;
        return detail::storeOther(leaf, rest.substr(0, pei.m_uiLength)) ? left - length : -1;
    }

    std::string_view m_strvPacket;
    long long m_llLength;
    long long m_llOffset = 0;
    bool m_bStore;
};

/// What a packet for the tree might be: items that fit or nearly do.
std::string randomPacket(tRandom& random, const CFields& node)
{
    if (node.getDT() != DT_array)
    {
        const tPacketExpInfo pei = node.pkt_GetExp();
        if (pei.m_eLengthExp != LEC_V)
            return randomItem(random, pei.m_uiLength);
        return modelItem(randomValue(random), pei.m_ePacketExp == PEC_A, true, pei.m_ucPrefixSize, 0);
    }
    std::string packet;
    for (unsigned int i = 0; i < node.getChildCount(); ++i)
        packet += randomPacket(random, node.getChildAt(i));
    return packet;
}

TEST(UsualLeaf, treesReadTheItemsOfTheirLeaves)
{
    tRandom random(4);
    for (int round = 0; round < 4000; ++round)
    {
        CFields tree = randomTree(random, 3);
        CFields model(tree);
        for (const bool store : {false, true, true})
        {
            std::string packet = randomPacket(random, tree);
            if (random() % 3 == 0)
                packet.resize(random() % (packet.size() + 1));
            const CExactBytes exact(packet);
            const long long expected = CModelParser(packet, store).parse(model);
            ASSERT_EQ(expected, tree.pkt_Parse4Children(exact.data(), exact.size(), store)) << "round " << round;
            ASSERT_EQ("", difference(model, tree)) << "round " << round;
        }
    }
}

TEST(UsualLeaf, measuringNeedsNoPacketWhateverItsLength)
{
    const auto measure = [](std::initializer_list<unsigned int> lengths, unsigned int packet) {
        CFields tree(DT_array);
        for (const unsigned int length : lengths)
            addLeaf(tree, "", 5, pei4("ANF", length));
        return tree.pkt_Parse4Children(nullptr, packet, false);
    };
    EXPECT_EQ(measure({4, 6, 3}, 20), 7);
    EXPECT_EQ(measure({4, 6}, 8), -2);
    EXPECT_EQ(measure({4, 0x7FFFFFFF, 0x7FFFFFFF, 3}, 0xFFFFFFFF), -6);
    EXPECT_EQ(measure({4, 0x7FFFFFFF, 0x7FFFFFFF, 3}, 3), INT_MIN);
    // The walk goes on after 2147483647 bytes, so that it finds two more.
    EXPECT_EQ(measure({0x80000001, 2}, 0x80000001), 0);
}

TEST(UsualLeaf, packetsAboutTheSizeOfTheBufferAreWhole)
{
    tRandom random(5);
    for (unsigned int size = 470; size <= 610; ++size)
    {
        CFields tree(DT_array);
        std::string expected;
        while (expected.size() < size)
        {
            const auto left = static_cast<unsigned int>(size - expected.size());
            const unsigned int length = std::min(left, 1 + static_cast<unsigned int>(random() % 40));
            const bool isText = random() % 2 == 0;
            const CFields value = isText ? CFields(std::string(random() % 40, 'x')) : CFields(random() % 100000);
            addLeaf(tree, "", value, pei4("ACF", length));
            expected += modelItem(value, true, false, length, 0);
        }
        ASSERT_EQ(expected, tree.pkt_Make4Children(false)) << size;
    }
}

}  // namespace
