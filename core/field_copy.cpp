// core/field_copy.cpp - copies nodes and trees, without recursion.
//
// In each function the steps that may fail come first, so that a node is always whole.
#include <cstring>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/member_cursor.h"
#include "core/memory/walk_stack.h"

namespace murv::detail
{

tSlot tFieldAccess::copySlot(const tSlot& slot)
{
    tSlot copy = slot;
    if (isContainer(slot.m_eType))
        copy.m_uValue.m_pFV = copyMembers(slot.m_uValue.m_pFV, slot.m_eType == DT_fields);
    else if (slot.m_eType == DT_codelist)
    {
        copy.m_bOwned = slot.m_bOwned && slot.m_uValue.m_pData != nullptr;
        copy.m_bPooled = false;
        if (copy.m_bOwned)
        {
            const std::string_view codes = view4Prefixed(slot.m_uValue.m_pData);
            copy.m_uValue.m_pData = duplicatePrefixedStream(codes.data(), static_cast<unsigned int>(codes.size()));
        }
    }
    return copy;
}

void tFieldAccess::copySecond(CFields& to, const CFields& from)
{
    // The record comes first: if there were no memory for it, a string copied before would have no owner.
    tSideRecord& record = makeSideRecord(to);
    record.m_tSecond = copySlot(slot(from, VK_fix));
    setKind(to, kind(from));
}

void tFieldAccess::copyOwnValues(CFields& to, const CFields& from)
{
    const E_DataType held = type(from);
    if (isContainer(held))
        setType(to, held).m_pFV = CFieldVector::empty();
    else
        setSlot(to, VK_actual, copySlot(slot(from, VK_actual)));
    if (kind(from) != VK_actual) [[unlikely]]
        copySecond(to, from);
}

void tFieldAccess::copyMembersInto(CFields& to, const CFields& from)
{
    if (isContainer(from))
        to.m_uActValue.m_pFV = copyMembers(from.m_uActValue.m_pFV, type(from) == DT_fields);
}

void tFieldAccess::copyValues(CFields& to, const CFields& from)
{
    copyOwnValues(to, from);
    copyMembersInto(to, from);
}

void tFieldAccess::copyInto(CFields& to, const CFields& from)
{
    copyParts(to, from);
    copyMembersInto(to, from);
}

void tFieldAccess::copyParts(CFields& to, const CFields& from)
{
    copyOwnValues(to, from);
    to.m_uiID = from.m_uiID;
    to.m_tPEI = from.m_tPEI;
    to.m_iOffsetStart = from.m_iOffsetStart;
    to.m_iOffsetEnd = from.m_iOffsetEnd;
    if (hasLongName(from))
        setLongName(to, longName(from), from.m_ucNameLen);
    else
        std::memcpy(to.m_acName, from.m_acName, sizeof to.m_acName);
    to.m_ucNameLen = from.m_ucNameLen;
    const tSideRecord* const record = sideRecord(from);
    if (record == nullptr || (record->m_pOSA == nullptr && !record->m_bComment))
        return;
    tSideRecord& copy = makeSideRecord(to);
    copy.m_pOSA = record->m_pOSA;
    copy.m_bComment = record->m_bComment;
    for (unsigned int pos = 0; pos < s_cuiCommentCount; ++pos)
    {
        if (const char* const text = record->m_tComment[pos].get())
            copy.m_tComment[pos].setComment(text, static_cast<unsigned int>(std::strlen(text)));
    }
}

// Nearly all members are usual ones. Their copy is the bytes of the node with another string or an empty container:
// part by part, documents take 1.2 to 1.5 times as long to copy.
inline bool tFieldAccess::isUsual(const CFields& node)
{
    return (node.m_ucState & s_cuiKind) == VK_actual << s_cuiKindShift && sideRecord(node) == nullptr &&
           !hasLongName(node);
}

inline void tFieldAccess::appendUsual(CFieldVector& to, const CFields& from, CBlockPool& pool)
{
    uMultiValue value = from.m_uActValue;
    unsigned int state = from.m_ucState | s_cuiMember;
    if (isContainer(from))
        value.m_pFV = CFieldVector::empty();
    else if (isOwned(from))
    {
        state &= ~(s_cuiOwned | s_cuiPooled);
        if (value.m_pData != nullptr)
        {
            const std::string_view codes = view4Prefixed(value.m_pData);
            bool pooled = false;
            value.m_pData =
                duplicatePrefixedStream(pool, codes.data(), static_cast<unsigned int>(codes.size()), pooled);
            state |= s_cuiOwned | (pooled ? s_cuiPooled : 0u);
        }
    }
    CFields& node = to.appendBytes(from);
    node.m_uActValue = value;
    node.m_uiSideRecord = 0;
    node.m_ucState = static_cast<unsigned char>(state);
}

// Most members have none themselves, and take no step of the walk over the tree. That saves 1 to 3 percent of the
// instructions.
inline const CFieldVector* tFieldAccess::copyUpToContainer(CMemberCursor& from, CFieldVector& to, CBlockPool& pool)
{
    while (const CFields* const member = from.take())
    {
        if (isUsual(*member)) [[likely]]
            appendUsual(to, *member, pool);
        else
            copyParts(to.appendInPlace(), *member);
        const CFieldVector* const below = members(*member);
        if (below != nullptr && below->count() != 0)
            return below;
    }
    return nullptr;
}

namespace
{

struct tCopyFrame
{
    CMemberCursor m_tFrom;
    CFieldVector* m_pTo = nullptr;
    CFields* m_pHolder = nullptr;  // of the copy; null for the outermost
};
using tCopyStack = CWalkStack<tCopyFrame>;

/// Sees how far a copy is from its places in the containers that are open. Members of small ones are too different to
/// tell anything.
class CCopyForecast : public IPoolForecast
{
public:
    explicit CCopyForecast(const tCopyStack& stack) : m_tStack(stack)
    {
    }
    double partDone() const noexcept override
    {
        double done = 0;
        double part = 1;  // that one member is of all
        for (std::size_t i = 0; i != m_tStack.nearSize(); ++i)
        {
            const CMemberCursor& from = m_tStack.atNear(i).m_tFrom;
            if (from.count() < s_cuiAlikeFrom)
                continue;
            part /= from.count();
            done += part * (from.position() - 1);  // the last one is being copied
        }
        return done;
    }

private:
    static constexpr std::uint32_t s_cuiAlikeFrom = 16;

