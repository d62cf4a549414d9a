// core/field_access.h - the library's own access to the parts of a node.
//
// Loaders, savers, packets and the tree itself work on nodes through these functions. So one place knows the layout of
// a node, and hot code does not pay for the checks of the public interface at every step.
#pragma once

#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

#include "core/heap_text.h"
#include "core/side_record.h"
#include "core/text/word_bytes.h"
#include "murv/fields.h"

namespace murv::detail
{

class CMemberCursor;

inline constexpr unsigned int s_cuiLongestName = 255;

struct tFieldAccess
{
    // The first value lies in the node. Its type, its owner and the value kind share one byte with the member mark, so
    // each setter leaves the other bits alone.

    static E_DataType type(const CFields& node)
    {
        return static_cast<E_DataType>(node.m_ucState & 7u);
    }
    static bool isContainer(const CFields& node)
    {
        return isContainer(type(node));
    }
    static bool isContainer(E_DataType type)
    {
        return type == DT_array || type == DT_fields;
    }
    static bool isPooled(const CFields& node)
    {
        return (node.m_ucState & s_cuiPooled) != 0;
    }
    static bool isOwned(const CFields& node)
    {
        return (node.m_ucState & s_cuiOwned) != 0;
    }
    static E_ValueKind kind(const CFields& node)
    {
        return static_cast<E_ValueKind>((node.m_ucState & s_cuiKind) >> s_cuiKindShift);
    }
    static void setKind(CFields& node, unsigned int kind)
    {
        node.m_ucState = static_cast<unsigned char>((node.m_ucState & ~s_cuiKind) | (kind << s_cuiKindShift));
    }
    /// Sets type and ownership of the first value. \return the value, for the caller to fill
    static uMultiValue& setType(CFields& node, E_DataType type, bool owned = false, bool pooled = false)
    {
        constexpr unsigned int others = s_cuiKind | s_cuiMember;
        node.m_ucState = static_cast<unsigned char>((node.m_ucState & others) | type | (owned ? s_cuiOwned : 0u) |
                                                    (pooled ? s_cuiPooled : 0u));
        return node.m_uActValue;
    }
    static uMultiValue& value(CFields& node)
    {
        return node.m_uActValue;
    }
    static const uMultiValue& value(const CFields& node)
    {
        return node.m_uActValue;
    }
    /// Bytes of a DT_codelist's first value.
    static std::string_view codes(const CFields& node)
    {
        return view4Codes(isOwned(node), node.m_uActValue.m_pData);
    }
    /// Either value in one form. The second one of a node without side record is DT_null.
    static tSlot slot(const CFields& node, E_ValueKind vk)
    {
        if (vk == VK_actual)
            return {type(node), isOwned(node), node.m_uActValue, isPooled(node)};
        const tSideRecord* const record = sideRecord(node);
        return record == nullptr ? tSlot{} : record->m_tSecond;
    }
    static E_DataType type(const CFields& node, E_ValueKind vk)
    {
        return vk == VK_actual ? type(node) : slot(node, vk).m_eType;
    }
    static void setSlot(CFields& node, E_ValueKind vk, const tSlot& slot)
    {
        if (vk == VK_actual)
            setType(node, slot.m_eType, slot.m_bOwned, slot.m_bPooled) = slot.m_uValue;
        else
            makeSideRecord(node).m_tSecond = slot;
    }

    /// Whether the node is in a vector. If not, it is below no other node.
    static bool isMember(const CFields& node)
    {
        return (node.m_ucState & s_cuiMember) != 0;
    }
    /// The mark belongs to the place of the node, not to its contents: moving a node leaves it where it is.
    static void setMember(CFields& node, bool isMember)
    {
        node.m_ucState = static_cast<unsigned char>((node.m_ucState & ~s_cuiMember) | (isMember ? s_cuiMember : 0u));
    }

    /// The members of a container; null for other nodes, and for a container that removeAll left without a vector.
    static CFieldVector* members(const CFields& node)
    {
        return isContainer(node) ? node.m_uActValue.m_pFV : nullptr;
    }

    // Name and ID. A name of up to 23 bytes lies in the node: with a block for each, documents with names take 1.3
    // times as long to load, twice to copy and three times to destroy. Who changes the name of a member must use
    // rename(): a name index may know it.

