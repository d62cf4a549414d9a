// core/field_access.cpp - copying, moving and releasing the parts of a node.
//
// In each function the steps that may fail come first, so that a node is always whole. Trees are copied without
// recursion.
#include "core/field_access.h"

#include <cstring>
#include <utility>

#include "core/field_vector.h"
#include "core/member_cursor.h"
#include "core/memory/walk_stack.h"

namespace murv::detail
{

void tFieldAccess::releaseSideRecord(CFields& node) noexcept
{
    if (tSideRecord* const record = sideRecord(node))
    {
        releaseSlot(record->m_tSecond);
        delete record;
    }
}

void tFieldAccess::releaseSlot(const tSlot& slot) noexcept
{
    if (isContainer(slot.m_eType))
    {
        if (slot.m_uValue.m_pFV != nullptr)
            CFieldVector::destroy(slot.m_uValue.m_pFV);
    }
    else if (slot.m_eType == DT_codelist && slot.m_bOwned)
        std::free(const_cast<char*>(slot.m_uValue.m_pData));
}

void tFieldAccess::replaceSlot(CFields& node, E_ValueKind vk, const tSlot& fresh)
{
    if (vk == VK_actual)
    {
        replaceValue(node, fresh);
        return;
    }
    try
    {
        makeSideRecord(node);
    }
    catch (...)
    {
        releaseSlot(fresh);
        throw;
    }
    dropSecond(node);
    sideRecord(node)->m_tSecond = fresh;
}

void tFieldAccess::dropSecond(CFields& node) noexcept
{
    if (tSideRecord* const record = sideRecord(node))
        releaseSlot(std::exchange(record->m_tSecond, tSlot{}));
    setKind(node, VK_actual);
}

tSlot tFieldAccess::copySlot(const tSlot& slot)
{
    tSlot copy = slot;
    if (isContainer(slot.m_eType))
        copy.m_uValue.m_pFV = copyMembers(slot.m_uValue.m_pFV, slot.m_eType == DT_fields);
    else if (slot.m_eType == DT_codelist)
    {
        copy.m_bOwned = slot.m_bOwned && slot.m_uValue.m_pData != nullptr;
        if (copy.m_bOwned)
        {
            const std::string_view codes = view4Prefixed(slot.m_uValue.m_pData);
            copy.m_uValue.m_pData = duplicatePrefixedStream(codes.data(), static_cast<unsigned int>(codes.size()));
        }
    }
    return copy;
}

// The bytes of a number are kept under the other type. Those of a pointer never are, and no others become a pointer.
void tFieldAccess::alignSecond(CFields& node) noexcept
{
    if (kind(node) == VK_actual)
        return;
    const E_DataType held = type(node);
    if (isContainer(held))
    {
        dropSecond(node);
        return;
    }
    tSlot& second = sideRecord(node)->m_tSecond;
    if (second.m_eType == held)
        return;
    const tSlot before = std::exchange(second, tSlot{held, false, {}});
    releaseSlot(before);
    if (held == DT_codelist || before.m_eType == DT_codelist)
        return;
    second.m_uValue = before.m_uValue;
    if (held == DT_bool)
    {
        unsigned char first = 0;
        std::memcpy(&first, &before.m_uValue, sizeof first);
        second.m_uValue = boolValue(first != 0);
    }
}

void tFieldAccess::copySecond(CFields& to, const CFields& from)
{
    // The record comes first: if there were no memory for it, a string copied before would have no owner.
    tSideRecord& record = makeSideRecord(to);
    record.m_tSecond = copySlot(slot(from, VK_fix));
    setKind(to, kind(from));
}

// Inline, as copying arrays of numbers takes a tenth more instructions without.
inline void tFieldAccess::copyOwnValues(CFields& to, const CFields& from)
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

// Inline: without, copying a tree takes a tenth more instructions.
inline void tFieldAccess::copyParts(CFields& to, const CFields& from)
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

// Most members have none themselves, and take no step of the walk over the tree. That saves 1 to 3 percent of the
// instructions.
inline const CFieldVector* tFieldAccess::copyUpToContainer(CMemberCursor& from, CFieldVector& to)
{
    while (const CFields* const member = from.take())
    {
        copyParts(to.appendInPlace(), *member);
        const CFieldVector* const below = members(*member);
        if (below != nullptr && below->count() != 0)
            return below;
    }
    return nullptr;
}

CFieldVector* tFieldAccess::copyMembers(const CFieldVector* members, bool asFields)
{
    struct tFrame
    {
        CMemberCursor m_tFrom;
        CFieldVector* m_pTo = nullptr;
        CFields* m_pHolder = nullptr;  // of the copy; null for the outermost
    };
    if (members == nullptr || members->count() == 0)
        return CFieldVector::empty();
    CBlockPool pool;
    CFieldVector* outermost = CFieldVector::make(members->count(), pool);
    try
    {
        CWalkStack<tFrame> stack;
        stack.push({CMemberCursor(members), outermost, nullptr});
        while (!stack.empty())
        {
            tFrame& frame = stack.top();
            if (const CFieldVector* const below = copyUpToContainer(frame.m_tFrom, *frame.m_pTo))
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
    }
    catch (...)
    {
        CFieldVector::destroy(outermost);
        throw;
    }
    return outermost;
}

void tFieldAccess::setLongName(CFields& node, const char* name, unsigned int length)
{
    char* const block = duplicateStream(name, length);
    std::memcpy(node.m_acName, &block, sizeof block);
}

void tFieldAccess::swapNameWith(CFields& node, CFields& holder) noexcept
{
    CFieldVector* const set = owner(node);
    if (set != nullptr)
        set->beforeRename(node);
    swapNameParts(node, holder);
    if (set != nullptr)
        set->afterRename(node);
}

void tFieldAccess::rename(CFields& node, const char* name, unsigned int length)
{
    CFields holder;  // takes the old name, which is freed last: the new name may lie in it
    if (name != nullptr && length != 0)
        setFirstName(holder, name, length);
    swapNameWith(node, holder);
}

void tFieldAccess::take(CFields& to, CFields& from) noexcept
{
    CFieldVector* const toSet = owner(to);
    CFieldVector* const fromSet = owner(from);
    const bool toMember = isMember(to);
    const bool fromMember = isMember(from);
    if (fromSet != nullptr)
        fromSet->beforeRename(from);
    std::memcpy(static_cast<void*>(&to), static_cast<const void*>(&from), sizeof from);
    new (static_cast<void*>(&from)) CFields();
    setMember(to, toMember);
    setMember(from, fromMember);
    if (sideRecord(to) == nullptr)
        to.m_uiSideRecord = 0;
    if (tSideRecord* const record = sideRecord(to))
        record->m_tISA = {};  // the arguments of a running callback belong to the place, not to what moved there
    setOwner(to, toSet);
    setOwner(from, fromSet);
    if (fromSet != nullptr)
        fromSet->afterRename(from);
    if (toSet != nullptr)
        toSet->afterRename(to);
}

void tFieldAccess::swapComments(CFields& a, CFields& b) noexcept
{
    tSideRecord* const first = sideRecord(a);
    tSideRecord* const second = sideRecord(b);
    if (first == nullptr || second == nullptr)
        return;
    for (unsigned int pos = 0; pos < s_cuiCommentCount; ++pos)
        first->m_tComment[pos].swap(second->m_tComment[pos]);
    std::swap(first->m_bComment, second->m_bComment);
}

// One name at a time: an index may look at all members of its set, and must find each under the name that it knows.
void tFieldAccess::swapNames(CFields& a, CFields& b) noexcept
{
    CFieldVector* const aSet = owner(a);
    CFieldVector* const bSet = owner(b);
    CFields holder;
    if (aSet != nullptr)
        aSet->beforeRename(a);
    swapNameParts(a, holder);
    if (bSet != nullptr)
        bSet->beforeRename(b);
    swapNameParts(a, b);
    if (aSet != nullptr)
        aSet->afterRename(a);
    swapNameParts(b, holder);
    if (bSet != nullptr)
        bSet->afterRename(b);
}

void tFieldAccess::takeValues(CFields& to, CFields& from)
{
    const E_ValueKind kind4From = kind(from);
    if (kind4From != VK_actual)
        makeSideRecord(to);
    // Take them out of `from` first: `to` may hold it.
    const tSlot first = slot(from, VK_actual);
    const tSlot second = kind4From == VK_actual ? tSlot{} : std::exchange(sideRecord(from)->m_tSecond, tSlot{});
    setType(from, DT_null) = {};
    setKind(from, VK_actual);
    if (kind4From != VK_actual)
        dropSecond(to);
    replaceValue(to, first);
    setKind(to, kind4From);
    if (kind4From != VK_actual)
        sideRecord(to)->m_tSecond = second;
}

void tFieldAccess::takeAssigned(CFields& to, CFields& from)
{
    const bool bare = from.m_uiID == 0 && from.m_ucNameLen == 0 && from.m_tPEI.m_ucPrefixSize == 0 &&
                      from.m_tPEI.m_uiLength == 0 && from.pkt_GetOSA4User() == nullptr && from.m_iOffsetStart == 0 &&
                      from.m_iOffsetEnd == 0;
    if (bare)
        takeValues(to, from);
    else
        takeField(to, from);
}

void tFieldAccess::takeField(CFields& to, CFields& from)
{
    tSideRecord* const source = sideRecord(from);
    tSideRecord* const target = source != nullptr ? &makeSideRecord(to) : sideRecord(to);
    if (target != nullptr)
    {
        for (CHeapString& comment : target->m_tComment)
            CHeapString().swap(comment);
        target->m_bComment = false;
    }
    takeValues(to, from);
    if (from.m_uiID != 0)
        to.m_uiID = from.m_uiID;
    to.m_tPEI = from.m_tPEI;
    to.m_iOffsetStart = from.m_iOffsetStart;
    to.m_iOffsetEnd = from.m_iOffsetEnd;
    if (target != nullptr)
    {
        target->m_pOSA = source == nullptr ? nullptr : source->m_pOSA;
        target->m_bComment = source != nullptr && source->m_bComment;
        for (unsigned int pos = 0; source != nullptr && pos < s_cuiCommentCount; ++pos)
            target->m_tComment[pos].swap(source->m_tComment[pos]);
    }
    swapNameWith(to, from);
}

CFields& tFieldAccess::appendMember(CFields& set, const char* name, unsigned int nameLen, unsigned int id)
{
    CFieldVector*& members = set.m_uActValue.m_pFV;
    CFields& member = CFieldVector::append(members);
    if (nameLen >= 1 && nameLen <= s_cuiLongestName)
    {
        try
        {
            setFirstName(member, name, nameLen);
        }
        catch (...)
        {
            CFieldVector::erase(members, members->count() - 1, members->count());
            throw;
        }
    }
    member.setID(id);
    CFieldVector::enterLast(members);
    return member;
}

CFields& tFieldAccess::appendTo(CFieldVector*& members)
{
    return CFieldVector::append(members);
}

}  // namespace murv::detail
