// core/field_vector.cpp - members in blocks that never move.
//
// The head of a vector may be replaced when it grows; the nodes stay, and with them every reference to a member.
#include "core/field_vector.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <new>

#include "core/member_cursor.h"
#include "core/memory/heap_block.h"
#include "core/memory/large_block.h"

namespace murv
{

using detail::CMemberCursor;
using detail::CNameIndex;
using detail::hash4Name;
using detail::tFieldAccess;

namespace
{
constexpr std::uint32_t s_cuiShortestShift = 3;

void* allot(std::uint64_t size)
{
    void* const block = detail::allocateBlock(size);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

/// Nodes are relocated as bytes: no part of a node points to the node itself.
void relocate(CFields* to, const CFields* from, std::size_t count) noexcept
{
    std::memmove(static_cast<void*>(to), static_cast<const void*>(from), count * sizeof(CFields));
}

std::uint32_t hash4Member(const CFields& member) noexcept
{
    const std::string_view name = tFieldAccess::name(member);
    return hash4Name(name.data(), static_cast<unsigned int>(name.size()));
}
}  // namespace

CFieldVector CFieldVector::s_tEmpty(0, 0);

CFieldVector* CFieldVector::make(std::uint32_t room)
{
    if (room >= s_cuiPooled)
        throw std::bad_alloc();  // a block of 128 GB, which nobody has
    void* const block = detail::allocateExact(s_cnHeadSize + std::uint64_t{room} * sizeof(CFields));
    if (block == nullptr)
        throw std::bad_alloc();
    return new (block) CFieldVector(0, room);
}

void CFieldVector::releaseInPlace() noexcept
{
    for (std::uint32_t i = 0; i < m_uiCount; ++i)
    {
        if (CFieldVector* const below = tFieldAccess::release(first()[i]))
            destroy(below);
    }
    m_uiCount = 0;
}

CFieldVector::tRun CFieldVector::runInLarge(std::uint32_t index) const noexcept
{
    const tLarge& head = large();
    const tLarge::tSpot place = head.spot(index);
    CFields* const begin = head.m_pSegment[place.m_uiStep];
    const std::uint64_t end =
        std::min(head.segmentRoom(place.m_uiStep), std::uint64_t{place.m_uiOffset} + (m_uiCount - index));
    return {begin + place.m_uiOffset, begin + end};
}

bool CFieldVector::isMember(const CFields& node) const noexcept
{
    const std::less<> isBefore;
    for (std::uint32_t at = 0; at < m_uiCount;)
    {
        const tRun block = run(at);
        if (!isBefore(&node, block.m_pBegin) && isBefore(&node, block.m_pEnd))
            return true;
        at += static_cast<std::uint32_t>(block.m_pEnd - block.m_pBegin);
    }
    return false;
}

std::uint32_t CFieldVector::findInLarge(const char* name, unsigned int length) const noexcept
{
    if (large().m_pIndex != nullptr)
        return large().m_pIndex->find(*this, name, length, hash4Name(name, length));
    CMemberCursor cursor(this);
    for (std::uint32_t i = 0; const CFields* const member = cursor.take(); ++i)
    {
        if (tFieldAccess::isNamed(*member, name, length))
            return i;
    }
    return CNameIndex::s_cuiNone;
}

CFieldVector::tLarge::tLarge(CFieldVector* firstBlock) noexcept
    : CFieldVector(firstBlock->m_uiCount, s_cuiLarge),
      m_uiFirstRoom(firstBlock->room()),
      m_uiShift(std::max(s_cuiShortestShift, static_cast<std::uint32_t>(std::bit_width(firstBlock->room() - 1)))),
      m_pFirstBlock(firstBlock)
{
    m_pInline[0] = firstBlock->first();
}

std::uint64_t CFieldVector::tLarge::room() const noexcept
{
    return std::uint64_t{m_uiFirstRoom} + (((std::uint64_t{1} << (m_uiSegments - 1)) - 1) << m_uiShift);
}

void CFieldVector::tLarge::addSegment()
{
    if (m_uiSegments == s_cuiSegmentLimit)
        throw std::bad_alloc();
    if (m_uiSegments == s_cuiInlineSegments && m_pSegment == m_pInline)
    {
        auto** const list = static_cast<CFields**>(allot(s_cuiSegmentLimit * sizeof(void*)));
        std::copy_n(m_pInline, s_cuiInlineSegments, list);
        m_pSegment = list;
    }
    static_assert(std::has_single_bit(sizeof(CFields)));  // and so the size of each segment
    void* const segment = detail::allocateLarge(segmentRoom(m_uiSegments) * sizeof(CFields));
    if (segment == nullptr)
        throw std::bad_alloc();
    m_pSegment[m_uiSegments] = static_cast<CFields*>(segment);
    ++m_uiSegments;
}

CFieldVector::tLarge* CFieldVector::grow(CFieldVector* self)
{
    return self->isSmall() ? new tLarge(self) : &self->large();
}

CFields& CFieldVector::appendBeyond(CFieldVector*& self)
{
    if (self->m_uiCount >= s_cuiCountLimit)
        throw std::bad_alloc();
    if (self->m_uiRoom == 0)
    {
        self = make(s_cuiFirstRoom);
        return self->appendInPlace();
    }
    tLarge* const head = grow(self);
    self = head;
    if (head->m_uiCount == head->room())
        head->addSegment();
    CFields* const node = new (static_cast<void*>(&head->at(head->m_uiCount))) CFields();
    tFieldAccess::setMember(*node, true);
    ++head->m_uiCount;
    if (head->m_pIndex != nullptr)
        tFieldAccess::setOwner(*node, head);
    return *node;
}

void CFieldVector::enterLast(CFieldVector*& self) noexcept
{
    // A set that has shrunk below the size at which an index is made keeps the one it has.
    if (self->isSmall() || self->large().m_pIndex == nullptr)
        indexNames(self);
    else if (const CFields& node = self->last(); !tFieldAccess::name(node).empty())
    {
        if (!self->large().m_pIndex->insert(*self, self->m_uiCount - 1, hash4Member(node)))
            self->dropIndex();
    }
}

void CFieldVector::indexManyNames(CFieldVector*& self, std::unique_ptr<CNameIndex> ready) noexcept
{
    std::unique_ptr<CNameIndex> index = ready != nullptr ? std::move(ready) : self->makeIndex();
    if (index == nullptr)
        return;
    if (self->isSmall())
    {
        tLarge* const head = new (std::nothrow) tLarge(self);
        if (head == nullptr)
            return;
        self = head;
    }
    self->adoptIndex(std::move(index));
}

/// Null when there is no memory for it.
std::unique_ptr<CNameIndex> CFieldVector::makeIndex() const noexcept
{
    std::unique_ptr<CNameIndex> index(new (std::nothrow) CNameIndex);
    if (index != nullptr && !index->build(*this))
        index.reset();
    return index;
}

void CFieldVector::adoptIndex(std::unique_ptr<CNameIndex> index) noexcept
{
    dropIndex();
    large().m_pIndex = index.release();
    detail::forEachMember(this, [this](CFields& node) { tFieldAccess::setOwner(node, this); });
}

void CFieldVector::dropIndex() noexcept
{
    delete large().m_pIndex;
    large().m_pIndex = nullptr;
}

void CFieldVector::erase(CFieldVector*& self, std::uint32_t first, std::uint32_t last) noexcept
{
    CNameIndex* const index = self->isSmall() ? nullptr : self->large().m_pIndex;
    const bool rebuild = index != nullptr && last - first > 1;
    for (std::uint32_t i = first; i < last; ++i)
    {
        CFields& node = self->at(i);
        if (index != nullptr && !rebuild && !tFieldAccess::name(node).empty())
            index->remove(*self, i, hash4Member(node), true);
        if (CFieldVector* const below = tFieldAccess::release(node))
            destroy(below);
    }
    self->closeGap(first, last);
    if (self->m_uiCount == 0)
    {
        detail::CPoolReleaser releaser;
        freeBlocks(self, releaser);
        self = empty();
    }
    else if (rebuild)
    {
        self->dropIndex();
        indexNames(self);
    }
    else if (index != nullptr && first < self->m_uiCount)
        index->shiftAfter(first);
}

void CFieldVector::closeGap(std::uint32_t first, std::uint32_t last) noexcept
{
    std::uint32_t to = first;
    for (std::uint32_t from = last; from < m_uiCount;)
    {
        // The last run's end is the end of the members, so that a target run is as long as its block allows.
        const tRun source = run(from);
        const tRun target = run(to);
        const auto count =
            static_cast<std::uint32_t>(std::min(source.m_pEnd - source.m_pBegin, target.m_pEnd - target.m_pBegin));
        relocate(target.m_pBegin, source.m_pBegin, count);
        from += count;
        to += count;
    }
    m_uiCount = to;
}

std::uint32_t CFieldVector::position(const CFields& member) const noexcept
{
    std::uint32_t before = 0;
    for (std::uint32_t step = 0;; ++step)
    {
        const CFields* const segment = large().m_pSegment[step];
        const auto room = static_cast<std::size_t>(large().segmentRoom(step));
        if (!std::less<const CFields*>()(&member, segment) && std::less<const CFields*>()(&member, segment + room))
            return before + static_cast<std::uint32_t>(&member - segment);
        before += static_cast<std::uint32_t>(room);
    }
}

void CFieldVector::beforeRename(const CFields& member) noexcept
{
    CNameIndex* const index = large().m_pIndex;
    if (index != nullptr && !tFieldAccess::name(member).empty())
        index->remove(*this, position(member), hash4Member(member), false);
}

void CFieldVector::afterRename(const CFields& member) noexcept
{
    CNameIndex* const index = large().m_pIndex;
    if (index == nullptr)
    {
        if (std::unique_ptr<CNameIndex> fresh = m_uiCount < s_cuiIndexFrom ? nullptr : makeIndex())
            adoptIndex(std::move(fresh));
    }
    else if (!tFieldAccess::name(member).empty() && !index->insert(*this, position(member), hash4Member(member)))
        dropIndex();
}

void CFieldVector::freeBlocks(CFieldVector* self, detail::CPoolReleaser& releaser) noexcept
{
    if (!self->isSmall())
    {
        tLarge* const head = &self->large();
        self = head->m_pFirstBlock;
        for (std::uint32_t step = 1; step < head->m_uiSegments; ++step)
            detail::freeLarge(head->m_pSegment[step], head->segmentRoom(step) * sizeof(CFields));
        if (head->m_pSegment != head->m_pInline)
            std::free(head->m_pSegment);
        delete head->m_pIndex;
        delete head;
    }
    if (self->isPooled())
    {
        detail::CBlockPool::tPiece* const piece = self->piece();
        detail::poison(self, s_cnHeadSize + self->room() * sizeof(CFields));
        releaser.release(piece);
    }
    else if (self->m_uiRoom != 0)
        detail::freeExact(self, s_cnHeadSize + std::uint64_t{self->m_uiRoom} * sizeof(CFields));
}

/// A container whose members are being destroyed. While one of them is, it is stored in that node.
struct CFieldVector::tDestroyed
{
    tDestroyed* m_pAround;
    CFieldVector* m_pMembers;
    std::uint32_t m_uiDone;
    bool m_bBackward;
};

// A container that was loaded lies after what it holds, and a copy lies before it. Destroying goes the way the memory
// lies: that takes a third of the time where a tree is larger than the caches.
bool CFieldVector::liesAfterMembers() const noexcept
{
    if (isSmall() && isPooled())
        return (m_uiRoom & s_cuiLoaded) != 0;
    const CFieldVector* const below = m_uiCount == 0 ? nullptr : tFieldAccess::members(last());
    return below != nullptr && below->isSmall() && below->isPooled() && (below->m_uiRoom & s_cuiLoaded) != 0;
}

CFieldVector::tRun CFieldVector::runBefore(std::uint32_t index) const noexcept
{
    if (isSmall())
        return {first(), first() + index};
    const tLarge::tSpot place = large().spot(index - 1);
    CFields* const begin = large().m_pSegment[place.m_uiStep];
    return {begin, begin + place.m_uiOffset + 1};
}

// Descends in depth-first order. A node that is left holds the place to go on: its parts are released, and its block
// lives until all its members are destroyed.
void CFieldVector::destroy(CFieldVector* self) noexcept
{
    static_assert(sizeof(tDestroyed) <= sizeof(CFields));
    detail::CPoolReleaser releaser;
    tDestroyed* around = nullptr;
    std::uint32_t done = 0;
    bool isBackward = self->liesAfterMembers();
    for (;;)
    {
        CFieldVector* below = nullptr;
        while (below == nullptr && done != self->m_uiCount)
        {
            const tRun part = isBackward ? self->runBefore(self->m_uiCount - done) : self->run(done);
            CFields* node = isBackward ? part.m_pEnd - 1 : part.m_pBegin;
            const std::ptrdiff_t step = isBackward ? -1 : 1;
            for (std::ptrdiff_t left = part.m_pEnd - part.m_pBegin; left != 0 && below == nullptr; --left, node += step)
            {
                ++done;
                below = tFieldAccess::release(*node, releaser);
                if (below != nullptr && below->m_uiCount == 0)
                    freeBlocks(std::exchange(below, nullptr), releaser);
                if (below != nullptr)
                    around = new (static_cast<void*>(node)) tDestroyed{around, self, done, isBackward};
            }
        }
        if (below != nullptr)
        {
            self = below;
            done = 0;
            isBackward = self->liesAfterMembers();
            continue;
        }
        freeBlocks(self, releaser);
        if (around == nullptr)
            return;
        self = around->m_pMembers;
        done = around->m_uiDone;
        isBackward = around->m_bBackward;
        around = around->m_pAround;
    }
}

}  // namespace murv