    /// A NUL follows the name, also when there is none.
    static std::string_view name(const CFields& node)
    {
        return {hasLongName(node) ? longName(node) : node.m_acName, node.m_ucNameLen};
    }
    static bool isNamed(const CFields& node, const char* text, unsigned int length)
    {
        if (node.m_ucNameLen != length)
            return false;
        if (hasLongName(node))
            return std::memcmp(longName(node), text, length) == 0;
        return equalShort(node.m_acName, text, length);
    }
    static constexpr bool isShortName(std::size_t length)
    {
        return length < CFields::s_cuiNameRoom;
    }
    /// Gives a node that has no name yet, and that no index knows, a name of 1 to 255 bytes.
    static void setFirstName(CFields& node, const char* name, unsigned int length)
    {
        if (isShortName(length))
            copyShort(node.m_acName, name, length);
        else
            setLongName(node, name, length);
        node.m_ucNameLen = static_cast<unsigned char>(length);
    }
    static unsigned int id(const CFields& node)
    {
        return node.m_uiID;
    }
    static void setId(CFields& node, unsigned int id)
    {
        node.m_uiID = id;
    }

    // Packet expression and offsets may be changed freely: nothing else depends on them.

    static tPacketExpInfo& pei(CFields& node)
    {
        return node.m_tPEI;
    }
    static const tPacketExpInfo& pei(const CFields& node)
    {
        return node.m_tPEI;
    }
    static void setOffsetStart(CFields& node, int start)
    {
        node.m_iOffsetStart = start;
    }
    static void setOffsetEnd(CFields& node, int end)
    {
        node.m_iOffsetEnd = end;
    }
    static void setOffsets(CFields& node, int start, int end)
    {
        node.m_iOffsetStart = start;
        node.m_iOffsetEnd = end;
    }

    /// Whether the node has nothing but a value, a name and an ID.
    static bool isBare(const CFields& node)
    {
        constexpr tPacketExpInfo none{};
        return (node.m_ucState & s_cuiKind) == VK_actual << s_cuiKindShift && sideRecord(node) == nullptr &&
               (node.m_iOffsetStart | node.m_iOffsetEnd) == 0 && std::memcmp(&node.m_tPEI, &none, sizeof none) == 0;
    }

    // The side record and the owner share one word of the node: see core/side_record.h.

    static tSideRecord* sideRecord(const CFields& node)
    {
        return (node.m_uiSideRecord & s_cuiOwnerTag) != 0 ? nullptr
                                                          : reinterpret_cast<tSideRecord*>(node.m_uiSideRecord);
    }
    static tSideRecord& makeSideRecord(CFields& node)
    {
        tSideRecord* record = sideRecord(node);
        if (record == nullptr)
        {
            CFieldVector* const set = owner(node);
            record = new tSideRecord;
            record->m_pOwner = set;
            node.m_uiSideRecord = reinterpret_cast<std::uintptr_t>(record);
        }
        return *record;
    }
    /// The large field set whose name index knows this node, or null.
    static CFieldVector* owner(const CFields& node)
    {
        if ((node.m_uiSideRecord & s_cuiOwnerTag) != 0)
            return reinterpret_cast<CFieldVector*>(node.m_uiSideRecord & ~s_cuiOwnerTag);
        return node.m_uiSideRecord == 0 ? nullptr : reinterpret_cast<tSideRecord*>(node.m_uiSideRecord)->m_pOwner;
    }
    static void setOwner(CFields& node, CFieldVector* set)
    {
        if (tSideRecord* const record = sideRecord(node))
            record->m_pOwner = set;
        else
            node.m_uiSideRecord = set == nullptr ? 0 : reinterpret_cast<std::uintptr_t>(set) | s_cuiOwnerTag;
    }

    // The public operations are built from these. They keep a node whole when memory runs out, and work when the new
    // parts come from below the old ones.

