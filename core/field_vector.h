// core/field_vector.h - the members of a field set or an array.
//
// Members are nodes side by side in blocks. A small vector is one block; when it is full, a head is put before it that
// lists further blocks of doubling size, so that no node ever moves while others are appended and any member is found
// from its index in constant time. An empty vector costs nothing: all share one. Large field sets carry a name index,
// which every change keeps exact, so that looking up never changes anything.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "core/field_access.h"
#include "core/memory/block_pool.h"
#include "core/name_index.h"
#include "murv/fields.h"

namespace murv
{

class alignas(CFields) CFieldVector
{
public:
    /// A field set with this many members has a name index.
    static constexpr std::uint32_t s_cuiIndexFrom = 64;
    static constexpr std::uint32_t s_cuiCountLimit = 0xFFFFFFF0;

    /// Nodes that lie side by side.
    struct tRun
    {
        CFields* m_pBegin;
        CFields* m_pEnd;
    };

    /// The vector without members; shared by all and never freed.
    static CFieldVector* empty() noexcept
    {
        return &s_tEmpty;
    }
    /// A vector of one block without members yet, which comes from the pool when it may; throws std::bad_alloc.
    static CFieldVector* make(std::uint32_t room, detail::CBlockPool& pool)
    {
        const std::uint64_t size = s_cnHeadSize + std::uint64_t{room} * sizeof(CFields);
        char* const block = room > s_cuiPooledRoom ? nullptr : pool.take(static_cast<std::size_t>(size));
        if (block == nullptr)
            return make(room);
        const auto distance = static_cast<std::uint32_t>(pool.distance(block) / detail::CBlockPool::s_cnAlignment);
        return new (block) CFieldVector(0, s_cuiPooled | distance << s_cuiDistanceShift | room);
    }
    static CFieldVector* make(std::uint32_t room);

    /// \name A block in someone else's memory
    /// The loaders build members on a stack of their own before they know how many there will be.
    /// @{
    static constexpr std::size_t s_cnHeadSize = 8;
    static CFieldVector* placeAt(void* memory) noexcept
    {
        return new (memory) CFieldVector(0, 0);
    }
    /// Appends a node in the basic state; the caller knows that there is room after the last one.
    CFields& appendInPlace() noexcept
    {
        CFields* const node = new (static_cast<void*>(first() + m_uiCount++)) CFields();
        detail::tFieldAccess::setMember(*node, true);
        return *node;
    }
    /// The same for a copy of a node's bytes, which the caller makes a node of its own.
    CFields& appendBytes(const CFields& source) noexcept
    {
        return *static_cast<CFields*>(
            std::memcpy(static_cast<void*>(first() + m_uiCount++), static_cast<const void*>(&source), sizeof source));
    }
    /// Moves the members into a block of their own, leaving this one without any. Throws std::bad_alloc.
    CFieldVector* moveOut(detail::CBlockPool& pool)
    {
        if (m_uiCount == 0)
            return empty();
        CFieldVector* const own = make(m_uiCount, pool);
        // Nodes are relocated as bytes, one by one: mostly they are few.
        const CFields* const end = first() + m_uiCount;
        CFields* to = own->first();
        for (const CFields* from = first(); from != end; ++from, ++to)
            std::memcpy(static_cast<void*>(to), static_cast<const void*>(from), sizeof(CFields));
        own->m_uiCount = std::exchange(m_uiCount, 0);
        if (own->isPooled())
            own->m_uiRoom |= s_cuiLoaded;
        return own;
    }
    /// Releases the members, but not the block.
    void releaseInPlace() noexcept;
    /// @}

    std::uint32_t count() const noexcept
    {
        return m_uiCount;
    }
    CFields& at(std::uint32_t index) const noexcept;
    /// The run of members that begins at `index`, which must exist. Inline, as walks ask for it once per container.
    tRun run(std::uint32_t index) const noexcept
    {
        return isSmall() ? tRun{first() + index, first() + m_uiCount} : runInLarge(index);
    }
    CFields& last() const noexcept
    {
        return at(m_uiCount - 1);
    }

