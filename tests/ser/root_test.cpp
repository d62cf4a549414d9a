// tests/ser/root_test.cpp - the root's ID and name, and what a document may consist of.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"

using namespace murv;
using namespace murv::tests;
using namespace std::string_view_literals;

TEST(Root, mayBeAnyValue)
{
    EXPECT_EQ(loaded("5"), "5");
    EXPECT_EQ(loaded("\"t\""), "\"t\"");
    EXPECT_EQ(loaded("true"), "true");
    EXPECT_EQ(loaded("false"), "false");
    EXPECT_EQ(loaded("null"), "null");
    EXPECT_EQ(loaded("[1]"), "[1]");
    EXPECT_EQ(loaded("{1}"), "{1}");
}

TEST(Root, mayHaveAnId)
{
    EXPECT_EQ(loaded("#7 {\"a\"=1}"), "#7 {a=1}");
    EXPECT_EQ(loaded("#2147483647[1]"), "#2147483647 [1]");
    EXPECT_EQ(loaded("#007 5"), "#7 5");
}

TEST(Root, mayHaveAName)
{
    EXPECT_EQ(loaded("\"r\"={\"a\"=1}"), "r={a=1}");
    EXPECT_EQ(loaded("\"r\" = 5"), "r=5");
    EXPECT_EQ(loaded("#7 \"r\" = \"t\""), "#7 r=\"t\"");
}

TEST(Root, takesAnEqualsSignWithoutAName)
{
    EXPECT_EQ(loaded("= 5"), "5");
    EXPECT_EQ(loaded("#7 = 5"), "#7 5");
    EXPECT_EQ(loaded("\"\" = 5"), "5");
}

TEST(Root, mayLackItsValue)
{
    EXPECT_EQ(loaded(","), "null");
    EXPECT_EQ(loaded("}"), "null");
    EXPECT_EQ(loaded("#7,"), "#7 null");
    EXPECT_EQ(loaded("\"r\"=,"), "r=null");
    EXPECT_EQ(loaded("\"r\"=]"), "r=null");
}

TEST(Root, doesNotBeginWithAClosingBracketOfAnArray)
{
    EXPECT_EQ(loaded("]"), errorAt(1, 1, s_cpNoName));
}

TEST(Root, ofNothingIsAnError)
{
    EXPECT_EQ(loaded(""), errorAt(1, 1, s_cpNoName));
    EXPECT_EQ(loaded(" \n "), errorAt(2, 2, s_cpNoName));
    EXPECT_EQ(loaded("// only\n"), errorAt(2, 1, s_cpNoName));
    EXPECT_EQ(loaded("#7"), errorAt(1, 3, s_cpNoName));
    EXPECT_EQ(loaded("\"r\"="), errorAt(1, 5, s_cpNoValue));
}

TEST(Root, beginsWithNoOtherToken)
{
    EXPECT_EQ(loaded("@"), errorAt(1, 1, s_cpNoName));
    EXPECT_EQ(loaded("nul"), errorAt(1, 1, s_cpNoName));
    EXPECT_EQ(loaded(")"), errorAt(1, 1, s_cpNoName));
    EXPECT_EQ(loaded("\"open"), errorAt(1, 1, s_cpNoName));
}

TEST(Root, idMustBeIn1To2147483647)
{
    EXPECT_EQ(loaded("#0 {1}"), errorAt(1, 1, s_cpBadId));
    EXPECT_EQ(loaded("# {1}"), errorAt(1, 1, s_cpBadId));
    EXPECT_EQ(loaded("#x"), errorAt(1, 1, s_cpBadId));
    EXPECT_EQ(loaded("#-1 5"), errorAt(1, 1, s_cpBadId));
    EXPECT_EQ(loaded("#2147483648 5"), errorAt(1, 1, s_cpBadId));
    EXPECT_EQ(loaded("#" + std::string(40, '9') + " 5"), errorAt(1, 1, s_cpBadId));
    EXPECT_EQ(loaded("#18446744073709551617 5"), errorAt(1, 1, s_cpBadId));
}