    /// Frees name, side record and a string value. The node is then raw memory.
    /// \return the members, which are not released, or null
    static CFieldVector* release(CFields& node)
    {
        CPoolReleaser releaser;
        return release(node, releaser);
    }
    /// The same for many nodes, which share the releaser.
    static CFieldVector* release(CFields& node, CPoolReleaser& releaser)
    {
        if (hasLongName(node))
            std::free(longName(node));
        if (node.m_uiSideRecord != 0)
            releaseSideRecord(node);
        const E_DataType held = type(node);
        if (held == DT_codelist && isPooled(node))
            freePooled(node.m_uActValue.m_pData, releaser);
        else if (held == DT_codelist && isOwned(node))
            std::free(const_cast<char*>(node.m_uActValue.m_pData));
        return isContainer(held) ? node.m_uActValue.m_pFV : nullptr;
    }
    /// Releases a slot's string or members.
    static void releaseSlot(const tSlot& slot) noexcept;
    /// Replaces the first value; the old one is released last, since the new one may come from below it.
    static void replaceValue(CFields& node, const tSlot& fresh) noexcept
    {
        const tSlot before = slot(node, VK_actual);
        setType(node, fresh.m_eType, fresh.m_bOwned, fresh.m_bPooled) = fresh.m_uValue;
        if (before.m_eType == DT_codelist || isContainer(before.m_eType))
            releaseSlot(before);
    }
    /// As above for either slot; writing the second one resets the value kind. Throws std::bad_alloc with nothing done
    /// and `fresh` released.
    static void replaceSlot(CFields& node, E_ValueKind vk, const tSlot& fresh);
    /// Empties the second slot and resets the value kind.
    static void dropSecond(CFields& node) noexcept;
    /// A copy of a slot's value that shares nothing with it, members included.
    static tSlot copySlot(const tSlot& slot);
    /// The same for the members of a container; `asFields` gives large ones a name index.
    static CFieldVector* copyMembers(const CFieldVector* members, bool asFields);
    /// Fills a node in the basic state with a copy of the source's values and value kind, or of the whole source. Each
    /// value keeps its own type; a second value that is not marked is left out.
    static void copyValues(CFields& to, const CFields& from);
    static void copyInto(CFields& to, const CFields& from);
    /// Gives a marked second value the type of the first, as setValue(const CFields&) does; a container loses it.
    static void alignSecond(CFields& node) noexcept;
    /// Exchange comments (both nodes have a side record, or neither has comments) and names.
    static void swapComments(CFields& a, CFields& b) noexcept;
    static void swapNames(CFields& a, CFields& b) noexcept;
    /// Renames a node, and updates the name index of a large set. `name` may be null for none.
    static void rename(CFields& node, const char* name, unsigned int length);
    /// Moves all parts into a node in the basic state, and leaves `from` in the basic state. Both keep their
    /// owners.
    static void take(CFields& to, CFields& from) noexcept;
    /// Moves values and value kind into `to`; the rest stays.
    static void takeValues(CFields& to, CFields& from);
    /// Moves the values of a bare value, or the whole of any other node, into `to`: what assignment does.
    static void takeAssigned(CFields& to, CFields& from);
    /// Moves the whole node into `to` as setField copies it.
    static void takeField(CFields& to, CFields& from);
    /// Appends a node in the basic state to a container that has a vector, for the caller to fill.
    static CFields& append(CFields& container)
    {
        return appendTo(container.m_uActValue.m_pFV);
    }

    /// Appends a member with a name of up to 255 bytes (0 or more than that for none) and an ID (invalid for none) to a
    /// field set that has a vector, whatever members it has.
    static CFields& appendMember(CFields& set, const char* name, unsigned int nameLen, unsigned int id);

    static constexpr unsigned int s_cuiOwned = 8;
    static constexpr unsigned int s_cuiKind = 0x30;
    static constexpr unsigned int s_cuiKindShift = 4;
    static constexpr unsigned int s_cuiMember = 0x40;
    static constexpr unsigned int s_cuiPooled = 0x80;
    static constexpr std::uintptr_t s_cuiOwnerTag = 1;

private:
    static bool hasLongName(const CFields& node)
    {
        return node.m_ucNameLen >= CFields::s_cuiNameRoom;
    }
    static char* longName(const CFields& node)
    {
        char* block = nullptr;
        std::memcpy(&block, node.m_acName, sizeof block);
        return block;
    }
    static void setLongName(CFields& node, const char* name, unsigned int length);
    /// Leaves name indexes alone.
    static void swapNameParts(CFields& a, CFields& b) noexcept
    {
        std::swap(a.m_acName, b.m_acName);
        std::swap(a.m_ucNameLen, b.m_ucNameLen);
    }
    /// Exchanges the name of a node with that of one that no index knows.
    static void swapNameWith(CFields& node, CFields& holder) noexcept;
    static void releaseSideRecord(CFields& node) noexcept;
    /// Values and the other parts, except members: a container copies as an empty one.
    static void copyParts(CFields& to, const CFields& from);
    /// Whether a node has one value, no side record and no long name.
    static bool isUsual(const CFields& node);
    /// Appends a copy of such a node; a container copies as an empty one.
    static void appendUsual(CFieldVector& to, const CFields& from, CBlockPool& pool);
    static void copyOwnValues(CFields& to, const CFields& from);
    static void copySecond(CFields& to, const CFields& from);
    /// Copies members in order, up to the first that has members. \return those, which are not copied, or null
    static const CFieldVector* copyUpToContainer(CMemberCursor& from, CFieldVector& to, CBlockPool& pool);
    static void copyMembersInto(CFields& to, const CFields& from);
    static CFields& appendTo(CFieldVector*& members);
};

}  // namespace murv::detail
