// ser/pei_reader.cpp - reads the notation of packet expressions.
//
// Letters and keyword names come from the tables that the writer uses.
#include "ser/pei_reader.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "murv/fields.h"
#include "murv/flags.h"
#include "packet/keyword_table.h"
#include "packet/pei_rules.h"
#include "ser/pei_letters.h"

namespace murv::detail
{

namespace
{

constexpr std::size_t s_cnLongestKeyword = 255;
constexpr const char* s_cpLengthTooSmall = "Packet length must bigger than 0";
constexpr const char* s_cpLengthTooBig = "Packet length is too big";
constexpr const char* s_cpBadCalibration = "Calibration value must between -127 and 128";
constexpr const char* s_cpOptionTooSmall = "Supporting-keyword optional value must bigger than 0";
constexpr const char* s_cpUnknownKeyword = "Found not a supporting-keyword index in packet expression";
constexpr int s_cnLeastCalibration = -127;
constexpr int s_cnGreatestCalibration = 128;

/// Takes a sign and the digits after it off the text; 0 without digits. A number too big for any field stays too big.
std::int64_t takeNumber(std::string_view& text)
{
    constexpr std::int64_t limit = std::int64_t{1} << 40;
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    std::int64_t number = 0;
    for (; !text.empty() && text.front() >= '0' && text.front() <= '9'; text.remove_prefix(1))
        number = std::min(number * 10 + (text.front() - '0'), limit);
    return negative ? -number : number;
}

/// Finds the code of each of the three letters.
const char* takeLetters(std::string_view& text, tPacketExpInfo& pei)
{
    unsigned int code[s_cuiPeiLetters] = {};
    for (unsigned int i = 0; i < s_cuiPeiLetters; ++i)
    {
        const std::size_t place = i < text.size() ? s_ctPeiLetters[i].m_strvLetters.find(text[i]) : text.npos;
        if (place == std::string_view::npos)
            return s_ctPeiLetters[i].m_pMismatch;
        code[i] = static_cast<unsigned int>(place);
    }
    pei.m_ePacketExp = static_cast<E_PacketExpCode>(code[0]);
    pei.m_eRuntimeExp = static_cast<E_RuntimeExpCode>(code[1]);
    pei.m_eLengthExp = static_cast<E_LengthExpCode>(code[2]);
    text.remove_prefix(s_cuiPeiLetters);
    return nullptr;
}

const char* takeLength(std::string_view& text, unsigned int loaderConfig, tPacketExpInfo& pei)
{
    const std::int64_t number = takeNumber(text);
    if (number < 0 || (number == 0 && (loaderConfig & LCBC_POSITIVE_LENGTH) != 0))
        return s_cpLengthTooSmall;
    if (number > (pei.m_eLengthExp == LEC_V ? UCHAR_MAX : UINT_MAX))
        return s_cpLengthTooBig;
    pei.m_uiLength = static_cast<unsigned int>(number);
    if (pei.m_eLengthExp != LEC_V)
        return nullptr;
    pei.m_ucPrefixSize = static_cast<unsigned char>(number);
    tPacketExpInfo prefixOnly{};
    prefixOnly.m_ucPrefixSize = pei.m_ucPrefixSize;
    if (const char* const fault = findPeiFault(prefixOnly))
        return fault;
    const std::int64_t calibration = takeNumber(text);
    if (calibration < s_cnLeastCalibration || calibration > s_cnGreatestCalibration)
        return s_cpBadCalibration;
    // Of 128, the low eight bits are those of -128.
    pei.m_cCalibration = static_cast<signed char>(static_cast<unsigned char>(calibration));
    return nullptr;
}

/// Asks the kinds for the index of a name, in order.
bool findExternal(std::string_view name, unsigned char option, tPacketExpInfo& pei)
{
    char text[s_cnLongestKeyword + 1] = {};
    std::memcpy(text, name.data(), name.size());
    for (unsigned char kind = 1; kind <= s_cuiLastKind; ++kind)
    {
        const CFields::tGetIdxFP getIndex = CFields::getGetIdxFP4ESK(kind);
        const int index = getIndex == nullptr ? 0 : getIndex(text, option);
        if (index < 1 || index > USHRT_MAX)
            continue;
        pei.m_usSkIndex = static_cast<unsigned short>(index);
        pei.m_ucSkKind = static_cast<unsigned char>(kind & s_cuiLastKind);
        return true;
    }
    return false;
}

const char* takeKeyword(std::string_view text, tPacketExpInfo& pei)
{
    std::string_view name = text.substr(0, s_cnLongestKeyword);
    unsigned char option = 0;
    const std::size_t mark = name.rfind('_');
    if (mark != std::string_view::npos && mark > 0 && mark + 1 < name.size())
    {
        std::string_view digits = name.substr(mark + 1);
        const std::int64_t number = takeNumber(digits);
        if (number <= 0)
            return s_cpOptionTooSmall;
        option = static_cast<unsigned char>(number);
        name = name.substr(0, mark + 1);
    }
    if (const tKeywordRow* const row = findKeyword(name))
        pei.m_usSkIndex = row->m_usIndex;
    else if (!findExternal(name, option, pei))
        return s_cpUnknownKeyword;
    pei.m_ucSkOption = static_cast<unsigned char>(option & 15U);
    return nullptr;
}

}  // namespace

const char* decodePei(std::string_view text, unsigned int loaderConfig, tPacketExpInfo& out)
{
    tPacketExpInfo pei{};
    const char* fault = takeLetters(text, pei);
    if (fault == nullptr)
        fault = takeLength(text, loaderConfig, pei);
    if (fault == nullptr && !text.empty())
        fault = takeKeyword(text, pei);
    if (fault == nullptr)
        out = pei;
    return fault;
}

}  // namespace murv::detail
