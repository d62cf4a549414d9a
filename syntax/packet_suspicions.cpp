// syntax/packet_suspicions.cpp - lengths, options and partners of packet items that are no mistakes, and no use either.
#include "syntax/packet_suspicions.h"

#include <algorithm>

#include "packet/keyword_table.h"
#include "ser/pei_reader.h"

namespace murv::detail
{

namespace
{

constexpr unsigned int s_cuiLargestOption = 9;
constexpr std::size_t s_cnMostBinaryBytes = 7;  // 8 are left out while making, more are parsed as a double
constexpr unsigned long long s_cullLastYear = 2999;

const tKeywordRow* internalKeyword(const tPacketExpInfo& expression)
{
    return expression.m_ucSkKind == 0 ? findKeyword(expression.m_usSkIndex) : nullptr;
}

/// The largest number that a time keyword stands for.
unsigned long long largestTime(const tTimeParts& parts)
{
    unsigned long long number = 0;
    for (std::size_t i = 0; i < parts.m_nCount; ++i)
    {
        const tTimePart& part = *parts.m_pPart[i];
        for (std::size_t place = 0; place != part.m_strvLetters.size(); ++place)
            number *= 10;
        number += std::min(static_cast<unsigned long long>(part.m_iMax), s_cullLastYear);
    }
    return number;
}

/// How many digits a number has to a base.
std::size_t countDigits(unsigned long long number, unsigned int base)
{
    std::size_t count = 0;
    for (; number != 0; number /= base)
        ++count;
    return count;
}

bool hasNoLength(const tPacketExpInfo& expression, const tKeywordRow* keyword)
{
    if (expression.m_ucSkKind != 0)
        return false;  // its callback may give one
    if (expression.m_eLengthExp == LEC_V)
        return expression.m_ucPrefixSize == 0;
    const bool isSized = expression.m_eLengthExp == LEC_D && keyword != nullptr && keyword->m_eRole == KR_size;
    return expression.m_uiLength == 0 && !isSized;
}

}  // namespace

void CPacketSuspicions::leaf(std::string_view text, unsigned int config, tTextRange range)
{
    tPacketExpInfo expression{};
    if (decodePei(text, config, expression) != nullptr)
        return;
    const tKeywordRow* const keyword = internalKeyword(expression);
    if (hasNoLength(expression, keyword))
        m_tReport(SU_zeroLength, range, {});
    else if (keyword != nullptr && keyword->m_eRole == KR_time)
        checkTime(expression, range);
    if (keyword == nullptr || keyword->m_eRole != KR_size)
        return;
    checkOption(expression, text, range);
    checkSize(expression, range);
}

void CPacketSuspicions::checkTime(const tPacketExpInfo& expression, tTextRange range)
{
    if (expression.m_eLengthExp != LEC_F)
        return;
    const tKeywordRow& keyword = *findKeyword(expression.m_usSkIndex);
    const unsigned long long largest = largestTime(s_ctTimeParts4Keyword[keyword.m_usIndex]);
    const bool isText = expression.m_ePacketExp == PEC_A;
    const std::size_t least = countDigits(largest, isText ? 10 : 256);
    const std::size_t most = isText ? keyword.name().size() : s_cnMostBinaryBytes;  // a letter for each digit
    if (expression.m_uiLength >= least && expression.m_uiLength <= most)
        return;
    const std::string range4Length =
        least == most ? std::to_string(least) : std::to_string(least) + " to " + std::to_string(most);
    m_tReport(SU_timeLength, range,
              std::string(keyword.name()) + " takes " + range4Length + (isText ? " digits" : " bytes"));
}

/// As packets are made and read: the last size item of an option counts, and any number of sized items after it.
void CPacketSuspicions::checkSize(const tPacketExpInfo& expression, tTextRange range)
{
    const std::size_t option = expression.m_ucSkOption;
    tAnnounced& announced = m_tAnnounced[option];
    if (expression.m_eLengthExp != LEC_D)
    {
        reportUnused(option);
        announced = {range, true, false};
    }
    else if (announced.m_bSeen)
        announced.m_bUsed = true;
    else
        m_tReport(SU_sizePartner, range, "no item with a size and the option " + std::to_string(option) + " precedes");
}

void CPacketSuspicions::reportUnused(std::size_t option)
{
    const tAnnounced& announced = m_tAnnounced[option];
    if (announced.m_bSeen && !announced.m_bUsed)
        m_tReport(SU_sizePartner, announced.m_tRange,
                  "no item of run-time length (D) and the option " + std::to_string(option) + " follows");
}

void CPacketSuspicions::checkOption(const tPacketExpInfo& expression, std::string_view text, tTextRange range)
{
    const std::string_view digits = text.substr(text.rfind('_') + 1);
    std::string_view number = digits.substr(std::min(digits.find_first_not_of("+0"), digits.size()));
    number = number.substr(0, number.find_first_not_of("0123456789"));  // loaders take no notice of what follows
    const std::string kept = std::to_string(expression.m_ucSkOption);
    if (digits.empty())
        m_tReport(SU_keywordOption, range, "it is missing");
    else if (number != kept)
        m_tReport(SU_keywordOption, range, "four bits are kept of it, which are " + kept);
    else if (expression.m_ucSkOption > s_cuiLargestOption)
        m_tReport(SU_keywordOption, range, "binary files refuse " + kept);
}

void CPacketSuspicions::finish()
{
    for (std::size_t option = 0; option != s_cnOptions; ++option)
        reportUnused(option);
}

}  // namespace murv::detail
