// tests/layout/run/damaged_lines_test.cpp - lines of another length than the records are damaged alone.
#include <gtest/gtest.h>

#include <string>

#include "murv/records.h"

namespace murv::tests
{

namespace
{

/// The values of "a" in the records that can be read, and a "!" for each that was skipped.
std::string valuesOf(const char* text, std::string_view bytes)
{
    CLayout layout;
    EXPECT_TRUE(layout.compile(text)) << text;
    CRecordReader records(layout);
    records.open(bytes);
    std::string values;
    CFields record;
    for (;;)
    {
        switch (records.next(record))
        {
        case RR_record: values += record["a"].asString(); break;
        case RR_fault:
            if (!records.skip())
                return values + "?";
            values += "!";
            break;
        default: return values + " " + std::to_string(records.getRecord().m_ullNumber);
        }
    }
}

constexpr const char* s_cstrLayout = R"({ "@" = "layout 1; lines 2", "rows" = [ { "x" = (ACF1fix) "x",
    "a" = (ACF1) "" } ], "end" = { "y" = (ACF1fix) "y", "a" = (ACF1) "" } })";

}  // namespace

TEST(DamagedLines, longAndShortLinesAreSkipped)
{
    EXPECT_EQ(valuesOf(s_cstrLayout, "x1\nx2\nye\n"), "12e 3");
    EXPECT_EQ(valuesOf(s_cstrLayout, "x1\nx22\nx3\nye\n"), "1!3e 4");
    EXPECT_EQ(valuesOf(s_cstrLayout, "x1\nx\nx3\nye\n"), "1!3e 4");
    EXPECT_EQ(valuesOf(s_cstrLayout, "x1\n\nx3\nye\n"), "1!3e 4");
}

TEST(DamagedLines, firstLineMayBeDamaged)
{
    EXPECT_EQ(valuesOf(s_cstrLayout, "x11\nx2\nye\n"), "!2e 3");
    const char* withHeader = R"({ "@" = "layout 1; lines 2", "head" = { "h" = (ACF1fix) "h", "a" = (ACF1) "" },
        "rows" = [ { "x" = (ACF1fix) "x", "a" = (ACF1) "" } ] })";
    EXPECT_EQ(valuesOf(withHeader, "h11\nx2\nx3\n"), "!23 3");
}

}  // namespace murv::tests
