// tests/docs/layouts_page_test.cpp - the examples of docs/layouts.md, run.
//
// A block marked "layout" is a layout, or its members, and lines that say what becomes of bytes and values:
//
//     BYTES <-> VALUE                  reading gives the value without findings, and making gives the bytes
//     BYTES -> VALUE                   reading; "; finding: NAME" after it: with exactly that finding
//     BYTES <- VALUE                   making
//     BYTES -> error: NAME             reading refuses
//     error: NAME <- VALUE             making refuses
//     mistake: SENTENCE                the layout does not compile
//
// BYTES are hexadecimal digits and quoted texts, "dump" for those of the last block marked "dump", or "nothing". VALUE
// is members of a field set, or "nothing". A line without an arrow goes on with the line before it.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "layout/compile/rule_table.h"
#include "layout/values/fault_table.h"
#include "murv/layout.h"
#include "murv/murv.h"
#include "tests/support/source_file.h"

namespace murv::tests
{

namespace
{

using tRow = std::vector<std::string>;

struct tBlock
{
    std::string m_strMark;
    unsigned int m_uiLine = 0;  // of the page, of the first line inside
    std::vector<std::string> m_vLines;
};

struct tExample
{
    unsigned int m_uiLine = 0;
    std::string m_strLeft;
    std::string m_strArrow;
    std::string m_strRight;
};

std::vector<std::string> pageLines()
{
    std::istringstream in(contentOf("docs/layouts.md"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

std::string trim(const std::string& text)
{
    const std::size_t begin = text.find_first_not_of(' ');
    return begin == text.npos ? "" : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

std::vector<tBlock> blocks()
{
    std::vector<tBlock> all;
    bool inside = false;
    unsigned int number = 0;
    for (const std::string& line : pageLines())
    {
        ++number;
        if (line.compare(0, 3, "```") == 0)
        {
            inside = !inside;
            if (inside)
                all.push_back({line.substr(3), number + 1, {}});
        }
        else if (inside)
            all.back().m_vLines.push_back(line);
    }
    return all;
}

/// The place after the closing quote of a text that begins there.
std::size_t quotedEnd(const std::string& text, std::size_t begin)
{
    std::size_t i = begin + 1;
    for (; i < text.size() && text[i] != '"'; ++i)
        i += text[i] == '\\' ? 1 : 0;
    return i + 1;
}

/// Splits a line at its arrow, which stands outside of quotes.
std::optional<tExample> example4(const std::string& line, unsigned int number)
{
    for (std::size_t i = 0; i < line.size(); ++i)
    {
        if (line[i] == '"')
            i = quotedEnd(line, i) - 1;
        for (const std::string arrow : {" <-> ", " -> ", " <- "})
        {
            if (line.compare(i, arrow.size(), arrow) == 0)
                return tExample{number, trim(line.substr(0, i)), arrow, trim(line.substr(i + arrow.size()))};
        }
    }
    if (line.compare(0, 9, "mistake: ") == 0)
        return tExample{number, "", "mistake", trim(line.substr(9))};
    return {};
}

/// Takes the examples off a block; the layout is left.
std::string splitExamples(const tBlock& block, std::vector<tExample>& examples)
{
    std::string layout;
    unsigned int number = block.m_uiLine;
    for (const std::string& line : block.m_vLines)
    {
        const std::optional<tExample> example = example4(line + " ", number++);
        if (example)
            examples.push_back(*example);
        else if (examples.empty())
            layout += line + "\n";
        else
            examples.back().m_strRight += " " + trim(line);
    }
    const std::size_t first = layout.find_first_not_of(" \n");
    if (layout.compare(first, 2, "//") == 0 || layout[first] == '{')
        return layout;
    const bool hasRules = layout.compare(first, 5, "\"@\" =") == 0;
    return (hasRules ? "{ " : R"({ "@" = "layout 1", )") + layout + " }";
}

CFields load(const std::string& text)
{
    CFields tree;
    CLoader4SER loader(LCBC_COMMENT | LCBC_LOSSLESS);
    EXPECT_TRUE(loader.loading(text, tree)) << text << "\n" << loader.getLastErrMsg();
    return tree;
}

CFields value4(const std::string& members)
{
    return load(members == "nothing" ? "{}" : "{ " + members + " }");
}

std::string text4(const CFields& tree)
{
    return tree.toMURV(ER_SER_PKT, SAVE_NAME | SAVE_VALUE);
}

/// Bytes of lines such as `00000010  57 53 01 | WS.|`.
std::string bytes4Dump(const tBlock& block)
{
    std::string bytes;
    for (const std::string& line : block.m_vLines)
    {
        std::istringstream pairs(line.substr(8, line.find('|') - 8));
        for (std::string pair; pairs >> pair;)
            bytes += static_cast<char>(std::stoi(pair, nullptr, 16));
    }
    return bytes;
}

std::string bytes4(const std::string& words, const std::string& dump)
{
    std::string bytes;
    for (std::size_t i = 0; i < words.size();)
    {
        const std::size_t end = words[i] == '"' ? quotedEnd(words, i) : std::min(words.find(' ', i), words.size());
        const std::string word = words.substr(i, end - i);
        if (word == "dump")
            bytes += dump;
        else if (word[0] == '"')
            bytes += load(word).asString();
        else if (word != "nothing")
        {
            EXPECT_TRUE(word.size() == 2 && std::isxdigit(word[0]) && std::isxdigit(word[1])) << word;
            bytes += static_cast<char>(std::strtol(word.c_str(), nullptr, 16));
        }
        i = std::min(words.find_first_not_of(' ', end), words.size());
    }
    return bytes;
}

std::string words4(const tPacketFault& fault)
{
    return std::string(getFaultName(fault.m_eCode)) + " at " + fault.m_strPath + ": " + fault.m_strMessage;
}

void expectReading(const CLayout& layout, const std::string& bytes, const std::string& expected)
{
    CPacketReader reader(layout);
    CFields tree;
    const bool isRead = reader.read(bytes, tree);
    if (expected.compare(0, 7, "error: ") == 0)
    {
        EXPECT_EQ(getFaultName(reader.getFault().m_eCode), expected.substr(7)) << words4(reader.getFault());
        return;
    }
    EXPECT_TRUE(isRead) << words4(reader.getFault());
    const std::string mark = "; finding: ";
    const std::size_t end = std::min(expected.find(mark), expected.size());
    EXPECT_EQ(text4(tree), text4(value4(expected.substr(0, end))));
    std::string found;
    for (const tPacketFault& finding : reader.getFindings())
        found += mark + getFaultName(finding.m_eCode);
    EXPECT_EQ(found, expected.substr(end));
}

void expectMaking(const CLayout& layout, const std::string& value, const std::string& bytes, const std::string& error)
{
    CPacketMaker maker(layout);
    std::string packet;
    const bool isMade = maker.make(value4(value), packet);
    if (!error.empty())
    {
        EXPECT_EQ(getFaultName(maker.getFault().m_eCode), error) << words4(maker.getFault());
        return;
    }
    EXPECT_TRUE(isMade) << words4(maker.getFault());
    EXPECT_EQ(CFields(packet).toMURV(ER_SER_PKT), CFields(bytes).toMURV(ER_SER_PKT));
}

void run(const CLayout& layout, const tExample& example, const std::string& dump)
{
    SCOPED_TRACE("docs/layouts.md:" + std::to_string(example.m_uiLine));
    const bool isRefused = example.m_strLeft.compare(0, 7, "error: ") == 0;
    const std::string bytes = isRefused ? "" : bytes4(example.m_strLeft, dump);
    if (example.m_strArrow != " <- ")
        expectReading(layout, bytes, example.m_strRight);
    if (example.m_strArrow != " -> ")
        expectMaking(layout, example.m_strRight, bytes, isRefused ? example.m_strLeft.substr(7) : "");
}

/// Without the marks of code, and without those that keep "|" from ending a cell.
std::string cell4(std::string text)
{
    text = trim(text);
    if (text.size() > 1 && text.front() == '`' && text.back() == '`')
        text = text.substr(1, text.size() - 2);
    for (std::size_t at = text.find("\\|"); at != text.npos; at = text.find("\\|"))
        text.erase(at, 1);
    return text;
}

/// The rows of the table with that heading.
std::vector<tRow> rowsBelow(const std::string& heading)
{
    std::vector<tRow> rows;
    const std::vector<std::string> lines = pageLines();
    std::size_t at = static_cast<std::size_t>(std::find(lines.begin(), lines.end(), heading) - lines.begin()) + 2;
    for (; at < lines.size() && lines[at].compare(0, 2, "| ") == 0; ++at)
    {
        rows.emplace_back();
        std::size_t begin = 1;
        for (std::size_t i = 1; i < lines[at].size(); ++i)
        {
            if (lines[at][i] != '|' || lines[at][i - 1] == '\\')
                continue;
            rows.back().push_back(cell4(lines[at].substr(begin, i - begin)));
            begin = i + 1;
        }
    }
    return rows;
}

/// Bytes of a cell: text as it stands in code, hexadecimal digits, or nothing.
std::string bytes4Cell(const std::string& cell, bool isBinary)
{
    return isBinary || cell == "nothing" ? bytes4(cell, "") : cell;
}

CLayout layout4Leaf(const std::string& leaf)
{
    CLayout layout;
    EXPECT_TRUE(layout.compile(R"({ "@" = "layout 1", "v" = )" + leaf + " }")) << leaf;
    return layout;
}

}  // namespace

TEST(LayoutsPage, examplesDoWhatTheySay)
{
    registerStandardKeywords();
    std::string dump;
    unsigned int count = 0;
    for (const tBlock& block : blocks())
    {
        if (block.m_strMark == "dump")
            dump = bytes4Dump(block);
        if (block.m_strMark != "layout")
            continue;
        SCOPED_TRACE("block at docs/layouts.md:" + std::to_string(block.m_uiLine));
        std::vector<tExample> examples;
        CLayout layout;
        layout.compile(splitExamples(block, examples));
        std::string mistakes;
        for (const tLayoutMistake& mistake : layout.getMistakes())
            mistakes += mistake.m_strMessage;
        const bool isMistaken = !examples.empty() && examples.front().m_strArrow == "mistake";
        EXPECT_EQ(mistakes, isMistaken ? examples.front().m_strRight : "");
        EXPECT_FALSE(examples.empty());
        for (const tExample& example : examples)
        {
            ++count;
            if (layout.isCompiled())
                run(layout, example, dump);
        }
    }
    EXPECT_GT(count, 150U);
}

TEST(LayoutsPage, tableOfRulesIsThatOfTheCompiler)
{
    const std::vector<tRow> rows = rowsBelow("| Rule | About | Keyword | Meaning |");
    std::vector<tRow> expected;
    for (const detail::tRuleRow* rule = detail::beginRules(); rule != detail::endRules(); ++rule)
    {
        const std::string keyword = rule->m_pKeyword == nullptr ? "" : rule->m_pKeyword;
        expected.push_back({rule->m_pForm, rule->m_pPlaces, keyword, rule->m_pSentence});
    }
    EXPECT_EQ(rows, expected);
}

TEST(LayoutsPage, everyRuleHasAnExample)
{
    std::set<std::string> seen;
    for (const tBlock& block : blocks())
    {
        std::vector<tExample> examples;
        CLayout layout;
        if (block.m_strMark != "layout" || !layout.compile(splitExamples(block, examples)))
            continue;
        for (unsigned int i = 0; i < layout.getPartCount(); ++i)
        {
            std::vector<std::string_view> rules;
            detail::splitRules(layout.getPart(i).m_strvRules, rules);
            for (const std::string_view text : rules)
            {
                detail::tRule rule;
                if (detail::readRule(text, rule).empty())
                    seen.insert(rule.m_pRow->m_pName);
            }
        }
    }
    for (const detail::tRuleRow* rule = detail::beginRules(); rule != detail::endRules(); ++rule)
        EXPECT_TRUE(seen.count(rule->m_pName) != 0) << rule->m_pName;
}

TEST(LayoutsPage, tableOfReasonsIsThatOfTheLibrary)
{
    std::vector<tRow> faults;
    std::vector<tRow> findings;
    for (const detail::tFaultRow& row : detail::s_ctFaults)
    {
        if (row.m_eCode != PF_none)
            (row.m_bFinding ? findings : faults).push_back({row.m_pName, row.m_pSentence});
    }
    EXPECT_EQ(rowsBelow("| Fault | Meaning |"), faults);
    EXPECT_EQ(rowsBelow("| Finding | Meaning |"), findings);
}

TEST(LayoutsPage, programsAreThoseOfTheExamples)
{
    std::string sources;
    for (const auto& entry : std::filesystem::directory_iterator(MURV_SOURCE_DIR "/examples"))
    {
        if (entry.path().extension() == ".cpp" || entry.path().extension() == ".murv")
            sources += contentOf(entry.path());
    }
    unsigned int count = 0;
    for (const tBlock& block : blocks())
    {
        if (block.m_strMark != "cpp")
            continue;
        std::string text;
        for (const std::string& line : block.m_vLines)
            text += line + "\n";
        EXPECT_NE(sources.find(text), sources.npos) << "docs/layouts.md:" << block.m_uiLine << "\n" << text;
        ++count;
    }
    EXPECT_GT(count, 2U);
}

TEST(LayoutsPage, membersAndCodecReadAsTheTableSays)
{
    const std::vector<tRow> rows = rowsBelow("| Item | Bytes | `pkt_` members read | The codec reads |");
    EXPECT_GT(rows.size(), 10U);
    for (const tRow& row : rows)
    {
        SCOPED_TRACE(row[0] + " " + row[1]);
        const std::string bytes = bytes4Cell(row[1], row[0][1] == 'B');
        CFields leaf = load("[" + row[0] + "]");
        for (unsigned int pass = 0; pass < 2; ++pass)
            EXPECT_GE(leaf.pkt_Parse4Children(bytes.data(), static_cast<unsigned int>(bytes.size()), true), 0);
        EXPECT_EQ(CFields(leaf[0].asString()), CFields(load("[" + row[2] + "]")[0].asString()));
        expectReading(layout4Leaf(row[0]), bytes, row[3].find("error") == 0 ? row[3] : "\"v\" = " + row[3]);
    }
}

TEST(LayoutsPage, membersAndCodecMakeAsTheTableSays)
{
    const std::vector<tRow> rows = rowsBelow("| Item and value | `pkt_` members make | The codec makes |");
    EXPECT_GT(rows.size(), 10U);
    for (const tRow& row : rows)
    {
        SCOPED_TRACE(row[0]);
        const bool isBinary = row[0][1] == 'B';
        EXPECT_EQ(load("[" + row[0] + "]").pkt_Make4Children(true), bytes4Cell(row[1], isBinary));
        const std::size_t blank = row[0].find(' ');
        const std::string leaf = row[0].substr(0, blank) + (row[0][2] == 'N' ? " 0" : " \"\"");
        const std::string value = "\"v\" =" + row[0].substr(blank);
        const bool isRefused = row[2].find("error: ") == 0;
        // an item of fixed bytes needs a value of its own that fits
        const std::string fitting = leaf == "(BCF4) \"\"" ? "(BCF4) \"abcd\"" : leaf;
        expectMaking(layout4Leaf(fitting), value, isRefused ? "" : bytes4Cell(row[2], isBinary),
                     isRefused ? row[2].substr(7) : "");
    }
}

}  // namespace murv::tests
