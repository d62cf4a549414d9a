// bench/layout_bench.cpp - packets by a layout against code written by hand and protobuf's, for the same records.
//
// Only ratios between rows of one run mean anything.
#include "murv/layout.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "hand_records.h"
#include "protobuf_record.h"

namespace
{

using namespace murv;
using namespace murv::bench;

/// A layout of fields called "field0" and so on, with texts and numbers of fixed width.
template <std::size_t s_cnCount, typename tField>
std::string layoutOf(const tField (&fields)[s_cnCount], char form)
{
    std::string text = "{\"@\" = \"layout 1\"";
    for (std::size_t i = 0; i < s_cnCount; ++i)
    {
        const bool isText = fields[i].m_pText != nullptr;
        const std::string name = "\"field" + std::to_string(i) + "\"";
        text += ", " + name + " = (" + form + (isText ? 'C' : 'N') + "F" + std::to_string(fields[i].m_uiLength) + ") " +
                (isText ? "\"\"" : "0");
    }
    return text + "}";
}

template <std::size_t s_cnCount, typename tField>
CFields dataOf(const tField (&fields)[s_cnCount])
{
    CFields tree(DT_fields);
    for (std::size_t i = 0; i < s_cnCount; ++i)
    {
        CFields& leaf = tree.addChildRef("field" + std::to_string(i));
        if (fields[i].m_pText != nullptr)
            leaf = fields[i].m_pText;
        else
            leaf = fields[i].m_llNumber;
    }
    return tree;
}

void require(bool holds)
{
    if (!holds)
        std::abort();
}

/// A layout with data and packet, which are checked against the code by hand.
template <typename tRecord>
struct tCase
{
    tCase(const std::string& text, CFields data) : m_tData(std::move(data))
    {
        require(m_tLayout.compile(text));
        CPacketMaker maker(m_tLayout);
        require(maker.make(m_tData, m_strPacket));
        parseByHand(m_strPacket, m_tRecord);
        require(makeByHand(m_tRecord) == m_strPacket);
    }
    CLayout m_tLayout;
    CFields m_tData;
    std::string m_strPacket;
    tRecord m_tRecord{};
};

const tCase<tAsciiRecord>& asciiCase()
{
    static const tCase<tAsciiRecord> s_tCase(layoutOf(s_ctAscii, 'A'), dataOf(s_ctAscii));
    return s_tCase;
}

const tCase<tBinaryRecord>& binaryCase()
{
    static const tCase<tBinaryRecord> s_tCase(layoutOf(s_ctBinary, 'B'), dataOf(s_ctBinary));
    return s_tCase;
}

template <typename tRecord>
void makeRecordByHand(benchmark::State& state, const tCase<tRecord>& given)
{
    tRecord record = given.m_tRecord;
    for ([[maybe_unused]] auto _ : state)
    {
        benchmark::DoNotOptimize(record);
        benchmark::DoNotOptimize(makeByHand(record));
    }
}

template <typename tRecord>
void readRecordByHand(benchmark::State& state, const tCase<tRecord>& given)
{
    tRecord record{};
    for ([[maybe_unused]] auto _ : state)
    {
        parseByHand(given.m_strPacket, record);
        benchmark::DoNotOptimize(record);
        benchmark::ClobberMemory();
    }
}

template <typename tRecord>
void makeByLayout(benchmark::State& state, const tCase<tRecord>& given)
{
    CPacketMaker maker(given.m_tLayout);
    std::string packet;
    for ([[maybe_unused]] auto _ : state)
    {
        require(maker.make(given.m_tData, packet));
        benchmark::DoNotOptimize(packet.data());
    }
}

template <typename tRecord>
void readIntoSameTree(benchmark::State& state, const tCase<tRecord>& given)
{
    CPacketReader reader(given.m_tLayout);
    CFields tree;
    for ([[maybe_unused]] auto _ : state)
    {
        require(reader.read(given.m_strPacket, tree));
        benchmark::ClobberMemory();
    }
}

template <typename tRecord>
void readIntoFreshTree(benchmark::State& state, const tCase<tRecord>& given)
{
    CPacketReader reader(given.m_tLayout);
    for ([[maybe_unused]] auto _ : state)
    {
        CFields tree;
        require(reader.read(given.m_strPacket, tree));
        benchmark::DoNotOptimize(tree);
    }
}

template <typename tRecord>
void viewByLayout(benchmark::State& state, const tCase<tRecord>& given)
{
    CPacketView view(given.m_tLayout);
    const unsigned int parts = given.m_tLayout.getPartCount();
    for ([[maybe_unused]] auto _ : state)
    {
        require(view.open(given.m_strPacket));
        tPacketValue value{};
        for (unsigned int part = 1; part < parts; ++part)
        {
            require(view.getValue(part, value) == PF_none);
            benchmark::DoNotOptimize(value);
        }
    }
}

void binaryMakeProtobuf(benchmark::State& state)
{
    const murv_bench::BinaryRecord record = protobufOf(binaryCase().m_tRecord);
    std::string packet;
    for ([[maybe_unused]] auto _ : state)
    {
        require(record.SerializeToString(&packet));
        benchmark::DoNotOptimize(packet.data());
    }
}

void binaryReadProtobuf(benchmark::State& state)
{
    const std::string packet = protobufOf(binaryCase().m_tRecord).SerializeAsString();
    murv_bench::BinaryRecord record;
    for ([[maybe_unused]] auto _ : state)
    {
        require(record.ParseFromString(packet));
        benchmark::DoNotOptimize(record);
    }
}

#define MURV_LAYOUT_BENCH(name, function, given) \
    void name(benchmark::State& state)           \
    {                                            \
        function(state, given());                \
    }                                            \
    BENCHMARK(name)

MURV_LAYOUT_BENCH(asciiMakeByHand, makeRecordByHand, asciiCase);
MURV_LAYOUT_BENCH(asciiMakeLayout, makeByLayout, asciiCase);
MURV_LAYOUT_BENCH(asciiReadByHand, readRecordByHand, asciiCase);
MURV_LAYOUT_BENCH(asciiReadSameTree, readIntoSameTree, asciiCase);
MURV_LAYOUT_BENCH(asciiReadFreshTree, readIntoFreshTree, asciiCase);
MURV_LAYOUT_BENCH(asciiView, viewByLayout, asciiCase);
MURV_LAYOUT_BENCH(binaryMakeByHand, makeRecordByHand, binaryCase);
MURV_LAYOUT_BENCH(binaryMakeLayout, makeByLayout, binaryCase);
BENCHMARK(binaryMakeProtobuf);
MURV_LAYOUT_BENCH(binaryReadByHand, readRecordByHand, binaryCase);
MURV_LAYOUT_BENCH(binaryReadSameTree, readIntoSameTree, binaryCase);
MURV_LAYOUT_BENCH(binaryReadFreshTree, readIntoFreshTree, binaryCase);
MURV_LAYOUT_BENCH(binaryView, viewByLayout, binaryCase);
BENCHMARK(binaryReadProtobuf);

}  // namespace

BENCHMARK_MAIN();
