// Single values straight from a packet.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

CLayout message()
{
    return layout4(R"("id" = (ANF3) 0, "name" = (ACV1+1) "", "amount" = (ANF5) 0, "@amount" = "decimals 2",
        "f" = (BNF1) 0, "@f" = "bits 4 kind, 4 n", "big" = (BNF8) 0,
        "o" = { "@" = "if f.kind = 1", "x" = (ACF1) "" },
        "@f.n" = "count of l", "l" = [ { "k" = (ACF1) "", "@k" = "valid \"a\" | \"b\"", "v" = { "@" = "one of by k",
        "a" = (ANF1) 0, "b" = (ACF2) "" },
            "m" = [ (ACF1) "" ], "@m" = "until . = \"!\"" } ], "end" = (ACF1) "")");
}

const std::string s_strPacket = bytes("0422ab01250\x12\0\0\0\0\0\0\0\7xa5pq!bxyr!z");

struct tView
{
    explicit tView(std::string_view packet) : m_tLayout(message()), m_tView(m_tLayout)
    {
        m_bOpen = m_tView.open(packet);
    }
    unsigned int part(const char* path) const
    {
        const unsigned int found = m_tLayout.findPart(path);
        EXPECT_NE(found, CLayout::s_cuiNoPart) << path;
        return found;
    }
    CLayout m_tLayout;
    CPacketView m_tView;
    bool m_bOpen = false;
};

}  // namespace

TEST(View, givesNumbersAndTexts)
{
    const tView view(s_strPacket);
    ASSERT_TRUE(view.m_bOpen) << place4(view.m_tView.getFault());
    long long number = 0;
    std::string_view text;
    EXPECT_TRUE(view.m_tView.getSint64(view.part("id"), number));
    EXPECT_EQ(number, 42);
    EXPECT_TRUE(view.m_tView.getSint64(view.part("amount"), number));
    EXPECT_EQ(number, 1250) << "in units of the last decimal";
    EXPECT_TRUE(view.m_tView.getText(view.part("amount"), text));
    EXPECT_EQ(text, "12.50");
    EXPECT_TRUE(view.m_tView.getText(view.part("name"), text));
    EXPECT_EQ(text, "ab");
    EXPECT_TRUE(view.m_tView.getText(view.part("id"), text));
    EXPECT_EQ(text, "42");
    EXPECT_FALSE(view.m_tView.getSint64(view.part("name"), number));
    EXPECT_FALSE(view.m_tView.getSint64(view.part("l"), number));
    EXPECT_FALSE(view.m_tView.getText(view.part("o"), text));
}

TEST(View, givesPlacesWithoutPrefixAndMark)
{
    const tView view(s_strPacket);
    EXPECT_EQ(view.m_tView.getPlace(view.part("name")).m_ullOffset, 4u);
    EXPECT_EQ(view.m_tView.getPlace(view.part("name")).m_ullLength, 2u);
    EXPECT_EQ(view.m_tView.getPlace(view.part("end")).m_ullOffset, s_strPacket.size() - 1);
    EXPECT_EQ(view.m_tView.getPlace(view.part("o")).m_ullLength, 0u);
    EXPECT_EQ(view.m_tView.getPlace(view.part("o"), view.m_tView.getAll()).m_ullLength, 0u);
    EXPECT_EQ(view.m_tView.getPlace(view.part("o"), view.m_tView.getAll()).m_ullOffset, 20u);
}

TEST(View, tellsAbsence)
{
    std::string packet = s_strPacket;
    packet[11] = '\x22';
    packet.erase(20, 1);
    const tView view(packet);
    ASSERT_TRUE(view.m_bOpen) << place4(view.m_tView.getFault());
    EXPECT_FALSE(view.m_tView.has(view.part("o")));
    EXPECT_FALSE(view.m_tView.has(view.part("o.x")));
    EXPECT_TRUE(view.m_tView.has(view.part("end")));
    EXPECT_EQ(view.m_tView.getPlace(view.part("o.x")).m_ullLength, 0u);
    tPacketValue value{};
    EXPECT_EQ(view.m_tView.getValue(view.part("o.x"), value), PF_missing);
    EXPECT_EQ(view.m_tView.getValue(CLayout::s_cuiNoPart, value), PF_missing);
    EXPECT_FALSE(view.m_tView.has(CLayout::s_cuiNoPart));
}

