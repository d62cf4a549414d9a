// layout/run/totals.cpp - totals that keep what fits their number; checksums around their own number.
#include "layout/run/totals.h"

#include <algorithm>

namespace murv::detail
{

namespace
{

constexpr unsigned int s_cuiMostDigits = 18;

bool isBinary(const tItem& item)
{
    return item.m_eForm == IF_binary;
}

}  // namespace

std::uint64_t total4Item(const tPlan& plan, const tLink& link)
{
    const tItem& item = plan.m_vParts[link.m_tNumber.m_uiPart].m_tItem;
    if (item.m_bVaries || item.m_bDecimals)
        return 0;
    if (link.m_tNumber.m_uiBits != s_cuiNone)
        return std::uint64_t{1} << std::min(item.m_vBits[link.m_tNumber.m_uiBits].m_uiWidth, 63U);
    if (isBinary(item))
        return item.m_uiLength >= 8 ? 0 : std::uint64_t{1} << 8 * item.m_uiLength;
    if (item.m_eForm != IF_digits || item.m_uiLength > s_cuiMostDigits)
        return 0;
    std::uint64_t modulo = 1;
    for (unsigned int i = 0; i < item.m_uiLength; ++i)
        modulo *= 10;
    return modulo;
}

std::uint64_t addToTotal(std::uint64_t modulo, std::uint64_t total, std::uint64_t amount)
{
    if (modulo == 0)
        return total + amount;
    const bool negative = amount >> 63 != 0;
    const std::uint64_t part = (negative ? 0 - amount : amount) % modulo;
    return (total + (negative ? modulo - part : part)) % modulo;
}

std::uint64_t checksum4(E_Checksum kind, const tItem& number, const tChecked& checked)
{
    CChecksum checksum(kind);
    const std::uint64_t size = checked.m_strvBytes.size();
    if (checked.m_ullOwn >= size)
    {
        checksum.add(checked.m_strvBytes);
        return checksum.get();
    }
    const std::uint64_t length = std::min(checked.m_ullOwnLength, size - checked.m_ullOwn);
    checksum.add(checked.m_strvBytes.substr(0, static_cast<std::size_t>(checked.m_ullOwn)));
    checksum.addFill(isBinary(number) ? '\0' : ' ', length);
    checksum.add(checked.m_strvBytes.substr(static_cast<std::size_t>(checked.m_ullOwn + length)));
    return checksum.get();
}

}  // namespace murv::detail
