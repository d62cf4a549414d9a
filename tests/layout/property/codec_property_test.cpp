// tests/layout/property/codec_property_test.cpp - what holds for every layout, tried on random ones.
#include <gtest/gtest.h>

#include "layout/plan/plan.h"
#include "layout/run/scanner.h"
#include "murv/layout.h"
#include "murv/records.h"
#include "murv/saver.h"
#include "tests/layout/property/random_layout.h"
#include "tests/layout/record_log.h"

using namespace murv;
using namespace murv::tests;

namespace
{

constexpr unsigned int s_cuiLayouts = 800;
constexpr unsigned int s_cuiTrees = 6;

std::string mistakes4(const CLayout& layout)
{
    std::string text;
    for (const tLayoutMistake& mistake : layout.getMistakes())
        text += mistake.m_strPath + ": " + mistake.m_strMessage + "\n";
    return text;
}

std::string words4(const tPacketFault& fault)
{
    return std::string(getFaultName(fault.m_eCode)) + " at " + fault.m_strPath + ", offset " +
           std::to_string(fault.m_ullOffset) + ": " + fault.m_strMessage;
}

/// Calls `use(text, layout, data, packet)` for random layouts that compile, with data that can be made.
template <typename tUse>
void forRandomPackets(unsigned int seed, tUse&& use)
{
    tRandom random(seed);
    unsigned int packets = 0;
    unsigned int compiled = 0;
    std::string refused;
    std::string unmade;
    for (unsigned int i = 0; i < s_cuiLayouts && !testing::Test::HasFailure(); ++i)
    {
        const tSketch sketch = makeSketch(random);
        const std::string text = text4Sketch(sketch);
        CLayout layout;
        if (!layout.compile(text))
        {
            refused = mistakes4(layout) + text;
            continue;
        }
        ++compiled;
        CPacketMaker maker(layout);
        for (unsigned int tree = 0; tree < s_cuiTrees && !testing::Test::HasFailure(); ++tree)
        {
            const CFields data = data4Sketch(sketch, random);
            std::string packet;
            if (!maker.make(data, packet))
            {
                unmade = words4(maker.getFault()) + "\n" + text + "\n" + data.toMURV();
                continue;
            }
            ++packets;
            use(text, layout, data, packet, random);
        }
    }
    EXPECT_GT(compiled, s_cuiLayouts / 2) << "too few layouts compile, such as:\n" << refused;
    EXPECT_GT(packets, s_cuiLayouts) << "too few packets are made, such as:\n" << unmade;
}

TEST(RandomLayouts, whatIsMadeIsReadBack)
{
    forRandomPackets(1, [](const std::string& text, const CLayout& layout, const CFields& data,
                           const std::string& packet, tRandom&) {
        CPacketReader reader(layout);
        CFields read;
        ASSERT_TRUE(reader.read(packet, read)) << words4(reader.getFault()) << "\n" << text << "\n" << data.toMURV();
        EXPECT_TRUE(reader.getFindings().empty()) << words4(reader.getFindings().front()) << "\n" << text;
        EXPECT_TRUE(isWithin(data, read)) << text << "\n" << data.toMURV() << "\n" << read.toMURV();
        CPacketMaker maker(layout);
        std::string again;
        ASSERT_TRUE(maker.make(read, again)) << words4(maker.getFault()) << "\n" << text << "\n" << read.toMURV();
        EXPECT_EQ(packet, again) << text;
    });
}

TEST(RandomLayouts, aDamagedPacketIsRefusedFoundOrComesBackTheSame)
{
    forRandomPackets(2, [](const std::string& text, const CLayout& layout, const CFields&, const std::string& packet,
                           tRandom& random) {
        CPacketReader reader(layout);
        for (int i = 0; i < 12; ++i)
        {
            std::string damaged = packet;
            const unsigned int at = below(random, static_cast<unsigned int>(packet.size()));
            switch (below(random, 3))
            {
            case 0: damaged[at] = static_cast<char>(below(random, 256)); break;
            case 1: damaged.erase(at, 1 + below(random, 3)); break;
            default: damaged.insert(at, 1, damaged[below(random, static_cast<unsigned int>(packet.size()))]);
            }
            CFields read;
            if (!reader.read(damaged, read) || !reader.getFindings().empty())
                continue;
            std::string again;
            CPacketMaker maker(layout, reader.getMakeOptions());
            ASSERT_TRUE(maker.make(read, again)) << words4(maker.getFault()) << "\n" << text << "\n" << read.toMURV();
            EXPECT_EQ(damaged, again) << text;
        }
    });
}

TEST(RandomLayouts, everyTruncationIsMissingBytesOrALocatedFault)
{
    forRandomPackets(
        3, [](const std::string& text, const CLayout& layout, const CFields&, const std::string& packet, tRandom&) {
            CPacketReader reader(layout);
            for (std::size_t length = 0; length < packet.size(); ++length)
            {
                CFields read;
                const std::string cut = packet.substr(0, length);
                if (!reader.read(cut, read))
                {
                    EXPECT_NE(PF_none, reader.getFault().m_eCode);
                    EXPECT_LE(reader.getFault().m_ullOffset, length) << text;
                    EXPECT_EQ(reader.getFault().m_eCode == PF_more, reader.getFault().m_ullMissing > 0) << text;
                    continue;
                }
                std::string again;
                if (reader.getFindings().empty())
                {
                    CPacketMaker maker(layout, reader.getMakeOptions());
                    ASSERT_TRUE(maker.make(read, again)) << words4(maker.getFault()) << "\n" << text;
                    EXPECT_EQ(cut, again) << text;
                }
            }
        });
}

TEST(RandomLayouts, piecesOfAnySizeGiveTheSameAsTheWhole)
{
    forRandomPackets(4, [](const std::string& text, const CLayout& layout, const CFields&, const std::string& packet,
                           tRandom& random) {
        CRecordLog whole;
        ASSERT_TRUE(CPacketReader(layout).visit(packet, whole));
        CRecordLog pieces;
        CRecordReader reader(layout);
        reader.open();
        std::size_t given = 0;
        E_RecordResult result = RR_more;
        while (result == RR_more || result == RR_record)
        {
            result = reader.next(pieces);
            if (result != RR_more)
                continue;
            const std::size_t piece = std::min<std::size_t>(1 + below(random, 5), packet.size() - given);
            if (piece == 0)
                reader.end();
            reader.put(std::string_view(packet).substr(given, piece));
            given += piece;
        }
        EXPECT_EQ(RR_end, result) << words4(reader.getFault()) << "\n" << text;
        EXPECT_EQ(whole.m_strLog, pieces.m_strLog) << text;
    });
}

/// Compares what a view gives with what the visitor saw outside arrays.
class CCompareView : public IPacketVisitor
{
public:
    explicit CCompareView(const CPacketView& view) : m_tView(view)
    {
    }
    void onArray(unsigned int part) override
    {
        m_vScopes.push_back({part, m_vScopes.empty() ? m_tView.getAll() : m_vScopes.back().m_tElement, {}});
    }
    void onElement(unsigned int part, std::uint64_t index) override
    {
        m_vScopes.back().m_tElement = m_tView.getElement(part, index, m_vScopes.back().m_tAround);
        EXPECT_LT(index, m_tView.getCount(part, m_vScopes.back().m_tAround));
    }
    void onArrayEnd(unsigned int) override
    {
        m_vScopes.pop_back();
    }
    void onLeaf(unsigned int part, const tPacketValue& value, const tByteRange& place) override
    {
        const CPacketView::tScope scope = m_vScopes.empty() ? m_tView.getAll() : m_vScopes.back().m_tElement;
        tPacketValue viewed{};
        EXPECT_EQ(PF_none, m_tView.getValue(part, scope, viewed));
        EXPECT_EQ(value.m_eType, viewed.m_eType);
        EXPECT_EQ(value.m_ullBits, viewed.m_ullBits);
        EXPECT_EQ(value.m_strvText, viewed.m_strvText);
        EXPECT_EQ(place.m_ullOffset, m_tView.getPlace(part, scope).m_ullOffset);
        EXPECT_EQ(place.m_ullLength, m_tView.getPlace(part, scope).m_ullLength);
        EXPECT_TRUE(!m_vScopes.empty() || place.m_ullOffset == m_tView.getPlace(part).m_ullOffset);
    }

private:
    struct tScopes
    {
        unsigned int m_uiArray;
        CPacketView::tScope m_tAround;
        CPacketView::tScope m_tElement;
    };
    const CPacketView& m_tView;
    std::vector<tScopes> m_vScopes;
};

TEST(RandomLayouts, aViewGivesWhatTheReaderGives)
{
    forRandomPackets(
        5, [](const std::string& text, const CLayout& layout, const CFields&, const std::string& packet, tRandom&) {
            CPacketView view(layout);
            ASSERT_TRUE(view.open(packet)) << text;
            CCompareView compare(view);
            EXPECT_TRUE(CPacketReader(layout).visit(packet, compare)) << text;
        });
}

/// Compares where the parts of a packet lie with what the layout says of them.
class CComparePlaces
{
public:
    CComparePlaces(const CLayout& layout, const detail::CScanner& scanner)
        : m_tLayout(layout), m_tPlan(*layout.getPlan()), m_vBegins(layout.getPartCount())
    {
        for (const detail::tTrace& trace : scanner.trace())
            compare(trace);
    }
    unsigned int compared() const
    {
        return m_uiCompared;
    }

private:
    void compare(const detail::tTrace& trace)
    {
        const unsigned int part = trace.m_uiIndex;
        switch (trace.m_eTrace)
        {
        case detail::TR_run: compareRun(trace); break;
        case detail::TR_item: compareItem(trace); break;
        case detail::TR_open:
        case detail::TR_array:
        case detail::TR_record: m_vBegins[part] = trace.m_ullOffset; break;
        case detail::TR_element: m_vBegins[m_tPlan.m_vParts[part].m_vMembers.front()] = trace.m_ullOffset; break;
        case detail::TR_close:
        case detail::TR_arrayEnd: comparePart(part, m_vBegins[part], trace.m_ullOffset); break;
        case detail::TR_recordEnd:
        case detail::TR_skip: break;
        }
    }
    void compareRun(const detail::tTrace& run)
    {
        for (const detail::tRun::tField& field : m_tPlan.m_vRuns[run.m_uiIndex].m_vFields)
            comparePart(field.m_uiPart, run.m_ullOffset + field.m_uiOffset,
                        run.m_ullOffset + field.m_uiOffset + field.m_uiLength);
    }
    void compareItem(const detail::tTrace& item)
    {
        const detail::tPart& leaf = m_tPlan.m_vParts[item.m_uiIndex];
        const std::size_t mark = leaf.m_eEnd == detail::LE_mark ? leaf.m_vMarks.front().size() : 0;
        comparePart(item.m_uiIndex, item.m_ullOffset - leaf.m_tItem.m_ucPrefix,
                    item.m_ullOffset + item.m_ullLength + mark);
    }
    void comparePart(unsigned int number, std::uint64_t begin, std::uint64_t end)
    {
        const tLayoutPart part = m_tLayout.getPart(number);
        // What lies around records belongs to no part.
        if (!m_tPlan.m_vParts[number].m_bInRecord && m_tPlan.m_tFrame.m_eKind != detail::FR_none)
            return;
        EXPECT_GE(end - begin, part.m_ullLeast) << m_tLayout.getPath(number);
        EXPECT_LE(end - begin, part.m_ullMost) << m_tLayout.getPath(number);
        if (part.m_uiBase == CLayout::s_cuiNoPart)
            return;
        ++m_uiCompared;
        if (part.m_uiBase != number)
            EXPECT_EQ(begin, m_vBegins[part.m_uiBase] + part.m_ullOffset) << m_tLayout.getPath(number);
        else
            EXPECT_EQ(part.m_ullOffset, 0u) << m_tLayout.getPath(number);
    }

    const CLayout& m_tLayout;
    const detail::tPlan& m_tPlan;
    std::vector<std::uint64_t> m_vBegins;  // by part: of the last one
    unsigned int m_uiCompared = 0;
};

TEST(RandomLayouts, partsLieWhereTheLayoutSaysAndAreAsLong)
{
    unsigned int compared = 0;
    forRandomPackets(6, [&compared](const std::string& text, const CLayout& layout, const CFields&,
                                    const std::string& packet, tRandom&) {
        detail::CScanner scanner(*layout.getPlan());
        scanner.show(packet.data(), 0, packet.size(), true);
        detail::E_Scan result = detail::SC_record;
        while (result == detail::SC_record)
            result = scanner.run();
        ASSERT_EQ(result, detail::SC_done) << text;
        compared += CComparePlaces(layout, scanner).compared();
        EXPECT_FALSE(testing::Test::HasFailure()) << text;
    });
    EXPECT_GT(compared, 10U * s_cuiLayouts);
}

}  // namespace