    /// Position of the first member of that name, or CNameIndex::s_cuiNone.
    std::uint32_t find(const char* name, unsigned int length) const noexcept
    {
        if (!isSmall())
            return findInLarge(name, length);
        for (std::uint32_t i = 0; i < m_uiCount; ++i)
        {
            if (detail::tFieldAccess::isNamed(first()[i], name, length))
                return i;
        }
        return detail::CNameIndex::s_cuiNone;
    }

    /// Appends a node in the basic state. `self` may be replaced. Throws std::bad_alloc.
    static CFields& append(CFieldVector*& self)
    {
        return self->isSmall() && self->m_uiCount < self->room() ? self->appendInPlace() : appendBeyond(self);
    }
    /// Whether the node lies in one of the blocks. Cost: the number of blocks, which grow.
    bool isMember(const CFields& node) const noexcept;
    /// To be called when the last member was appended to a field set and has its name. `self` may be replaced. Throws
    /// nothing: without memory there is no index, and look-ups scan.
    static void enterLast(CFieldVector*& self) noexcept;
    /// Builds the name index that enterLast would have built. `self` may be replaced.
    /// \param ready  an index that holds all members already; null when there is none
    static void indexNames(CFieldVector*& self, std::unique_ptr<detail::CNameIndex> ready = nullptr) noexcept
    {
        if (self->m_uiCount >= s_cuiIndexFrom)
            indexManyNames(self, std::move(ready));
    }

    /// Removes the members from `first` to before `last`. `self` may be replaced.
    static void erase(CFieldVector*& self, std::uint32_t first, std::uint32_t last) noexcept;

    /// To be called around the change of a member's name, for members that have an owner.
    void beforeRename(const CFields& member) noexcept;
    void afterRename(const CFields& member) noexcept;

    /// Releases all members, whatever their depth, without recursion and without taking memory.
    static void destroy(CFieldVector* self) noexcept;

private:
    static constexpr std::uint32_t s_cuiLarge = 0xFFFFFFFF;
    static constexpr std::uint32_t s_cuiPooled = 0x80000000;  // with the distance from the piece's begin, and the room
    static constexpr std::uint32_t s_cuiDistanceShift = 13;
    static constexpr std::uint32_t s_cuiLoaded = 0x1000;  // of a pooled block: those below it were taken before it
    static constexpr std::uint32_t s_cuiPooledRoom = 0x0FFF;
    static_assert(detail::CBlockPool::s_cnLongestPiece / detail::CBlockPool::s_cnAlignment <= s_cuiPooled >>
                  s_cuiDistanceShift);
    static constexpr std::uint32_t s_cuiFirstRoom = 4;
    static constexpr std::uint32_t s_cuiInlineSegments = 4;
    static constexpr std::uint32_t s_cuiSegmentLimit = 32;

    struct tLarge;

    constexpr CFieldVector(std::uint32_t count, std::uint32_t room) : m_uiCount(count), m_uiRoom(room)
    {
    }
    bool isSmall() const noexcept
    {
        return m_uiRoom != s_cuiLarge;
    }
    bool isPooled() const noexcept
    {
        return (m_uiRoom & s_cuiPooled) != 0;
    }
    /// Of a small vector.
    std::uint32_t room() const noexcept
    {
        return isPooled() ? m_uiRoom & s_cuiPooledRoom : m_uiRoom;
    }
    /// The piece that a pooled block lies in.
    detail::CBlockPool::tPiece* piece() noexcept
    {
        const std::size_t distance = (m_uiRoom & ~s_cuiPooled) >> s_cuiDistanceShift;
        char* const begin = reinterpret_cast<char*>(this) - distance * detail::CBlockPool::s_cnAlignment;
        return reinterpret_cast<detail::CBlockPool::tPiece*>(begin);
    }
    /// A small vector's nodes follow its head.
    CFields* first() const noexcept
    {
        return reinterpret_cast<CFields*>(reinterpret_cast<char*>(const_cast<CFieldVector*>(this)) + s_cnHeadSize);
    }
    tLarge& large() const noexcept;
    std::uint32_t position(const CFields& member) const noexcept;
    tRun runInLarge(std::uint32_t index) const noexcept;
    std::uint32_t findInLarge(const char* name, unsigned int length) const noexcept;
    static CFields& appendBeyond(CFieldVector*& self);
    static tLarge* grow(CFieldVector* self);
    struct tDestroyed;
    bool liesAfterMembers() const noexcept;
    tRun runBefore(std::uint32_t index) const noexcept;
    static void freeBlocks(CFieldVector* self, detail::CPoolReleaser& releaser) noexcept;
    static void indexManyNames(CFieldVector*& self, std::unique_ptr<detail::CNameIndex> ready) noexcept;
    std::unique_ptr<detail::CNameIndex> makeIndex() const noexcept;
    void adoptIndex(std::unique_ptr<detail::CNameIndex> index) noexcept;
    void dropIndex() noexcept;
    void closeGap(std::uint32_t first, std::uint32_t last) noexcept;

