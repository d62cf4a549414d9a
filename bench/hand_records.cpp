// bench/hand_records.cpp - two records by hand.
#include "hand_records.h"

#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace murv::bench
{

namespace
{

char* putText(char* out, const char* text, std::size_t length)
{
    std::memcpy(out, text, length);
    return out + length;
}

char* putDecimal(char* out, long long value, std::size_t width)
{
    char* const end = out + width;
    bool negative = value < 0;
    auto magnitude = negative ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    for (char* p = end; p != out;)
    {
        *--p = static_cast<char>('0' + magnitude % 10);
        magnitude /= 10;
    }
    if (negative)
        *out = '-';
    return end;
}

const char* takeDecimal(const char* in, long long& value, std::size_t width)
{
    const char* const end = in + width;
    const bool negative = *in == '-';
    std::uint64_t magnitude = 0;
    for (const char* p = in + (negative ? 1 : 0); p != end; ++p)
    {
        const auto digit = static_cast<unsigned char>(*p - '0');
        if (digit > 9)
            throw std::invalid_argument("digit");
        magnitude = magnitude * 10 + digit;
    }
    value = static_cast<long long>(negative ? 0 - magnitude : magnitude);
    return end;
}

template <std::size_t s_cnLength>
const char* takeText(const char* in, char (&text)[s_cnLength])
{
    std::memcpy(text, in, s_cnLength);
    return in + s_cnLength;
}

template <std::size_t s_cnWidth>
char* putBigEndian(char* out, long long value)
{
    for (std::size_t i = 0; i < s_cnWidth; ++i)
        out[i] = static_cast<char>(static_cast<std::uint64_t>(value) >> (8 * (s_cnWidth - 1 - i)));
    return out + s_cnWidth;
}

template <std::size_t s_cnWidth>
const char* takeBigEndian(const char* in, long long& value)
{
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < s_cnWidth; ++i)
        word = word << 8 | static_cast<unsigned char>(in[i]);
    value = static_cast<long long>(word);
    return in + s_cnWidth;
}

}  // namespace

std::string makeByHand(const tAsciiRecord& record)
{
    std::string packet(s_cnAsciiSize, '\0');
    char* p = putText(packet.data(), record.m_cHead, 2);
    p = putDecimal(p, record.m_llDate, 8);
    p = putDecimal(p, record.m_llTime, 6);
    p = putText(p, record.m_cName, 10);
    p = putDecimal(p, record.m_llAccount, 12);
    p = putDecimal(p, record.m_llDelta, 4);
    p = putDecimal(p, record.m_llBatch, 9);
    p = putText(p, record.m_cOrder, 16);
    p = putDecimal(p, record.m_llCount, 5);
    p = putDecimal(p, record.m_llSerial, 10);
    p = putText(p, record.m_cCurrency, 3);
    p = putDecimal(p, record.m_llAmount, 12);
    p = putText(p, record.m_cFlag, 1);
    p = putText(p, record.m_cItem, 8);
    p = putDecimal(p, record.m_llPrice, 7);
    p = putDecimal(p, record.m_llLot, 9);
    p = putText(p, record.m_cAddress, 20);
    p = putDecimal(p, record.m_llZone, 5);
    p = putDecimal(p, record.m_llShelf, 6);
    putText(p, record.m_cEnd, 4);
    return packet;
}

void parseByHand(const std::string& packet, tAsciiRecord& record)
{
    const char* p = takeText(packet.data(), record.m_cHead);
    p = takeDecimal(p, record.m_llDate, 8);
    p = takeDecimal(p, record.m_llTime, 6);
    p = takeText(p, record.m_cName);
    p = takeDecimal(p, record.m_llAccount, 12);
    p = takeDecimal(p, record.m_llDelta, 4);
    p = takeDecimal(p, record.m_llBatch, 9);
    p = takeText(p, record.m_cOrder);
    p = takeDecimal(p, record.m_llCount, 5);
    p = takeDecimal(p, record.m_llSerial, 10);
    p = takeText(p, record.m_cCurrency);
    p = takeDecimal(p, record.m_llAmount, 12);
    p = takeText(p, record.m_cFlag);
    p = takeText(p, record.m_cItem);
    p = takeDecimal(p, record.m_llPrice, 7);
    p = takeDecimal(p, record.m_llLot, 9);
    p = takeText(p, record.m_cAddress);
    p = takeDecimal(p, record.m_llZone, 5);
    p = takeDecimal(p, record.m_llShelf, 6);
    takeText(p, record.m_cEnd);
}

std::string makeByHand(const tBinaryRecord& record)
{
    std::string packet(s_cnBinarySize, '\0');
    char* p = putBigEndian<1>(packet.data(), record.m_llKind);
    p = putBigEndian<2>(p, record.m_llLocate);
    p = putBigEndian<2>(p, record.m_llTracking);
    p = putBigEndian<6>(p, record.m_llTime);
    p = putBigEndian<7>(p, record.m_llOrder);
    p = putText(p, record.m_cSide, 1);
    p = putBigEndian<4>(p, record.m_llShares);
    p = putText(p, record.m_cStock, 8);
    p = putBigEndian<4>(p, record.m_llPrice);
    p = putText(p, record.m_cOwner, 12);
    p = putBigEndian<2>(p, record.m_llPort);
    putText(p, record.m_cMark, 16);
    return packet;
}

void parseByHand(const std::string& packet, tBinaryRecord& record)
{
    const char* p = takeBigEndian<1>(packet.data(), record.m_llKind);
    p = takeBigEndian<2>(p, record.m_llLocate);
    p = takeBigEndian<2>(p, record.m_llTracking);
    p = takeBigEndian<6>(p, record.m_llTime);
    p = takeBigEndian<7>(p, record.m_llOrder);
    p = takeText(p, record.m_cSide);
    p = takeBigEndian<4>(p, record.m_llShares);
    p = takeText(p, record.m_cStock);
    p = takeBigEndian<4>(p, record.m_llPrice);
    p = takeText(p, record.m_cOwner);
    p = takeBigEndian<2>(p, record.m_llPort);
    takeText(p, record.m_cMark);
}

}  // namespace murv::bench
