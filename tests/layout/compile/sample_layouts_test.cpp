// The layouts that come with the library compile, and say what they should.
#include <gtest/gtest.h>

#include <string>

#include "layout/plan/plan.h"
#include "murv/layout.h"
#include "tests/support/source_file.h"

namespace
{

murv::CLayout compileSample(const std::string& name)
{
    murv::CLayout layout;
    EXPECT_TRUE(layout.compile(murv::tests::contentOf("share/murv/layouts/" + name))) << name;
    for (const murv::tLayoutMistake& mistake : layout.getMistakes())
        ADD_FAILURE() << mistake.m_uiOffset << " " << mistake.m_strPath << ": " << mistake.m_strMessage;
    return layout;
}

const murv::detail::tPart& partAt(const murv::CLayout& layout, const std::string& path)
{
    return layout.getPlan()->m_vParts.at(layout.findPart(path));
}

TEST(SampleLayouts, achStandsOnLinesAndEndsArraysByTheirFirstDigits)
{
    const murv::CLayout layout = compileSample("ach.murv");
    ASSERT_TRUE(layout.isCompiled());
    EXPECT_EQ(layout.getPlan()->m_tFrame.m_eKind, murv::detail::FR_lines);
    EXPECT_EQ(layout.getPlan()->m_tFrame.m_uiLength, 94u);
    for (const char* const array : {"batches", "batches.entries", "batches.entries.addenda", "filler"})
        EXPECT_EQ(partAt(layout, array).m_eArrayEnd, murv::detail::AE_heads) << array;
    EXPECT_TRUE(partAt(layout, "batches.header").m_bRecord);
    EXPECT_FALSE(partAt(layout, "batches").m_bInRecord);
    EXPECT_EQ(partAt(layout, "batches.entries.addenda.change").m_vHeads.front().m_vBytes.front().m_strBytes, "798");
    EXPECT_TRUE(partAt(layout, "file control.entry hash").m_bComputed);
}

TEST(SampleLayouts, iso8583SharesTheBitsOfTwoBitmaps)
{
    const murv::CLayout layout = compileSample("iso8583.murv");
    ASSERT_TRUE(layout.isCompiled());
    const murv::detail::tPart& amount = partAt(layout, "data.amount");
    EXPECT_EQ(amount.m_uiBitmap, 0u);
    EXPECT_EQ(amount.m_uiBit, 3u);
    const murv::detail::tPart& account = partAt(layout, "data.account 1");
    EXPECT_EQ(account.m_uiBitmap, 1u);
    EXPECT_EQ(account.m_uiBit, 102u - 65u);
    EXPECT_EQ(partAt(layout, "bitmap").m_tItem.m_eForm, murv::detail::IF_hexText);
}

TEST(SampleLayouts, sensorIsOneRecordThatItsLengthMeasures)
{
    const murv::CLayout layout = compileSample("sensor.murv");
    ASSERT_TRUE(layout.isCompiled());
    const murv::detail::tPlan& plan = *layout.getPlan();
    EXPECT_TRUE(plan.m_vParts[0].m_bRecord);
    ASSERT_FALSE(plan.m_vLinks.empty());
    EXPECT_EQ(plan.m_vLinks[0].m_eKind, murv::detail::LK_size);
    EXPECT_TRUE(plan.m_vLinks[0].m_bRules);
    EXPECT_TRUE(plan.m_vSpans[plan.m_vLinks[0].m_uiSpan].m_bSizeInside);
    EXPECT_EQ(partAt(layout, "readings").m_eArrayEnd, murv::detail::AE_count);
    EXPECT_EQ(partAt(layout, "magic").m_strLiteral, "MSR1");
    EXPECT_EQ(partAt(layout, "flags").m_tItem.m_vBits[0].m_uiShift, 7u);
    EXPECT_TRUE(partAt(layout, "station").m_tItem.m_bLittle);
}

}  // namespace
