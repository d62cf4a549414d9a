// tools/sample_rules.cpp - takes rules apart by a table of their first words.
#include "tools/sample_rules.h"

#include <algorithm>

#include "murv/loader.h"

namespace murv::tool
{

namespace
{
constexpr std::string_view s_cstrvBlanks = " \t\r\n";

std::string_view trimmed(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(s_cstrvBlanks);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(s_cstrvBlanks) - begin + 1);
}

/// The offset of the first such text outside quotes, or npos.
std::size_t findOutside(std::string_view text, std::string_view wanted, std::size_t from = 0)
{
    bool isQuoted = false;
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        if (!isQuoted && at >= from && text.substr(at, wanted.size()) == wanted)
            return at;
        if (isQuoted && text[at] == '\\')
            ++at;
        else if (text[at] == '"')
            isQuoted = !isQuoted;
    }
    return std::string_view::npos;
}

std::vector<std::string_view> splitOutside(std::string_view text, std::string_view separator)
{
    std::vector<std::string_view> pieces;
    for (;;)
    {
        const std::size_t at = findOutside(text, separator);
        pieces.push_back(trimmed(text.substr(0, at)));
        if (at == std::string_view::npos)
            return pieces;
        text.remove_prefix(at + separator.size());
    }
}

/// What stands in quotes, or the text itself.
std::string plainText(std::string_view text)
{
    text = trimmed(text);
    if (text.size() < 2 || text.front() != '"' || text.back() != '"')
        return std::string(text);
    CFields value;
    CLoaders loader;
    if (loader.loading(std::string(text), value) && value.isCodelist())
        return value.asString();
    return std::string(text.substr(1, text.size() - 2));
}

std::vector<std::string> readPath(std::string_view text)
{
    std::vector<std::string> path;
    if (trimmed(text) == ".")
        return path;
    for (const std::string_view step : splitOutside(text, "."))
        path.push_back(plainText(step));
    return path;
}

std::string allQuoted(std::string_view text)
{
    std::string all;
    for (const std::string_view mark : splitOutside(text, "|"))
        all += mark.substr(0, 1) == "\"" ? plainText(mark) : std::string();
    return all;
}

tSampleTest readTest(std::string_view text)
{
    struct tRow
    {
        std::string_view m_strvSign;
        E_SampleCompare m_eCompare;
    };
    constexpr tRow rows[] = {{" = ", SC_equal}, {" != ", SC_differs}, {" <= ", SC_atMost}, {" >= ", SC_atLeast},
                             {" < ", SC_below}, {" > ", SC_above},    {" & ", SC_anyBit}};
    tSampleTest test;
    const tRow* chosen = &rows[0];
    std::size_t at = std::string_view::npos;
    for (const tRow& row : rows)
    {
        const std::size_t found = findOutside(text, row.m_strvSign);
        if (found >= at)
            continue;
        at = found;
        chosen = &row;
    }
    if (at == std::string_view::npos)
        return test;
    test.m_vPath = readPath(text.substr(0, at));
    test.m_eCompare = chosen->m_eCompare;
    for (const std::string_view value : splitOutside(text.substr(at + chosen->m_strvSign.size()), "|"))
        test.m_vValue.push_back(plainText(value));
    return test;
}

void readIf(std::string_view text, tSampleRules& rules)
{
    rules.m_vIf.push_back(readTest(text));
}

void readUntil(std::string_view text, tSampleRules& rules)
{
    rules.m_vUntil.push_back(readTest(text));
}

void readChoice(std::string_view text, tSampleRules& rules)
{
    const std::size_t other = findOutside(text, " else ");
    rules.m_vChooser = readPath(text.substr(0, other));
    if (other != std::string_view::npos)
        rules.m_strElse = plainText(text.substr(other + 6));
}

void readValid(std::string_view text, tSampleRules& rules)
{
    constexpr std::string_view date = "date ";
    if (text.substr(0, date.size()) == date)
    {
        rules.m_strValidDate = plainText(text.substr(date.size()));
        return;
    }
    for (const std::string_view range : splitOutside(text, "|"))
    {
        const std::vector<std::string_view> ends = splitOutside(range, "..");
        rules.m_vValid.push_back({plainText(ends.front()), plainText(ends.back())});
    }
}

void readDecimals(std::string_view text, tSampleRules& rules)
{
    rules.m_bPoint = text.substr(0, 1) == "\"";
    for (const char digit : rules.m_bPoint ? std::string_view() : text)
        rules.m_uiDecimals = rules.m_uiDecimals * 10 + static_cast<unsigned int>(digit - '0');
}

void readTail(std::string_view text, tSampleRules& rules)
{
    const std::size_t quote = text.find('"');
    rules.m_nTail = quote == std::string_view::npos ? 0 : plainText(text.substr(quote)).size();
}

void readMarks(std::string_view text, tSampleRules& rules)
{
    rules.m_strMarks += allQuoted(text);
}

void readLines(std::string_view text, tSampleRules& rules)
{
    rules.m_strMarks += allQuoted(text).empty() ? "\r\n" : allQuoted(text);
}

