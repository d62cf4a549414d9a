// tests/explorer/map_test.cpp - what the explorer ties together: bytes, places in the text of a tree, parts of a
// layout.
//
// The page itself is tested in a browser, by scripts/explorer.
#include "explorer/packet_map.h"
#include "murv/flags.h"
#include "tests/layout/stock/stock_helpers.h"

namespace murv::tests
{

using namespace murv::explorer;

namespace
{

constexpr unsigned int s_cuiTreeFlags =
    LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_LOSSLESS | LCBC_DUPLICATE | LCBC_UNICODE_UTF8;

/// A packet that was read, and a text of its tree.
struct tMapped
{
    CLayoutMap m_tLayout;
    CPacketMap m_tPacket;
    std::string m_strText;
    tDocument m_tDocument;
};

/// \param text  empty: what reading gives
void map(const std::string& layout, std::string_view bytes, const std::string& text, tMapped& mapped)
{
    ASSERT_TRUE(mapped.m_tLayout.compile(layout));
    mapped.m_tPacket.read(mapped.m_tLayout, bytes);
    mapped.m_strText = text.empty() ? mapped.m_tPacket.text() : text;
    load(mapped.m_strText, s_cuiTreeFlags, mapped.m_tDocument);
    ASSERT_TRUE(mapped.m_tDocument.m_vErrors.empty()) << mapped.m_strText;
    mapped.m_tPacket.tie(mapped.m_tLayout, mapped.m_strText, mapped.m_tDocument);
}

/// A text with one character for each unit of UTF-16.
std::string inUnits(std::string_view text)
{
    std::string units;
    for (const char c : text)
    {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0U) != 0x80)
            units.append(byte >= 0xF0 ? 2 : 1, byte < 128 ? c : '?');
    }
    return units;
}

std::string part(std::string_view text, std::int32_t from, std::int32_t to)
{
    const auto begin = static_cast<std::size_t>(from);
    return from < 0 ? "(none)" : std::string(text.substr(begin, static_cast<std::size_t>(to) - begin));
}

/// The members of the text that the leaves are tied to.
std::vector<std::string> members(const tMapped& mapped)
{
    std::vector<std::string> texts;
    for (const tLeaf& leaf : mapped.m_tPacket.m_vLeaves)
        texts.push_back(part(mapped.m_strText, leaf.m_iBegin, leaf.m_iEnd));
    return texts;
}

std::vector<std::string> groups(const tMapped& mapped)
{
    std::vector<std::string> texts;
    for (const tGroup& group : mapped.m_tPacket.m_vGroups)
        texts.push_back(part(mapped.m_strText, group.m_iBegin, group.m_iBegin + 4) + " " +
                        std::to_string(group.m_iFirst) + ".." + std::to_string(group.m_iAfter));
    return texts;
}

const std::string s_strLayout = R"({ "@" = "layout 1", "a" = (BNF1) 0, (BCF1fix) "-", "s" = { "b" = (BNF1) 0 },
    "n" = (BNF1) 0, "@n" = "count of l", "l" = [ (BCV1+1) "" ] })";

std::vector<std::pair<std::string, std::string>> samples()
{
    return {{"ach", "ach/iat-mixedCreditDebit.ach"},
            {"ar", "archives/plain.a"},
            {"binaryfile", "binaryfile/binaryfile.dat"},
            {"cobol", "cobol/bookings.ebc"},
            {"cpio", "archives/newc.cpio"},
            {"git-index", "unix/git.index"},
            {"iso8583", "iso8583/iso_reversal_message.dat"},
            {"itch50", "itch50/sample-length-prefixed.bin"},
            {"pcap", "captures/ntp.pcap"},
            {"sqlite-header", "unix/sqlite-header.bin"},
            {"ssh-public-key", "unix/ssh-rsa-public.bin"},
            {"tar", "archives/pax.tar"}};
}

}  // namespace

TEST(ExplorerPlaces, countUnitsOfUtf16)
{
    const std::vector<std::pair<std::string, std::uint32_t>> characters = {
        {"a", 1}, {"\xC3\xA4", 1}, {"\xE2\x82\xAC", 1}, {"\xF0\x9F\x98\x80", 2}};
    std::string text;
    std::uint32_t units = 0;
    for (unsigned int i = 0; i < 100; ++i)
    {
        const auto& [character, own] = characters[(i * i + i / 7) % characters.size()];
        text += character;
        units += own;
        EXPECT_EQ(CPlaces(text).at(text.size()), units);
        EXPECT_EQ(CPlaces(text + std::string(200, 'x')).at(text.size()), units);
    }
    EXPECT_EQ(CPlaces("abc").at(2), 2U);
    EXPECT_EQ(CPlaces("abc").at(99), 3U);
    EXPECT_EQ(CPlaces("\xC3\xA4").at(99), 1U);
    EXPECT_EQ(CPlaces("").at(0), 0U);
}

