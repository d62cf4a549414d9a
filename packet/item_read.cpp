// packet/item_read.cpp - an item of a packet as a value.
//
// Every length is compared with the bytes that are left before it is believed.
#include "packet/item_read.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>

#include "core/field_access.h"
#include "core/heap_text.h"
#include "core/text/number_scan.h"
#include "core/text/word_order.h"
#include "packet/limits.h"
#include "packet/usual_read.h"

namespace murv::detail
{

namespace
{

constexpr std::size_t s_cnWord = 8;
constexpr int s_cnSignificantDigits = 10;  // more are not read from a prefix

constexpr bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

/// The last eight bytes as a big-endian integer; fewer count as its low-order bytes.
std::uint64_t loadBigEndian(std::string_view bytes)
{
    if (bytes.size() > s_cnWord)
        bytes.remove_prefix(bytes.size() - s_cnWord);
    return loadOrdered(bytes, false);
}

struct tPrefixNumber
{
    std::int64_t m_llNumber = 0;
    bool m_bDigit = false;  // there was one
};

/// Blanks, a sign, digits up to ten significant ones; all else ends the number.
tPrefixNumber scanPrefix(std::string_view text)
{
    const char* p = text.data();
    const char* const end = p + text.size();
    while (p != end && (*p == ' ' || *p == '\t' || *p == '\r' || *p == '\n'))
        ++p;
    const bool negative = p != end && *p == '-';
    if (p != end && (*p == '-' || *p == '+'))
        ++p;
    tPrefixNumber result;
    for (int significant = 0; p != end && isDigit(*p) && significant < s_cnSignificantDigits; ++p)
    {
        result.m_bDigit = true;
        result.m_llNumber = result.m_llNumber * 10 + (*p - '0');
        if (result.m_llNumber != 0)
            ++significant;
    }
    if (negative)
        result.m_llNumber = -result.m_llNumber;
    return result;
}

/// Whether the text begins with a number, after blanks and a sign.
bool holdsNumber(const char* p, const char* end)
{
    while (p != end && (*p == ' ' || (*p >= '\t' && *p <= '\r')))
        ++p;
    if (p != end && (*p == '-' || *p == '+'))
        ++p;
    if (p != end && *p == '.')
        ++p;
    return p != end && isDigit(*p);
}

void storeCodes(CFields& leaf, std::string_view bytes)
{
    tSlot fresh{DT_codelist, true, {}};
    fresh.m_uValue.m_pData = duplicatePrefixedStream(bytes.data(), static_cast<unsigned int>(bytes.size()));
    tFieldAccess::replaceValue(leaf, fresh);
}

/// Types a number as scanNumber does. \return false for a text that holds none.
bool readText(std::string_view bytes, tScannedNumber& number)
{
    if (!holdsNumber(bytes.data(), bytes.data() + bytes.size()))
        return false;
    number = scanNumber(bytes.data(), static_cast<unsigned int>(bytes.size()));
    return true;
}

/// Up to eight bytes are an integer, without extension of its sign; of more, the last eight are a double.
tScannedNumber readBinary(std::string_view bytes)
{
    tScannedNumber number{bytes.size() <= s_cnWord ? DT_sint : DT_double, {}};
    number.m_uValue.m_ullValue = loadBigEndian(bytes);
    return number;
}

void storeNumber(CFields& leaf, const tScannedNumber& number)
{
    if (!takesNumber(leaf))
        tFieldAccess::replaceValue(leaf, {});
    // All members of the union are the same eight bytes.
    uMultiValue& value = tFieldAccess::setType(leaf, number.m_eType);
    std::memcpy(&value.m_ullValue, &number.m_uValue, sizeof number.m_uValue);
}

static_assert(sizeof(uScannedValue) == sizeof(uMultiValue));

/// What is made of the bytes of an item, by form and runtime code.
enum E_Reading : unsigned char
{
    RD_codes,   // a byte string
    RD_text,    // a number in text
    RD_binary,  // a big-endian number; in a variable item it is counted from the prefix on
};

constexpr E_Reading s_ceReadings[2][2] = {{RD_codes, RD_text}, {RD_codes, RD_binary}};

E_Reading reading4(const tPacketExpInfo& pei)
{
    return s_ceReadings[pei.m_ePacketExp][pei.m_eRuntimeExp];
}

}  // namespace

std::int64_t variableTotal(const tPacketExpInfo& pei, const char* item)
{
    const std::string_view prefix(item, pei.m_ucPrefixSize);
    std::int64_t number = 0;
    if (pei.m_ePacketExp == PEC_A)
        number = scanPrefix(prefix).m_llNumber;
    else
        number = static_cast<std::int64_t>(std::min<std::uint64_t>(loadBigEndian(prefix), UINT32_MAX));
    const std::int64_t total = std::min<std::int64_t>(number + pei.m_cCalibration, s_cuiLongestItem);
    return total < pei.m_ucPrefixSize ? 0 : total;
}

bool storeOther(CFields& leaf, std::string_view bytes)
{
    tScannedNumber number{};
    switch (reading4(tFieldAccess::pei(leaf)))
    {
    case RD_codes: storeCodes(leaf, bytes); return true;
    case RD_text:
        if (!readText(bytes, number))
            return false;
        break;
    case RD_binary: number = readBinary(bytes); break;
    }
    storeNumber(leaf, number);
    return true;
}

bool storeItem(CFields& leaf, std::string_view bytes)
{
    return storeUsual(leaf, bytes, bytes.size()) || storeOther(leaf, bytes);
}

std::int64_t readVariable(CFields& leaf, tRemaining item, bool store)
{
    tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    const auto remaining = static_cast<std::int64_t>(item.size());
    const std::int64_t width = pei.m_ucPrefixSize;
    if (remaining < width)
        return remaining - width;
    const std::int64_t total = variableTotal(pei, item.data());
    if (total < 1)
        return remaining;
    if (remaining < total || !store)
        return remaining - total;
    const std::size_t start = reading4(pei) == RD_binary ? 0 : pei.m_ucPrefixSize;
    if (!storeItem(leaf, {item.data() + start, static_cast<std::size_t>(total - width)}))
        return -1;
    pei.m_uiLength = static_cast<unsigned int>(total);
    return remaining - total;
}

bool findValue(const tPacketExpInfo& pei, unsigned int length, tRemaining item, std::string_view& value)
{
    switch (pei.m_eLengthExp)
    {
    case LEC_F:
    case LEC_D:
        if (item.data() == nullptr || length > item.size())
            return false;
        value = item.substr(0, length);
        return true;
    case LEC_V:
    {
        if (item.data() == nullptr || pei.m_ucPrefixSize > item.size())
            return false;
        const std::int64_t total = variableTotal(pei, item.data());
        if (total < 1 || total > static_cast<std::int64_t>(item.size()))
            return false;
        value = item.substr(0, static_cast<std::size_t>(total)).substr(pei.m_ucPrefixSize);
        return true;
    }
    }
    return false;
}

bool readValue(CFields& result, unsigned int length, tRemaining item)
{
    const bool variable = tFieldAccess::pei(result).m_eLengthExp == LEC_V;
    return (variable ? readVariable(result, item, true) : readFixed(result, length, item, true)) >= 0;
}

bool readSize(E_PacketExpCode form, std::string_view value, unsigned int& size)
{
    std::uint64_t number = 0;
    if (form == PEC_A)
    {
        const tPrefixNumber scanned = scanPrefix(value);
        if (!scanned.m_bDigit || scanned.m_llNumber < 0)
            return false;
        number = static_cast<std::uint64_t>(scanned.m_llNumber);
    }
    else if (value.empty())
        return false;
    else
        number = loadBigEndian(value);
    size = static_cast<unsigned int>(std::min<std::uint64_t>(number, s_cuiLongestItem));
    return true;
}

bool readWhole(E_PacketExpCode form, std::string_view value, unsigned long long& number)
{
    if (value.empty())
        return false;
    if (form == PEC_B)
    {
        number = loadBigEndian(value);
        return true;
    }
    const tScannedNumber scanned = scanNumber(value.data(), static_cast<unsigned int>(value.size()));
    number = scanned.m_uValue.m_ullValue;
    return scanned.m_eType == DT_uint || (scanned.m_eType == DT_sint && scanned.m_uValue.m_llValue >= 0 &&
                                          holdsNumber(value.data(), value.data() + value.size()));
}

}  // namespace murv::detail