TEST(Root, nameHasUpTo255Bytes)
{
    const std::string longest(255, 'n');
    EXPECT_EQ(loaded("\"" + longest + "\"=1"), longest + "=1");
    EXPECT_EQ(loaded("\"" + longest + "n\"=1"), errorAt(1, 1, "Failed to set the root field name"));
    EXPECT_EQ(loaded("#7 \"" + longest + "n\"=1"), errorAt(1, 4, "Failed to set the root field name"));
}

TEST(Root, nameKeepsAllItsBytes)
{
    tLoad load("\"a\0\\u0000\xFF\"=1"sv);
    EXPECT_EQ(std::string(load.m_tTree.getName(), load.m_tTree.getNameLen()), std::string("a\0\0\0\xFF", 5));
}

TEST(Root, nameThatIsANumberNeedsItsBit)
{
    EXPECT_EQ(loaded("7=1", s_cuiUsual | LCBC_NUMBER_NAME), "7=1");
    EXPECT_EQ(loaded("#3 7=1", s_cuiUsual | LCBC_NUMBER_NAME), "#3 7=1");
    EXPECT_EQ(loaded("7=1"), errorAt(1, 1, "Missing field member name"));
    EXPECT_EQ(loaded("#3 7=1"), errorAt(1, 4, "Missing field member name"));
}

TEST(Root, nameWithABadEscapeIsAnError)
{
    EXPECT_EQ(loaded("\"a\\q\"=1"), errorAt(1, 1, "Bad escape sequence in string", 1, 3));
}

TEST(Root, stringOrNumberWithoutEqualsSignIsTheValue)
{
    EXPECT_EQ(loaded("#7 \"t\""), "#7 \"t\"");
    EXPECT_EQ(loaded("#7 8"), "#7 8");
    EXPECT_EQ(loaded("#7 true"), "#7 true");
    EXPECT_EQ(loaded("\"t\" \"u\" = 5"), "\"t\"");
}

TEST(Root, wordIsNoName)
{
    EXPECT_EQ(loaded("true = 5"), "true");
}

TEST(Root, mustBeAContainerWhenSoConfigured)
{
    const char* const message = "A valid MURV document must be either an DT_array or an DT_fields type.";
    const unsigned int flags = s_cuiUsual | LCBC_ROOT_CONTAINER;
    EXPECT_EQ(loaded("[1]", flags), "[1]");
    EXPECT_EQ(loaded("{1}", flags), "{1}");
    EXPECT_EQ(loaded(" 5 ", flags), errorAt(1, 1, message));
    EXPECT_EQ(loaded("null", flags), errorAt(1, 1, message));
}

TEST(Root, thatMustBeAContainerIsNamedBesideTheFirstError)
{
    const unsigned int flags = s_cuiUsual | LCBC_ROOT_CONTAINER;
    tLoad load("  @", flags);
    EXPECT_EQ(load.result(),
              errorAt(1, 3, s_cpNoName) +
                  errorAt(1, 1, "A valid MURV document must be either an DT_array or an DT_fields type."));
    const std::vector<tErrorRange> ranges = load.m_tLoader.getErrorRanges();
    ASSERT_EQ(ranges.size(), 2u);
    EXPECT_EQ(ranges[1].m_uiStart, 0u);
    EXPECT_EQ(ranges[1].m_uiEnd, 3u);
}

TEST(Root, keepsWhatTheDocumentDoesNotState)
{
    tLoad load("7");
    load.m_tTree.setName("kept");
    load.m_tTree.setID(9);
    load.m_tTree.setComment("/*kept*/", CP_before);
    load.load("[1]");
    EXPECT_EQ(show(load.m_tTree), "#9 kept=[1]<0:/*kept*/>");
}
