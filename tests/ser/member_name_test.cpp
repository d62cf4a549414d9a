// tests/ser/member_name_test.cpp - names of members.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"

using namespace murv;
using namespace murv::tests;
using namespace std::string_view_literals;

namespace
{
constexpr unsigned int s_cuiNumberNames = s_cuiUsual | LCBC_NUMBER_NAME;
}

TEST(MemberName, isAStringBeforeAnEqualsSign)
{
    EXPECT_EQ(loaded("{\"a\"=1, \"b\" = 2, \"c\"\n=\n3}"), "{a=1,b=2,c=3}");
}

TEST(MemberName, mayBeLeftOut)
{
    EXPECT_EQ(loaded("{= 1, \"\" = 2, 3}"), "{1,2,3}");
    EXPECT_EQ(loaded("{#1 = 1, #2 \"\" = 2, #3 3}"), "{#1 1,#2 2,#3 3}");
}

TEST(MemberName, isUnescaped)
{
    EXPECT_EQ(loaded("{\"\\x41\\n\\\"\"=1}"), "{A\\10\"=1}");
    EXPECT_EQ(loaded("{\"\\u0041\"=1}"), "{\\0A=1}");
    EXPECT_EQ(loaded("{\"\\u0041\"=1}", s_cuiUsual | LCBC_UNICODE_UTF8), "{A=1}");
}

TEST(MemberName, keepsBytesOfZero)
{
    EXPECT_EQ(loaded("{\"a\0b\"=1,\"a\"=2,\"a\\x00b\"=3}"sv), "{a\\0b=3,a=2}");
}

TEST(MemberName, mayHoldAnyByte)
{
    for (int byte = 0; byte < 256; ++byte)
    {
        if (byte == '"' || byte == '\\')
            continue;
        const std::string name(3, static_cast<char>(byte));
        EXPECT_EQ(loaded("{\"" + name + "\"=1}"), "{" + showBytes(name) + "=1}") << byte;
    }
}

TEST(MemberName, beyond255BytesIsLeftOut)
{
    const std::string longest(255, 'n');
    EXPECT_EQ(loaded("{\"" + longest + "\"=1,\"" + longest + "n\"=2,\"" + longest + "n\"=3}"),
              "{" + longest + "=1,2,3}");
    EXPECT_EQ(loaded("{#5 \"" + std::string(256, 'n') + "\"=2}"), "{#5 2}");
}

TEST(MemberName, ofOtherTypesIsNone)
{
    EXPECT_EQ(loaded("{true=1}"), errorAt(1, 6, s_cpNoFieldsEnd));
    EXPECT_EQ(loaded("{null = 1}"), errorAt(1, 7, s_cpNoFieldsEnd));
    EXPECT_EQ(loaded("{[1]=1}"), errorAt(1, 5, s_cpNoFieldsEnd));
    EXPECT_EQ(loaded("{a=1}"), errorAt(1, 2, s_cpNoName));
}

TEST(MemberName, needsItsEqualsSign)
{
    EXPECT_EQ(loaded("{\"a\" 1}"), errorAt(1, 6, s_cpNoFieldsEnd));
    EXPECT_EQ(loaded("{\"a\" \"b\"=1}"), errorAt(1, 6, s_cpNoFieldsEnd));
}

TEST(MemberName, thatIsANumberNeedsItsBit)
{
    EXPECT_EQ(loaded("{7=1}"), errorAt(1, 2, s_cpNoName));
    EXPECT_EQ(loaded("{#3 7=1}"), errorAt(1, 5, s_cpNoName));
    EXPECT_EQ(loaded("{7=1,-3=2,#4 8 = 3}", s_cuiNumberNames), "{7=1,-3=2,#4 8=3}");
}

TEST(MemberName, thatIsANumberIsTheTextOfItsValue)
{
    EXPECT_EQ(loaded("{007=1,1.50=2,1e2=3,-0=4,-=5}", s_cuiNumberNames), "{7=1,1.5=2,100=3,0=5}");
    EXPECT_EQ(loaded("{18446744073709551615=1}", s_cuiNumberNames), "{18446744073709551615=1}");
}

TEST(MemberName, thatIsANumberWithoutEqualsSignIsAValue)
{
    EXPECT_EQ(loaded("{7,8}"), "{7,8}");
    EXPECT_EQ(loaded("{7,8}", s_cuiNumberNames), "{7,8}");
}

TEST(MemberName, withABadEscapeIsAnError)
{
    EXPECT_EQ(loaded("{\"a\\q\"=1}"), errorAt(1, 2, "Bad escape sequence in string", 1, 4));
    EXPECT_EQ(loaded("{\"a\\q\"}"), errorAt(1, 2, "Bad escape sequence in string", 1, 4));
}

TEST(MemberName, belongsToOneLoadOnly)
{
    EXPECT_EQ(loaded("{\"a\\n\"={\"b\\t\"=1},\"c\"=[{\"a\\n\"=\"x\\r\"}]}"), "{a\\10={b\\9=1},c=[{a\\10=\"x\\13\"}]}");
}

TEST(MemberName, isFoundInTheLoadedTreeAtEverySize)
{
    for (const unsigned int count : {1u, 8u, 9u, 10u, 63u, 64u, 65u, 66u, 200u, 5000u})
    {
        std::string text = "{";
        for (unsigned int i = 0; i < count; ++i)
            text += "\"n" + std::to_string(i) + "\"=" + std::to_string(i) + (i + 1 == count ? "}" : ",");
        tLoad load(text);
        ASSERT_TRUE(load.m_bDone);
        for (unsigned int i = 0; i < count; ++i)
            ASSERT_EQ(load.m_tTree["n" + std::to_string(i)].asUint32(), i);
        EXPECT_FALSE(load.m_tTree.isValidChild("n"));
        load.m_tTree.addChildRef("new") = 1;
        EXPECT_TRUE(load.m_tTree.isValidChild("new"));
    }
}
