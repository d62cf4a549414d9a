// tools/sample_damage.cpp - a table of changes: what each one needs of a packet, and what it does.
#include "tools/sample_damage.h"

#include <algorithm>

namespace murv::tool
{

namespace
{
constexpr int s_ciTries = 4;  // of one kind of change at a packet

/// The value of a leaf in the packet.
struct tValuePlace
{
    unsigned int m_uiPart;
    tByteRange m_tBytes;
    bool m_bInteger;
    unsigned long long m_ullBits;
};

/// Notes where values lie.
class CPlaceCollector : public IPacketVisitor
{
public:
    void onLeaf(unsigned int part, const tPacketValue& value, const tByteRange& place) override
    {
        const bool isInteger = value.m_eType == DT_sint || value.m_eType == DT_uint;
        m_vPlace.push_back({part, place, isInteger, value.m_ullBits});
    }

    std::vector<tValuePlace> m_vPlace;
};

/// A packet that is being changed.
struct tChange
{
    const CSamplePlan& m_tPlan;
    const std::vector<tValuePlace>& m_vPlace;
    CSampleRandom& m_tRandom;
    std::string& m_strPacket;
    std::uint64_t m_ullOffset;
};

using tWanted = bool (*)(const tSamplePart& part);

bool isLiteral(const tSamplePart& part)
{
    return part.m_tPart.m_bLiteral;
}

bool isTextNumber(const tSamplePart& part)
{
    return part.m_tExpression.m_cForm == 'A' && part.m_tExpression.m_cType == 'N' && !part.m_tPart.m_bLiteral;
}

bool isDate(const tSamplePart& part)
{
    constexpr std::string_view letters[] = {"MM", "DD", "hh", "mm", "SS", "DOY", "DOW"};
    const std::string& date =
        part.m_tRules.m_strValidDate.empty() ? part.m_tExpression.m_strKeyword : part.m_tRules.m_strValidDate;
    return std::any_of(std::begin(letters), std::end(letters),
                       [&](std::string_view row) { return date.find(row) != std::string::npos; });
}

template <unsigned int words>
bool hasWord(const tSamplePart& part)
{
    return part.has(words);
}

bool hasValid(const tSamplePart& part)
{
    return !part.m_tRules.m_vValid.empty();
}

bool isAny(const tSamplePart&)
{
    return true;
}

/// One of the values that are wanted, and have bytes. \return null when there is none
const tValuePlace* pickValue(const tChange& change, tWanted isWanted)
{
    std::vector<const tValuePlace*> values;
    for (const tValuePlace& place : change.m_vPlace)
    {
        if (place.m_tBytes.m_ullLength != 0 && isWanted(change.m_tPlan[place.m_uiPart]))
            values.push_back(&place);
    }
    return values.empty() ? nullptr : change.m_tRandom.pick(values);
}

/// A byte of one of these values.
bool pickByte(tChange& change, tWanted isWanted)
{
    const tValuePlace* const value = pickValue(change, isWanted);
    if (value == nullptr)
        return false;
    change.m_ullOffset = value->m_tBytes.m_ullOffset + change.m_tRandom.below(value->m_tBytes.m_ullLength);
    return true;
}

bool isDigitByte(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    return (value >= '0' && value <= '9') || value >= 0xF0;
}

/// Gives the byte another value: a digit another digit, anything else a bit more or less.
bool nudge(tChange& change)
{
    char& byte = change.m_strPacket[static_cast<std::size_t>(change.m_ullOffset)];
    const auto value = static_cast<unsigned char>(byte);
    const unsigned int zero = value >= 0xF0 ? 0xF0 : '0';
    if (isDigitByte(byte) && value - zero < 10)
        byte = static_cast<char>(zero + (value - zero + 1 + change.m_tRandom.below(9)) % 10);
    else
        byte = static_cast<char>(value ^ 1U << change.m_tRandom.below(8));
    return true;
}

bool changeLiteral(tChange& change)
{
    return pickByte(change, isLiteral) && nudge(change);
}

bool changeDigit(tChange& change)
{
    if (!pickByte(change, isTextNumber))
        return false;
    char& byte = change.m_strPacket[static_cast<std::size_t>(change.m_ullOffset)];
    if (!isDigitByte(byte))
        return false;
    byte = change.m_tRandom.pick(std::string_view("OISlBx"));
    return true;
}

bool changeCheck(tChange& change)
{
    return pickByte(change, hasWord<SW_check>) && nudge(change);
}

bool changeTotal(tChange& change)
{
    return pickByte(change, hasWord<SW_total>) && nudge(change);
}

bool changeBits(tChange& change)
{
    if (!pickByte(change, hasWord<SW_bits>))
        return false;
    char& byte = change.m_strPacket[static_cast<std::size_t>(change.m_ullOffset)];
    byte = static_cast<char>(static_cast<unsigned char>(byte) ^ 1U << change.m_tRandom.below(8));
    return true;
}

bool changeValid(tChange& change)
{
    return pickByte(change, hasValid) && nudge(change);
}

bool changeDate(tChange& change)
{
    const tValuePlace* const value = pickValue(change, isDate);
    if (value == nullptr || value->m_tBytes.m_ullLength < 2)
        return false;
    change.m_ullOffset = value->m_tBytes.m_ullOffset + value->m_tBytes.m_ullLength - 2;
    const auto at = static_cast<std::size_t>(change.m_ullOffset);
    if (!isDigitByte(change.m_strPacket[at]) || !isDigitByte(change.m_strPacket[at + 1]))
        return false;
    const char nine = static_cast<unsigned char>(change.m_strPacket[at]) >= 0xF0 ? '\xF9' : '9';
    change.m_strPacket.replace(at, 2, 2, nine);
    return true;
}

/// The bytes of a number, the high one first.
std::string bigEndian(unsigned long long number, std::size_t width)
{
    std::string bytes(width, '\0');
    for (std::size_t i = 0; i < width && i < sizeof number; ++i)
        bytes[width - 1 - i] = static_cast<char>(number >> 8 * i);
    return bytes;
}

/// A size or count becomes one more or less.
bool changeSize(tChange& change)
{
    const tValuePlace* const value = pickValue(change, hasWord<SW_size>);
    if (value == nullptr)
        return false;
    change.m_ullOffset = value->m_tBytes.m_ullOffset;
    const auto at = static_cast<std::size_t>(change.m_ullOffset);
    const auto width = static_cast<std::size_t>(value->m_tBytes.m_ullLength);
    const std::string bytes = change.m_strPacket.substr(at, width);
    const unsigned long long other = change.m_tRandom.chance(50) ? value->m_ullBits + 1 : value->m_ullBits - 1;
    std::string big = bigEndian(value->m_ullBits, width);
    std::string wanted = bigEndian(other, width);
    if (value->m_bInteger && big != bytes)
    {
        std::reverse(big.begin(), big.end());
        std::reverse(wanted.begin(), wanted.end());
    }
    if (value->m_bInteger && big == bytes)
        change.m_strPacket.replace(at, width, wanted);
    else  // digits, of which the last is the lowest
    {
        change.m_ullOffset += width - 1;
        char& byte = change.m_strPacket[at + width - 1];
        const auto low = static_cast<unsigned char>(static_cast<unsigned char>(byte) & 0xFU);
        byte = static_cast<char>(low == 0 || (low != 9 && other > value->m_ullBits) ? byte + 1 : byte - 1);
    }
    return true;
}

bool cutEnd(tChange& change)
{
    change.m_ullOffset = change.m_tRandom.below(change.m_strPacket.size());
    change.m_strPacket.resize(static_cast<std::size_t>(change.m_ullOffset));
    return true;
}

bool addByte(tChange& change)
{
    change.m_ullOffset = change.m_strPacket.size();
    change.m_strPacket += static_cast<char>(change.m_tRandom.below(256));
    return true;
}

bool loseByte(tChange& change)
{
    if (!pickByte(change, isAny))
        return false;
    change.m_strPacket.erase(static_cast<std::size_t>(change.m_ullOffset), 1);
    return true;
}

bool repeatByte(tChange& change)
{
    if (!pickByte(change, isAny))
        return false;
    const auto at = static_cast<std::size_t>(change.m_ullOffset);
    change.m_strPacket.insert(at, 1, change.m_strPacket[at]);
    return true;
}

bool flipBit(tChange& change)
{
    change.m_ullOffset = change.m_tRandom.below(change.m_strPacket.size());
    char& byte = change.m_strPacket[static_cast<std::size_t>(change.m_ullOffset)];
    byte = static_cast<char>(static_cast<unsigned char>(byte) ^ 1U << change.m_tRandom.below(8));
    return true;
}

struct tChangeRow
{
    const char* m_pName;
    bool (*m_pApply)(tChange& change);  // false: the packet has nothing to change so
};

constexpr tChangeRow s_ctRows[] = {
    {"literal", changeLiteral}, {"digit", changeDigit}, {"check", changeCheck},
    {"total", changeTotal},     {"bits", changeBits},   {"valid", changeValid},
    {"date", changeDate},       {"size", changeSize},   {"cut", cutEnd},
    {"added", addByte},         {"lost", loseByte},     {"repeated", repeatByte},
    {"flipped", flipBit},
};
}  // namespace

bool CSampleDamager::damage(const tSample& sample, tDamagedSample& damaged)
{
    CPlaceCollector places;
    if (!m_tReader.visit(sample.m_strPacket, places))
        return false;
    // Another row of numbers than the one that made the sample.
    CSampleRandom random(~sample.m_ullSeed);
    std::vector<const tChangeRow*> rows;
    for (const tChangeRow& row : s_ctRows)
        rows.push_back(&row);
    while (!rows.empty())
    {
        const auto chosen = rows.begin() + static_cast<std::ptrdiff_t>(random.below(rows.size()));
        const tChangeRow& row = **chosen;
        rows.erase(chosen);
        for (int i = 0; i < s_ciTries; ++i)
        {
            damaged.m_strPacket = sample.m_strPacket;
            tChange change{m_tPlan, places.m_vPlace, random, damaged.m_strPacket, 0};
            if (!row.m_pApply(change))
                break;
            damaged.m_pChange = row.m_pName;
            damaged.m_ullOffset = change.m_ullOffset;
            if (isNoticed(damaged))
                return true;
        }
    }
    // A packet that ends in bytes of any number may be cut in many places; somewhere it is too short.
    damaged.m_pChange = "cut";
    for (std::size_t length = sample.m_strPacket.size() / 2;; length /= 2)
    {
        damaged.m_strPacket = sample.m_strPacket.substr(0, length);
        damaged.m_ullOffset = length;
        if (isNoticed(damaged))
            return true;
        if (length == 0)
            return false;
    }
}

/// Reads the damaged packet, and keeps what reading says.
bool CSampleDamager::isNoticed(tDamagedSample& damaged)
{
    const bool isRead = m_tReader.check(damaged.m_strPacket);
    damaged.m_tFault = m_tReader.getFault();
    damaged.m_vFinding = m_tReader.getFindings();
    return !isRead || !damaged.m_vFinding.empty();
}

}  // namespace murv::tool
