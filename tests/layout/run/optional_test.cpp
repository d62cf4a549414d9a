// Parts that may be absent: by "if", by "optional", and by their place at the end.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

struct tCondition
{
    const char* m_pName;
    const char* m_pCondition;
    const char* m_pDigit;  // of k
    bool m_bThere;
};

/// Else the test library prints the bytes, of which some were never written.
void PrintTo(const tCondition& condition, std::ostream* out)
{
    *out << condition.m_pName;
}

std::string nameOfCondition(const testing::TestParamInfo<tCondition>& tested)
{
    return tested.param.m_pName;
}

class Conditions : public testing::TestWithParam<tCondition>
{
};

}  // namespace

TEST_P(Conditions, decideWhetherThePartIsThere)
{
    const CLayout layout =
        layout4("\"k\" = (ANF1) 0, \"@k\" = \"blank is null\", \"v\" = (ACF1) \"\", \"@v\" = \"if k " +
                std::string(GetParam().m_pCondition) + "\"");
    const std::string k = GetParam().m_pDigit;
    const std::string number = k == " " ? "null" : k;
    if (GetParam().m_bThere)
        expectBoth(layout, k + "x", "{\"k\"=" + number + ",\"v\"=\"x\"}");
    else
        expectBoth(layout, k, "{\"k\"=" + number + "}");
    if (!GetParam().m_bThere)
    {
        EXPECT_EQ(make(layout, "{\"k\"=" + number + ",\"v\"=\"x\"}"), "unwanted at v");
    }
}

const tCondition s_atConditions[] = {
    {"equal", "= 1", "1", true},
    {"notEqual", "= 1", "2", false},
    {"oneOfTwo", "= 1 | 2", "2", true},
    {"noneOfTwo", "= 1 | 2", "3", false},
    {"unequal", "!= 1", "2", true},
    {"unequalToEach", "!= 1 | 2", "2", false},
    {"less", "< 2", "1", true},
    {"notLess", "< 2", "2", false},
    {"greater", "> 2", "3", true},
    {"atMost", "<= 2", "2", true},
    {"aboveAtMost", "<= 2", "3", false},
    {"atLeast", ">= 2", "2", true},
    {"belowAtLeast", ">= 2", "1", false},
    {"anyBit", "& 6", "4", true},
    {"noBit", "& 6", "1", false},
    {"nullIsNotEqual", "= 0", " ", false},
    {"nullIsNotUnequal", "!= 0", " ", false},
};

INSTANTIATE_TEST_SUITE_P(Optional, Conditions, testing::ValuesIn(s_atConditions), nameOfCondition);

TEST(Optional, severalConditionsMustAllHold)
{
    const CLayout layout = layout4(R"("a" = (ANF1) 0, "b" = (ANF1) 0, "v" = (ACF1) "", "@v" = "if a = 1; if b = 2")");
    expectBoth(layout, "12x", R"({"a"=1,"b"=2,"v"="x"})");
    expectBoth(layout, "13", R"({"a"=1,"b"=3})");
    expectBoth(layout, "02", R"({"a"=0,"b"=2})");
}

TEST(Optional, textsCompareWithoutTheirPadding)
{
    const CLayout layout = layout4(R"("a" = (ACF3) "", "@a" = "keep", "v" = (ACF1) "", "@v" = "if a = x")");
    expectBoth(layout, "x  y", R"({"a"="x  ","v"="y"})");
    expectBoth(layout, "xx ", R"({"a"="xx "})");
    expectBoth(layout, " x ", R"({"a"=" x "})");
}

TEST(Optional, conditionsLookAtDecimalsAndBits)
{
    const CLayout layout = layout4(R"("a" = (ANF3) 0, "@a" = "decimals 2", "f" = (BNF1) 0, "@f" = "bits 7 x, 1 y",
        "v" = (ACF1) "", "@v" = "if a >= 1.5; if f.y = 1")");
    expectBoth(layout, "150\1v", R"({"a"="1.50","f"={"x"=0,"y"=1},"v"="v"})");
    expectBoth(layout, "149\1", R"({"a"="1.49","f"={"x"=0,"y"=1}})");
}

