// layout/run/fault_words.cpp - faults in words.
#include "layout/run/fault_words.h"

#include <algorithm>

#include "layout/plan/nearest_name.h"
#include "layout/run/maker.h"

namespace murv::detail
{

namespace
{

constexpr std::size_t s_cnMostBytes = 64;

/// A name as paths write it.
std::string writtenName(const std::string& name)
{
    const bool isPlain =
        name.find_first_of(".;|\"[]#") == std::string::npos && name.front() != ' ' && name.back() != ' ';
    if (isPlain)
        return name;
    std::string quoted = "\"";
    for (const char c : name)
        quoted.append(c == '"' || c == '\\' ? "\\" : "").push_back(c);
    return quoted + '"';
}

}  // namespace

std::string pathName(const tPart& part)
{
    if (part.m_strName.empty())
        return part.m_uiID != 0 ? "#" + std::to_string(part.m_uiID) : "(" + std::to_string(part.m_uiIndex + 1) + ")";
    return writtenName(part.m_strName);
}

std::string path4Part(const tPlan& plan, unsigned int part, const tElements& elements)
{
    std::vector<unsigned int> chain;
    for (unsigned int p = part; p != s_cuiNone && p != 0; p = plan.m_vParts[p].m_uiParent)
        chain.push_back(p);
    chain.push_back(0);
    std::reverse(chain.begin(), chain.end());
    std::string path;
    std::size_t array = 0;
    for (std::size_t i = 0; i < chain.size(); ++i)
    {
        const tPart& step = plan.m_vParts[chain[i]];
        const bool isElement = i != 0 && plan.m_vParts[step.m_uiParent].m_eKind == PK_array;
        if (isElement)
        {
            if (array < elements.size())
                path.append("[").append(std::to_string(elements[array])).append("]");
            ++array;
        }
        else if (i != 0)
        {
            path += path.empty() ? "" : ".";
            path += pathName(step);
        }
    }
    return path;
}

std::string masked(const tItem& item, std::string_view bytes)
{
    std::string text(bytes);
    if (!item.m_bMask)
        return text;
    const std::size_t shown = std::min<std::size_t>(item.m_ucShown, text.size());
    std::fill(text.begin(), text.end() - static_cast<std::ptrdiff_t>(shown), '*');
    return text;
}

namespace
{

/// Whether bytes of other parts may be among those of the fault, one of which is masked.
bool mayShowMasked(const tPlan& plan, const tScanFault& fault)
{
    const bool isAlone =
        plan.m_vParts[fault.m_uiPart].m_eKind == PK_leaf && fault.m_eCode != PF_missing && fault.m_eCode != PF_leftOver;
    return !isAlone && plan.m_bMasks;
}

/// Bytes between quotes; those that are no printable characters as `\xNN`.
std::string quotedBytes(std::string_view bytes)
{
    constexpr const char* digits = "0123456789ABCDEF";
    std::string quoted = "\"";
    for (const char c : bytes.substr(0, s_cnMostBytes))
    {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= ' ' && byte < 127)
            quoted.append(c == '"' || c == '\\' ? "\\" : "").push_back(c);
        else
            quoted.append("\\x").append({digits[byte >> 4], digits[byte & 15U]});
    }
    return quoted + (bytes.size() > s_cnMostBytes ? "\" and more" : "\"");
}

std::string words4Literal(const tPart& part, std::string_view found)
{
    const std::string wanted = masked(part.m_tItem, part.m_strLiteral);
    return "The layout demands " + quotedBytes(wanted) + ", but " + quotedBytes(masked(part.m_tItem, found)) +
           " stands here";
}

}  // namespace

tPacketFault describe(const tPlan& plan, const tScanFault& fault, std::string_view bytes)
{
    const tPart& part = plan.m_vParts[fault.m_uiPart];
    tPacketFault words;
    if (!fault.m_strBytes.empty())
        bytes = fault.m_strBytes;
    words.m_eCode = fault.m_eCode;
    words.m_strPath = path4Part(plan, fault.m_uiPart, fault.m_vElements);
    if (fault.m_uiBits != s_cuiNone)
        words.m_strPath +=
            (words.m_strPath.empty() ? "" : ".") + writtenName(part.m_tItem.m_vBits[fault.m_uiBits].m_strName);
    words.m_ullRecord = fault.m_ullRecord;
    words.m_ullOffset = fault.m_ullOffset;
    words.m_ullLength = fault.m_ullLength;
    words.m_ullRecordOffset = fault.m_ullOffset - std::min(fault.m_ullOffset, fault.m_ullRecordOffset);
    words.m_ullMissing = fault.m_ullMissing;
    words.m_strExpression = part.m_strExpression;
    words.m_strRules = part.m_strRules;
    words.m_strBytes = mayShowMasked(plan, fault) ? std::string(std::min(bytes.size(), s_cnMostBytes), '*')
                                                  : masked(part.m_tItem, bytes).substr(0, s_cnMostBytes);
    if (fault.m_pText != nullptr)
        words.m_strMessage = fault.m_pText;
    else if (fault.m_eCode == PF_literal)
        words.m_strMessage = words4Literal(part, bytes);
    else
        words.m_strMessage = getFaultSentence(fault.m_eCode);
    return words;
}

void sortFindings(std::vector<tScanFault>& findings)
{
    std::stable_sort(findings.begin(), findings.end(),
                     [](const tScanFault& a, const tScanFault& b) { return a.m_ullOffset < b.m_ullOffset; });
}

std::string CMaker::unknownWords() const
{
    const tPart& set = part4(m_tFault.m_uiPart);
    std::vector<std::string_view> names;
    for (const unsigned int member : set.m_vMembers)
        names.push_back(part4(member).m_strName);
    for (const tBitField& bits : set.m_tItem.m_vBits)
        names.push_back(bits.m_strName);
    const std::string_view nearest = nearestName(m_strUnknown, names);
    std::string words = "The layout has no part \"" + m_strUnknown + "\" here";
    if (!nearest.empty())
        words.append("; did you mean \"").append(nearest).append("\"?");
    return words;
}

}  // namespace murv::detail
