// io/member_builder.cpp - members of a container that is being read.
//
// Few names are compared, some are filtered first, many are indexed: no document makes a search quadratic.
#include "io/member_builder.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <new>
#include <utility>

#include "core/member_cursor.h"
#include "core/text/word_bytes.h"

namespace murv::detail
{

void CMemberBuilder::abandon() noexcept
{
    try
    {
        pin();
    }
    catch (const std::bad_alloc&)
    {
        members()->releaseInPlace();
        members() = CFieldVector::empty();
        m_tStack.cutTo(m_pBegin);
    }
}

std::uint32_t CMemberBuilder::makeNumber(CIdIndex& index)
{
    if (m_uiNumber != s_cuiNoPlace)
        return m_uiNumber;
    tNodePlace place = m_tPlace;
    if (place.m_uiContainer == s_cuiNoPlace && m_pOuter != nullptr)
        place.m_uiContainer = m_pOuter->makeNumber(index);
    m_uiNumber = index.addContainer(place, !tFieldAccess::name(m_tNode).empty());
    return m_uiNumber;
}

std::uint32_t CMemberBuilder::findInMany(std::string_view name)
{
    CFieldVector& known = *members();
    if (name.size() > s_cuiLongestName)
        return CNameIndex::s_cuiNone;
    if (m_pIndex == nullptr && known.count() > s_cuiFiltered)
        makeIndex();  // members without names have not been entered
    const auto length = static_cast<unsigned int>(name.size());
    if (m_pIndex != nullptr)
        return m_pIndex->find(known, name.data(), length, hash4Name(name.data(), length));
    if (m_bFiltered && !mayKnow(name))
        return CNameIndex::s_cuiNone;
    return known.find(name.data(), length);
}

// The stack has no room for it, or the container is too large for the stack: on with blocks of its own.
CFields& CMemberBuilder::appendBeyond()
{
    pin();
    return CFieldVector::append(members());
}

// Keeps what find needs: nothing for few members, a filter for some, an index for many.
void CMemberBuilder::enter(std::string_view name)
{
    const CFieldVector& known = *members();
    if (m_pIndex == nullptr && known.count() > s_cuiFiltered)
        makeIndex();
    else if (m_pIndex != nullptr)
    {
        const std::uint32_t hash = hash4Name(name.data(), static_cast<unsigned int>(name.size()));
        if (!m_pIndex->insert(known, known.count() - 1, hash))
            throw std::bad_alloc();
    }
    else if (m_bFiltered)
        filter(name);
    else
    {
        std::fill_n(m_ullFilter, s_cuiFilterWords, 0);
        forEachMember(&known, [this](const CFields& member) { filter(tFieldAccess::name(member)); });
        m_bFiltered = true;
    }
}

void CMemberBuilder::makeIndex()
{
    auto index = std::make_unique<CNameIndex>();
    if (!index->build(*members()))
        throw std::bad_alloc();
    m_pIndex = std::move(index);
}

void CMemberBuilder::filter(std::string_view name) noexcept
{
    const std::uint32_t bit = bit4Name(name);
    m_ullFilter[bit / 64] |= std::uint64_t{1} << (bit % 64);
}

bool CMemberBuilder::mayKnow(std::string_view name) const noexcept
{
    const std::uint32_t bit = bit4Name(name);
    return (m_ullFilter[bit / 64] >> (bit % 64) & 1) != 0;
}

// Names often begin or end alike: both ends count, and of longer ones the middle.
std::uint32_t CMemberBuilder::bit4Name(std::string_view name) noexcept
{
    constexpr std::uint64_t mixer = 0x9E3779B97F4A7C15;  // 2^64 divided by the golden ratio
    constexpr int spare = 64 - std::bit_width(s_cuiFilterWords * 64 - 1);
    const std::size_t size = name.size();
    std::uint64_t parts = size;
    if (size < 8)
        parts ^= pack4Short(name.data(), size);
    else
        parts ^= loadWord(name.data()) + loadWord(name.data() + size - 8) * 3;
    if (size >= 16)
        parts += loadWord(name.data() + size / 2 - 4) * 5;
    return static_cast<std::uint32_t>((parts * mixer) >> spare);
}

void CMemberBuilder::moveToHeap()
{
    CFieldVector& before = *members();
    const std::uint32_t count = before.count();
    CFieldVector* const own = before.moveOut(m_tStack.pool());
    const std::less<> isBefore;
    const CFields* const begin = reinterpret_cast<const CFields*>(m_pBegin + CFieldVector::s_cnHeadSize);
    if (m_pFollow != nullptr && !isBefore(m_pFollow, begin) && isBefore(m_pFollow, begin + count))
        m_pFollow = &own->at(static_cast<std::uint32_t>(m_pFollow - begin));
    members() = own;
    m_tStack.cutTo(m_pBegin);
    m_pBegin = nullptr;
}

void CMemberBuilder::closeLarge()
{
    if (tFieldAccess::type(m_tNode) == DT_fields)
        CFieldVector::indexNames(members(), std::move(m_pIndex));
}

}  // namespace murv::detail