TEST(ExplorerDocument, membersBeginWithIdNameAndExpression)
{
    const std::string text = R"({ #7 "a b" = (BNF4) 1, "c\"(" = 2, #8 = "x", "d" = [ 3, (BNF1) 4 ], "e" = })";
    tDocument document;
    load(text, s_cuiTreeFlags, document);
    ASSERT_TRUE(document.m_vErrors.empty());
    const auto from = [&](const CFields& node) { return text.substr(memberBegin(text, node), 6); };
    const CFields& root = document.m_tTree;
    EXPECT_EQ(from(root), "{ #7 \"");
    EXPECT_EQ(from(root.getChildAt(0)), "#7 \"a ");
    EXPECT_EQ(from(root.getChildAt(1)), "\"c\\\"(\"");
    EXPECT_EQ(from(root.getChildAt(2)), "#8 = \"");
    EXPECT_EQ(from(root.getChildAt(3)), "\"d\" = ");
    EXPECT_EQ(from(root.getChildAt(3).getChildAt(0)), "3, (BN");
    EXPECT_EQ(from(root.getChildAt(3).getChildAt(1)), "(BNF1)");
    EXPECT_EQ(from(root.getChildAt(4)), "\"e\" = ");
}

TEST(ExplorerDocument, allMistakesAreFound)
{
    tDocument document;
    load("{ \"a\" 1, \"b\" = 2, \"c\" 3 }", s_cuiTreeFlags, document);
    EXPECT_EQ(document.m_vErrors.size(), 2U);
    load(std::string(2000, '['), s_cuiTreeFlags, document);
    EXPECT_FALSE(document.m_vErrors.empty());
}

TEST(ExplorerLayout, partsAndRulesHaveTheirPlaces)
{
    CLayoutMap layout;
    ASSERT_TRUE(layout.compile(s_strLayout));
    std::vector<std::string> texts;
    for (const tPartPlace& place : layout.places())
        texts.push_back(layout.layout().getPath(place.m_uiPart) + ": " +
                        s_strLayout.substr(place.m_nBegin, std::min<std::size_t>(place.m_nEnd - place.m_nBegin, 14)));
    EXPECT_EQ(texts, (std::vector<std::string>{": { \"@\" = \"layou", ": \"@\" = \"layout ", "a: \"a\" = (BNF1) 0",
                                               "(2): (BCF1fix) \"-\"", "s: \"s\" = { \"b\" = ", "s.b: \"b\" = (BNF1) 0",
                                               "n: \"n\" = (BNF1) 0", "n: \"@n\" = \"count ", "l: \"l\" = [ (BCV1+",
                                               "l: (BCV1+1) \"\""}));
}

TEST(ExplorerLayout, mistakesLeaveNoParts)
{
    CLayoutMap layout;
    EXPECT_FALSE(layout.compile("{ \"@\" = \"layout 1\", \"a\" = 0 }"));
    EXPECT_EQ(layout.layout().getMistakes().size(), 1U);
    EXPECT_TRUE(layout.places().empty());
    EXPECT_FALSE(layout.compile("{ \"@\" "));
    EXPECT_EQ(layout.document().m_vErrors.size(), 1U);
}

TEST(ExplorerPacket, leavesAndGroupsAreTiedToTheText)
{
    tMapped mapped;
    map(s_strLayout, std::string_view("\x07-\x05\x02\x01x\x02yz", 9), "", mapped);
    EXPECT_EQ(members(mapped),
              (std::vector<std::string>{"\"a\" = 7", "(none)", "\"b\" = 5", "\"n\" = 2", "\"x\"", "\"yz\""}));
    EXPECT_EQ(groups(mapped), (std::vector<std::string>{"{\n   0..6", "\"s\"  2..3", "\"l\"  4..6"}));
    const tLeaf& last = mapped.m_tPacket.m_vLeaves.back();
    EXPECT_EQ(last.m_iFrom, 6);  // its length
    EXPECT_EQ(last.m_iOffset, 7);
    EXPECT_EQ(last.m_iLength, 2);
    EXPECT_EQ(last.m_iGroup, 2);
    EXPECT_EQ(last.m_iIndex, 1);
}

