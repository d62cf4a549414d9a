// bench/tree_bench.cpp - trees and text: load, save, copy, destroy, look up, build.
//
// Each measure runs for murv and for general JSON libraries on the same documents, in one program, so that ratios hold
// whatever the machine. Bytes per second count the JSON form for all. The heap is warm, which means that it keeps what
// was freed; in rows called cold, and by the wall, it has given that back to the system. Run it by scripts/bench.

#include <benchmark/benchmark.h>
#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <simdjson.h>

#include <nlohmann/json.hpp>
#include <optional>

#include "bench/documents.h"
#include "murv/murv.h"

namespace
{

using murv_bench::tDocument;
using tMallocDocument = rapidjson::GenericDocument<rapidjson::UTF8<>, rapidjson::CrtAllocator>;

std::size_t nodes4(const tDocument& document)
{
    murv::CFields tree;
    murv::CLoaders().loading(document.m_strText, tree);
    return tree.getMemberCount() + std::size_t{1};
}

/// What one library does with a document. A tree is made by parse() and destroyed with the optional that holds it.
struct tMurv
{
    using tTree = murv::CFields;
    static constexpr const char* s_cpName = "murv";
    murv::CLoaders m_tLoader;
    murv::CSavers m_tSaver{murv::SCBC_NULL_WORD | murv::SCBC_SECOND_VALUE};

    void parse(const tDocument& document, std::optional<tTree>& tree)
    {
        tree.emplace();
        if (!m_tLoader.loading(document.m_strText, *tree))
            std::abort();
    }
    std::size_t save(const tTree& tree, bool pretty)
    {
        return m_tSaver.saving(tree, pretty ? murv::ER_SER_HFW : murv::ER_SER_PKT).size();
    }
    void copy(const tTree& tree, std::optional<tTree>& out)
    {
        out.emplace(tree);
    }
};

template <typename tDocumentType, unsigned int s_cuiFlags>
struct tRapid
{
    using tTree = tDocumentType;

    void parse(const tDocument& document, std::optional<tTree>& tree)
    {
        tree.emplace();
        tree->template Parse<s_cuiFlags>(document.m_strJson.data(), document.m_strJson.size());
        if (tree->HasParseError())
            std::abort();
    }
    std::size_t save(const tTree& tree, bool pretty)
    {
        rapidjson::StringBuffer out;
        if (pretty)
        {
            rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(out);
            tree.Accept(writer);
        }
        else
        {
            rapidjson::Writer<rapidjson::StringBuffer> writer(out);
            tree.Accept(writer);
        }
        return std::string(out.GetString(), out.GetSize()).size();
    }
    void copy(const tTree& tree, std::optional<tTree>& out)
    {
        out.emplace();
        out->CopyFrom(tree, out->GetAllocator());
    }
};

struct tRapidPool : tRapid<rapidjson::Document, rapidjson::kParseDefaultFlags>
{
    static constexpr const char* s_cpName = "rapidjson";
};

struct tRapidMalloc : tRapid<tMallocDocument, rapidjson::kParseFullPrecisionFlag>
{
    static constexpr const char* s_cpName = "rapidjson-malloc-exact";
};

struct tNlohmann
{
    using tTree = nlohmann::json;
    static constexpr const char* s_cpName = "nlohmann";

    void parse(const tDocument& document, std::optional<tTree>& tree)
    {
        tree.emplace(nlohmann::json::parse(document.m_strJson));
    }
    std::size_t save(const tTree& tree, bool pretty)
    {
        return tree.dump(pretty ? 2 : -1).size();
    }
    void copy(const tTree& tree, std::optional<tTree>& out)
    {
        out.emplace(tree);
    }
};

enum class E_Heap
{
    warm,
    cold
};

void prepare(E_Heap heap)
{
    if (heap == E_Heap::cold)
        murv_bench::giveBackHeap();
}

template <typename tLibrary>
void parseDocument(benchmark::State& state, const tDocument& document, E_Heap heap)
{
    tLibrary library;
    std::optional<typename tLibrary::tTree> tree;
    library.parse(document, tree);  // warms the heap, and the memory that a reader keeps
    tree.reset();
    prepare(heap);
    for (auto _ : state)
    {
        library.parse(document, tree);
        state.PauseTiming();
        tree.reset();
        prepare(heap);
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * document.m_strJson.size()));
}

