// bench/counted/runs.cpp - small runs of what the library is used for most, for counting instructions.
//
// Instructions under valgrind are nearly the same in each run of a program, however busy the machine is: more of them
// are a change of the library. scripts/counts runs this program once for each name of the table. Only what happens
// inside murv_counted_work() counts: inputs are made before, and results destroyed after.
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#if defined(__GLIBC__)
#include <gnu/libc-version.h>
#endif

#include "bench/hand_records.h"
#include "documents.h"
#include "murv/layout.h"
#include "murv/murv.h"

/// Its name is what scripts/counts counts by. What comes after the call keeps the compiler from jumping there instead.
extern "C" [[gnu::noinline]] bool murv_counted_work(const std::function<bool()>& work)
{
    const bool done = work();
    asm volatile("" ::: "memory");
    return done;
}

namespace
{

using namespace murv;

/// Does the work once. False when the result is wrong: what fails at once would look fast.
using tWork = std::function<bool()>;

CFields load(const std::string& text)
{
    CFields tree;
    if (!CLoaders().loading(text, tree))
        throw std::runtime_error(text.substr(0, 60) + "... cannot be loaded");
    return tree;
}

/// A tree with all kinds of documents.
CFields mixedTree()
{
    CFields tree(DT_array);
    for (const std::string& text :
         {murv_bench::makeCatalog(), murv_bench::makeCoordinates(), murv_bench::makeMessages()})
        tree.addArrayAt(load(text));
    return tree;
}

/// Loads a text some times, each time into a tree of its own.
tWork loadTimes(std::string text, std::size_t times)
{
    struct tState
    {
        std::string m_strText;
        CLoaders m_tLoader;
        std::vector<CFields> m_vTrees;
    };
    auto state = std::make_shared<tState>();
    state->m_strText = std::move(text);
    state->m_vTrees.resize(times);
    return [state] {
        bool done = true;
        for (CFields& tree : state->m_vTrees)
            done = state->m_tLoader.loading(state->m_strText, tree) && tree.getChildCount() > 1 && done;
        return done;
    };
}

tWork loadConfig()
{
    return loadTimes(murv_bench::makeConfig(), 50);
}

tWork loadCatalog()
{
    return loadTimes(murv_bench::makeCatalog(), 1);
}

tWork loadCoordinates()
{
    return loadTimes(murv_bench::makeCoordinates(), 1);
}

tWork loadMessages()
{
    return loadTimes(murv_bench::makeMessages(), 1);
}

tWork loadCompact()
{
    return loadTimes(CSavers().saving(mixedTree(), ER_SER_PKT), 1);
}

tWork saveBy(unsigned char rule)
{
    auto tree = std::make_shared<const CFields>(mixedTree());
    auto saver = std::make_shared<CSavers>();
    auto text = std::make_shared<std::string>();
    return [=] {
        *text = saver->saving(*tree, rule);
        return text->size() > 100000;
    };
}

tWork saveCompact()
{
    return saveBy(ER_SER_PKT);
}

tWork saveIndented()
{
    return saveBy(ER_SER_HFW);
}

tWork copyTree()
{
    auto tree = std::make_shared<const CFields>(mixedTree());
    auto copy = std::make_shared<std::optional<CFields>>();
    return [=] {
        copy->emplace(*tree);
        return (*copy)->getMemberCount() == tree->getMemberCount();
    };
}

tWork destroyTree()
{
    auto tree = std::make_shared<std::optional<CFields>>(mixedTree());
    return [tree] {
        tree->reset();
        return true;
    };
}

std::vector<std::string> names4(std::size_t count)
{
    std::mt19937 bits(20240131);
    std::vector<std::string> names;
    for (std::size_t i = 0; i < count; ++i)
        names.push_back("member" + std::to_string(bits() % 100000) + "." + std::to_string(i));
    return names;
}

/// Ten times all names of a set of 1,000, and once as many that are not there.
tWork findNames()
{
    const std::vector<std::string> names = names4(2000);
    CFields made(DT_fields);
    for (std::size_t i = 0; i < names.size() / 2; ++i)
        made.addChildRef(names[i]) = static_cast<int>(i);
    auto tree = std::make_shared<const CFields>(std::move(made));
    return [tree, names] {
        const auto isThere = [&](const std::string& name) {
            return tree->findChildAt(name.data(), static_cast<unsigned int>(name.size())) != nullptr;
        };
        std::size_t found = 0;
        for (std::size_t i = 0; i < 11 * names.size() / 2; ++i)
            found += isThere(names[i % 11 == 0 ? names.size() / 2 + i / 11 : i % 1000]) ? 1 : 0;
        return found == 10 * names.size() / 2;
    };
}

/// Four sets: the hash of names has another seed in each process, and its luck evens out over 40,000 names.
tWork addNames()
{
    auto trees = std::make_shared<std::vector<CFields>>();
    for (int i = 0; i < 4; ++i)
        trees->emplace_back(DT_fields);
    return [trees, names = names4(40000)] {
        std::size_t number = 0;
        for (const std::string& name : names)
            (*trees)[number++ / 10000].addChildRef(name) = 1;
        return trees->front().getChildCount() == 10000 && trees->back().getChildCount() == 10000;
    };
}

tWork saveBinary()
{
    auto tree = std::make_shared<const CFields>(mixedTree());
    auto file = std::make_shared<std::string>();
    return [=] {
        *file = CSaver4BER_BASIC().saving(*tree);
        return file->size() > 100000;
    };
}

tWork loadBinary()
{
    auto tree = std::make_shared<CFields>();
    return [tree, file = CSaver4BER_BASIC().saving(mixedTree())] {
        return CLoader4BER().loading(file, *tree) && tree->getChildCount() == 3;
    };
}

/// The record of 20 fields; stated members say their packet expressions.
CFields record(bool stated)
{
    CFields tree(DT_fields);
    std::size_t number = 0;
    for (const bench::tAsciiField& field : bench::s_ctAscii)
    {
        CFields& leaf = tree.addChildRef("field" + std::to_string(number++));
        if (field.m_pText != nullptr)
            leaf = field.m_pText;
        else
            leaf = field.m_llNumber;
        if (!stated)
            continue;
        tPacketExpInfo expression{};
        expression.m_ePacketExp = PEC_A;
        expression.m_eRuntimeExp = field.m_pText != nullptr ? REC_C : REC_N;
        expression.m_uiLength = field.m_uiLength;
        leaf.pkt_SetExp(expression);
    }
    return tree;
}

constexpr int s_cnPackets = 500;

tWork makePackets()
{
    return [tree = record(true)] {
        std::size_t bytes = 0;
        for (int i = 0; i < s_cnPackets; ++i)
            bytes += tree.pkt_Make4Children(false).size();
        return bytes == s_cnPackets * bench::s_cnAsciiSize;
    };
}

tWork parsePackets()
{
    auto tree = std::make_shared<CFields>(record(true));
    return [tree, packet = tree->pkt_Make4Children(false)] {
        bool done = true;
        for (int i = 0; i < s_cnPackets; ++i)
            done = tree->pkt_Parse4Children(packet.data(), static_cast<unsigned int>(packet.size()), true) == 0 && done;
        return done;
    };
}

/// A compiled layout of the record, and a packet.
struct tByLayout
{
    tByLayout()
    {
        std::string text = "{\"@\" = \"layout 1\"";
        std::size_t number = 0;
        for (const bench::tAsciiField& field : bench::s_ctAscii)
            text += ", \"field" + std::to_string(number++) + "\" = (A" + (field.m_pText != nullptr ? "C" : "N") + "F" +
                    std::to_string(field.m_uiLength) + ") " + (field.m_pText != nullptr ? "\"\"" : "0");
        if (!m_tLayout.compile(text + "}") || !CPacketMaker(m_tLayout).make(record(false), m_strPacket))
            throw std::runtime_error("the record does not fit its layout");
    }
    CLayout m_tLayout;
    std::string m_strPacket;
    CFields m_tTree;
};

tWork makeByLayout()
{
    auto by = std::make_shared<tByLayout>();
    return [by, tree = record(false)] {
        CPacketMaker maker(by->m_tLayout);
        bool done = true;
        for (int i = 0; i < s_cnPackets; ++i)
            done = maker.make(tree, by->m_strPacket) && done;
        return done;
    };
}

tWork readByLayout()
{
    auto by = std::make_shared<tByLayout>();
    return [by] {
        CPacketReader reader(by->m_tLayout);
        bool done = true;
        for (int i = 0; i < s_cnPackets; ++i)
            done = reader.read(by->m_strPacket, by->m_tTree) && done;
        return done;
    };
}

struct tRun
{
    std::string_view m_strName;
    tWork (*m_pPrepare)();
};

constexpr tRun s_ctRuns[] = {
    {"load-config", loadConfig},      {"load-catalog", loadCatalog},    {"load-coordinates", loadCoordinates},
    {"load-messages", loadMessages},  {"load-compact", loadCompact},    {"save-compact", saveCompact},
    {"save-indented", saveIndented},  {"copy-tree", copyTree},          {"destroy-tree", destroyTree},
    {"find-names", findNames},        {"add-names", addNames},          {"save-binary", saveBinary},
    {"load-binary", loadBinary},      {"make-packets", makePackets},    {"parse-packets", parsePackets},
    {"make-by-layout", makeByLayout}, {"read-by-layout", readByLayout},
};

/// What else counts depend on: compiler, C library, and the processor, for which the C library has several functions.
void printMachine()
{
#if defined(__clang__)
    std::cout << "clang++ ";
#elif defined(__GNUC__)
    std::cout << "g++ ";
#endif
    std::cout << __VERSION__;
#if defined(__GLIBC__)
    std::cout << ", glibc " << gnu_get_libc_version();
#endif
#if defined(__x86_64__)
    std::cout << ", x86-64" << (__builtin_cpu_supports("avx2") ? " with" : " without") << " AVX2";
#endif
    std::cout << "\n";
}

int call(std::string_view argument)
{
    if (argument == "--machine")
    {
        printMachine();
        return 0;
    }
    for (const tRun& run : s_ctRuns)
    {
        if (argument == "--list")
            std::cout << run.m_strName << "\n";
        else if (argument == run.m_strName)
            return murv_counted_work(run.m_pPrepare()) ? 0 : 1;
    }
    return argument == "--list" ? 0 : 2;
}

}  // namespace

int main(int argc, char** argv)
try
{
    if (argc == 2)
        return call(argv[1]);
    std::cerr << "usage: murv_counted_runs NAME | --list | --machine\n";
    return 2;
}
catch (const std::exception& failure)
{
    std::cerr << failure.what() << "\n";
    return 1;
}
