// explorer/explorer.cpp - what the page calls: functions with C linkage that answer in JSON.
//
// There is one session. A call puts its input into room(), and its answer lives until the next call. Big tables and
// packets are not in the answers: the page looks at them where they lie.
#include <emscripten/emscripten.h>

#include <nlohmann/json.hpp>
#include <string>

#include "explorer/document.h"
#include "explorer/layout_map.h"
#include "explorer/packet_map.h"
#include "murv/everyday.h"
#include "murv/flags.h"
#include "murv/layout.h"

namespace murv::explorer
{

namespace
{

using tJson = nlohmann::json;

struct tSession
{
    std::string m_strInput;
    std::string m_strAnswer;
    std::string m_strLayout;
    CLayoutMap m_tLayout;
    std::string m_strTree;  // the text of the tree
    tDocument m_tTree;
    std::string m_strPacket;
    CPacketMap m_tPacket;
};

tSession& session()
{
    static tSession session;
    return session;
}

const char* answer(const tJson& json)
{
    std::string& text = session().m_strAnswer;
    text = json.dump(-1, ' ', false, tJson::error_handler_t::replace);
    return text.c_str();
}

/// Runs a call; an exception that nobody expected is an answer, too.
template <typename tCall>
const char* guarded(const tCall& call) noexcept
{
    try
    {
        return answer(call());
    }
    catch (const std::exception& error)
    {
        return answer({{"failed", error.what()}});
    }
}

unsigned int treeFlags()
{
    return LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_LOSSLESS | LCBC_DUPLICATE | LCBC_UNICODE_UTF8;
}

tJson json4Errors(const tDocument& document)
{
    tJson list = tJson::array();
    for (const tErrorPlace& error : document.m_vErrors)
        list.push_back({{"from", document.m_tPlaces.at(error.m_uiStart)},
                        {"to", document.m_tPlaces.at(error.m_uiEnd)},
                        {"message", error.m_strMessage}});
    return list;
}

tJson json4Mistakes(const CLayoutMap& map)
{
    tJson list = json4Errors(map.document());
    for (const tLayoutMistake& mistake : map.layout().getMistakes())
    {
        const std::uint32_t from = map.document().m_tPlaces.at(mistake.m_uiOffset);
        list.push_back({{"from", from}, {"to", from}, {"path", mistake.m_strPath}, {"message", mistake.m_strMessage}});
    }
    return list;
}

tJson json4Part(const CLayout& layout, unsigned int number)
{
    const tLayoutPart part = layout.getPart(number);
    tJson rules = tJson::array();
    for (const tLayoutRule& rule : layout.getRules(number))
        rules.push_back({rule.m_strvRule, rule.m_strvSentence});
    return {{"name", part.m_strvName},
            {"id", part.m_uiID},
            {"kind", static_cast<unsigned int>(part.m_eKind)},
            {"parent", part.m_uiParent == CLayout::s_cuiNoPart ? -1 : static_cast<int>(part.m_uiParent)},
            {"path", layout.getPath(number)},
            {"expression", part.m_strvExpression},
            {"rules", rules},
            {"comment", part.m_strvComment},
            {"literal", part.m_bLiteral},
            {"computed", part.m_bComputed}};
}

/// The end of a path that leads to nothing is cut off until the rest leads to a node.
const CFields* nearest(const CFields& tree, std::string path)
{
    while (!path.empty())
    {
        const tNodePath steps = parsePath(path);
        const CFields* node = steps.m_pError == nullptr ? find(tree, steps) : nullptr;
        if (node != nullptr)
            return node;
        const std::size_t cut = path.find_last_of(".[");
        path.resize(cut == std::string::npos ? 0 : cut);
    }
    return &tree;
}

/// The path of a part, without the numbers of elements.
std::string pathInLayout(std::string_view path)
{
    std::string plain;
    for (std::size_t i = 0; i < path.size(); ++i)
    {
        if (path[i] == '[')
            i = std::min(path.find(']', i), path.size() - 1);
        else
            plain += path[i];
    }
    return plain;
}

tJson json4Fault(const tPacketFault& fault)
{
    const tSession& now = session();
    tJson json = {
        {"code", getFaultName(fault.m_eCode)}, {"path", fault.m_strPath},       {"record", fault.m_ullRecord},
        {"offset", fault.m_ullOffset},         {"length", fault.m_ullLength},   {"expression", fault.m_strExpression},
        {"rules", fault.m_strRules},           {"message", fault.m_strMessage}, {"finding", isFinding(fault.m_eCode)}};
    if (fault.m_eCode == PF_more && fault.m_ullMissing != 0)
        json["missing"] = fault.m_ullMissing;
    const unsigned int part = now.m_tLayout.layout().findPart(pathInLayout(fault.m_strPath));
    json["part"] = part == CLayout::s_cuiNoPart ? -1 : static_cast<int>(part);
    const CFields* const node = nearest(now.m_tTree.m_tTree, fault.m_strPath);
    const auto begin = static_cast<std::size_t>(node->getOffsetStart());
    const bool isWhole = node == &now.m_tTree.m_tTree;
    json["from"] = now.m_tTree.m_tPlaces.at(memberBegin(now.m_strTree, *node));
    const bool isScalar = !node->isField() && !node->isArray();
    const std::size_t end = isWhole || !isScalar ? begin + 1 : static_cast<std::size_t>(node->getOffsetEnd());
    json["to"] = now.m_tTree.m_tPlaces.at(end);
    return json;
}

/// What the last reading found, when the text of the tree is there.
tJson json4Problems()
{
    const CPacketMap& packet = session().m_tPacket;
    tJson list = tJson::array();
    for (const tProblem& problem : packet.m_vProblems)
    {
        tJson json = json4Fault(problem.m_tFault);
        json["unread"] = problem.m_ullUnread;
        json["unreadEnd"] = problem.m_ullUnreadEnd;
        list.push_back(json);
    }
    return {{"problems", list}, {"more", packet.m_ullMoreProblems}};
}

void loadTree()
{
    tSession& now = session();
    load(now.m_strTree, treeFlags(), now.m_tTree);
}

tJson compile()
{
    tSession& now = session();
    now.m_strLayout.swap(now.m_strInput);
    if (!now.m_tLayout.compile(now.m_strLayout))
        return {{"mistakes", json4Mistakes(now.m_tLayout)}};
    const CLayoutMap& map = now.m_tLayout;
    tJson parts = tJson::array();
    for (unsigned int part = 0; part < map.layout().getPartCount(); ++part)
        parts.push_back(json4Part(map.layout(), part));
    tJson places = tJson::array();
    const CPlaces& text = map.document().m_tPlaces;
    for (const tPartPlace& place : map.places())
        places.push_back({place.m_uiPart, text.at(place.m_nBegin), text.at(place.m_nEnd)});
    return {{"mistakes", tJson::array()}, {"parts", parts}, {"places", places}};
}

tJson read()
{
    tSession& now = session();
    now.m_strPacket.swap(now.m_strInput);
    now.m_tPacket.read(now.m_tLayout, now.m_strPacket);
    now.m_strTree = now.m_tPacket.text();
    loadTree();
    now.m_tPacket.tie(now.m_tLayout, now.m_strTree, now.m_tTree);
    return json4Problems();
}

tJson make()
{
    tSession& now = session();
    now.m_strTree.swap(now.m_strInput);
    loadTree();
    if (!now.m_tTree.m_vErrors.empty())
        return {{"mistakes", json4Errors(now.m_tTree)}};
    CPacketMaker maker(now.m_tLayout.layout(), now.m_tPacket.m_tMake);
    std::string packet;
    if (!maker.make(now.m_tTree.m_tTree, packet))
        return {{"mistakes", tJson::array()}, {"fault", json4Fault(maker.getFault())}};
    now.m_strPacket.swap(packet);
    const tMakeOptions options = now.m_tPacket.m_tMake;
    now.m_tPacket.read(now.m_tLayout, now.m_strPacket);
    now.m_tPacket.m_tMake = options;
    now.m_tPacket.tie(now.m_tLayout, now.m_strTree, now.m_tTree);
    tJson json = json4Problems();
    json["mistakes"] = tJson::array();
    return json;
}

struct tData
{
    const void* m_pBegin;
    std::size_t m_nSize;
};

tData dataOf(unsigned int what)
{
    const tSession& now = session();
    const CPacketMap& packet = now.m_tPacket;
    const auto bytes = [](const auto& list) { return tData{list.data(), list.size() * sizeof(*list.data())}; };
    switch (what)
    {
    case 0: return bytes(packet.m_vLeaves);
    case 1: return bytes(packet.m_vGroups);
    case 2: return bytes(packet.m_vLeafOrder);
    case 3: return bytes(packet.m_vGroupOrder);
    case 4: return bytes(now.m_strPacket);
    default: return bytes(now.m_strTree);
    }
}

}  // namespace

}  // namespace murv::explorer

extern "C"
{
    using namespace murv::explorer;

    /// Room for the input of the next call.
    EMSCRIPTEN_KEEPALIVE char* explorerRoom(std::size_t size)
    {
        session().m_strInput.resize(size);
        return session().m_strInput.data();
    }

    /// Compiles the layout in the room.
    EMSCRIPTEN_KEEPALIVE const char* explorerCompile()
    {
        return guarded(compile);
    }

    /// Reads the packet in the room.
    EMSCRIPTEN_KEEPALIVE const char* explorerRead()
    {
        return guarded(read);
    }

    /// Makes a packet of the text in the room, and reads it again.
    EMSCRIPTEN_KEEPALIVE const char* explorerMake()
    {
        return guarded(make);
    }

    /// What lies in memory after a call: 0 leaves, 1 groups, 2 and 3 their order in the text, 4 the packet, 5 the text
    /// of the tree.
    EMSCRIPTEN_KEEPALIVE const void* explorerData(unsigned int what)
    {
        return dataOf(what).m_pBegin;
    }

    /// Its size in bytes.
    EMSCRIPTEN_KEEPALIVE std::size_t explorerSize(unsigned int what)
    {
        return dataOf(what).m_nSize;
    }
}
