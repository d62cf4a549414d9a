// bench/binary_bench.cpp - binary saving and loading beside msgpack and CBOR, on JSON documents.
//
// Rates are in bytes of the JSON text, so that rows of one document can be compared whatever their own sizes. The
// folder of the documents is named by MURV_CORPORA_DIR. Destroying what was loaded is not counted.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <msgpack.hpp>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "murv/loader.h"
#include "murv/saver.h"

namespace
{

using nlohmann::json;

struct tDocument
{
    std::string m_strName;
    std::string m_strText;
    json m_tJson;
    murv::CFields m_tTree;
};

/// A document has no empty containers in binary form; null stands for them here.
void fill(murv::CFields& node, const json& from)
{
    switch (from.type())
    {
    case json::value_t::object:
        node.setValue(from.empty() ? murv::DT_null : murv::DT_fields);
        for (const auto& [name, member] : from.items())
            fill(node.addChildRef(name, 0, true), member);
        break;
    case json::value_t::array:
        node.setValue(from.empty() ? murv::DT_null : murv::DT_array);
        for (const json& member : from)
            fill(node.addChildRef(nullptr), member);
        break;
    case json::value_t::string: node.setValue(from.get_ref<const std::string&>()); break;
    case json::value_t::boolean: node.setValue(from.get<bool>()); break;
    case json::value_t::number_integer: node.setValue(from.get<long long>()); break;
    case json::value_t::number_unsigned: node.setValue(from.get<unsigned long long>()); break;
    case json::value_t::number_float: node.setValue(from.get<double>()); break;
    default: break;
    }
}

/// What msgpack packs and unpacks best: its own object tree.
void pack(msgpack::packer<msgpack::sbuffer>& packer, const json& from)
{
    switch (from.type())
    {
    case json::value_t::object:
        packer.pack_map(static_cast<std::uint32_t>(from.size()));
        for (const auto& [name, member] : from.items())
        {
            packer.pack(name);
            pack(packer, member);
        }
        break;
    case json::value_t::array:
        packer.pack_array(static_cast<std::uint32_t>(from.size()));
        for (const json& member : from)
            pack(packer, member);
        break;
    case json::value_t::string: packer.pack(from.get_ref<const std::string&>()); break;
    case json::value_t::boolean: packer.pack(from.get<bool>()); break;
    case json::value_t::number_integer: packer.pack(from.get<long long>()); break;
    case json::value_t::number_unsigned: packer.pack(from.get<unsigned long long>()); break;
    case json::value_t::number_float: packer.pack(from.get<double>()); break;
    default: packer.pack_nil(); break;
    }
}

void count(benchmark::State& state, const tDocument& document)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(document.m_strText.size()));
}

void saveBinary(benchmark::State& state, const tDocument& document, const char* password)
{
    murv::CSaver4BER_BASIC saver;
    std::size_t size = 0;
    for ([[maybe_unused]] auto _ : state)
    {
        const std::string file = saver.saving(document.m_tTree, murv::SAVE_ALL, password);
        benchmark::DoNotOptimize(file.data());
        size = file.size();
    }
    state.counters["bytes"] = static_cast<double>(size);
    count(state, document);
}

void loadBinary(benchmark::State& state, const tDocument& document, const char* password)
{
    const std::string file = murv::CSaver4BER_BASIC().saving(document.m_tTree, murv::SAVE_ALL, password);
    murv::CLoader4BER loader;
    for ([[maybe_unused]] auto _ : state)
    {
        murv::CFields tree;
        if (!loader.loading(file, tree, password))
            state.SkipWithError(loader.getLastErrMsg().c_str());
        benchmark::DoNotOptimize(&tree);
        state.PauseTiming();
        tree = murv::CFields();
        state.ResumeTiming();
    }
    count(state, document);
}

void saveMsgpack(benchmark::State& state, const tDocument& document)
{
    msgpack::sbuffer packed;
    msgpack::packer<msgpack::sbuffer> packer(packed);
    pack(packer, document.m_tJson);
    const msgpack::object_handle handle = msgpack::unpack(packed.data(), packed.size());
    for ([[maybe_unused]] auto _ : state)
    {
        msgpack::sbuffer out;
        msgpack::pack(out, handle.get());
        benchmark::DoNotOptimize(out.data());
    }
    state.counters["bytes"] = static_cast<double>(packed.size());
    count(state, document);
}

void loadMsgpack(benchmark::State& state, const tDocument& document)
{
    msgpack::sbuffer packed;
    msgpack::packer<msgpack::sbuffer> packer(packed);
    pack(packer, document.m_tJson);
    for ([[maybe_unused]] auto _ : state)
    {
        const msgpack::object_handle handle = msgpack::unpack(packed.data(), packed.size());
        benchmark::DoNotOptimize(&handle);
    }
    count(state, document);
}

void saveCbor(benchmark::State& state, const tDocument& document)
{
    for ([[maybe_unused]] auto _ : state)
    {
        const std::vector<std::uint8_t> out = json::to_cbor(document.m_tJson);
        benchmark::DoNotOptimize(out.data());
    }
    state.counters["bytes"] = static_cast<double>(json::to_cbor(document.m_tJson).size());
    count(state, document);
}

void loadCbor(benchmark::State& state, const tDocument& document)
{
    const std::vector<std::uint8_t> cbor = json::to_cbor(document.m_tJson);
    for ([[maybe_unused]] auto _ : state)
    {
        json tree = json::from_cbor(cbor);
        benchmark::DoNotOptimize(&tree);
        state.PauseTiming();
        tree = json();
        state.ResumeTiming();
    }
    count(state, document);
}

std::shared_ptr<const tDocument> readDocument(const std::string& folder, const std::string& name)
{
    std::ifstream in(folder + "/" + name, std::ios::binary);
    auto document = std::make_shared<tDocument>();
    document->m_strName = name.substr(0, name.find('.'));
    document->m_strText.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (document->m_strText.empty())
        return nullptr;
    document->m_tJson = json::parse(document->m_strText);
    fill(document->m_tTree, document->m_tJson);
    return document;
}

template <typename tBench, typename... tArgs>
void add(const std::shared_ptr<const tDocument>& document, const char* name, tBench bench, tArgs... args)
{
    benchmark::RegisterBenchmark((std::string(name) + "/" + document->m_strName).c_str(),
                                 [=](benchmark::State& state) { bench(state, *document, args...); });
}

}  // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    const char* const folder = std::getenv("MURV_CORPORA_DIR");
    if (folder == nullptr)
    {
        std::fprintf(stderr, "MURV_CORPORA_DIR must name the folder of the JSON documents\n");
        return 2;
    }
    for (const char* name : {"twitter.json", "citm_catalog.json", "canada.json"})
    {
        const std::shared_ptr<const tDocument> document = readDocument(folder, name);
        if (document == nullptr)
        {
            std::fprintf(stderr, "%s/%s cannot be read\n", folder, name);
            return 2;
        }
        add(document, "save/murv", saveBinary, nullptr);
        add(document, "save/murvSeed", saveBinary, "password");
        add(document, "save/msgpack", saveMsgpack);
        add(document, "save/cbor", saveCbor);
        add(document, "load/murv", loadBinary, nullptr);
        add(document, "load/murvSeed", loadBinary, "password");
        add(document, "load/msgpack", loadMsgpack);
        add(document, "load/cbor", loadCbor);
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
