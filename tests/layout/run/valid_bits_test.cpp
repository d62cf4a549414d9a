// Values of parts of bits, and of numbers that are filled in, that must be valid.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

CLayout flags()
{
    return layout4(R"("l" = [ { "flags" = (BNF1) 1, "@flags" = "bits 3 mode, 2 level, 3 \"rest.x\"",
        "@flags.mode" = "valid 0..5", "@flags.\"rest.x\"" = "valid 0 | 1" } ])");
}

}  // namespace

TEST(ValidBits, othersAreFindingsAtThePart)
{
    EXPECT_EQ(read(flags(), "\xA1"), R"({"l"=[{"flags"={"mode"=5,"level"=0,"rest.x"=1}}]})");
    EXPECT_EQ(read(flags(), "\xA1\xC7"), R"({"l"=[{"flags"={"mode"=5,"level"=0,"rest.x"=1}},)"
                                         R"({"flags"={"mode"=6,"level"=0,"rest.x"=7}}]})"
                                         R"( ! invalid at l[1].flags.mode @1+1 ! invalid at l[1].flags."rest.x" @1+1)");
}

TEST(ValidBits, othersAreNotMade)
{
    EXPECT_EQ(make(flags(), R"({"l"=[{"flags"={"mode"=5}}]})"), "\xA1");
    EXPECT_EQ(make(flags(), R"({"l"=[{"flags"={"mode"=6}}]})"), "invalid at l[0].flags.mode");
    EXPECT_EQ(make(flags(), R"({"l"=[{},{"flags"={"rest.x"=2}}]})"), R"(invalid at l[1].flags."rest.x")");
    EXPECT_EQ(make(flags(), R"({"l"=[{"flags"=199}]})"), "invalid at l[0].flags.mode");
}

TEST(ValidBits, numbersThatAreFilledInMustBeValid)
{
    const CLayout layout = layout4(R"("n" = (BNF1) 0, "@n" = "size of t; valid 1..3", "t" = (ACF0) "", "f" = (BNF1) 0,
        "@f" = "bits 4 a, 4 b", "@f.b" = "count of l; valid 2..9", "l" = [ (ACF1) "" ], "s" = (ANF2) 0,
        "@s" = "luhn of t; valid 0..4")");
    expectBoth(layout,
               "\x02"
               "18\x02xy"
               "02",
               R"({"n"=2,"t"="18","f"={"a"=0,"b"=2},"l"=["x","y"],"s"=2})");
    EXPECT_EQ(make(layout, R"({"t"="","l"=["x","y"]})"), "invalid at n");
    EXPECT_EQ(make(layout, R"({"t"="18","l"=["x"]})"), "invalid at f.b");
    EXPECT_EQ(make(layout, R"({"t"="20","l"=["x","y"]})"), "invalid at s");
}

TEST(ValidBits, sumsWithDecimalsMustBeValid)
{
    const CLayout layout = layout4(R"("n" = (BNF1) 0, "@n" = "count of l", "l" = [ (ANF3) 0 ], "@l" = "decimals 1",
        "s" = (ANF4) 0, "@s" = "decimals 1; sum of l; valid 0..99.9")");
    EXPECT_EQ(make(layout, R"({"l"=["50.0","49.9"]})"),
              "\2"
              "5004990999");
    EXPECT_EQ(make(layout, R"({"l"=["50.0","50"]})"), "invalid at s");
}

TEST(ValidBits, copiesHaveTheRulesAboutPartsOfBits)
{
    for (const char* const name : {"f", "@f", "f.g", "a name"})
    {
        const std::string written = name[0] == '@' ? "@@f" : name;
        const std::string rule =
            name[0] == '@' || name[1] == '.' ? "@\\\"" + std::string(name) + "\\\"" : "@" + std::string(name);
        const std::string path = name[0] == '@' || name[1] == '.' ? "\\\"" + std::string(name) + "\\\"" : name;
        const CLayout layout = layout4("\"" + written + "\" = (BNF1) 0, \"" + rule + "\" = \"bits 4 a, 4 b\", \"" +
                                       rule + ".b\" = \"valid 0..3\", \"c\" = { \"@\" = \"like " + path + "\" }");
        EXPECT_EQ(read(layout, bytes("\0\4")),
                  "{" + quotedText(name) + R"(={"a"=0,"b"=0},"c"={"a"=0,"b"=4}} ! invalid at c.b @1+1)")
            << name;
    }
    const CLayout byID = layout4(R"(#7 = (BNF1) 0, "@#7" = "bits 4 a, 4 b", "@#7.b" = "valid 0..3",
        "s" = { "@" = "little", "c" = { "@" = "like #7" } })");
    EXPECT_EQ(read(byID, bytes("\0\4")), R"({#7={"a"=0,"b"=0},"s"={"c"={"a"=0,"b"=4}}} ! invalid at s.c.b @1+1)");
}

TEST(ValidBits, copiesOfSetsHaveTheRulesAboutPartsOfTheirBits)
{
    const CLayout layout = layout4(R"("t" = { "f" = (BNF1) 0, "@f" = "bits 4 a, 4 b", "@f.b" = "count of l",
        "l" = [ (ACF1) "" ] }, "c" = { "@" = "like t" })");
    expectBoth(layout, bytes("\1x\2yz"),
               R"({"t"={"f"={"a"=0,"b"=1},"l"=["x"]},"c"={"f"={"a"=0,"b"=2},"l"=["y","z"]}})");
}

TEST(ValidBits, mistakesAreNamed)
{
    const std::string flags = R"("f" = (BNF1) 0, "@f" = "bits 4 a, 4 b", )";
    EXPECT_EQ(mistake4(flags + R"("@f.c" = "valid 1")"), "\"f\" has no bits \"c\"");
    EXPECT_EQ(mistake4(flags + R"("@f.a" = "valid x")"), "\"x\" is no number");
    EXPECT_EQ(mistake4(flags + R"("@f.a" = "valid date DDMM")"), "A part of bits is no date");
    EXPECT_EQ(mistake4(flags + R"("@f.a" = "valid 1; valid 2")"), "\"valid\" stands twice");
    EXPECT_EQ(mistake4(flags + R"("@f.a" = "mask")"), "\"mask\" is a rule for leaves");
}

}  // namespace murv::tests