TEST(ExplorerPacket, literalsWithoutNameAreInTheGroupThatHasThem)
{
    const std::string layout = R"({ "@" = "layout 1", "l" = [ { (BCF1fix) "<", "a" = (BNF1) 0, (BCF1fix) ">" } ],
        "@l" = "ends \"!\"", "b" = (BNF1) 0 })";
    tMapped mapped;
    map(layout, "<x><y>!z", "", mapped);
    EXPECT_EQ(groups(mapped), (std::vector<std::string>{"{\n   0..7", "\"l\"  0..6", "{\n   0..3", "{\n   3..6"}));
}

TEST(ExplorerPacket, aTextInAnotherOrderAndWithLessIsTiedAsWell)
{
    tMapped mapped;
    map(s_strLayout, std::string_view("\x07-\x05\x01\x01x", 6), R"({ "l" = ["x"], "s" = {}, "a" = 7 })", mapped);
    EXPECT_EQ(members(mapped), (std::vector<std::string>{"\"a\" = 7", "(none)", "(none)", "(none)", "\"x\""}));
    EXPECT_EQ(mapped.m_tPacket.m_vLeafOrder, (std::vector<std::int32_t>{4, 0}));
    EXPECT_EQ(mapped.m_tPacket.m_vGroupOrder, (std::vector<std::int32_t>{0, 2, 1}));
}

TEST(ExplorerPacket, everyValueOfEverySampleIsTied)
{
    for (const auto& [layout, file] : samples())
    {
        SCOPED_TRACE(file);
        tMapped mapped;
        const std::string bytes = sample(file);
        map(layoutText(layout), bytes, "", mapped);
        EXPECT_FALSE(mapped.m_tPacket.m_vLeaves.empty());
        std::int32_t end = 0;
        const std::string text = inUnits(mapped.m_strText);
        for (const tLeaf& leaf : mapped.m_tPacket.m_vLeaves)
        {
            EXPECT_GE(leaf.m_iFrom, end);
            end = leaf.m_iOffset + leaf.m_iLength;
            const auto number = static_cast<unsigned int>(leaf.m_iPart);
            ASSERT_EQ(leaf.m_iBegin == s_ciNone, mapped.m_tLayout.isLeftOut(number)) << number;
            const std::string name = inUnits(mapped.m_tLayout.layout().getPart(number).m_strvName);
            const std::string before = part(text, leaf.m_iBegin, leaf.m_iValue);
            ASSERT_TRUE(name.empty() || before.find('"' + name + "\" =") != std::string::npos) << before;
        }
        EXPECT_LE(end, static_cast<std::int32_t>(bytes.size()));
    }
}

TEST(ExplorerPacket, packetsThatEndTooSoonSayWhere)
{
    const std::string bytes = sample("cobol/bookings.ebc");
    for (std::size_t length = 1; length < bytes.size(); ++length)
    {
        tMapped mapped;
        map(layoutText("cobol"), std::string_view(bytes).substr(0, length), "", mapped);
        for (const tLeaf& leaf : mapped.m_tPacket.m_vLeaves)
            ASSERT_LE(leaf.m_iOffset + leaf.m_iLength, static_cast<std::int32_t>(length));
        ASSERT_FALSE(mapped.m_tPacket.m_vProblems.empty()) << length;
        for (const tProblem& problem : mapped.m_tPacket.m_vProblems)
            ASSERT_LE(problem.m_ullUnreadEnd, length);
    }
}

TEST(ExplorerPacket, whatFollowsADamagedRecordIsRead)
{
    std::string bytes = sample("ach/20110805A.ach");
    bytes[1360] = 'X';
    tMapped mapped;
    map(layoutText("ach"), bytes, "", mapped);
    ASSERT_EQ(mapped.m_tPacket.m_vProblems.size(), 1U);
    const tProblem& problem = mapped.m_tPacket.m_vProblems[0];
    EXPECT_EQ(place(problem.m_tFault), "digits at 1359 (batches[0].entries[12].entry.amount)");
    EXPECT_EQ(problem.m_ullUnread, 1369U);
    EXPECT_EQ(problem.m_ullUnreadEnd, 1425U);
    EXPECT_GT(mapped.m_tPacket.m_vLeaves.back().m_iOffset, 8000);
}

}  // namespace murv::tests