    static CFieldVector s_tEmpty;

    std::uint32_t m_uiCount;
    std::uint32_t m_uiRoom;  // nodes that the one block holds, or s_cuiLarge, or as s_cuiPooled says
};

static_assert(sizeof(CFieldVector) == CFieldVector::s_cnHeadSize, "nodes follow the head without a gap");

/// The head of a vector of several blocks.
struct CFieldVector::tLarge : CFieldVector
{
    explicit tLarge(CFieldVector* firstBlock) noexcept;

    /// Where a member lies: in which segment, and how far from its begin.
    struct tSpot
    {
        std::uint32_t m_uiStep;
        std::uint32_t m_uiOffset;
    };

    tSpot spot(std::uint32_t index) const noexcept
    {
        if (index < m_uiFirstRoom)
            return {0, index};
        // The segments after the first block hold 1, 2, 4... parts: the top bit of the part's number is the segment.
        const std::uint32_t beyond = index - m_uiFirstRoom;
        const std::uint32_t part = (beyond >> m_uiShift) + 1;
        return {static_cast<std::uint32_t>(std::bit_width(part)), beyond - ((std::bit_floor(part) - 1) << m_uiShift)};
    }
    CFields& at(std::uint32_t index) const noexcept
    {
        const tSpot place = spot(index);
        return m_pSegment[place.m_uiStep][place.m_uiOffset];
    }
    std::uint64_t segmentRoom(std::uint32_t step) const noexcept
    {
        return step == 0 ? m_uiFirstRoom : std::uint64_t{1} << (m_uiShift + step - 1);
    }
    std::uint64_t room() const noexcept;
    void addSegment();

    std::uint32_t m_uiFirstRoom;
    std::uint32_t m_uiShift;  // the second segment has 2^shift nodes, each further one twice as many
    std::uint32_t m_uiSegments = 1;
    CFieldVector* m_pFirstBlock;  // owned: the small vector that this began as
    CFields** m_pSegment = m_pInline;
    CFields* m_pInline[s_cuiInlineSegments] = {};
    detail::CNameIndex* m_pIndex = nullptr;  // owned
};

inline CFieldVector::tLarge& CFieldVector::large() const noexcept
{
    return static_cast<tLarge&>(const_cast<CFieldVector&>(*this));
}

inline CFields& CFieldVector::at(std::uint32_t index) const noexcept
{
    return isSmall() ? first()[index] : large().at(index);
}

namespace detail
{

/// Makes the node an empty container of that type.
inline void makeContainer(CFields& node, E_DataType type)
{
    tSlot slot{type, false, {}};
    slot.m_uValue.m_pFV = CFieldVector::empty();
    tFieldAccess::replaceValue(node, slot);
}

inline std::uint32_t memberCount(const CFields& node)
{
    const CFieldVector* const members = tFieldAccess::members(node);
    return members == nullptr ? 0 : members->count();
}

}  // namespace detail
}  // namespace murv