void readOptional(std::string_view, tSampleRules& rules)
{
    rules.m_bOptional = true;
}

/// What begins a rule or is a keyword, the word that it stands for, and who reads the rest.
struct tSampleRuleRow
{
    std::string_view m_strvBegin;
    unsigned int m_uiWord;
    void (*m_pRead)(std::string_view rest, tSampleRules& rules);
};

constexpr tSampleRuleRow s_ctRows[] = {
    {"if", SW_none, readIf},
    {"until", SW_none, readUntil},
    {"one of by", SW_none, readChoice},
    {"optional", SW_none, readOptional},
    {"valid", SW_none, readValid},
    {"decimals", SW_none, readDecimals},
    {"octal", SW_octal, readTail},
    {"hex", SW_hex, readTail},
    {"ends", SW_none, readMarks},
    {"before", SW_none, readMarks},
    {"between", SW_none, readMarks},
    {"lines", SW_none, readLines},
    {"signed", SW_signed, nullptr},
    {"int", SW_signed, nullptr},
    {"float", SW_float, nullptr},
    {"oct", SW_octal, nullptr},
    {"packed", SW_packed, nullptr},
    {"bcd", SW_bcd, nullptr},
    {"zoned", SW_zoned, nullptr},
    {"trailing sign", SW_trailing, nullptr},
    {"trailing", SW_trailing, nullptr},
    {"exact", SW_exact, nullptr},
    {"blank is null", SW_blankNull, nullptr},
    {"blanknull", SW_blankNull, nullptr},
    {"zero is null", SW_zeroNull, nullptr},
    {"zeronull", SW_zeroNull, nullptr},
    {"pad blank", SW_padBlank, nullptr},
    {"padblank", SW_padBlank, nullptr},
    {"pad zero", SW_padZero, nullptr},
    {"padzero", SW_padZero, nullptr},
    {"left", SW_left, nullptr},
    {"right", SW_right, nullptr},
    {"keep", SW_keep, nullptr},
    {"raw", SW_raw, nullptr},
    {"ascii", SW_ascii, nullptr},
    {"cp037", SW_page, nullptr},
    {"cp500", SW_page, nullptr},
    {"cp1047", SW_page, nullptr},
    {"latin1", SW_page, nullptr},
    {"size of", SW_size, nullptr},
    {"count of", SW_size, nullptr},
    {"bits of", SW_bits, nullptr},
    {"sum of", SW_total, nullptr},
    {"records of", SW_total, nullptr},
    {"crc16", SW_check, nullptr},
    {"crc32", SW_check, nullptr},
    {"inet", SW_check, nullptr},
    {"xor", SW_check, nullptr},
    {"sum8", SW_check, nullptr},
    {"sum32", SW_check, nullptr},
    {"luhn", SW_check, nullptr},
    {"mod10", SW_check, nullptr},
    {"mod97", SW_check, nullptr},
};

/// Takes words off the front, whatever blanks stand between them.
bool takeWords(std::string_view& text, std::string_view words)
{
    std::string_view rest = trimmed(text);
    while (!words.empty())
    {
        const std::string_view word = words.substr(0, words.find(' '));
        if (rest.substr(0, word.size()) != word)
            return false;
        if (rest.size() != word.size() && s_cstrvBlanks.find(rest[word.size()]) == std::string_view::npos)
            return false;
        rest = trimmed(rest.substr(word.size()));
        words.remove_prefix(std::min(words.size(), word.size() + 1));
    }
    text = rest;
    return true;
}

void readRules(const CLayout& layout, unsigned int part, tSampleRules& rules)
{
    for (const tLayoutRule& rule : layout.getRules(part))
    {
        for (const tSampleRuleRow& row : s_ctRows)
        {
            std::string_view rest = rule.m_strvRule;
            if (!takeWords(rest, row.m_strvBegin))
                continue;
            rules.m_uiWords |= row.m_uiWord;
            if (row.m_pRead != nullptr)
                row.m_pRead(rest, rules);
            break;
        }
    }
}

/// Decimals that a keyword of the expression says: ANF8dec_2, BNF5packed_2.
void readKeyword(std::string_view expression, tSampleRules& rules)
{
    const std::size_t line = expression.find('_');
    if (line != std::string_view::npos && expression.find("mask_") == std::string_view::npos)
        readDecimals(expression.substr(line + 1), rules);
}

}  // namespace

tSampleRules sampleRules(const CLayout& layout, unsigned int part)
{
    tSampleRules rules;
    const tLayoutPart seen = layout.getPart(part);
    readRules(layout, part, rules);
    if (seen.m_eKind != LP_leaf)
        return rules;
    if (seen.m_uiParent != CLayout::s_cuiNoPart && layout.getPart(seen.m_uiParent).m_eKind == LP_array)
    {
        tSampleRules around;
        readRules(layout, seen.m_uiParent, around);
        around.m_vUntil.clear();
        around.m_vIf.clear();
        around.m_bOptional = false;
        rules = std::move(around);
        readRules(layout, part, rules);
    }
    readKeyword(seen.m_strvExpression, rules);
    return rules;
}

}  // namespace murv::tool