TEST(View, walksElements)
{
    const tView view(s_strPacket);
    const unsigned int list = view.part("l");
    ASSERT_EQ(view.m_tView.getCount(list, view.m_tView.getAll()), 2u);
    const CPacketView::tScope first = view.m_tView.getElement(list, 0, view.m_tView.getAll());
    const CPacketView::tScope second = view.m_tView.getElement(list, 1, view.m_tView.getAll());
    EXPECT_EQ(view.m_tView.getAlternative(view.part("l.v"), first), view.part("l.v.a"));
    EXPECT_EQ(view.m_tView.getAlternative(view.part("l.v"), second), view.part("l.v.b"));
    EXPECT_EQ(view.m_tView.getAlternative(view.part("l.v"), view.m_tView.getAll()), CLayout::s_cuiNoPart);
    EXPECT_EQ(view.m_tView.getAlternative(view.part("o"), first), CLayout::s_cuiNoPart);
    EXPECT_EQ(view.m_tView.getCount(view.part("l.m"), first), 3u);
    EXPECT_EQ(view.m_tView.getCount(view.part("l.m"), second), 2u);
    tPacketValue value{};
    EXPECT_EQ(view.m_tView.getValue(view.part("l.v.a"), first, value), PF_none);
    EXPECT_EQ(value.m_ullBits, 5u);
    EXPECT_EQ(view.m_tView.getValue(view.part("l.v.a"), second, value), PF_missing);
    EXPECT_EQ(view.m_tView.getValue(view.part("l.v.b"), second, value), PF_none);
    EXPECT_EQ(value.m_strvText, "xy");
}

TEST(View, beyondTheLastElementThereIsNone)
{
    const tView view(s_strPacket);
    const unsigned int list = view.part("l");
    const CPacketView::tScope none = view.m_tView.getElement(list, 2, view.m_tView.getAll());
    EXPECT_EQ(none.m_nBegin, none.m_nEnd);
    EXPECT_FALSE(view.m_tView.has(view.part("l.k"), none));
    EXPECT_EQ(view.m_tView.getCount(view.part("l.m"), none), 0u);
    EXPECT_EQ(view.m_tView.getCount(view.part("id"), view.m_tView.getAll()), 0u);
}

TEST(View, valuesAreReadWhenTheyAreAskedFor)
{
    std::string packet = s_strPacket;
    packet.replace(0, 3, "4x2");
    const tView view(packet);
    ASSERT_TRUE(view.m_bOpen);
    tPacketValue value{};
    EXPECT_EQ(view.m_tView.getValue(view.part("id"), value), PF_digits);
    long long number = 0;
    EXPECT_FALSE(view.m_tView.getSint64(view.part("id"), number));
}

TEST(View, numbersBeyondSignedAreNoSint64)
{
    std::string packet = s_strPacket;
    packet.replace(12, 8, std::string(8, '\xFF'));
    const tView view(packet);
    long long number = 0;
    std::string_view text;
    EXPECT_FALSE(view.m_tView.getSint64(view.part("big"), number));
    EXPECT_TRUE(view.m_tView.getText(view.part("big"), text));
    EXPECT_EQ(text, "18446744073709551615");
}

TEST(View, aFaultLeavesWhatWasFound)
{
    const tView view(std::string_view(s_strPacket).substr(0, 15));
    EXPECT_FALSE(view.m_bOpen);
    EXPECT_EQ(place4(view.m_tView.getFault()), "more at big @12+3");
    std::string_view text;
    EXPECT_TRUE(view.m_tView.getText(view.part("name"), text));
    EXPECT_EQ(text, "ab");
    EXPECT_FALSE(view.m_tView.has(view.part("big")));
}

TEST(View, opensAnotherPacketAfterAFault)
{
    tView view("04");
    EXPECT_FALSE(view.m_bOpen);
    EXPECT_TRUE(view.m_tView.open(s_strPacket));
    EXPECT_EQ(view.m_tView.getFault().m_eCode, PF_none);
    EXPECT_EQ(view.m_tView.getFault().m_strPath, "");
    EXPECT_FALSE(view.m_tView.open(s_strPacket + "_"));
    EXPECT_EQ(view.m_tView.getFault().m_eCode, PF_leftOver);
}

TEST(View, findingsComeWithTheValue)
{
    const CLayout layout = layout4(R"("d" = (ANF6YYMMDD) 0)");
    CPacketView view(layout);
    ASSERT_TRUE(view.open("230229"));
    tPacketValue value{};
    EXPECT_EQ(view.getValue(layout.findPart("d"), value), PF_date);
    EXPECT_EQ(value.m_ullBits, 230229u);
    long long number = 0;
    EXPECT_TRUE(view.getSint64(layout.findPart("d"), number));
}

}  // namespace murv::tests
