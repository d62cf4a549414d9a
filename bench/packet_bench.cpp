// bench/packet_bench.cpp - making and parsing packets from trees against code written by hand for the same bytes.
//
// Two records: 20 ASCII fields in 157 bytes, 12 binary fields in 65. Only ratios between rows of one run mean anything.
// The counter "allocs" is the number of heap blocks taken for one packet.

#include "murv/fields.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{
std::atomic<std::uint64_t> s_ullAllocations{0};
}

// glibc's own entry to the heap, so that blocks from malloc are counted as well as those from new.
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* malloc(std::size_t size)
{
    s_ullAllocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(size);
}

namespace
{

using namespace murv;

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

/// A field of the binary record: so many bytes of an integer, big-endian, or a text.
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

template <std::size_t s_cnCount, typename tField>
CFields treeOf(const tField (&fields)[s_cnCount], E_PacketExpCode form)
{
    CFields tree(DT_fields);
    for (std::size_t i = 0; i < s_cnCount; ++i)
    {
        CFields& leaf = tree.addChildRef("field" + std::to_string(i));
        if (fields[i].m_pText != nullptr)
            leaf = fields[i].m_pText;
        else
            leaf = fields[i].m_llNumber;
        tPacketExpInfo pei{};
        pei.m_ePacketExp = form;
        pei.m_eRuntimeExp = fields[i].m_pText != nullptr ? REC_C : REC_N;
        pei.m_uiLength = fields[i].m_uiLength;
        leaf.pkt_SetExp(pei);
    }
    return tree;
}

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

/// Ends the bench when the two ways do not give the same bytes.
void require(bool same)
{
    if (!same)
        std::abort();
}

template <typename tWork>
void measure(benchmark::State& state, std::size_t size, tWork&& work)
{
    const std::uint64_t before = s_ullAllocations.load();
    for ([[maybe_unused]] auto _ : state)
        work();
    state.counters["allocs"] = benchmark::Counter(static_cast<double>(s_ullAllocations.load() - before) /
                                                  static_cast<double>(state.iterations()));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(size));
}

void makeTree(benchmark::State& state, const CFields& tree, std::size_t size)
{
    require(tree.pkt_Make4Children(false).size() == size);
    measure(state, size, [&tree] { benchmark::DoNotOptimize(tree.pkt_Make4Children(false)); });
}

void parseTree(benchmark::State& state, CFields tree)
{
    const std::string packet = tree.pkt_Make4Children(false);
    const auto length = static_cast<unsigned int>(packet.size());
    measure(state, packet.size(), [&tree, &packet, length] {
        benchmark::DoNotOptimize(tree.pkt_Parse4Children(packet.data(), length, true));
        benchmark::ClobberMemory();
    });
    require(tree.pkt_Make4Children(false) == packet);
}

template <typename tRecord>
void makeRecord(benchmark::State& state, const CFields& tree)
{
    const std::string packet = tree.pkt_Make4Children(false);
    tRecord record{};
    parseByHand(packet, record);
    require(makeByHand(record) == packet);
    measure(state, packet.size(), [&record] {
        benchmark::DoNotOptimize(record);
        benchmark::DoNotOptimize(makeByHand(record));
    });
}

template <typename tRecord>
void parseRecord(benchmark::State& state, const CFields& tree)
{
    const std::string packet = tree.pkt_Make4Children(false);
    tRecord record{};
    measure(state, packet.size(), [&record, &packet] {
        parseByHand(packet, record);
        benchmark::DoNotOptimize(record);
        benchmark::ClobberMemory();
    });
    require(makeByHand(record) == packet);
}

CFields asciiTree()
{
    return treeOf(s_ctAscii, PEC_A);
}

CFields binaryTree()
{
    return treeOf(s_ctBinary, PEC_B);
}

void asciiMakeTree(benchmark::State& state)
{
    makeTree(state, asciiTree(), s_cnAsciiSize);
}

void asciiMakeByHand(benchmark::State& state)
{
    makeRecord<tAsciiRecord>(state, asciiTree());
}

void asciiParseTree(benchmark::State& state)
{
    parseTree(state, asciiTree());
}

void asciiParseByHand(benchmark::State& state)
{
    parseRecord<tAsciiRecord>(state, asciiTree());
}

void binaryMakeTree(benchmark::State& state)
{
    makeTree(state, binaryTree(), s_cnBinarySize);
}

void binaryMakeByHand(benchmark::State& state)
{
    makeRecord<tBinaryRecord>(state, binaryTree());
}

void binaryParseTree(benchmark::State& state)
{
    parseTree(state, binaryTree());
}

void binaryParseByHand(benchmark::State& state)
{
    parseRecord<tBinaryRecord>(state, binaryTree());
}

BENCHMARK(asciiMakeByHand);
BENCHMARK(asciiMakeTree);
BENCHMARK(asciiParseByHand);
BENCHMARK(asciiParseTree);
BENCHMARK(binaryMakeByHand);
BENCHMARK(binaryMakeTree);
BENCHMARK(binaryParseByHand);
BENCHMARK(binaryParseTree);

}  // namespace

BENCHMARK_MAIN();
