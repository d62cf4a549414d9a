// bench/packet_bench.cpp - making and parsing packets from trees against code written by hand for the same bytes.
//
// Two records: 20 ASCII fields in 157 bytes, 12 binary fields in 65, the latter also as a message of protobuf. Only
// ratios between rows of one run mean anything. The counter "allocs" is the number of heap blocks taken for one packet.

#include "hand_records.h"
#include "murv/fields.h"
#include "protobuf_record.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <string>

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
using namespace murv::bench;

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

murv_bench::BinaryRecord message()
{
    tBinaryRecord record{};
    parseByHand(binaryTree().pkt_Make4Children(false), record);
    return protobufOf(record);
}

void binaryMakeProtobuf(benchmark::State& state)
{
    const murv_bench::BinaryRecord record = message();
    measure(state, record.ByteSizeLong(), [&record] { benchmark::DoNotOptimize(record.SerializeAsString()); });
}

void binaryParseProtobuf(benchmark::State& state)
{
    const std::string packet = message().SerializeAsString();
    murv_bench::BinaryRecord record;
    measure(state, packet.size(), [&record, &packet] {
        require(record.ParseFromString(packet));
        benchmark::DoNotOptimize(record);
    });
}

BENCHMARK(asciiMakeByHand);
BENCHMARK(asciiMakeTree);
BENCHMARK(asciiParseByHand);
BENCHMARK(asciiParseTree);
BENCHMARK(binaryMakeByHand);
BENCHMARK(binaryMakeTree);
BENCHMARK(binaryMakeProtobuf);
BENCHMARK(binaryParseByHand);
BENCHMARK(binaryParseTree);
BENCHMARK(binaryParseProtobuf);

}  // namespace

BENCHMARK_MAIN();
