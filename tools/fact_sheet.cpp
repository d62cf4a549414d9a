// tools/fact_sheet.cpp - prints facts in columns for people, and as JSON for programs.
#include "tools/fact_sheet.h"

#include <string_view>
#include <utility>

#include "tools/json_text.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnLabelWidth = 24;

std::string spaces(std::size_t width, std::size_t used)
{
    return std::string(width > used ? width - used : 0, ' ');
}

/// "packet expressions" as "packet_expressions", "IDs" as "ids".
std::string key4Label(std::string_view label)
{
    std::string key;
    for (const char letter : label)
        key += letter == ' ' ? '_' : letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    return key;
}
}  // namespace

void CFactSheet::add(const char* label, std::size_t number)
{
    m_vFacts.push_back({label, std::to_string(number), true});
}

void CFactSheet::add(const char* label, std::string text)
{
    m_vFacts.push_back({label, std::move(text), false});
}

std::string CFactSheet::text(const std::string& heading) const
{
    std::string out = shownText(heading) + "\n";
    for (const tFact& fact : m_vFacts)
    {
        const std::string label = std::string("  ") + fact.m_pLabel;
        out += label + spaces(s_cnLabelWidth, label.size());
        if (fact.m_bNumber)
            out += spaces(m_nNumberWidth, fact.m_strValue.size());
        out += fact.m_strValue + "\n";
    }
    return out;
}

std::string CFactSheet::json(const std::string& head) const
{
    std::string out = "{" + head;
    for (const tFact& fact : m_vFacts)
    {
        out += "," + json4Text(key4Label(fact.m_pLabel)) + ":";
        out += fact.m_bNumber ? fact.m_strValue : json4Text(fact.m_strValue);
    }
    return out + "}\n";
}

}  // namespace murv::tool
