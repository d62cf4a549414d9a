// tests/docs/packets_page_test.cpp - the numbers of docs/packets.md, run.
//
// Definition and tables are read from the page itself; what it says in words has a test with the same numbers.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "murv/murv.h"
#include "tests/support/source_file.h"

namespace murv::tests
{

namespace
{

using tRow = std::vector<std::string>;

std::string page()
{
    return contentOf("docs/packets.md");
}

/// Without the blanks around it, and without the marks of code.
std::string cell4(std::string text)
{
    const std::size_t begin = text.find_first_not_of(' ');
    text = begin == text.npos ? "" : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
    if (text.size() > 1 && text.front() == '`' && text.back() == '`')
        text = text.substr(1, text.size() - 2);
    return text;
}

/// The rows of all tables with that heading.
std::vector<tRow> rowsBelow(const std::string& heading)
{
    std::vector<tRow> rows;
    std::istringstream lines(page());
    bool inside = false;
    for (std::string line; std::getline(lines, line);)
    {
        if (line == heading)
        {
            std::getline(lines, line);  // the rule below it
            inside = true;
            continue;
        }
        inside = inside && !line.empty() && line.front() == '|';
        if (!inside)
            continue;
        tRow row;
        std::istringstream cells(line.substr(1));
        for (std::string cell; std::getline(cells, cell, '|');)
            row.push_back(cell4(cell));
        rows.push_back(row);
    }
    return rows;
}

std::string bytes4Hex(const std::string& hex)
{
    std::string bytes;
    std::istringstream pairs(hex);
    for (std::string pair; pairs >> pair;)
        bytes += static_cast<char>(std::stoi(pair, nullptr, 16));
    return bytes;
}

CFields load(const std::string& text)
{
    CFields tree;
    CLoader4SER loader;
    EXPECT_TRUE(loader.loading(text, tree)) << text << "\n" << loader.getLastErrMsg();
    return tree;
}

std::string errorOf(const std::string& text)
{
    CFields tree;
    CLoader4SER loader;
    EXPECT_FALSE(loader.loading(text, tree));
    return loader.getLastErrMsg();
}

int parse(CFields& tree, const std::string& packet, bool store = true)
{
    return tree.pkt_Parse4Children(packet.data(), static_cast<unsigned int>(packet.size()), store);
}

/// Parses a packet into the same tree, pass after pass. \return the result of the last pass
int parsePasses(CFields& tree, const std::string& packet, unsigned int passes)
{
    int result = 0;
    for (unsigned int pass = 0; pass < passes; ++pass)
        result = parse(tree, packet);
    return result;
}

/// The definition of the worked example.
std::string definition()
{
    const std::string text = page();
    const std::size_t begin = text.find("```\n{\n");
    EXPECT_NE(begin, text.npos);
    return text.substr(begin + 4, text.find("```", begin + 4) - begin - 4);
}

std::string workedPacket()
{
    return load(definition()).pkt_Make4Children(true);
}

}  // namespace

TEST(PacketsPage, workedExampleMakesTheBytesOfItsTable)
{
    const CFields tree = load(definition());
    const std::vector<tRow> rows = rowsBelow("| Leaf | Bytes | Why |");
    ASSERT_EQ(rows.size(), tree.getChildCount());
    std::string all;
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        EXPECT_EQ(rows[i][0], tree[static_cast<unsigned int>(i)].getName());
        const std::size_t mark = rows[i][1].find("` (hex)");
        all += mark == std::string::npos ? rows[i][1] : bytes4Hex(rows[i][1].substr(1, mark - 1));
    }
    EXPECT_EQ(tree.pkt_Make4Children(true), all);
}

TEST(PacketsPage, workedExampleIsReadInTwoPasses)
{
    const std::vector<tRow> rows = rowsBelow("| | kind | serial | delta | note | port | size | body | Result |");
    ASSERT_EQ(rows.size(), 2U);
    CFields fresh = load(definition());
    for (const tRow& row : rows)
    {
        const int result = parse(fresh, workedPacket());
        for (unsigned int i = 0; i < fresh.getChildCount(); ++i)
            EXPECT_EQ(fresh[i].asString(), row[i + 1]) << row[0];
        EXPECT_EQ(std::to_string(result), row.back()) << row[0];
    }
    EXPECT_EQ(parse(fresh, workedPacket()), 0);
    EXPECT_EQ(fresh["port"], CFields(8080));
}

