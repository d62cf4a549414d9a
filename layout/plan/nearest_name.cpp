// layout/plan/nearest_name.cpp - the name that someone may have meant.
#include "layout/plan/nearest_name.h"

#include <algorithm>
#include <cstddef>

namespace murv::detail
{

namespace
{

constexpr std::size_t s_cnLongest = 64;

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Letters to add, drop, change or exchange between two names; case does not count.
std::size_t distance(std::string_view a, std::string_view b)
{
    std::size_t rows[3][s_cnLongest + 1] = {};
    for (std::size_t j = 0; j <= b.size(); ++j)
        rows[0][j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i)
    {
        std::size_t* const row = rows[i % 3];
        const std::size_t* const above = rows[(i + 2) % 3];
        const std::size_t* const twoAbove = rows[(i + 1) % 3];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j)
        {
            const bool same = lower(a[i - 1]) == lower(b[j - 1]);
            row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + (same ? 0 : 1)});
            if (i > 1 && j > 1 && lower(a[i - 1]) == lower(b[j - 2]) && lower(a[i - 2]) == lower(b[j - 1]))
                row[j] = std::min(row[j], twoAbove[j - 2] + 1);
        }
    }
    return rows[a.size() % 3][b.size()];
}

}  // namespace

std::string_view nearestName(std::string_view mistyped, const std::vector<std::string_view>& names)
{
    std::string_view nearest;
    if (mistyped.size() > s_cnLongest)
        return nearest;
    std::size_t least = std::max<std::size_t>(mistyped.size() / 3, 1) + 1;
    for (const std::string_view name : names)
    {
        if (name.empty() || name.size() > s_cnLongest)
            continue;
        const std::size_t difference = distance(mistyped, name);
        if (difference < least)
        {
            least = difference;
            nearest = name;
        }
    }
    return nearest;
}

}  // namespace murv::detail
