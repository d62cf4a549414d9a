// One of several: by literals, or by a value that was read before.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

CLayout byHeads()
{
    return layout4(R"("c" = { "@" = "one of",
        "long" = { "t" = (ACF2fix) "79", "x" = (ANF1) 0 },
        "short" = { "t" = (ACF1fix) "7", "x" = (ANF2) 0 },
        "late" = { "n" = (ANF1) 0, "t" = (ACF1fix) "L", "x" = (ANF1) 0 },
        "other" = { "any" = (ACF3) "" } }, "z" = (ACF1) "")");
}

CLayout byID()
{
    return layout4(R"("k" = (BNF1) 0, "v" = { "@" = "one of by k", #1 "number" = (BNF2) 0, #2 "text" = (BCV1+1) "",
        "0" = (BNF1) 0 })");
}

}  // namespace

TEST(Choices, theFirstWhoseLiteralsAreThere)
{
    const CLayout layout = byHeads();
    expectBoth(layout, "795z", R"({"c"={"long"={"t"="79","x"=5}},"z"="z"})");
    expectBoth(layout, "715z", R"({"c"={"short"={"t"="7","x"=15}},"z"="z"})");
    expectBoth(layout, "5L1z", R"({"c"={"late"={"n"=5,"t"="L","x"=1}},"z"="z"})");
    expectBoth(layout, "abcz", R"({"c"={"other"={"any"="abc"}},"z"="z"})");
}

TEST(Choices, makingRefusesWhatReadingWouldTakeForAnEarlierOne)
{
    const CLayout layout = byHeads();
    EXPECT_EQ(make(layout, R"({"c"={"short"={"x"=95}},"z"="z"})"), "ambiguous at c.short");
    EXPECT_EQ(make(layout, R"({"c"={"other"={"any"="7bc"}},"z"="z"})"), "ambiguous at c.other");
}

TEST(Choices, noneOfThemIsAFault)
{
    const CLayout layout =
        layout4(R"("c" = { "@" = "one of", "a" = { "t" = (ACF1fix) "A" }, "b" = { "t" = (ACF1fix) "B" } })");
    EXPECT_EQ(read(layout, "C"), "choice at c @0+1");
    EXPECT_EQ(read(layout, ""), "more at c @0+0");
}

TEST(Choices, theDataHasExactlyOne)
{
    const CLayout layout = byHeads();
    EXPECT_EQ(makingFault(layout, R"({"c"={}})"), "The data must have exactly one of the alternatives");
    EXPECT_EQ(makingFault(layout, "{}"), "The data must have exactly one of the alternatives");
    EXPECT_EQ(make(layout, R"({"c"={"long"={},"short"={}}})"), "choice at c");
    EXPECT_EQ(make(layout, R"({"c"={"lonk"={}}})"), "unknown at c");
    EXPECT_EQ(makingFault(layout, R"({"c"={"lonk"={}}})"),
              "The layout has no part \"lonk\" here; did you mean \"long\"?");
}

TEST(Choices, aNumberChoosesByIdElseByItsDigits)
{
    expectBoth(byID(), bytes("\1\0\5"), R"({"k"=1,"v"={"number"=5}})");
    expectBoth(byID(), "\2\1x", R"({"k"=2,"v"={"text"="x"}})");
    expectBoth(byID(), bytes("\0\7"), R"({"k"=0,"v"={"0"=7}})");
    EXPECT_EQ(read(byID(), "\3x"), "choice at v @1+1");
}

TEST(Choices, theValueIsFilledInWhenTheDataLacksIt)
{
    EXPECT_EQ(make(byID(), R"({"v"={"number"=5}})"), bytes("\1\0\5"));
    EXPECT_EQ(make(byID(), R"({"v"={"text"="x"}})"), "\2\1x");
    EXPECT_EQ(make(byID(), R"({"v"={"0"=7}})"), bytes("\0\7"));
}

TEST(Choices, theValueOfTheDataMustAgree)
{
    EXPECT_EQ(make(byID(), R"({"k"=2,"v"={"number"=5}})"), "choice at v.number");
    EXPECT_EQ(makingFault(byID(), R"({"k"=9,"v"={"number"=5}})"), "The value that chooses names another alternative");
}

TEST(Choices, aTextChoosesByName)
{
    const CLayout layout =
        layout4(R"("k" = (ACF3) "", "v" = { "@" = "one of by k", "int" = (ANF2) 0, "str" = (ACF1) "" })");
    expectBoth(layout, "int12", R"({"k"="int","v"={"int"=12}})");
    EXPECT_EQ(make(layout, R"({"v"={"str"="x"}})"), "strx");
    EXPECT_EQ(read(layout, "INT12"), "choice at v @3+2");
}

TEST(Choices, elseTakesAllOtherValues)
{
    const CLayout layout =
        layout4(R"("k" = (ANF1) 7, "v" = { "@" = "one of by k else raw", #1 "a" = (ANF1) 0, "raw" = (ACF2) "" })");
    expectBoth(layout, "15", R"({"k"=1,"v"={"a"=5}})");
    expectBoth(layout, "9xy", R"({"k"=9,"v"={"raw"="xy"}})");
    EXPECT_EQ(make(layout, R"({"v"={"raw"="xy"}})"), "7xy") << "the layout's own value stays";
    EXPECT_EQ(make(layout, R"({"k"=1,"v"={"raw"="xy"}})"), "choice at v.raw");
    EXPECT_EQ(make(layout, R"({"k"=9,"v"={"a"=5}})"), "choice at v.a");
}

TEST(Choices, aNullValueChoosesElse)
{
    const CLayout layout = layout4(R"("k" = (ANF1) 0, "@k" = "blank is null",
        "v" = { "@" = "one of by k else raw", #1 "a" = (ANF1) 0, "raw" = (ACF2) "" })");
    expectBoth(layout, " xy", R"({"k"=null,"v"={"raw"="xy"}})");
}

TEST(Choices, bitsChoose)
{
    const CLayout layout = layout4(R"("f" = (BNF1) 0, "@f" = "bits 4 kind, 4 more",
        "v" = { "@" = "one of by f.kind", #1 "a" = (ANF1) 0, #2 "b" = (ACF2) "" })");
    expectBoth(layout, "\x23xy", R"({"f"={"kind"=2,"more"=3},"v"={"b"="xy"}})");
    EXPECT_EQ(make(layout, R"({"v"={"a"=5}})"),
              "\x10"
              "5");
}

TEST(Choices, theRootMayBeOneOfSeveralRecords)
{
    const CLayout layout =
        layout4(R"("a" = { "t" = (ACF1fix) "A", "x" = (ANF1) 0 }, "b" = { "t" = (ACF1fix) "B" })", "one of");
    expectBoth(layout, "A1", R"({"a"={"t"="A","x"=1}})");
    expectBoth(layout, "B", R"({"b"={"t"="B"}})");
    EXPECT_EQ(read(layout, "C"), "choice at  @0+1");
}

TEST(Choices, aHeadThatIsCutMatchesNothing)
{
    const CLayout layout = layout4(R"("n" = (ANF1) 0, "@n" = "size of c", "c" = { "@" = "one of",
        "a" = { "t" = (ACF2fix) "AB" }, "b" = { "any" = (ACF1) "" } }, "z" = (ACF1) "")");
    expectBoth(layout, "1AB", R"({"n"=1,"c"={"b"={"any"="A"}},"z"="B"})");
    expectBoth(layout, "2ABz", R"({"n"=2,"c"={"a"={"t"="AB"}},"z"="z"})");
}

}  // namespace murv::tests