TEST(PacketsPage, theTreeThatMadeThePacketNeedsOnePass)
{
    CFields tree = load(definition());
    const std::string packet = tree.pkt_Make4Children(true);
    EXPECT_EQ(parse(tree, packet), 0);
    EXPECT_EQ(tree["port"], CFields(8080));
    EXPECT_EQ(tree["body"], CFields("all is well"));
}

TEST(PacketsPage, aCutPacketLeavesWhatAnEarlyPassFound)
{
    const std::string cut = workedPacket().substr(0, 20);
    EXPECT_EQ(cut.substr(15), "hello");
    CFields tree = load(definition());
    EXPECT_EQ(parsePasses(tree, cut, 2), 0);
    EXPECT_EQ(tree["port"], CFields(26725));
    std::string longer = definition();
    longer.insert(longer.rfind('}'), ", \"end\" = (ACF1) \".\"");
    CFields guarded = load(longer);
    EXPECT_EQ(parsePasses(guarded, cut, 2), -1);
}

TEST(PacketsPage, measuringAFreshTreeNeverGetsBetter)
{
    CFields tree = load(definition());
    const int first = parse(tree, workedPacket(), false);
    EXPECT_NE(first, 0);
    EXPECT_EQ(parse(tree, workedPacket(), false), first);
    EXPECT_EQ(parse(tree, workedPacket(), false), first);
}

TEST(PacketsPage, everyVariableItemNeedsAPassAndWhatFollowsOneMore)
{
    for (unsigned int count = 0; count <= 6; ++count)
    {
        for (const bool more : {false, true})
        {
            std::string layout = "[(ACF1) \"\"";
            std::string packet = "a";
            for (unsigned int i = 0; i < count; ++i)
            {
                layout += ", (ACV2) \"\"";
                packet += (i < 4 ? "0" : "1") + std::to_string((6 + i) % 10) + std::string(4 + i, 'v');
            }
            layout += more ? ", (ACF1) \"\"]" : "]";
            packet += more ? "z" : "";
            const unsigned int passes = count == 0 ? 1 : more ? count + 1 : count;
            CFields tree = load(layout);
            EXPECT_EQ(parsePasses(tree, packet, passes), 0) << layout;
            EXPECT_EQ(tree[tree.getChildCount() - 1].asString(), more         ? "z"
                                                                 : count == 0 ? "a"
                                                                              : std::string(3 + count, 'v'));
            EXPECT_EQ(parsePasses(tree, packet, 3), 0);
            CFields early = load(layout);
            if (passes > 1)
            {
                parsePasses(early, packet, passes - 1);
                EXPECT_NE(early[early.getChildCount() - 1].asString(), tree[tree.getChildCount() - 1].asString());
            }
        }
    }
}

TEST(PacketsPage, aPacketOfOtherLengthsNeedsAsManyPasses)
{
    CFields tree = load("[(ACV2) \"\", (ACV2) \"\", (ACF1) \"\"]");
    EXPECT_EQ(parsePasses(tree, "04aa07bbbbbZ", 3), 0);
    const std::string next = "03a04ccY";
    EXPECT_NE(parse(tree, next), 0);
    EXPECT_EQ(parsePasses(tree, next, 2), 0);
    EXPECT_EQ(tree[1], CFields("cc"));
    EXPECT_EQ(tree[2], CFields("Y"));
}

TEST(PacketsPage, recordedLengthIsThatOfThePrefixWhenReadFromText)
{
    const unsigned int recorded = load("(ACV3) \"hello\"").pkt_GetExp().m_uiLength;
    EXPECT_EQ(recorded, 3U);
}

TEST(PacketsPage, resultsAreThoseOfTheTable)
{
    const std::vector<tRow> rows = rowsBelow("| Layout | Bytes | Result |");
    EXPECT_EQ(rows.size(), 8U);
    for (const tRow& row : rows)
    {
        CFields tree = load(row[0]);
        EXPECT_EQ(std::to_string(parse(tree, row[1])), row[2]) << row[0];
    }
}

