// io/member_builder.h - fills one container while its text or records are read.
//
// Knows how many members there are and which names, so that adding one neither scans the others nor moves them. The
// container is an ordinary node all the time: the block that its members lie in is on the loader's stack at first.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "core/field_vector.h"
#include "io/ids/id_index.h"
#include "io/node_stack.h"

namespace murv::detail
{

class CMemberBuilder
{
public:
    /// \param node    an empty container that has a vector; stays where it is as long as this lives
    /// \param follow  a pointer to some node that is kept right when members move; not owned
    /// \param opened  the moment, as the ID index counts
    CMemberBuilder(CNodeStack& stack, CFields& node, CFields*& follow, std::uint32_t opened) noexcept
        : m_tStack(stack), m_tNode(node), m_pFollow(follow), m_pBegin(stack.top()), m_uiOpened(opened)
    {
        if (m_tStack.take(CFieldVector::s_cnHeadSize))
            members() = CFieldVector::placeAt(m_pBegin);
        else
            m_pBegin = nullptr;
    }
    CMemberBuilder(const CMemberBuilder&) = delete;
    CMemberBuilder& operator=(const CMemberBuilder&) = delete;
    /// Closes a container that was not closed; without memory it loses its members.
    ~CMemberBuilder()
    {
        if (m_bOpen)
            abandon();
    }

    CFields& node() const noexcept
    {
        return m_tNode;
    }
    /// When the container was opened, as the ID index counts.
    std::uint32_t opened() const noexcept
    {
        return m_uiOpened;
    }
    /// Tells where the container lies: in an open one, or anywhere in a container that holds IDs.
    void setPlace(CMemberBuilder* outer, tNodePlace place) noexcept
    {
        m_pOuter = outer;
        m_tPlace = place;
    }
    /// Number of the container, which it has as soon as there is an ID below it.
    std::uint32_t number() const noexcept
    {
        return m_uiNumber;
    }
    /// As above; gives it a number if it has none. Throws std::bad_alloc.
    std::uint32_t makeNumber(CIdIndex& index);
    std::uint32_t count() const noexcept
    {
        return members()->count();
    }
    CFields& at(std::uint32_t position) const noexcept
    {
        return members()->at(position);
    }
    /// Position of the first member of that name (not empty), or CNameIndex::s_cuiNone. O(1) on average.
    std::uint32_t find(std::string_view name)
    {
        const CFieldVector& known = *members();
        if (known.count() > s_cuiScan)
            return findInMany(name);
        return known.find(name.data(), static_cast<unsigned int>(name.size()));
    }
    /// Appends a member; a name of more than 255 bytes is left out.
    CFields& append(std::string_view name, unsigned int id)
    {
        CFields& member = appendElement();
        if (!name.empty() && name.size() <= s_cuiLongestName)
        {
            tFieldAccess::setFirstName(member, name.data(), static_cast<unsigned int>(name.size()));
            if (members()->count() > s_cuiScan)
                enter(name);
        }
        if (id != 0)
            member.setID(id);
        return member;
    }
    /// Appends a member where it is quickly seen that none has that name: among few, by a short name. That is most
    /// members of most documents, which load in 0.9 to 0.96 of the time with it.
    /// \return null when it is not
    CFields* appendNew(std::string_view name)
    {
        const CFieldVector& known = *members();
        const auto length = static_cast<unsigned int>(name.size());
        if (known.count() >= s_cuiScan || length == 0 || !tFieldAccess::isShortName(name.size()) ||
            known.find(name.data(), length) != CNameIndex::s_cuiNone)
            return nullptr;
        CFields& member = appendElement();
        tFieldAccess::setFirstName(member, name.data(), length);
        return &member;
    }
    /// Appends a member without name and ID.
    CFields& appendElement()
    {
        if (m_pBegin != nullptr && members()->count() != s_cuiOnStack && m_tStack.take(sizeof(CFields)))
            return members()->appendInPlace();
        return appendBeyond();
    }
    /// From here on members stay where they are even when the container ends.
    void pin()
    {
        if (m_pBegin != nullptr)
            moveToHeap();
    }
    /// Puts the members into their final place.
    void close()
    {
        pin();
        m_bOpen = false;
        if (members()->count() >= CFieldVector::s_cuiIndexFrom)
            closeLarge();
    }

private:
    static constexpr std::uint32_t s_cuiOnStack = 4095;  // more, which no block of a pool has room for, have their own
    static constexpr std::uint32_t s_cuiScan = 8;        // up to this many members, all names are compared
    static constexpr std::uint32_t s_cuiFiltered = 64;   // up to this many, only if the filter may know the name
    static constexpr std::uint32_t s_cuiFilterWords = 8;

    CFieldVector*& members() const noexcept
    {
        return tFieldAccess::value(m_tNode).m_pFV;
    }
    void abandon() noexcept;
    CFields& appendBeyond();
    std::uint32_t findInMany(std::string_view name);
    void moveToHeap();
    void enter(std::string_view name);
    void makeIndex();
    void closeLarge();
    // The filter: one bit for each name that is known. Several names may share one, as it only saves scans that are
    // short whatever the names are. Where most containers have 9 to 64 members, loading takes 1.06 to 1.09 times as
    // long with scans alone, and 1.3 to 1.6 times with an index.
    static std::uint32_t bit4Name(std::string_view name) noexcept;
    void filter(std::string_view name) noexcept;
    bool mayKnow(std::string_view name) const noexcept;

    CNodeStack& m_tStack;
    CFields& m_tNode;
    CFields*& m_pFollow;
    char* m_pBegin;  // on the stack; null when the members have blocks of their own
    std::uint32_t m_uiOpened;
    CMemberBuilder* m_pOuter = nullptr;  // of the container that this one lies in when its place has no set; not owned
    tNodePlace m_tPlace;
    std::uint32_t m_uiNumber = s_cuiNoPlace;
    bool m_bOpen = true;
    bool m_bFiltered = false;                     // the filter knows all names
    std::uint64_t m_ullFilter[s_cuiFilterWords];  // set once m_bFiltered
    std::unique_ptr<CNameIndex> m_pIndex;
};

}  // namespace murv::detail