template <typename tLibrary>
void saveDocument(benchmark::State& state, const tDocument& document, bool pretty)
{
    tLibrary library;
    std::optional<typename tLibrary::tTree> tree;
    library.parse(document, tree);
    for (auto _ : state)
        benchmark::DoNotOptimize(library.save(*tree, pretty));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * document.m_strJson.size()));
}

void countNodes(benchmark::State& state, const tDocument& document)
{
    state.counters["per_node"] =
        benchmark::Counter(static_cast<double>(nodes4(document)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

template <typename tLibrary>
void copyDocument(benchmark::State& state, const tDocument& document, E_Heap heap)
{
    tLibrary library;
    std::optional<typename tLibrary::tTree> tree;
    std::optional<typename tLibrary::tTree> copy;
    library.parse(document, tree);
    library.copy(*tree, copy);
    copy.reset();
    prepare(heap);
    for (auto _ : state)
    {
        library.copy(*tree, copy);
        state.PauseTiming();
        copy.reset();
        prepare(heap);
        state.ResumeTiming();
    }
    countNodes(state, document);
}

template <typename tLibrary>
void destroyDocument(benchmark::State& state, const tDocument& document)
{
    tLibrary library;
    std::optional<typename tLibrary::tTree> tree;
    std::optional<typename tLibrary::tTree> copy;
    library.parse(document, tree);
    for (auto _ : state)
    {
        state.PauseTiming();
        library.copy(*tree, copy);
        state.ResumeTiming();
        copy.reset();
    }
    countNodes(state, document);
}

template <typename tLibrary>
void heapOfDocument(benchmark::State& state, const tDocument& document)
{
    tLibrary library;
    std::optional<typename tLibrary::tTree> tree;
    std::size_t bytes = 0;
    library.parse(document, tree);  // what a reader keeps for the next document is not part of the tree
    for (auto _ : state)
    {
        tree.reset();
        const std::size_t before = murv_bench::heapInUse();
        library.parse(document, tree);
        bytes = murv_bench::heapInUse() - before;
    }
    state.counters["heap_per_node"] = static_cast<double>(bytes) / static_cast<double>(nodes4(document));
}

void parseReadOnly(benchmark::State& state, const tDocument& document)
{
    simdjson::dom::parser parser;
    const simdjson::padded_string json(document.m_strJson);
    for (auto _ : state)
        benchmark::DoNotOptimize(parser.parse(json).error());
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * document.m_strJson.size()));
}

std::vector<std::string> names4(std::int64_t count)
{
    std::vector<std::string> names;
    for (std::int64_t i = 0; i < count; ++i)
        names.push_back("member" + std::to_string(i * 2654435761 % 1000003));
    return names;
}

void murvLookup(benchmark::State& state)
{
    const std::vector<std::string> names = names4(state.range(0));
    murv::CFields tree(murv::DT_fields);
    for (const std::string& name : names)
        tree.addChildRef(name) = 1;
    std::size_t next = 0;
    for (auto _ : state)
    {
        const std::string& name = names[next++ % names.size()];
        benchmark::DoNotOptimize(tree.findChildAt(name.data(), static_cast<unsigned int>(name.size())));
    }
}

void rapidLookup(benchmark::State& state)
{
    const std::vector<std::string> names = names4(state.range(0));
    rapidjson::Document tree(rapidjson::kObjectType);
    for (const std::string& name : names)
    {
        rapidjson::Value key(name.c_str(), tree.GetAllocator());
        tree.AddMember(key, 1, tree.GetAllocator());
    }
    std::size_t next = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(tree.FindMember(names[next++ % names.size()].c_str()));
}

void nlohmannLookup(benchmark::State& state)
{
    const std::vector<std::string> names = names4(state.range(0));
    nlohmann::json tree;
    for (const std::string& name : names)
        tree[name] = 1;
    std::size_t next = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(tree.find(names[next++ % names.size()]));
}

void murvBuild(benchmark::State& state)
{
    const std::vector<std::string> names = names4(state.range(0));
    for (auto _ : state)
    {
        murv::CFields tree(murv::DT_fields);
        for (const std::string& name : names)
            tree.addChildRef(name) = 1;
        benchmark::DoNotOptimize(tree.getChildCount());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void nlohmannBuild(benchmark::State& state)
{
    const std::vector<std::string> names = names4(state.range(0));
    for (auto _ : state)
    {
        nlohmann::json tree;
        for (const std::string& name : names)
            tree[name] = 1;
        benchmark::DoNotOptimize(tree.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename tLibrary>
void registerLibrary(const tDocument& document)
{
    const auto name = [&document](const char* what) {
        return std::string(what) + "/" + document.m_strName + "/" + tLibrary::s_cpName;
    };
    benchmark::RegisterBenchmark(name("parse").c_str(), parseDocument<tLibrary>, document, E_Heap::warm);
    benchmark::RegisterBenchmark(name("parse-cold").c_str(), parseDocument<tLibrary>, document, E_Heap::cold);
    benchmark::RegisterBenchmark(name("parse-compact").c_str(), parseDocument<tLibrary>,
                                 murv_bench::withoutBlanks(document), E_Heap::warm);
    benchmark::RegisterBenchmark(name("compact").c_str(), saveDocument<tLibrary>, document, false);
    benchmark::RegisterBenchmark(name("pretty").c_str(), saveDocument<tLibrary>, document, true);
    benchmark::RegisterBenchmark(name("copy").c_str(), copyDocument<tLibrary>, document, E_Heap::warm);
    benchmark::RegisterBenchmark(name("copy-cold").c_str(), copyDocument<tLibrary>, document, E_Heap::cold);
    benchmark::RegisterBenchmark(name("destroy").c_str(), destroyDocument<tLibrary>, document);
    benchmark::RegisterBenchmark(name("heap").c_str(), heapOfDocument<tLibrary>, document)->Iterations(1);
}

/// A large document by the clock on the wall, as a program that loads one once waits for it.
template <typename tLibrary>
void registerWall(const tDocument& document)
{
    const std::string name = "parse-wall/" + document.m_strName + "/" + tLibrary::s_cpName;
    benchmark::RegisterBenchmark(name.c_str(), parseDocument<tLibrary>, document, E_Heap::cold)->UseRealTime();
}

void registerDocument(const tDocument& document)
{
    registerLibrary<tMurv>(document);
    registerLibrary<tRapidPool>(document);
    registerLibrary<tRapidMalloc>(document);
    registerLibrary<tNlohmann>(document);
    benchmark::RegisterBenchmark(("parse/" + document.m_strName + "/simdjson").c_str(), parseReadOnly, document);
}

BENCHMARK(murvLookup)->Name("lookup/murv")->Arg(10)->Arg(100)->Arg(1000)->Arg(100000);
BENCHMARK(rapidLookup)->Name("lookup/rapidjson")->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(nlohmannLookup)->Name("lookup/nlohmann")->Arg(10)->Arg(100)->Arg(1000)->Arg(100000);
BENCHMARK(murvBuild)->Name("build/murv")->Arg(100)->Arg(10000)->Arg(1000000);
BENCHMARK(nlohmannBuild)->Name("build/nlohmann")->Arg(100)->Arg(10000)->Arg(1000000);

}  // namespace

int main(int argc, char** argv)
{
    murv_bench::keepHeap();
    // The large document only when it is asked for: `tree_bench --records ...`.
    const bool records = argc > 1 && std::string(argv[1]) == "--records";
    for (const tDocument& document : murv_bench::realDocuments())
        registerDocument(document);
    static tDocument large;
    if (records)
    {
        large = murv_bench::makeRecords(std::size_t{100} * 1000 * 1000);
        registerDocument(large);
        registerWall<tMurv>(large);
        registerWall<tRapidPool>(large);
        registerWall<tRapidMalloc>(large);
        registerWall<tNlohmann>(large);
        argv[1] = argv[0];
        ++argv;
        --argc;
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
