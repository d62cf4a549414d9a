// io/loss.cpp - paths of nodes, and the rules that text and binary files share.
#include "io/loss.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "core/error_table.h"
#include "core/path_text.h"
#include "io/load.h"
#include "packet/pei_rules.h"

namespace murv::detail
{

static_assert(s_cnMostLevels == std::size_t{tLoad::s_cnStackDepthLimit}, "what is saved can be loaded");

namespace
{

/// Leaves out the middle of a path that is too long for a message, and no part of a character.
void shorten(std::string& path)
{
    constexpr std::size_t longest = 300;
    constexpr std::size_t kept = 140;
    if (path.size() <= longest)
        return;
    const auto isInside = [&path](std::size_t at) { return (static_cast<unsigned char>(path[at]) & 0xC0) == 0x80; };
    std::size_t begin = kept;
    std::size_t end = path.size() - kept;
    while (isInside(begin))
        --begin;
    while (isInside(end))
        ++end;
    path.replace(begin, end - begin, "...");
}

bool isSameSlot(const tSlot& a, const tSlot& b)
{
    if (a.m_eType != b.m_eType)
        return false;
    switch (a.m_eType)
    {
    case DT_bool: return a.m_uValue.m_bValue == b.m_uValue.m_bValue;
    case DT_sint:
    case DT_uint:
    case DT_double: return a.m_uValue.m_ullValue == b.m_uValue.m_ullValue;
    case DT_codelist: return view4Codes(a.m_bOwned, a.m_uValue.m_pData) == view4Codes(b.m_bOwned, b.m_uValue.m_pData);
    default: return true;
    }
}

/// The path as the tool takes it, orders[3].price, or "the root". A long one is shortened in the middle.
std::string path4Steps(const std::vector<tPathStep>& steps)
{
    if (steps.empty())
        return "the root";
    std::string path;
    for (const tPathStep& step : steps)
        appendPathStep(path, *step.m_pContainer, step.m_uiIndex);
    shorten(path);
    return path;
}

}  // namespace

struct tErrorPathAccess
{
    static void set(ISaver& saver, std::vector<unsigned int>&& path) noexcept
    {
        saver.m_vErrorPath = std::move(path);
    }
};

const char* lossOfSecondValue(const CFields& node)
{
    const tPacketExpInfo& pei = tFieldAccess::pei(node);
    const bool isDual = !tFieldAccess::isContainer(node) && isDualExpression(pei);
    const unsigned int kind = isDual ? pei.m_usSkIndex : static_cast<unsigned int>(VK_actual);
    const tSlot second = isDual ? tFieldAccess::slot(node, VK_actual) : tSlot{};
    if (!isSameSlot(tFieldAccess::slot(node, VK_fix), second))
        return isDual ? "two values that differ" : "a second value without the keyword \"fix\" or \"valid\"";
    return tFieldAccess::kind(node) == kind ? nullptr : "a value kind that the keyword does not give";
}

void reportLoss(ISaver& saver, const char* function, const std::vector<tPathStep>& steps, const char* medium,
                const char* loss, int line)
{
    const std::string words = path4Steps(steps);
    std::vector<unsigned int> path;
    path.reserve(steps.size());
    for (const tPathStep& step : steps)
        path.push_back(step.m_uiIndex);
    saver.setUserError(s_ciInvalidParameter, "[%s#%d] %s: %s cannot hold %s", function, line, words.c_str(), medium,
                       loss);
    tErrorPathAccess::set(saver, std::move(path));
}

}  // namespace murv::detail