TEST(PacketsPage, resultOfOneUnreadableLeafIsMinusOne)
{
    CFields leaf = load("(ANF2) 7 ");
    EXPECT_EQ(leaf.pkt_Parse4OneSelf("xx", 2, true), -1);
    EXPECT_EQ(leaf, CFields(7));
    EXPECT_EQ(leaf.pkt_Parse4OneSelf("xx", 2, false), 0);
}

TEST(PacketsPage, aContainerWithoutMembersHidesAFailure)
{
    CFields tree = load("[(ANF2) 0, 1]");
    EXPECT_EQ(parse(tree, "xxab"), 0);
    tree[1].setValue(DT_fields);
    EXPECT_EQ(parse(tree, "xxab"), 0);
    CFields guarded = load("[(ANF2) 0, 1, (ACF1) \"\"]");
    EXPECT_EQ(parse(guarded, "xxab"), -1);
}

TEST(PacketsPage, aPrefixWithoutSenseEndsTheWalkUnlessNothingIsRecorded)
{
    CFields tree = load("[(ACV2) \"\", (ACF4) \"\"]");
    for (const char* packet : {"-512", "ab12", "0112"})
    {
        EXPECT_EQ(parse(tree, packet), 4) << packet;
        EXPECT_TRUE(tree[1].asString().empty()) << packet;
    }
    tPacketExpInfo pei = tree[0].pkt_GetExp();
    pei.m_uiLength = 0;
    tree[0].pkt_SetExp(pei);
    EXPECT_EQ(parse(tree, "ab12"), 0);
    EXPECT_EQ(tree[1], CFields("ab12"));
}

TEST(PacketsPage, anItemShorterThanRecordedEndsTheWalk)
{
    CFields tree = load("[(ACF1) \"\", (ACV2) \"\", (ACF1) \"\"]");
    EXPECT_EQ(parsePasses(tree, "a06bbbbc", 2), 0);
    EXPECT_EQ(parse(tree, "a03bc"), 4);
    EXPECT_EQ(parse(tree, "a03bc"), 0);
}

TEST(PacketsPage, itemsAreMadeAndReadBackAsTheTablesSay)
{
    const std::vector<tRow> rows = rowsBelow("| Item | Bytes made | Read back |");
    EXPECT_EQ(rows.size(), 18U);
    for (const tRow& row : rows)
    {
        const bool binary = row[0].find("(B") == 0;
        const std::string bytes = row[1] == "nothing" ? "" : binary ? bytes4Hex(row[1]) : row[1];
        const std::string layout = "[" + row[0] + "]";
        EXPECT_EQ(load(layout).pkt_Make4Children(true), bytes) << row[0];
        if (row[2].empty())
            continue;
        CFields tree = load(layout);
        EXPECT_EQ(parsePasses(tree, bytes, 2), 0) << row[0];
        if (row[2] == "not a number")
            EXPECT_TRUE(std::isnan(tree[0].asDouble())) << row[0];
        else
            EXPECT_EQ(tree[0].asString(), row[2]) << row[0];
    }
}

TEST(PacketsPage, typesOfWhatIsReadBack)
{
    const auto type4 = [](const std::string& layout, const std::string& packet) {
        CFields tree = load("[" + layout + "]");
        EXPECT_EQ(parse(tree, packet), 0) << layout;
        return tree[0].getDT();
    };
    EXPECT_EQ(type4("(ANF4) 0", "12ab"), DT_double);
    EXPECT_EQ(type4("(ANF4) 0", "  42"), DT_double);
    EXPECT_EQ(type4("(ANF4) 0", "0042"), DT_sint);
    EXPECT_EQ(type4("(BNF9) 0", std::string(9, '\0')), DT_double);
    EXPECT_EQ(type4("(BNF8) 0", std::string(8, '\0')), DT_sint);
    EXPECT_EQ(load("[(ANV2) 25.0]").pkt_Make4Children(true), "0425");
    EXPECT_EQ(type4("(ANV2) 0", "0425"), DT_sint);
}

TEST(PacketsPage, binaryIntegersOfSevenBytesEndAt56Bits)
{
    EXPECT_EQ(load("[(BNF7) 72057594037927936]").pkt_Make4Children(false), std::string(7, '\0'));
}

