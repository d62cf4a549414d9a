// tests/layout/values/fault_test.cpp - names and sentences of the reasons why a packet does not fit.
#include "murv/packet_fault.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace
{

using namespace murv;

TEST(PacketFault, namesAreTheCodesWithoutTheirPrefix)
{
    EXPECT_STREQ("none", getFaultName(PF_none));
    EXPECT_STREQ("more", getFaultName(PF_more));
    EXPECT_STREQ("tooLong", getFaultName(PF_tooLong));
    EXPECT_STREQ("callback", getFaultName(PF_callback));
}

TEST(PacketFault, eachReasonHasANameAndASentenceOfItsOwn)
{
    std::set<std::string> names;
    std::set<std::string> sentences;
    for (unsigned int code = PF_none; code <= PF_lineEnd; ++code)
    {
        const std::string name = getFaultName(static_cast<E_PacketFault>(code));
        const std::string sentence = getFaultSentence(static_cast<E_PacketFault>(code));
        EXPECT_TRUE(!name.empty() && names.insert(name).second) << code;
        EXPECT_TRUE(sentences.insert(sentence).second) << sentence;
        ASSERT_GT(sentence.size(), 10U) << name;
        EXPECT_TRUE(sentence.front() >= 'A' && sentence.front() <= 'Z') << sentence;
        EXPECT_NE('.', sentence.back()) << sentence;
    }
}

TEST(PacketFault, findingsAreTheReasonsThatHideNoData)
{
    for (const E_PacketFault fault : {PF_date, PF_invalid, PF_checksum, PF_total, PF_oldSign, PF_lineEnd})
        EXPECT_TRUE(isFinding(fault)) << getFaultName(fault);
    for (const E_PacketFault fault : {PF_none, PF_more, PF_digits, PF_lossy, PF_memory})
        EXPECT_FALSE(isFinding(fault)) << getFaultName(fault);
}

TEST(PacketFault, aNumberThatIsNoCodeHasNoWords)
{
    const auto none = static_cast<E_PacketFault>(PF_lineEnd + 1);
    EXPECT_STREQ("", getFaultName(none));
    EXPECT_STREQ("", getFaultSentence(none));
    EXPECT_FALSE(isFinding(none));
}

}  // namespace
