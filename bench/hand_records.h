// bench/hand_records.h - two records, as a programmer would write the code for them once and for all.
//
// 20 ASCII fields in 157 bytes, 12 binary fields in 65. All ways to make and read them are compared with this code.
#pragma once

#include <cstddef>
#include <string>

namespace murv::bench
{

/// A field of the ASCII record: a text (left justified) or a number (zeros in front).
struct tAsciiField
{
    unsigned int m_uiLength;
    const char* m_pText;  // null for a number
    long long m_llNumber;
};

constexpr tAsciiField s_ctAscii[] = {
    {2, "HD", 0},
    {8, nullptr, 20240131},
    {6, nullptr, 235959},
    {10, "ACME CORP", 0},
    {12, nullptr, 100200300},
    {4, nullptr, -17},
    {9, nullptr, 987654321},
    {16, "order-2024-00017", 0},
    {5, nullptr, 42},
    {10, nullptr, 1234567890},
    {3, "USD", 0},
    {12, nullptr, -99950},
    {1, "Y", 0},
    {8, "widget", 0},
    {7, nullptr, 500},
    {9, nullptr, 31415926},
    {20, "Springfield Plaza 12", 0},
    {5, nullptr, 12345},
    {6, nullptr, 777},
    {4, "END", 0},
};
constexpr std::size_t s_cnAsciiSize = 157;

/// A field of the binary record: an integer of that length in bytes, the high byte first, or a text.
struct tBinaryField
{
    unsigned int m_uiLength;
    const char* m_pText;
    long long m_llNumber;
};

constexpr tBinaryField s_ctBinary[] = {
    {1, nullptr, 83},     {2, nullptr, 513},
    {2, nullptr, 7},      {6, nullptr, 34200123456789},
    {7, nullptr, 998877}, {1, "B", 0},
    {4, nullptr, 1500},   {8, "MURVTREE", 0},
    {4, nullptr, 123400}, {12, "ABCDEFGHIJKL", 0},
    {2, nullptr, 60000},  {16, "0123456789abcdef", 0},
};
constexpr std::size_t s_cnBinarySize = 65;

// The same record as a programmer would write it once and for all.

struct tAsciiRecord
{
    char m_cHead[2];
    long long m_llDate, m_llTime;
    char m_cName[10];
    long long m_llAccount, m_llDelta, m_llBatch;
    char m_cOrder[16];
    long long m_llCount, m_llSerial;
    char m_cCurrency[3];
    long long m_llAmount;
    char m_cFlag[1];
    char m_cItem[8];
    long long m_llPrice, m_llLot;
    char m_cAddress[20];
    long long m_llZone, m_llShelf;
    char m_cEnd[4];
};

struct tBinaryRecord
{
    long long m_llKind, m_llLocate, m_llTracking, m_llTime, m_llOrder;
    char m_cSide[1];
    long long m_llShares;
    char m_cStock[8];
    long long m_llPrice;
    char m_cOwner[12];
    long long m_llPort;
    char m_cMark[16];
};

std::string makeByHand(const tAsciiRecord& record);
std::string makeByHand(const tBinaryRecord& record);
/// Throws std::invalid_argument where no digit stands.
void parseByHand(const std::string& packet, tAsciiRecord& record);
void parseByHand(const std::string& packet, tBinaryRecord& record);

}  // namespace murv::bench