TEST(PacketsPage, widePrefixesAreFilledOnlyBeforeNullAndBool)
{
    const std::string filled(1, '\xAD');
    EXPECT_EQ(load("[(BCV9+20) true]").pkt_Make4Children(false)[0], filled[0]);
    EXPECT_EQ(load("[(BCV9+20) null]").pkt_Make4Children(false)[0], filled[0]);
    EXPECT_EQ(load("[(BCV9+20) 1]").pkt_Make4Children(false)[0], '\0');
}

TEST(PacketsPage, binaryPrefixesOfEightBytesGiveNothing)
{
    EXPECT_EQ(load("[(BCV8) \"ab\"]").pkt_Make4Children(false), "ab");
}

TEST(PacketsPage, binaryVariableItemsComeBackAsBytes)
{
    CFields tree = load("[(BCV1) 5]");
    const std::string packet = tree.pkt_Make4Children(false);
    EXPECT_EQ(packet, bytes4Hex("09 00 00 00 00 00 00 00 05"));
    EXPECT_EQ(parse(tree, packet), 0);
    EXPECT_EQ(tree[0], CFields(packet.substr(1)));
}

TEST(PacketsPage, optionsAboveNineAreForTextOnly)
{
    const auto binaryError = [](const CFields& tree) {
        CFields read;
        CLoaders loader;
        EXPECT_FALSE(loader.loading(tree.toMURV(ER_BER), read));
        return loader.getLastErrMsg();
    };
    const CFields twelve = load("[(ANF3sizeset_12) 1]");
    EXPECT_EQ(twelve.toMURV(ER_SER_PKT), "[(ANF3sizeset_12)1]");
    EXPECT_NE(binaryError(twelve).find("Supporting-keyword option value must be little than 10"), std::string::npos);
    const CFields seventeen = load("[(ANF3sizeset_17) 1]");
    EXPECT_EQ(seventeen.toMURV(ER_SER_PKT), "[(ANF3sizeset_1)1]");
    const CFields sixteen = load("[(ANF3sizeset_16) 1]");
    EXPECT_EQ(sixteen.toMURV(ER_SER_PKT), "[(ANF3sizeset_)1]");
    EXPECT_NE(binaryError(sixteen).find("Supporting-keyword option value must be bigger than 0"), std::string::npos);
    CFields paired = load("[(ANF1sizeset_12) 0, (ACD0sizedef_12) \"abc\"]");
    EXPECT_EQ(paired.pkt_Make4Children(true), "3abc");
}

TEST(PacketsPage, whatIsWrittenButCannotBeRead)
{
    CFields tree = load("[(ANF3DOY) 1]");
    tPacketExpInfo pei = tree[0].pkt_GetExp();
    pei.m_ucSkOption = 2;
    tree[0].pkt_SetExp(pei);
    EXPECT_EQ(tree.toMURV(ER_SER_PKT), "[(ANF3DOY2)1]");
    EXPECT_EQ(errorOf("[(ANF3DOY2)1]"),
              "* Line 1, Column 2\n  Found not a supporting-keyword index in packet expression\n");
    EXPECT_EQ(load("[(ANV2+128) 1]").toMURV(ER_SER_PKT), "[(ANV2-128)1]");
    EXPECT_EQ(errorOf("[(ANV2-128)1]"), "* Line 1, Column 2\n  Calibration value must between -127 and 128\n");
}

TEST(PacketsPage, aLengthOfRunTimeIsWrittenAsZeroWithoutValues)
{
    const CFields tree = load("[(ACD3sizedef_1) \"abc\"]");
    EXPECT_EQ(tree.toMURV(ER_SER_PKT), "[(ACD3sizedef_1)\"abc\"]");
    EXPECT_EQ(tree.toMURV(ER_SER_PKT, SAVE_ALL & ~static_cast<unsigned int>(SAVE_VALUE)), "[(ACD0sizedef_1)]");
}

TEST(PacketsPage, secondValueOfAnExpressionSetByHandIsSavedEmpty)
{
    CFields byHand = load("[\"text\"]");
    const CFields loaded = load("[(ACF4fix) \"text\"]");
    byHand[0].pkt_SetExp(loaded[0].pkt_GetExp());
    EXPECT_EQ(byHand.toMURV(ER_SER_PKT), "[(ACF4fix)]");
    byHand[0].setVK(VK_fix);
    EXPECT_EQ(byHand.toMURV(ER_SER_PKT), loaded.toMURV(ER_SER_PKT));
}

}  // namespace murv::tests