    const tCopyStack& m_tStack;
};

}  // namespace

CFieldVector* tFieldAccess::copyMembers(const CFieldVector* members, bool asFields)
{
    if (members == nullptr || members->count() == 0)
        return CFieldVector::empty();
    CBlockPool pool;
    CFieldVector* outermost = CFieldVector::make(members->count(), pool);
    try
    {
        tCopyStack stack;
        const CCopyForecast forecast(stack);
        pool.begin(&forecast);
        stack.push({CMemberCursor(members), outermost, nullptr});
        while (!stack.empty())
        {
            tCopyFrame& frame = stack.top();
            if (const CFieldVector* const below = copyUpToContainer(frame.m_tFrom, *frame.m_pTo, pool))
            {
                CFields& holder = frame.m_pTo->last();
                holder.m_uActValue.m_pFV = CFieldVector::make(below->count(), pool);
                stack.push({CMemberCursor(below), holder.m_uActValue.m_pFV, &holder});
                continue;
            }
            CFieldVector*& place = frame.m_pHolder == nullptr ? outermost : frame.m_pHolder->m_uActValue.m_pFV;
            if (frame.m_pHolder == nullptr ? asFields : type(*frame.m_pHolder) == DT_fields)
                CFieldVector::indexNames(place);
            stack.pop();
        }
        pool.close();
    }
    catch (...)
    {
        CFieldVector::destroy(outermost);
        throw;
    }
    return outermost;
}

}  // namespace murv::detail
