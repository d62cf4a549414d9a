// tools/expression_text.cpp - asks the saver and the loader of text, by documents that are one scalar.
#include "tools/expression_text.h"

#include <cstring>

#include "murv/loader.h"
#include "murv/saver.h"

namespace murv::tool
{

namespace
{
constexpr const char* s_cpLossOfExpression = "this packet expression";

bool isContainer(const CFields& node)
{
    return node.isField() || node.isArray();
}

/// A packet expression and what it depends on, as bytes.
std::string key4Node(const CFields& node)
{
    const tPacketExpInfo pei = node.pkt_GetExp();
    std::string key(sizeof pei + 2, '\0');
    std::memcpy(key.data(), &pei, sizeof pei);
    key[sizeof pei] = static_cast<char>(node.getDT());
    key[sizeof pei + 1] = static_cast<char>(node.getVK());
    return key;
}

/// What a second value has that its keyword does not give.
const char* lossOfSecondValue(const CFields& node)
{
    if (node.getVK() != VK_actual)
        return node.isEqualDualValue() ? nullptr : "two values that differ";
    return node.isNull(VK_fix) ? nullptr : "a second value without the keyword \"fix\" or \"valid\"";
}
}  // namespace

const char* CExpressionTexts::text4Node(const CFields& node, std::string_view& text)
{
    text = {};
    const bool isNull = CFields::pkt_IsNullExp(node.pkt_GetExp());
    if (isContainer(node))
        return isNull ? nullptr : "the packet expression of a container";
    if (const char* const loss = lossOfSecondValue(node))
        return loss;
    if (isNull)
        return node.getVK() == VK_actual ? nullptr : "a value kind that the keyword does not give";
    const auto [place, isNew] = m_vTexts.try_emplace(key4Node(node));
    if (isNew)
        place->second = makeText(node);
    text = place->second.m_strText;
    return place->second.m_pLoss;
}

CExpressionTexts::tText CExpressionTexts::makeText(const CFields& node)
{
    CFields probe;
    probe.setValue(node.getDT());
    probe.pkt_SetExp(node.pkt_GetExp());
    probe.setVK(node.getVK());
    CSaver4SER_PKT saver;
    saver.setSCBC(SCBC_SECOND_VALUE | SCBC_LOSSLESS);
    const std::string text = saver.saving(probe, SAVE_PEI | SAVE_VALUE);
    const std::size_t end = text.find(')');
    if (saver.isError() || text.empty() || text.front() != '(' || end == std::string::npos)
        return {{}, s_cpLossOfExpression};
    return {text.substr(1, end - 1), nullptr};
}

bool CTextExpressions::set(CFields& scalar, const std::string& text)
{
    const auto [place, isNew] = m_vRead.try_emplace(text);
    if (isNew)
        place->second = read(text);
    const tExpression& expression = place->second;
    if (!expression.m_bValid)
        return false;
    scalar.pkt_SetExp(expression.m_tPei);
    return scalar.setVK(expression.m_eKind);
}

CTextExpressions::tExpression CTextExpressions::read(const std::string& text)
{
    tExpression expression;
    // Blanks begin a remark, which would be lost.
    if (text.find_first_of(std::string_view(" \t\r\n()\0", 7)) != std::string::npos)
        return expression;
    CLoader4SER loader(LCBC_LOSSLESS);
    CFields probe;
    expression.m_bValid =
        loader.loading("(" + text + ")null", probe) && probe.isNull() && !CFields::pkt_IsNullExp(probe.pkt_GetExp());
    expression.m_tPei = probe.pkt_GetExp();
    expression.m_eKind = probe.getVK();
    return expression;
}

}  // namespace murv::tool
