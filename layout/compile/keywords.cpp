// layout/compile/keywords.cpp - value words as keywords of packet expressions, by the table of rules.
#include <array>
#include <string_view>

#include "layout/compile/rule_table.h"
#include "murv/fields.h"
#include "murv/layout.h"

namespace murv
{

namespace detail
{

namespace
{

constexpr std::size_t s_cnLongest = 15;

/// The keyword with "_" at its end, which the reader and writer of documents want before an option.
using tOptionText = std::array<char, s_cnLongest + 2>;

bool takesOption(const tRuleRow& row, unsigned char option)
{
    return option == 0 ? row.m_eOption != KO_argument : row.m_eOption != KO_never;
}

int checkIndex(unsigned short index, unsigned char option)
{
    const tRuleRow* const row = findKeywordRow(index);
    return row == nullptr ? 0 : takesOption(*row, option) ? 1 : -1;
}

int findIndex(const char* text, unsigned char option)
{
    std::string_view name(text);
    for (const tRuleRow* row = beginRules(); row != endRules(); ++row)
    {
        if (row->m_usKeyword == 0 || !takesOption(*row, option))
            continue;
        std::string_view keyword(row->m_pKeyword);
        const bool marked = option != 0 && row->m_eOption != KO_argument && name.ends_with('_');
        if (keyword == (marked ? name.substr(0, name.size() - 1) : name))
            return row->m_usKeyword;
    }
    return 0;
}

const char* findText(unsigned short index, unsigned char option)
{
    static thread_local tOptionText text;
    const tRuleRow* const row = findKeywordRow(index);
    if (row == nullptr || option == 0 || row->m_eOption == KO_argument)
        return row == nullptr ? nullptr : row->m_pKeyword;
    const std::string_view keyword(row->m_pKeyword);
    const std::size_t length = keyword.copy(text.data(), s_cnLongest);
    text[length] = '_';
    text[length + 1] = '\0';
    return text.data();
}

}  // namespace

}  // namespace detail

void registerStandardKeywords()
{
    CFields::setCheckIdxFP4ESK(detail::s_cucWordKind, detail::checkIndex);
    CFields::setGetIdxFP4ESK(detail::s_cucWordKind, detail::findIndex);
    CFields::setGetTxtFP4ESK(detail::s_cucWordKind, detail::findText);
}

}  // namespace murv
