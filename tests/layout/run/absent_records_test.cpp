// What numbers say about parts of other records that are not there.
#include "murv/records.h"
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

/// What a record reader comes to, record by record; damaged ones are skipped.
std::string results4(const CLayout& layout, std::string_view bytes)
{
    CRecordReader reader(layout);
    reader.open(bytes);
    std::string results;
    for (;;)
    {
        const E_RecordResult result = reader.next();
        results += result == RR_record ? "record " : result == RR_end ? "end" : place4(reader.getFault()) + " ";
        if (result == RR_end || (result == RR_fault && !reader.skip()))
            return results;
    }
}

}  // namespace

TEST(AbsentRecords, inOtherRecordsHaveCountZero)
{
    const CLayout layout = layout4(R"("h" = { "n" = (ANF1) 0, "@n" = "count of g.l - 1" }, "g" = { "@" = "optional",
        "l" = [ { "k" = (ACF1fix) "-" } ] }, "e" = { "k" = (ACF1fix) "=" })",
                                   "lines");
    expectBoth(layout, "1\n-\n-\n=\n", R"({"h"={"n"=1},"g"={"l"=[{"k"="-"},{"k"="-"}]},"e"={"k"="="}})");
    expectBoth(layout, "0\n=\n", R"({"h"={"n"=0},"e"={"k"="="}})");
    EXPECT_EQ(refusal(layout, "2\n=\n"), "count at h.n @0+1: The number is about a part that is not there");
}

TEST(AbsentRecords, inOtherRecordsHaveSizeZero)
{
    const CLayout layout = layout4(R"("f" = [ { "h" = { "k" = (ANF1) 0, "n" = (ANF1) 0, "@n" = "size of g" },
        "g" = { "@" = "if h.k = 1", "l" = [ { "x" = (ACF1) "" } ] }, "e" = { "z" = (ACF1) "" } } ])");
    expectBoth(layout, "12abz00y",
               R"({"f"=[{"h"={"k"=1,"n"=2},"g"={"l"=[{"x"="a"},{"x"="b"}]},"e"={"z"="z"}},)"
               R"({"h"={"k"=0,"n"=0},"e"={"z"="y"}}]})");
    EXPECT_EQ(read(layout, "12abz03y"), "size at f[1].h.n @6+1");
    EXPECT_EQ(read(layout, "03y12abz"), "size at f[0].h.n @1+1");
}

TEST(AbsentRecords, areNotLookedForAfterADamagedRecord)
{
    const CLayout others = layout4(R"("h" = { "n" = (ANF1) 0, "@n" = "count of g.l" }, "g" = { "@" = "optional",
        "l" = [ { "k" = (ACF1fix) "-", "x" = (ANF1) 0 } ] }, "e" = { "k" = (ACF1fix) "=" })",
                                   "lines");
    EXPECT_EQ(results4(others, "1\n-x\n=\n"), "record digits at g.l[0].x @3+1 record end");
    const CLayout own = layout4(R"("l" = [ { "n" = (ANF1) 0, "@n" = "size of a", "k" = (ANF1) 0,
        "a" = (ACF0) "", "@a" = "if k = 1", "z" = (ACF1fix) "." } ])",
                                "lines");
    EXPECT_EQ(results4(own, "31abc.\n3x\n00.\n"), "record digits at l[1].k @8+1 record end");
}

}  // namespace murv::tests
