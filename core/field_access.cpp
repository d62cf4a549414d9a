// core/field_access.cpp - moving and releasing the parts of a node.
//
// In each function the steps that may fail come first, so that a node is always whole.
#include "core/field_access.h"

#include <cstring>
#include <utility>

#include "core/field_vector.h"

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
    else if (slot.m_eType == DT_codelist && slot.m_bPooled)
    {
        CPoolReleaser releaser;
        freePooled(slot.m_uValue.m_pData, releaser);
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