TEST(Optional, aTestOfAnAbsentValueIsFalse)
{
    const CLayout layout =
        layout4(R"("a" = (ANF1) 0, "b" = (ANF1) 0, "@b" = "if a = 1", "v" = (ACF1) "", "@v" = "if b != 5")");
    expectBoth(layout, "0", R"({"a"=0})");
    expectBoth(layout, "16v", R"({"a"=1,"b"=6,"v"="v"})");
}

TEST(Optional, aTestLooksAtTheElementAtHand)
{
    const CLayout layout = layout4(R"("a" = [ { "k" = (ANF1) 0, "v" = (ACF1) "", "@v" = "if k = 1" } ])");
    expectBoth(layout, "1x01y", R"({"a"=[{"k"=1,"v"="x"},{"k"=0},{"k"=1,"v"="y"}]})");
}

TEST(Optional, aValueOfTheElementBeforeIsForgotten)
{
    const CLayout layout = layout4(R"("a" = [ { "k" = (ANF1) 0, "m" = (ANF1) 0, "@m" = "if k = 1",
        "v" = (ACF1) "", "@v" = "if m = 5" } ])");
    expectBoth(layout, "15x0", R"({"a"=[{"k"=1,"m"=5,"v"="x"},{"k"=0}]})");
}

TEST(Optional, whatIsAbsentTakesNoDefault)
{
    const CLayout layout = layout4(R"("k" = (ANF1) 1, "v" = (ACF1) "d", "@v" = "if k = 1")");
    EXPECT_EQ(make(layout, "{}"), "1d");
    EXPECT_EQ(make(layout, R"({"k"=0})"), "0");
}

TEST(Optional, literalsTellWhetherAPartIsThere)
{
    const CLayout layout =
        layout4(R"("o" = { "@" = "optional", "t" = (ACF1fix) "A", "x" = (ANF1) 0 }, "z" = (ACF1fix) "Z")");
    expectBoth(layout, "A5Z", R"({"o"={"t"="A","x"=5},"z"="Z"})");
    expectBoth(layout, "Z", R"({"z"="Z"})");
    EXPECT_EQ(read(layout, "B5Z"), "literal at z @0+1");
}

TEST(Optional, withoutLiteralsBytesThatAreLeftTell)
{
    const CLayout layout = layout4(R"("a" = (ACF1) "", "o" = (ANF2) 0, "@o" = "optional")");
    expectBoth(layout, "x12", R"({"a"="x","o"=12})");
    expectBoth(layout, "x", R"({"a"="x"})");
    EXPECT_EQ(read(layout, "x1"), "more at o @1+1");
}

TEST(Optional, anOptionalPartWithoutBytesIsRefused)
{
    const CLayout layout = layout4(R"("a" = (ACF1) "", "o" = (ACF0) "", "@o" = "optional; to end")");
    expectBoth(layout, "xy", R"({"a"="x","o"="y"})");
    EXPECT_EQ(make(layout, R"({"a"="x","o"=""})"), "ambiguous at o");
}

TEST(Optional, aPartThatReadingWouldTakeForItIsRefused)
{
    const CLayout layout =
        layout4(R"("o" = { "@" = "optional", "t" = (ACF1fix) "A" }, "z" = (ACF2fix) "ZZ", "y" = (ACF1) "")");
    expectBoth(layout, "ZZA", R"({"z"="ZZ","y"="A"})");
    const CLayout any =
        layout4(R"("n" = (ANF1) 0, "@n" = "size of s", "s" = { "o" = (ACF1) "", "@o" = "optional" }, "y" = (ACF1) "")");
    expectBoth(any, "0y", R"({"n"=0,"s"={},"y"="y"})");
    expectBoth(any, "1xy", R"({"n"=1,"s"={"o"="x"},"y"="y"})");
}

TEST(Optional, missingPartsTakeTheLayoutsValue)
{
    EXPECT_EQ(make(layout4(R"("a" = (ACF3) "d", "b" = (ANF2) 7, "s" = { "c" = (BNF1) 65 }, "l" = [ (ANF1) 5 ])"), "{}"),
              "d  07A");
}

TEST(Optional, requiredPartsHaveNoDefault)
{
    const CLayout layout = layout4(R"("s" = { "a" = (ACF3) "d", "@a" = "required" })");
    EXPECT_EQ(make(layout, "{}"), "missing at s.a");
    EXPECT_EQ(make(layout, R"({"s"={}})"), "missing at s.a");
    expectBoth(layout, "d  ", R"({"s"={"a"="d"}})");
}

}  // namespace murv::tests
