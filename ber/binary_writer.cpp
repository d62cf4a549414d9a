// ber/binary_writer.cpp - a tree as node records.
//
// Walks without recursion and writes by pointer into room that was asked for once per record.
#include "ber/binary_writer.h"

#include <cstring>

#include "ber/layout.h"
#include "core/member_cursor.h"
#include "core/memory/walk_stack.h"
#include "core/text/word_bytes.h"

namespace murv::detail
{

namespace
{

// String values up to this length go with the record's other parts: on their own, saving takes up to 1.1 times as long.
constexpr std::size_t s_cnShortCodes = 256;
constexpr std::size_t s_cnShortName = 32;  // copyShort takes names below this length
static_assert(s_cnLongestFixedPart + s_cnShortCodes <= CBodySink::s_cnMostRoom);

std::string_view comment(const CFields& node, std::size_t position)
{
    const char* const text = tFieldAccess::sideRecord(node)->m_tComment[position].get();
    return text == nullptr ? std::string_view() : std::string_view(text);
}

/// Begins to fetch the members of a node that is to be written soon. They may lie anywhere in memory, and a walk that
/// only asks for them when it needs them waits: saving takes up to twice as long.
// Always inlined: g++ 12 takes a call of it for one without effect, and leaves it out.
[[gnu::always_inline]] inline void fetchMembers(const CFields* node)
{
    if (node != nullptr && tFieldAccess::isContainer(*node))
        __builtin_prefetch(tFieldAccess::value(*node).m_pFV);
}

/// Visits the members before the first container among them.
template <typename tVisit>
inline void visitLeaves(CMemberCursor& members, tVisit&& visit)
{
    for (; members.hasNext() && !tFieldAccess::isContainer(members.next()); members.skip())
        visit(members.next());
}

/// Visits all nodes of a tree, parents before their members.
// Always inlined, so that what the visits need is in registers: without, saving takes up to 1.08 times as long.
template <typename tVisitContainer, typename tVisitLeaf>
[[gnu::always_inline]] inline void forEachRecord(const CFields& root, tVisitContainer&& visitContainer,
                                                 tVisitLeaf&& visitLeaf)
{
    constexpr std::ptrdiff_t distance = 3;
    if (!tFieldAccess::isContainer(root))
        return visitLeaf(root);
    visitContainer(root);
    CWalkStack<CMemberCursor> outer;
    CMemberCursor members(tFieldAccess::members(root));
    for (;;)
    {
        visitLeaves(members, visitLeaf);
        if (!members.hasNext())
        {
            if (outer.empty())
                return;
            members = outer.top();
            outer.pop();
            continue;
        }
        const CFields& container = members.next();
        members.skip();
        visitContainer(container);
        fetchMembers(members.ahead(distance));
        CMemberCursor below(tFieldAccess::value(container).m_pFV);
        visitLeaves(below, visitLeaf);
        if (!below.atEnd())  // most containers hold leaves only, and are done here
        {
            outer.push(members);
            members = below;
        }
    }
}

std::uint64_t valueSize(const tSlot& value)
{
    switch (value.m_eType)
    {
    case DT_bool: return 1;
    case DT_sint:
    case DT_uint:
    case DT_double: return s_cnNumberSize;
    case DT_codelist: return view4Codes(value.m_bOwned, value.m_uValue.m_pData).size();
    default: return 0;
    }
}

}  // namespace

CBinaryWriter::CBinaryWriter(const ISaver& saver)
    : m_bIds((saver.m_ucStyle & SAVE_ID) != 0),
      m_bNames((saver.m_ucStyle & SAVE_NAME) != 0),
      m_bExpressions((saver.m_ucStyle & SAVE_PEI) != 0),
      m_bValues((saver.m_ucStyle & SAVE_VALUE) != 0),
      m_bComments((saver.m_ucStyle & SAVE_COMMENT) != 0),
      m_bSecondValue((saver.getSCBC() & (SCBC_SECOND_VALUE | SCBC_LOSSLESS)) != 0)
{
}

std::uint64_t CBinaryWriter::bodySize(const CFields& root) const
{
    std::uint64_t size = 0;
    forEachRecord(
        root, [&](const CFields& container) { size += s_cnEmptyContainer + namingSize(container); },
        [&](const CFields& leaf) { size += s_cnEmptyLeaf + savedValueSize(leaf) + namingSize(leaf); });
    return size;
}

void CBinaryWriter::write(CBodySink& sink, const CFields& root) const
{
    forEachRecord(
        root, [&](const CFields& container) { writeContainer(sink, container); },
        [&](const CFields& leaf) {
            if (isChosen(leaf))
                writeChosenLeaf(sink, leaf);
            else
                writeLeaf(sink, leaf, tFieldAccess::slot(leaf, VK_actual), tFieldAccess::pei(leaf));
        });
}

CBinaryWriter::tLeaf CBinaryWriter::chooseLeaf(const CFields& node) const
{
    if (!m_bExpressions)
        return {tFieldAccess::slot(node, VK_actual), {}};
    const tSavedValue saved = chooseSavedValue(node, m_bSecondValue);
    return {tFieldAccess::slot(node, saved.m_eKind), saved.m_tPEI};
}

/// Bytes of name and comments.
inline std::uint64_t CBinaryWriter::namingSize(const CFields& node) const
{
    std::uint64_t size = m_bNames ? tFieldAccess::name(node).size() : 0;
    if (m_bComments && tFieldAccess::sideRecord(node) != nullptr)
        size += commentSize(node);
    return size;
}

inline std::uint64_t CBinaryWriter::savedValueSize(const CFields& leaf) const
{
    if (!m_bValues)
        return 0;
    return valueSize(isChosen(leaf) ? chooseLeaf(leaf).m_tValue : tFieldAccess::slot(leaf, VK_actual));
}

std::uint64_t CBinaryWriter::commentSize(const CFields& node) const
{
    std::uint64_t size = 0;
    for (std::size_t position = 0; position < s_cnCommentCount; ++position)
        size += comment(node, position).size();
    return size;
}

void CBinaryWriter::writeContainer(CBodySink& sink, const CFields& node) const
{
    char* to = sink.room(s_cnLongestFixedPart);
    to = writeHead(to, tFieldAccess::type(node), node);
    to = writeNumber(to, memberCount(node));
    to = writeName(to, node);
    sink.take(writeComments(sink, to, node));
}

void CBinaryWriter::writeChosenLeaf(CBodySink& sink, const CFields& node) const
{
    const tLeaf leaf = chooseLeaf(node);
    writeLeaf(sink, node, leaf.m_tValue, leaf.m_tPEI);
}

inline void CBinaryWriter::writeLeaf(CBodySink& sink, const CFields& node, const tSlot& value,
                                     const tPacketExpInfo& pei) const
{
    char* to = sink.room(s_cnLongestFixedPart + s_cnShortCodes);
    to = writeHead(to, value.m_eType, node);
    to = writeExpression(to, pei);
    to = writeName(to, node);
    to = writeComments(sink, to, node);
    writeValue(sink, to, value);
}

inline char* CBinaryWriter::writeHead(char* to, E_DataType type, const CFields& node) const
{
    *to = static_cast<char>(type);
    return writeNumber<std::uint32_t>(to + s_cnTypeSize, m_bIds ? tFieldAccess::id(node) : 0);
}

inline char* CBinaryWriter::writeName(char* to, const CFields& node) const
{
    const std::string_view name = m_bNames ? tFieldAccess::name(node) : std::string_view();
    *to++ = static_cast<char>(name.size());
    if (name.empty())
        return to;
    // As one copy of up to 255 bytes, names take a fifth more time: g++ makes a slow instruction of it.
    if (name.size() < s_cnShortName)
        copyShort(to, name.data(), name.size());
    else
        std::memcpy(to, name.data(), name.size());
    return to + name.size();
}

/// \return where to go on; comments end the room that `to` lies in and begin a new one.
inline char* CBinaryWriter::writeComments(CBodySink& sink, char* to, const CFields& node) const
{
    if (!m_bComments || tFieldAccess::sideRecord(node) == nullptr)
    {
        std::memset(to, 0, s_cnNoComments);
        return to + s_cnNoComments;
    }
    for (std::size_t position = 0; position < s_cnCommentCount; ++position)
    {
        const std::string_view text = comment(node, position);
        to = writeNumber(to, static_cast<std::uint32_t>(text.size()));
        if (text.empty())
            continue;
        sink.take(to);
        sink.put(text);
        to = sink.room(s_cnLongestFixedPart + s_cnShortCodes);
    }
    return to;
}

inline void CBinaryWriter::writeValue(CBodySink& sink, char* to, const tSlot& value) const
{
    const E_DataType type = m_bValues ? value.m_eType : DT_null;
    switch (type)
    {
    case DT_bool:
        to = writeNumber<std::uint32_t>(to, 1);
        *to++ = value.m_uValue.m_bValue ? 1 : 0;
        break;
    case DT_sint:
    case DT_uint:
    case DT_double:
        to = writeNumber<std::uint32_t>(to, s_cnNumberSize);
        to = writeNumber(to, value.m_uValue.m_ullValue);
        break;
    case DT_codelist: writeCodes(sink, to, view4Codes(value.m_bOwned, value.m_uValue.m_pData)); return;
    default: to = writeNumber<std::uint32_t>(to, 0); break;
    }
    sink.take(to);
}

void CBinaryWriter::writeCodes(CBodySink& sink, char* to, std::string_view codes) const
{
    to = writeNumber(to, static_cast<std::uint32_t>(codes.size()));
    if (codes.size() > s_cnShortCodes)
    {
        sink.take(to);
        sink.put(codes);
        return;
    }
    if (!codes.empty())
        std::memcpy(to, codes.data(), codes.size());
    sink.take(to + codes.size());
}

}  // namespace murv::detail
